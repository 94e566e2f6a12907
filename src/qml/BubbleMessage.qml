// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A text or picture in its bubble, with the avatar beside it where avatars are shown.
Item {
    id: message

    required property BubbleRowItem row
    required property font textFont

    height: row.height
    width: row.width

    BubblePicture {
        height: message.row.bubbleFrame.height
        leftCap: message.row.leftCap
        mine: message.row.mine
        name: message.row.bubbleImage
        topCap: message.row.topCap
        width: message.row.bubbleFrame.width
        x: message.row.bubbleFrame.x
        y: message.row.bubbleFrame.y
    }
    AppText {
        color: message.row.mine ? Theme.bubbleMineText : Theme.bubbleSomeoneText
        font: message.textFont
        height: message.row.viewFrame.height
        text: message.row.title
        visible: message.row.picture === ""
        width: message.row.viewFrame.width
        wrapMode: Text.Wrap
        x: message.row.viewFrame.x
        y: message.row.viewFrame.y
    }
    Loader {
        active: message.row.picture !== ""
        x: message.row.viewFrame.x
        y: message.row.viewFrame.y

        sourceComponent: Image {
            asynchronous: true
            height: message.row.viewFrame.height
            source: message.row.picture
            sourceSize.height: Math.round(height)
            sourceSize.width: Math.round(width)
            width: message.row.viewFrame.width
        }
    }
    Loader {
        active: message.row.avatarImage !== ""
        x: message.row.avatarFrame.x
        y: message.row.avatarFrame.y

        sourceComponent: BubbleAvatar {
            height: message.row.avatarFrame.height
            image: message.row.avatarImage
            mine: message.row.mine
            width: message.row.avatarFrame.width
        }
    }
}
