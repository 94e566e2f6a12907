// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleTable/UIBubbleTableView.h"

#include "chat/BubbleTable/BubbleModel.h"

#include <algorithm>

namespace cvtamber {

UIBubbleTableView::UIBubbleTableView(Style style)
    : _model(std::make_unique<BubbleModel>())
{
    if (style != Style::Plain)
        qFatal("-[UIBubbleTableView initializator]: self.style");
}

UIBubbleTableView::~UIBubbleTableView() = default;

QAbstractItemModel *UIBubbleTableView::modelPointer() const
{
    return _model.get();
}

std::vector<std::vector<NSBubblePtr>> UIBubbleTableView::bubbleSection() const
{
    const auto &known = _model->sections();
    std::vector<std::vector<NSBubblePtr>> sections(static_cast<size_t>(known.sectionCount()));
    for (int section = 0; section < known.sectionCount(); ++section) {
        for (const auto number : known.section(section))
            sections[static_cast<size_t>(section)].push_back(_model->bubble(number));
    }
    return sections;
}

void UIBubbleTableView::reloadData()
{
    _model->setShowAvatars(_showAvatars);
    _model->setTyping(_typingBubble);
    take(false);
}

void UIBubbleTableView::takeNewBubbles()
{
    // The first ones are grouped as the properties say.
    take(messageCount() > 0);
}

void UIBubbleTableView::take(bool onlyNew)
{
    const auto source = _source.lock();
    const auto count = source ? std::max(0, source->rowsForBubbleTable(*this)) : 0;
    const auto bubbleAt = [&](int row) {
        auto bubble = source->bubbleTableViewDataForRow(*this, row);
        if (!bubble)
            qFatal("[object isKindOfClass:[NSBubbleData class]]");
        return bubble;
    };
    const auto known = messageCount();
    if (onlyNew)
        _model->append(count, bubbleAt);
    else
        _model->reload(count, bubbleAt, _snapInterval);
    if (messageCount() != known)
        emit messageCountChanged();
}

int UIBubbleTableView::numberOfSections() const
{
    return _model->sections().sectionCount() + (_model->hasTypingRow() ? 1 : 0);
}

int UIBubbleTableView::numberOfRows(int section) const
{
    const auto isTyping = _model->hasTypingRow() && section == _model->sections().sectionCount();
    return isTyping ? 1 : _model->sections().rowsOf(section);
}

int UIBubbleTableView::indexOf(IndexPath path) const
{
    const auto &sections = _model->sections();
    if (path.section == sections.sectionCount())
        return _model->hasTypingRow() && path.row == 0 ? _model->rowCount() - 1 : -1;
    return sections.indexOf({path.section, path.row});
}

double UIBubbleTableView::heightForRow(IndexPath path) const
{
    const auto index = indexOf(path);
    return index < 0 ? 0 : _model->heightOf(index);
}

void UIBubbleTableView::scrollToRow(IndexPath path, ScrollPosition position, bool animated)
{
    const auto index = indexOf(path);
    if (index >= 0)
        emit scrollRequested(index, position == ScrollPosition::Bottom, animated);
}

std::optional<IndexPath> UIBubbleTableView::lastVisibleRow() const
{
    if (_lastVisibleIndex < 0 || _lastVisibleIndex >= _model->rowCount())
        return std::nullopt;
    const auto place = _model->sections().placeOf(_lastVisibleIndex);
    // Beyond the bubbles there is only the typing indicator.
    return place.section < 0 ? IndexPath{_model->sections().sectionCount(), 0}
                             : IndexPath{place.section, place.row};
}

int UIBubbleTableView::fontSize() const
{
    return _model->figures().fontSize();
}

int UIBubbleTableView::headerFontSize() const
{
    return _model->figures().headerFontSize();
}

void UIBubbleTableView::setTextMeasurer(const std::shared_ptr<const TextMeasurer> &measurer)
{
    _model->setMeasurer(measurer);
}

void UIBubbleTableView::setAppearance(const BubbleAppearance &appearance)
{
    if (_model->setAppearance(appearance))
        emit appearanceChanged();
}

QString UIBubbleTableView::textAt(int index) const
{
    const auto bubble = _model->bubbleAt(index);
    return bubble ? bubble->view().text : QString();
}

int UIBubbleTableView::messageCount() const
{
    return _model->sections().bubbleCount();
}

int UIBubbleTableView::positionOf(int index) const
{
    // Every section up to this one has its header before it.
    return _model->bubbleAt(index) ? index - _model->sections().placeOf(index).section : 0;
}

int UIBubbleTableView::bubbleIndexFrom(int index, bool downwards) const
{
    for (; index >= 0 && index < _model->rowCount(); index += downwards ? 1 : -1) {
        if (_model->kindOf(index) == BubbleModel::Bubble)
            return index;
    }
    return -1;
}

int UIBubbleTableView::bubbleIndexAfterPage(int index, bool downwards, double height) const
{
    const auto step = downwards ? 1 : -1;
    auto found = bubbleIndexFrom(index, downwards);
    auto isFirstStep = true;
    for (auto next = index; next >= 0 && next < _model->rowCount(); next += step) {
        height -= _model->heightOf(next);
        if (_model->kindOf(next) != BubbleModel::Bubble || next == index)
            continue;
        if (height < 0 && !isFirstStep)
            break;
        found = next;
        isFirstStep = false;
    }
    return found >= 0 ? found : bubbleIndexFrom(index, !downwards);
}

} // namespace cvtamber
