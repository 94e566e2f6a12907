// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleTable/UIBubbleTableViewCell.h"

#include "chat/BubbleTable/BubbleFigures.h"

#include <algorithm>

namespace cvtamber {
namespace {

constexpr double AvatarSide = 50;
constexpr double AvatarMargin = 2;
// An avatar with a margin on both sides.
constexpr double AvatarRoom = 54;

} // namespace

UIBubbleTableViewCell::UIBubbleTableViewCell(const NSBubbleData &data, const QSizeF &viewSize,
                                             double tableWidth, bool showAvatar)
    : _data(data)
    , _tableWidth(tableWidth)
    , _showAvatar(showAvatar)
{
    const auto &insets = data.insets();
    const QSizeF size(insets.left + viewSize.width() + insets.right,
                      insets.top + viewSize.height() + insets.bottom);
    _height = showAvatar ? std::max(size.height(), BubbleFigures::LeastHeightWithAvatar) : size.height();
    const auto beside = showAvatar ? AvatarRoom : 0;
    const auto x = data.isMine() ? tableWidth - size.width() - beside : beside;
    // Beside an avatar that is higher it stands at the bottom, where the tail points to it.
    _bubble = QRectF(QPointF(x, _height - size.height()), size);
}

QRectF UIBubbleTableViewCell::customView() const
{
    const auto &insets = _data.insets();
    return _bubble.adjusted(insets.left, insets.top, -insets.right, -insets.bottom);
}

QString UIBubbleTableViewCell::bubbleImage() const
{
    return _data.isMine() ? QStringLiteral("bubbleMine.png") : QStringLiteral("bubbleSomeone.png");
}

QString UIBubbleTableViewCell::avatarImage() const
{
    if (!_showAvatar)
        return {};
    return _data.avatar().isEmpty() ? QStringLiteral("missingAvatar.png") : _data.avatar();
}

QRectF UIBubbleTableViewCell::avatar() const
{
    if (!_showAvatar)
        return {};
    const auto x = _data.isMine() ? _tableWidth - AvatarSide - AvatarMargin : AvatarMargin;
    return {x, _height - AvatarSide, AvatarSide, AvatarSide};
}

} // namespace cvtamber
