// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic

Window {
    height: 844
    visible: true
    width: 390

    TabBar {
        anchors.bottom: parent.bottom
        width: parent.width

        TabButton {
            text: "Pupils"
        }
        TabButton {
            text: "Archive"
        }
        TabButton {
            text: "Device"
        }
    }
}
