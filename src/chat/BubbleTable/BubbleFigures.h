// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSizeF>

namespace cvtamber {

// What the view that shows a table says about itself.
struct BubbleAppearance
{
    // Of the system's font size: 1 is 100 %.
    double textScale = 1;
    bool isTablet = false;
    // Of the table, in units of the screen.
    double width = 320;
    // In pixels, of the title over the conversation.
    int titleSize = 28;

    bool operator==(const BubbleAppearance &) const = default;
};

// The sizes of a bubble table that hang on its appearance. At 100 % text on a phone they are the given ones; a tablet's are
// doubled, up to the size of the title. Larger text widens what holds it as far as the table goes.
class BubbleFigures
{
public:
    // An avatar with the room above and below it.
    static constexpr double LeastHeightWithAvatar = 52;

    explicit BubbleFigures(const BubbleAppearance &appearance)
        : _appearance(appearance)
    {}

    // In pixels. The one size that the bubbles, the line that is written and its button have; all others follow it.
    int fontSize() const;
    int headerFontSize() const;
    double headerHeight() const;
    double typingHeight(bool showAvatars) const;
    // The room that a text is measured in.
    QSizeF textBounds(bool showAvatars) const;
    // A picture's own size, made smaller in proportion where it is wider than a text may be.
    QSizeF imageSize(const QSizeF &own, bool showAvatars) const;

private:
    BubbleAppearance _appearance;
};

} // namespace cvtamber
