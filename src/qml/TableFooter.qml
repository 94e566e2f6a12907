// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The room under a table, with its button where it has one.
Item {
    id: footer

    required property TableViewController table
    required property double side
    required property ListView list

    implicitHeight: button.visible ? button.height + Theme.gap * 3 : Theme.gap * 2

    PlainButton {
        id: button

        anchors.horizontalCenter: parent.horizontalCenter
        surface: Theme.card
        wraps: true
        text: footer.table.footerButtonTitle
        visible: text !== ""
        width: (footer.width - footer.side * 2) * 0.8
        y: Theme.gap * 1.5

        onActiveFocusChanged: if (activeFocus)
            footer.list.positionViewAtEnd()
        onClicked: footer.table.footerButtonClicked()
    }
}
