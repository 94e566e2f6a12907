// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// Shows where the focus is, once keys are used.
Loader {
    id: ring

    required property Item target
    property int inset: -Theme.half
    property double radius: Theme.unit

    active: target.activeFocus && Theme.showsFocus
    anchors.fill: parent
    anchors.margins: inset
    z: 1

    sourceComponent: Rectangle {
        border.color: Theme.accent
        border.width: Theme.focusWidth
        color: "transparent"
        radius: ring.radius
    }
}
