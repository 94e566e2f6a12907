// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import CVTamber

// A switch that shows `on` and tells of what a person does to it alone.
T.Switch {
    id: toggle

    required property bool on
    property string spokenName: ""

    signal turned(bool on)

    Accessible.description: toggle.enabled ? "" : qsTrId("Not available")
    Accessible.name: toggle.spokenName
    checked: on
    implicitHeight: Math.max(Theme.target, indicator.height)
    implicitWidth: indicator.width + Theme.gap
    padding: 0

    Accessible.onPressAction: if (toggle.enabled) {
        toggle.toggle();
        toggle.toggled();
    }
    Accessible.onToggleAction: if (toggle.enabled) {
        toggle.toggle();
        toggle.toggled();
    }
    onOnChanged: checked = on
    onToggled: toggle.turned(checked)

    background: Item {
        FocusRing {
            inset: 0
            target: toggle
        }
    }
    contentItem: null
    indicator: Rectangle {
        border.color: Theme.outline
        border.width: toggle.checked ? 0 : 2
        color: toggle.checked ? (toggle.enabled ? Theme.accent : Theme.disabledText) : Theme.card
        implicitHeight: 32
        implicitWidth: 52
        radius: height / 2
        x: (toggle.width - width) / 2
        y: (toggle.height - height) / 2

        Rectangle {
            color: toggle.checked ? Theme.accentText : Theme.outline
            height: 24
            radius: 12
            width: 24
            x: toggle.checked ? parent.width - width - 4 : 4
            y: 4

            Behavior on x {
                NumberAnimation {
                    duration: Theme.shortMotion
                }
            }
        }
    }
}
