// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// What is drawn on a button: an icon, else words.
Item {
    id: face

    required property string iconName
    required property string words
    required property color ink
    required property font textFont
    required property bool wraps

    implicitHeight: iconName === "" ? label.implicitHeight : Theme.iconSize
    implicitWidth: iconName === "" ? label.implicitWidth : Theme.iconSize

    Icon {
        anchors.centerIn: parent
        color: face.ink
        name: face.iconName
        visible: face.iconName !== ""
    }
    AppText {
        id: label

        Accessible.ignored: true
        anchors.fill: parent
        color: face.ink
        font: face.textFont
        horizontalAlignment: Text.AlignHCenter
        text: face.iconName === "" ? face.words : ""
        verticalAlignment: Text.AlignVCenter
        visible: face.iconName === ""
        wrapMode: face.wraps ? Text.Wrap : Text.NoWrap
    }
}
