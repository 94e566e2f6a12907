// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import CVTamber

// One line over everything that goes by itself. It takes neither focus nor touches, and the announcer speaks it: a popup
// would stand among the dialogs, without a name.
Rectangle {
    id: line

    required property string notice
    required property Item content
    // What is shown: the words stay while the line fades.
    property string words: ""

    border.color: Theme.outline
    border.width: Theme.cardBorder
    color: Theme.notice
    height: label.height + Theme.unit * 3
    opacity: notice !== "" ? 1 : 0
    // Questions and forms are drawn in the overlay, which is there only while one of them is.
    parent: T.Overlay.overlay !== null && T.Overlay.overlay.visible ? T.Overlay.overlay as Item : content
    radius: Theme.radius
    visible: opacity > 0
    width: Math.min(parent.width - Theme.margin * 2, Math.max(240, label.implicitWidth + Theme.gap * 2), Theme.readableWidth)
    x: (parent.width - width) / 2
    // Under the bar: at the bottom it would hide what is being typed.
    y: Theme.unit * 8
    z: 20

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.shortMotion
        }
    }

    onNoticeChanged: if (notice !== "")
        words = notice

    AppText {
        id: label

        Accessible.ignored: true
        anchors.centerIn: parent
        color: Theme.noticeText
        font.pixelSize: Theme.detailSize
        horizontalAlignment: Text.AlignHCenter
        text: line.words
        width: Math.min(implicitWidth, line.width - Theme.gap * 2)
        wrapMode: Text.Wrap
    }
}
