// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// Says that something is under way; it stands still where motion is reduced.
Item {
    id: spinner

    implicitHeight: Math.max(32, Theme.iconSize)
    implicitWidth: implicitHeight

    Loader {
        active: Theme.motion > 0 && spinner.visible
        anchors.fill: parent
        source: "BusySign.qml"
    }
    AppText {
        anchors.centerIn: parent
        color: Theme.accent
        font.bold: true
        text: "\u2026"
        visible: Theme.motion === 0
    }
}
