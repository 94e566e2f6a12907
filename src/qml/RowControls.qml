// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The controls of a row. Keys reach those of the row that the focus is on.
Row {
    id: controls

    required property TableCellItem cell

    function activateFirst(): bool {
        for (let i = 0; i < slots.count; ++i) {
            const slot = slots.itemAt(i) as Loader;
            const button = slot.item as PlainButton;
            const toggle = slot.item as RowSwitch;
            if (button !== null && button.enabled) {
                button.clicked();
                return true;
            }
            if (toggle !== null && toggle.enabled) {
                toggle.toggle();
                toggle.toggled();
                return true;
            }
        }
        return false;
    }

    spacing: Theme.half

    Repeater {
        id: slots

        // By number: a control that only changed stays, with the focus that it may have.
        model: controls.cell.controlCount

        Loader {
            id: slot

            required property int index
            readonly property cellControl control: controls.cell.controls[Math.min(index, controls.cell.controlCount - 1)]
            readonly property int keyPolicy: controls.cell.ListView.isCurrentItem ? Qt.StrongFocus : Qt.ClickFocus

            anchors.verticalCenter: parent === null ? undefined : parent.verticalCenter
            sourceComponent: control.kind === CellControl.Switch ? toggle : control.kind === CellControl.ActivityIndicator ? activity : button
            width: controls.cell.isFilled ? controls.width : implicitWidth

            Component {
                id: button

                PlainButton {
                    enabled: slot.control.enabled
                    focusPolicy: slot.keyPolicy
                    spokenName: slot.control.accessibleName === "" ? slot.control.title : slot.control.accessibleName
                    text: slot.control.title
                    wraps: controls.cell.isFilled

                    onClicked: controls.cell.table.controlClicked(controls.cell.section, controls.cell.row, slot.control.id, false)
                }
            }
            Component {
                id: toggle

                RowSwitch {
                    enabled: slot.control.enabled
                    focusPolicy: slot.keyPolicy
                    on: slot.control.on
                    spokenName: slot.control.accessibleName === "" ? controls.cell.spokenName : slot.control.accessibleName

                    onTurned: on => controls.cell.table.controlClicked(controls.cell.section, controls.cell.row, slot.control.id, on)
                }
            }
            Component {
                id: activity

                Spinner {
                    Accessible.ignored: false
                    Accessible.name: slot.control.accessibleName
                    Accessible.role: Accessible.Animation
                }
            }
        }
    }
}
