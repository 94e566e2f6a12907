// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/text/UIMyTextView.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// What undo remembers; the oldest is forgotten beyond.
constexpr qsizetype mostRememberedUnits = UIMyTextView::MaximalLength;
constexpr size_t mostRememberedEdits = 1000;

bool isPairAt(QStringView text, qsizetype position)
{
    return position >= 0 && position + 1 < text.size() && text[position].isHighSurrogate() &&
           text[position + 1].isLowSurrogate();
}

bool endsWord(QStringView text)
{
    return text.endsWith(u' ') || text.endsWith(u'\n');
}

QString withLineFeeds(QString text)
{
    text.replace("\r\n"_L1, "\n"_L1);
    for (const char16_t end : {u'\r', u'\v', u'\f', u'\u0085', u'\u2028', u'\u2029'})
        text.replace(QChar(end), u'\n');
    return text;
}

} // namespace

UIMyTextView::UIMyTextView() = default;

UIMyTextView::~UIMyTextView() = default;

void UIMyTextView::setSelectedRange(Range range)
{
    range.start = std::clamp<qsizetype>(range.start, 0, _text.size());
    range.length = std::clamp<qsizetype>(range.length, 0, _text.size() - range.start);
    if (range == _selection)
        return;
    _selection = range;
    _hasToldFixed = false;
    emit selectedRangeChanged();
}

// The part of a text that there is room for.
QString UIMyTextView::fitting(const QString &text, qsizetype room)
{
    if (text.size() <= room)
        return text;
    if (!std::exchange(_hasToldFull, true) && _delegate)
        _delegate->pageIsFull();
    return text.left(isPairAt(text, room - 1) ? room - 1 : room);
}

// The selection is set by the caller first: all of it holds when the change is told.
void UIMyTextView::change(qsizetype position, qsizetype removed, const QString &inserted)
{
    _text.replace(position, removed, inserted);
    emit textChanged(position, removed, inserted);
}

// Typing and pasting

// Whether anything came of it.
bool UIMyTextView::replaceSelection(const QString &text, bool isTyped)
{
    if (text.isEmpty())
        return false;
    if (_selection.start < _fixedTextEnd) {
        tellFixed();
        return false;
    }
    const Range range = _selection;
    Edit edit;
    edit.position = range.start - _fixedTextEnd;
    edit.removed = _text.mid(range.start, range.length);
    edit.inserted = fitting(text, MaximalLength - (_text.size() - range.length));
    edit.isTyped = isTyped;
    if (edit.size() == 0)
        return false;
    remember(edit);
    apply(edit);
    return !edit.inserted.isEmpty();
}

void UIMyTextView::insertText(const QString &text)
{
    const qsizetype caret = _selection.start;
    const bool isSent = text.size() == 1 && endsWord(text) && !_holdsBack;
    if (replaceSelection(text, true) && isSent)
        sendUpTo(caret + 1);
}

void UIMyTextView::commitText(const QString &text)
{
    if (text.size() < 2 || !endsWord(text)) {
        insertText(text);
        return;
    }
    replaceSelection(text.chopped(1), true);
    insertText(text.right(1));
}

void UIMyTextView::paste(const QString &text)
{
    replaceSelection(withLineFeeds(text), false);
}

void UIMyTextView::sendUpTo(qsizetype end)
{
    QString words = _text.mid(_fixedTextEnd, end - _fixedTextEnd);
    words.replace("\n"_L1, "\r\n"_L1);
    if (_delegate && !_delegate->maySend(words))
        return;
    const qsizetype before = std::exchange(_fixedTextEnd, end);
    forgetEdits();
    emit textFixed(before);
    if (_delegate)
        _delegate->newTextReady(words);
}

void UIMyTextView::tellFixed()
{
    if (!std::exchange(_hasToldFixed, true) && _delegate)
        _delegate->textIsFixed();
}

// Deleting

void UIMyTextView::deleteBackward()
{
    const qsizetype start = _selection.start;
    if (_selection.length > 0 || start <= _fixedTextEnd)
        deleteRange(_selection);
    else if (isPairAt(_text, start - 2))
        deleteRange({start - 2, 2});
    else
        deleteRange({start - 1, 1});
}

void UIMyTextView::deleteForward()
{
    const qsizetype start = _selection.start;
    if (_selection.length > 0)
        deleteRange(_selection);
    else if (start >= _fixedTextEnd && start < _text.size())
        deleteRange({start, isPairAt(_text, start) ? 2 : 1});
    else if (start < _fixedTextEnd)
        tellFixed();
}

// What of it is unsent.
void UIMyTextView::deleteRange(Range range)
{
    const qsizetype start = std::max(range.start, _fixedTextEnd);
    const qsizetype length = range.end() - start;
    if (length <= 0) {
        if (_fixedTextEnd > 0)
            tellFixed();
        return;
    }
    Edit edit;
    edit.position = start - _fixedTextEnd;
    edit.removed = _text.mid(start, length);
    remember(edit);
    apply(edit);
}

// The device's text

void UIMyTextView::insertCorvaneText(const QString &text)
{
    const QString inserted = fitting(text, MaximalLength - _text.size());
    if (inserted.isEmpty())
        return;
    const qsizetype position = _fixedTextEnd;
    _fixedTextEnd += inserted.size();
    if (_selection.start >= position)
        _selection.start += inserted.size();
    change(position, 0, inserted);
}

// Undo

void UIMyTextView::apply(const Edit &edit)
{
    const qsizetype position = _fixedTextEnd + edit.position;
    _selection = {position + edit.inserted.size(), 0};
    _hasToldFixed = false;
    change(position, edit.removed.size(), edit.inserted);
}

void UIMyTextView::remember(const Edit &edit)
{
    for (const Edit &undone : _undone)
        _rememberedUnits -= undone.size();
    _undone.clear();
    _rememberedUnits += edit.size();
    Edit *last = _done.empty() ? nullptr : &_done.back();
    if (last && last->isTyped && edit.isTyped && edit.removed.isEmpty() &&
        edit.position == last->position + last->inserted.size())
        last->inserted += edit.inserted;
    else
        _done.push_back(edit);
    while (_rememberedUnits > mostRememberedUnits || _done.size() > mostRememberedEdits) {
        _rememberedUnits -= _done.front().size();
        _done.pop_front();
    }
}

void UIMyTextView::forgetEdits()
{
    _done.clear();
    _undone.clear();
    _rememberedUnits = 0;
}

void UIMyTextView::undo()
{
    if (_done.empty())
        return;
    _undone.push_back(std::move(_done.back()));
    _done.pop_back();
    const Edit &edit = _undone.back();
    apply({edit.position, edit.inserted, edit.removed});
}

void UIMyTextView::redo()
{
    if (_undone.empty())
        return;
    _done.push_back(std::move(_undone.back()));
    _undone.pop_back();
    // What is typed next is an edit of its own.
    _done.back().isTyped = false;
    const Edit edit = _done.back();
    apply(edit);
}

} // namespace cvtamber
