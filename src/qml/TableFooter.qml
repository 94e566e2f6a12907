// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The room under a table, with its button where it has one.
Item {
    id: footer

    required property TableViewController table
    required property double side
    required property ListView list

    // From here Tab would come to the list, which gives the focus to what had it last in there: this button.
    function goToRows(reason: int): bool {
        const row = footer.list.currentItem;
        if (row === null)
            return false;
        footer.list.positionViewAtIndex(footer.list.currentIndex, ListView.Contain);
        row.forceActiveFocus(reason);
        return true;
    }

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

        Keys.onBacktabPressed: event => event.accepted = footer.goToRows(Qt.BacktabFocusReason)
        Keys.onTabPressed: event => event.accepted = nextItemInFocusChain() === footer.list && footer.goToRows(Qt.TabFocusReason)
        onActiveFocusChanged: if (activeFocus)
            footer.list.positionViewAtEnd()
        onClicked: footer.table.footerButtonClicked()
    }
}
