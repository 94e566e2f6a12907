// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// What stands at the end of a row: nothing, a sign that it leads on, or a button for details.
Loader {
    id: accessory

    required property TableCellItem cell

    active: cell.accessory !== TableCell.None
    sourceComponent: cell.accessory === TableCell.DetailDisclosure ? details : sign

    Component {
        id: sign

        Item {
            implicitHeight: Theme.target
            implicitWidth: Theme.iconSize + Theme.half

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.secondaryText
                name: "chevron"
                size: Theme.iconSize - 6
            }
        }
    }
    Component {
        id: details

        // Not a PlainButton, which takes half as long to make as all the rest of a row.
        Item {
            id: button

            Accessible.focusable: true
            Accessible.name: accessory.cell.accessoryName
            Accessible.role: Accessible.Button
            activeFocusOnTab: accessory.cell.ListView.isCurrentItem
            implicitHeight: Theme.target
            implicitWidth: Theme.target

            Accessible.onPressAction: accessory.cell.openDetail()
            Keys.onEnterPressed: accessory.cell.openDetail()
            Keys.onReturnPressed: accessory.cell.openDetail()
            Keys.onSpacePressed: accessory.cell.openDetail()

            Rectangle {
                anchors.fill: parent
                anchors.margins: Theme.buttonBorder * 2
                border.color: Theme.outline
                border.width: Theme.buttonBorder
                color: press.pressed ? Theme.pressed : "transparent"
                radius: Theme.unit
            }
            Icon {
                anchors.centerIn: parent
                name: "detail"
            }
            MouseArea {
                id: press

                anchors.fill: parent

                onClicked: {
                    button.forceActiveFocus(Qt.MouseFocusReason);
                    accessory.cell.openDetail();
                }
            }
            FocusRing {
                inset: 0
                target: button
            }
        }
    }
}
