// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleTable/BubbleModel.h"

#include "chat/BubbleTable/BubbleText.h"
#include "chat/BubbleTable/UIBubbleHeaderTableViewCell.h"
#include "chat/BubbleTable/UIBubbleTypingTableViewCell.h"
#include "ui/Texts.h"

#include <QLocale>

#include <algorithm>
#include <climits>
#include <unordered_set>
#include <utility>

namespace cvtamber {
namespace {

// Stands in the rows for the typing indicator; no header has this number.
constexpr int TypingCode = INT_MIN;
// More changes than this between the rows are told as a reset.
constexpr int MostSteps = 64;
// More than fits into the room for a text: what is longer costs no more to lay out than this.
constexpr qsizetype LongestLaidOut = 16384;

std::ptrdiff_t offset(size_t index)
{
    return static_cast<std::ptrdiff_t>(index);
}

std::vector<BubbleSections::Date> datesOf(const std::vector<NSBubblePtr> &bubbles)
{
    std::vector<BubbleSections::Date> dates;
    dates.reserve(bubbles.size());
    for (const auto &bubble : bubbles)
        dates.emplace_back(bubble->date().isValid() ? bubble->date().toMSecsSinceEpoch() : 0);
    return dates;
}

// A name without a scheme is one of the program's resources.
QString addressOf(const QString &image)
{
    const auto isName = !image.isEmpty() && !image.contains(QLatin1Char(':'));
    return isName ? QStringLiteral("qrc:/images/") % image : image;
}

} // namespace

BubbleModel::BubbleModel() = default;

int BubbleModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QHash<int, QByteArray> BubbleModel::roleNames() const
{
    return {
        {KindRole, "kind"},
        {TitleRole, "title"},
        {SpokenRole, "spoken"},
        {MineRole, "mine"},
        {HeightRole, "rowHeight"},
        {BubbleRole, "bubbleFrame"},
        {ViewRole, "viewFrame"},
        {ImageRole, "bubbleImage"},
        {LeftCapRole, "leftCap"},
        {TopCapRole, "topCap"},
        {PictureRole, "picture"},
        {AvatarRole, "avatarImage"},
        {AvatarFrameRole, "avatarFrame"},
    };
}

QVariant BubbleModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    if (role == Qt::DisplayRole)
        role = TitleRole;
    if (role < KindRole || role > AvatarFrameRole)
        return {};
    if (role == KindRole)
        return kindOf(index.row());
    if (role == HeightRole)
        return heightOf(index.row());
    const auto code = this->code(index.row());
    switch (kindOf(index.row())) {
    case Header:
        return dateData(*bubble(BubbleSections::bubbleOf(code)), role);
    case Typing:
        return typingData(role);
    default:
        return bubbleData(code, role);
    }
}

QVariant BubbleModel::dateData(const NSBubbleData &first, int role) const
{
    switch (role) {
    case TitleRole:
    case SpokenRole:
        return UIBubbleHeaderTableViewCell::title(first.date(), QLocale());
    case MineRole:
        return false;
    case BubbleRole:
    case ViewRole:
    case AvatarFrameRole:
        return QRectF();
    case LeftCapRole:
    case TopCapRole:
        return 0;
    default:
        return QString();
    }
}

QVariant BubbleModel::typingData(int role) const
{
    const auto isMine = _typing == NSBubbleTypingType::Mine;
    switch (role) {
    case SpokenRole:
        return isMine ? localized("You are typing") : localized("The device is typing");
    case MineRole:
        return isMine;
    case BubbleRole:
        return UIBubbleTypingTableViewCell::frame(isMine, _appearance.width);
    case ViewRole:
    case AvatarFrameRole:
        return QRectF();
    case ImageRole:
        return UIBubbleTypingTableViewCell::image(isMine);
    case LeftCapRole:
    case TopCapRole:
        return 0;
    default:
        return QString();
    }
}

QVariant BubbleModel::bubbleData(int number, int role) const
{
    const auto &bubble = *this->bubble(number);
    switch (role) {
    case TitleRole:
        return shownText(number);
    case SpokenRole:
        return spokenText(bubble);
    case MineRole:
        return bubble.isMine();
    case PictureRole:
        return addressOf(bubble.view().image.source);
    case TopCapRole:
        return UIBubbleTableViewCell::topCap();
    default:
        return frameData(number, role);
    }
}

