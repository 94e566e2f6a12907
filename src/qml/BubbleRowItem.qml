// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// What a row of a bubble table is, without how it looks: all that the model says of it.
Item {
    required property int index
    required property int kind
    required property string title
    required property string spoken
    required property bool mine
    required property double rowHeight
    required property rect bubbleFrame
    required property rect viewFrame
    required property string bubbleImage
    required property int leftCap
    required property int topCap
    required property string picture
    required property string avatarImage
    required property rect avatarFrame
    required property UIBubbleTableView table
    required property ListView list
    required property font textFont
    readonly property bool isMessage: kind === BubbleModel.Bubble
}
