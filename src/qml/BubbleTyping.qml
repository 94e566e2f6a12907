// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The sign that somebody is typing. Screen readers hear of it through its row.
Item {
    id: typing

    required property BubbleRowItem row

    height: row.height
    width: row.width

    BubblePicture {
        height: typing.row.bubbleFrame.height
        mine: typing.row.mine
        name: typing.row.bubbleImage
        width: typing.row.bubbleFrame.width
        x: typing.row.bubbleFrame.x
        y: typing.row.bubbleFrame.y
    }
}