QVariant BubbleModel::frameData(int number, int role) const
{
    const UIBubbleTableViewCell cell(*bubble(number), measured(number).size, _appearance.width, _showAvatars);
    switch (role) {
    case BubbleRole:
        return cell.bubble();
    case ViewRole:
        return cell.customView();
    case ImageRole:
        return cell.bubbleImage();
    case LeftCapRole:
        return cell.leftCap();
    case AvatarRole:
        return bubble(number)->avatar().isEmpty() ? cell.avatarImage() : addressOf(cell.avatarImage());
    case AvatarFrameRole:
        return cell.avatar();
    default:
        return {};
    }
}

BubbleModel::Kind BubbleModel::kindOf(int row) const
{
    const auto code = this->code(row);
    if (code == TypingCode)
        return Typing;
    return BubbleSections::isHeader(code) ? Header : Bubble;
}

NSBubblePtr BubbleModel::bubbleAt(int row) const
{
    const auto isBubble = row >= 0 && row < rowCount() && kindOf(row) == Bubble;
    return isBubble ? bubble(code(row)) : nullptr;
}

double BubbleModel::heightOf(int row) const
{
    switch (kindOf(row)) {
    case Header:
        return figures().headerHeight();
    case Typing:
        return figures().typingHeight(_showAvatars);
    default: {
        const auto number = code(row);
        return UIBubbleTableViewCell(*bubble(number), measured(number).size, _appearance.width, _showAvatars)
            .height();
    }
    }
}

const BubbleModel::Measured &BubbleModel::measured(int number) const
{
    auto &known = _measured[static_cast<size_t>(number)];
    if (known.generation == _generation)
        return known;
    const auto &view = bubble(number)->view();
    if (view.isImage()) {
        known = {figures().imageSize(view.image.size, _showAvatars), 0, _generation};
    } else if (_measurer) {
        const auto size = _measurer->measure(drawableText(view.text, LongestLaidOut), figures().fontSize(),
                                             figures().textBounds(_showAvatars));
        known = {size.size, static_cast<int>(size.shown), _generation};
    } else {
        known = {QSizeF(0, 0), 0, _generation};
    }
    return known;
}

QString BubbleModel::shownText(int number) const
{
    const auto &raw = bubble(number)->view().text;
    const auto text = drawableText(raw, LongestLaidOut);
    const auto shown = measured(number).shown;
    // Cut before it was laid out, or by the room.
    const auto isWhole = shown >= text.size() && raw.size() <= LongestLaidOut;
    return isWhole ? text : shortenedText(text, shown);
}

QString BubbleModel::spokenText(const NSBubbleData &bubble)
{
    const auto content = bubble.view().isImage() ? localized("Picture") : drawableText(bubble.view().text);
    const QString words =
        content % QStringLiteral(", ") % UIBubbleHeaderTableViewCell::timeOfDay(bubble.date(), QLocale());
    return bubble.isMine() ? localizedFormat("You: %@", words) : localizedFormat("Device: %@", words);
}

void BubbleModel::reload(int count, const std::function<NSBubblePtr(int)> &bubbleAt,
                         std::chrono::milliseconds snapInterval)
{
    const auto known = static_cast<int>(_bubbles.size());
    auto isGrowth = count >= known && (known == 0 || snapInterval == _snapInterval);
    int same = 0;
    std::vector<NSBubblePtr> more;
    for (int number = 0; number < count; ++number) {
        auto bubble = bubbleAt(number);
        if (isGrowth && number < known) {
            if (bubble == _bubbles[static_cast<size_t>(number)]) {
                ++same;
                continue;
            }
            isGrowth = false;
            more.assign(_bubbles.begin(), _bubbles.begin() + same);
        }
        more.push_back(std::move(bubble));
    }
    if (known == 0)
        _sections = BubbleSections(snapInterval);
    _snapInterval = snapInterval;
    if (isGrowth)
        grow(std::move(more));
    else
        replace(std::move(more));
}

void BubbleModel::append(int count, const std::function<NSBubblePtr(int)> &bubbleAt)
{
    std::vector<NSBubblePtr> more;
    for (int number = static_cast<int>(_bubbles.size()); number < count; ++number)
        more.push_back(bubbleAt(number));
    grow(std::move(more));
}

