// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// What stands at the end of a row: a sign that it leads on, or a button for details.
Item {
    id: accessory

    required property TableCellItem cell
    readonly property bool isButton: cell.accessory === TableCell.DetailDisclosure

    implicitHeight: Theme.target
    implicitWidth: isButton ? detail.implicitWidth : Theme.iconSize + Theme.half

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondaryText
        name: "chevron"
        size: Theme.iconSize - 6
        visible: !accessory.isButton
    }
    PlainButton {
        id: detail

        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: accessory.cell.ListView.isCurrentItem ? Qt.StrongFocus : Qt.ClickFocus
        iconName: "detail"
        spokenName: accessory.cell.accessoryName
        text: spokenName
        visible: accessory.isButton

        onClicked: accessory.cell.openDetail()
    }
}
