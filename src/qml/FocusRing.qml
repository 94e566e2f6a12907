// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// Shows where the focus is, once keys are used.
Rectangle {
    required property Item target
    property int inset: -Theme.half

    anchors.fill: parent
    anchors.margins: inset
    border.color: Theme.accent
    border.width: Theme.focusWidth
    color: "transparent"
    radius: Theme.unit
    visible: target.activeFocus && Theme.showsFocus
    z: 1
}