void BubbleModel::grow(std::vector<NSBubblePtr> more)
{
    if (more.empty())
        return;
    const auto stood = _sections.rows().size();
    const auto isAtEnd = _sections.add(datesOf(more));
    _bubbles.insert(_bubbles.end(), std::make_move_iterator(more.begin()),
                    std::make_move_iterator(more.end()));
    _measured.resize(_bubbles.size());
    const auto &now = _sections.rows();
    if (isAtEnd)
        addRows(stood, now.begin() + offset(stood), now.end());
    else
        merge(now);
}

// Bubbles keep their order when others come between them; headers come and go.
void BubbleModel::merge(const std::vector<int> &now)
{
    const std::unordered_set<int> stay(now.begin(), now.end());
    int steps = 0;
    size_t at = 0;
    while (at < now.size() && steps < MostSteps) {
        const auto shown =
            at < _rows.size() && _rows[at] != TypingCode ? std::optional(_rows[at]) : std::nullopt;
        if (shown == now[at]) {
            ++at;
            continue;
        }
        ++steps;
        if (shown && !stay.contains(*shown)) {
            removeRow(at);
            continue;
        }
        const auto begin = now.begin() + offset(at);
        const auto end = shown ? std::find(begin, now.end(), *shown) : now.end();
        addRows(at, begin, end);
        at = static_cast<size_t>(end - now.begin());
    }
    if (at == now.size())
        return;
    beginResetModel();
    _rows.assign(now.begin(), now.end());
    if (hasTypingRow())
        _rows.push_back(TypingCode);
    endResetModel();
}

void BubbleModel::addRows(size_t at, std::vector<int>::const_iterator begin,
                          std::vector<int>::const_iterator end)
{
    const auto first = static_cast<int>(at);
    beginInsertRows({}, first, first + static_cast<int>(end - begin) - 1);
    _rows.insert(_rows.begin() + offset(at), begin, end);
    endInsertRows();
}

void BubbleModel::removeRow(size_t at)
{
    beginRemoveRows({}, static_cast<int>(at), static_cast<int>(at));
    _rows.erase(_rows.begin() + offset(at));
    endRemoveRows();
}

void BubbleModel::replace(std::vector<NSBubblePtr> bubbles)
{
    beginResetModel();
    _bubbles = std::move(bubbles);
    _measured.assign(_bubbles.size(), {});
    _sections = BubbleSections(_snapInterval);
    _sections.add(datesOf(_bubbles));
    _rows = _sections.rows();
    if (hasTypingRow())
        _rows.push_back(TypingCode);
    endResetModel();
}

void BubbleModel::setTyping(NSBubbleTypingType typing)
{
    if (typing == _typing)
        return;
    if (hasTypingRow())
        removeRow(_rows.size() - 1);
    _typing = typing;
    const std::vector<int> row{TypingCode};
    if (hasTypingRow())
        addRows(_rows.size(), row.begin(), row.end());
}

void BubbleModel::setShowAvatars(bool shows)
{
    if (std::exchange(_showAvatars, shows) == shows)
        return;
    // There is less room beside an avatar.
    ++_generation;
    figuresChanged();
}

void BubbleModel::setMeasurer(const std::shared_ptr<const TextMeasurer> &measurer)
{
    if (std::exchange(_measurer, measurer) == measurer)
        return;
    ++_generation;
    figuresChanged();
}

bool BubbleModel::setAppearance(const BubbleAppearance &appearance)
{
    const auto old = std::exchange(_appearance, appearance);
    if (old == appearance)
        return false;
    const auto measures = [this](const BubbleAppearance &look) {
        const BubbleFigures figures(look);
        return std::pair(figures.fontSize(), figures.textBounds(_showAvatars));
    };
    if (measures(old) != measures(appearance))
        ++_generation;
    figuresChanged();
    return true;
}

void BubbleModel::figuresChanged()
{
    if (_rows.empty())
        return;
    emit dataChanged(index(0), index(rowCount() - 1),
                     {TitleRole, HeightRole, BubbleRole, ViewRole, AvatarRole, AvatarFrameRole});
}

} // namespace cvtamber
