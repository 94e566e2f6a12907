// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import CVTamber

// The picture of who wrote a bubble. Decoration: the message's row names its sender.
Item {
    id: avatar

    required property string image
    required property bool mine
    readonly property bool isMissing: image === "missingAvatar.png"
    readonly property int corner: 9
    readonly property double ratio: Screen.devicePixelRatio

    BubblePicture {
        anchors.fill: parent
        mine: avatar.mine
        name: avatar.image
        visible: avatar.isMissing
    }
    Image {
        anchors.fill: parent
        asynchronous: true
        source: avatar.isMissing ? "" : "image://bubbles/avatar/" + Math.round(avatar.width * avatar.ratio) + "/" + Math.round(avatar.corner * avatar.ratio) + "/" + encodeURIComponent(avatar.image)
    }
    Rectangle {
        anchors.fill: parent
        border.color: Theme.avatarBorder
        border.width: 1
        color: "transparent"
        radius: avatar.corner
    }
}
