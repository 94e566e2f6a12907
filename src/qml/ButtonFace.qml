// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// What is drawn on a button: an icon, else words.
Loader {
    id: face

    required property string iconName
    required property string words
    required property color ink
    required property font textFont
    required property bool wraps

    sourceComponent: iconName === "" ? label : picture

    Component {
        id: picture

        Item {
            implicitHeight: Theme.iconSize
            implicitWidth: Theme.iconSize

            Icon {
                anchors.centerIn: parent
                color: face.ink
                name: face.iconName
            }
        }
    }
    Component {
        id: label

        AppText {
            Accessible.ignored: true
            color: face.ink
            font: face.textFont
            horizontalAlignment: Text.AlignHCenter
            text: face.words
            verticalAlignment: Text.AlignVCenter
            wrapMode: face.wraps ? Text.Wrap : Text.NoWrap
        }
    }
}
