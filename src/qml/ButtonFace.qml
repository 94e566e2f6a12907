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
    // How wide lines are that wrap. Not its own width: that comes when the button's height is set, which hangs on the lines.
    required property double room

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

        Item {
            implicitHeight: lines.implicitHeight
            implicitWidth: lines.implicitWidth

            AppText {
                id: lines

                Accessible.ignored: true
                anchors.verticalCenter: parent.verticalCenter
                color: face.ink
                font: face.textFont
                horizontalAlignment: Text.AlignHCenter
                text: face.words
                width: face.wraps ? face.room : parent.width
                wrapMode: face.wraps ? Text.Wrap : Text.NoWrap
            }
        }
    }
}
