// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import CVTamber

// One line over everything that goes by itself. It takes neither focus nor touches.
Popup {
    id: line

    required property string text
    // What is shown: the words stay while the line fades.
    property string words: ""

    closePolicy: Popup.NoAutoClose
    focus: false
    margins: Theme.margin
    modal: false
    padding: Theme.gap
    topPadding: Theme.unit * 1.5
    bottomPadding: Theme.unit * 1.5
    visible: text !== ""
    width: Math.min(parent.width - Theme.margin * 2, Math.max(240, implicitContentWidth + leftPadding + rightPadding), Theme.readableWidth)
    x: (parent.width - width) / 2
    y: parent.height - height - Theme.unit * 10
    z: 20

    background: Rectangle {
        border.color: Theme.outline
        border.width: Theme.cardBorder
        color: Theme.notice
        radius: Theme.radius
    }
    contentItem: AppText {
        color: Theme.noticeText
        font.pixelSize: Theme.detailSize
        horizontalAlignment: Text.AlignHCenter
        text: line.words
        wrapMode: Text.Wrap
    }
    enter: Transition {
        NumberAnimation {
            duration: Theme.shortMotion
            from: 0
            property: "opacity"
            to: 1
        }
    }
    exit: Transition {
        NumberAnimation {
            duration: Theme.shortMotion
            property: "opacity"
            to: 0
        }
    }

    onTextChanged: if (text !== "")
        words = text
    Component.onCompleted: words = text
}
