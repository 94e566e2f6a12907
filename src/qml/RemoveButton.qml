// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The red sign before a row that is edited.
PlainButton {
    id: button

    required property bool isCurrent
    required property string rowName

    focusPolicy: isCurrent ? Qt.StrongFocus : Qt.ClickFocus
    iconName: "remove"
    spokenName: qsTrId("Delete %1").arg(rowName)
    text: spokenName

    contentItem: Item {
        implicitHeight: Theme.iconSize
        implicitWidth: Theme.iconSize

        Rectangle {
            anchors.centerIn: parent
            color: Theme.destructive
            height: Theme.iconSize
            radius: height / 2
            width: height

            Icon {
                anchors.centerIn: parent
                color: Theme.destructiveText
                name: "remove"
                size: Theme.iconSize - 4
            }
        }
    }
}
