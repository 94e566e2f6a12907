// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/BubbleTable/NSBubbleData.h"

#include <QRectF>

namespace cvtamber {

// Where the parts of a bubble's row are. Units of the screen, from the row's top left.
class UIBubbleTableViewCell
{
public:
    static constexpr auto ReuseIdentifier = "tblBubbleCell";

    // `viewSize` is that of the bubble's content, `tableWidth` that of the row.
    UIBubbleTableViewCell(const NSBubbleData &data, const QSizeF &viewSize, double tableWidth,
                          bool showAvatar);

    const NSBubbleData &data() const { return _data; }
    bool showAvatar() const { return _showAvatar; }
    double height() const { return _height; }
    // Of the content.
    QRectF customView() const;
    // Of the background: the content with its insets.
    QRectF bubble() const { return _bubble; }
    QString bubbleImage() const;
    // The image's columns left of the one that is stretched, and its rows above it.
    int leftCap() const { return _data.isMine() ? 15 : 21; }
    static constexpr int topCap() { return 14; }
    // Empty without avatars.
    QString avatarImage() const;
    QRectF avatar() const;
    static constexpr int avatarRadius() { return 9; }
    // Its line is black, 0.2 opaque, in the light look.
    static constexpr int avatarBorder() { return 1; }

private:
    const NSBubbleData &_data;
    double _tableWidth;
    bool _showAvatar;
    double _height = 0;
    QRectF _bubble;
};

} // namespace cvtamber
