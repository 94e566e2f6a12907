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

        PlainButton {
            focusPolicy: accessory.cell.ListView.isCurrentItem ? Qt.StrongFocus : Qt.ClickFocus
            iconName: "detail"
            spokenName: accessory.cell.accessoryName
            text: spokenName

            onClicked: accessory.cell.openDetail()
        }
    }
}
