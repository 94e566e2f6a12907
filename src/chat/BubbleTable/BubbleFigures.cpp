// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleTable/BubbleFigures.h"

#include "chat/BubbleTable/UIBubbleTypingTableViewCell.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace cvtamber {
namespace {

// The size that texts of rows have in the whole program.
constexpr double SystemFontSize = 17;
constexpr double HeaderFontSize = 12;
constexpr double HeaderHeight = 28;
constexpr double TextWidthOnPhone = 220;
constexpr double TextWidthOnTablet = 500;
constexpr double TextHeight = 9999;
// What a row holds beside its text: insets, an avatar, and a gap that shows whose side it is on.
constexpr double BesideText = 27 + 21;
constexpr double BesideAvatar = 54;

} // namespace

int BubbleFigures::fontSize() const
{
    const int size = qRound(SystemFontSize * _appearance.textScale);
    return _appearance.isTablet ? std::clamp(_appearance.titleSize, size, 2 * size) : size;
}

int BubbleFigures::headerFontSize() const
{
    return qRound(fontSize() * HeaderFontSize / SystemFontSize);
}

double BubbleFigures::headerHeight() const
{
    return std::max(HeaderHeight, std::ceil(HeaderHeight * _appearance.textScale));
}

double BubbleFigures::typingHeight(bool showAvatars) const
{
    const auto height = UIBubbleTypingTableViewCell::height();
    return showAvatars ? std::max(height, LeastHeightWithAvatar) : height;
}

QSizeF BubbleFigures::textBounds(bool showAvatars) const
{
    const auto room = std::floor(_appearance.width - BesideText - (showAvatars ? BesideAvatar : 0));
    // A conversation beside another column may be narrow on a tablet as well.
    const auto given =
        _appearance.isTablet ? std::clamp(room, TextWidthOnPhone, TextWidthOnTablet) : TextWidthOnPhone;
    const auto wanted = given * std::max(1.0, _appearance.textScale);
    return {std::max(given, std::min(wanted, room)), TextHeight};
}

QSizeF BubbleFigures::imageSize(const QSizeF &own, bool showAvatars) const
{
    const auto bounds = textBounds(showAvatars);
    // A size from outside may be anything.
    const auto isSound =
        std::isfinite(own.width()) && std::isfinite(own.height()) && own.width() > 0 && own.height() > 0;
    if (!isSound)
        return {0, 0};
    const auto fits = own.width() <= bounds.width() && own.height() <= bounds.height();
    return fits ? own : own.scaled(bounds, Qt::KeepAspectRatio);
}

} // namespace cvtamber
