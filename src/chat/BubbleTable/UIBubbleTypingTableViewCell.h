// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QString>

namespace cvtamber {

// The row that shows that somebody is typing. Units of the screen, from the row's top left.
class UIBubbleTypingTableViewCell
{
public:
    static constexpr auto ReuseIdentifier = "tblBubbleTypingCell";

    static constexpr double width() { return 73; }
    static constexpr double top() { return 4; }
    // As much below the picture as above it.
    static constexpr double height() { return top() + 31 + top(); }

    static QString image(bool isMine)
    {
        return isMine ? QStringLiteral("typingMine.png") : QStringLiteral("typingSomeone.png");
    }
    static QRectF frame(bool isMine, double tableWidth)
    {
        return {isMine ? tableWidth - width() : 0, top(), width(), height() - 2 * top()};
    }
};

} // namespace cvtamber
