// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import CVTamber

// One line under everything, which makes room for it. It goes by itself and takes neither focus nor touches, and the
// announcer speaks it: a popup would stand among the dialogs, without a name.
Rectangle {
    id: line

    required property string notice
    required property Item content
    // What is shown: the words stay while the line fades.
    property string words: ""
    // What it takes of the window's height.
    readonly property double room: visible ? height : 0

    color: Theme.notice
    height: label.height + Theme.unit * 2
    opacity: notice !== "" ? 1 : 0
    // Questions and forms are drawn in the overlay, which is there only while one of them is.
    parent: T.Overlay.overlay !== null && T.Overlay.overlay.visible ? T.Overlay.overlay as Item : content
    visible: opacity > 0
    width: parent.width
    y: parent.height - height
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
        width: Math.min(implicitWidth, line.width - Theme.margin * 2)
        words: line.words
        wrapMode: Text.Wrap
    }
}
