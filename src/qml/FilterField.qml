// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The line above a long list in which a person types what they look for, and how many rows are left. It gives the list its
// model.
FocusScope {
    id: filter

    required property TableViewController table
    required property ListView list
    required property double side
    // The row that the person was on before it was filtered away.
    property int keptSection: -1
    property int keptRow: -1

    // On to the rows that are left.
    signal passed
    // Back to all rows.
    signal ended
    signal modelTaken

    // False where there is nothing to look for.
    function begin(): bool {
        if (!table.filterable)
            return false;
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
        return true;
    }
    // The screen that the focus is in goes before the one of this field.
    function beginByKey(): void {
        let item = Window.activeFocusItem;
        while (item !== null && !(item instanceof ScreenView))
            item = item.parent;
        const focused = item as ScreenView;
        if (focused === null || !focused.find())
            begin();
    }
    // False where it has not begun.
    function end(): bool {
        if (table.filter === "" && !activeFocus)
            return false;
        look("");
        ended();
        return true;
    }
    // The person stays on the row that they are on, while it is shown.
    function look(text: string): void {
        const cell = list.currentItem as TableCellItem;
        if (cell !== null) {
            keptSection = cell.section;
            keptRow = cell.row;
        }
        table.filter = text;
        const row = table.shownRow(keptSection, keptRow);
        if (row >= 0)
            list.currentIndex = row;
    }
    // Rows that wait to be used again would show what they showed of the model before.
    function takeModel(): void {
        list.reuseItems = false;
        list.model = table.model;
        list.reuseItems = true;
        modelTaken();
    }

    implicitHeight: line.height + Theme.gap
    visible: table.filterable || activeFocus

    Component.onCompleted: takeModel()

    Shortcut {
        enabled: filter.visible && filter.table.filterable
        sequences: ["Ctrl+F"]

        onActivated: filter.beginByKey()
        onActivatedAmbiguously: filter.beginByKey()
    }
    Connections {
        function onFilteringChanged() {
            filter.takeModel();
        }

        target: filter.table
    }
    // The rows are scrolled under it.
    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }
    Item {
        id: line

        anchors.left: parent.left
        anchors.leftMargin: filter.side
        anchors.right: parent.right
        anchors.rightMargin: filter.side
        height: field.height + (left.visible ? left.height + Theme.half : 0)
        y: Theme.half

        FormField {
            id: field

            focus: true
            hasClearButton: true
            placeholderText: qsTrId("Filter")
            // Two columns have one each.
            spokenName: filter.table.title === "" ? qsTrId("Filter") : qsTrId("Filter %1").arg(filter.table.title)
            text: filter.table.filter
            width: parent.width

            Keys.onDownPressed: filter.passed()
            onAccepted: filter.passed()
            onTyped: text => filter.look(text)
        }
        AppText {
            id: left

            Accessible.name: text
            Accessible.role: Accessible.StaticText
            anchors.left: parent.left
            anchors.leftMargin: Theme.margin
            anchors.right: parent.right
            anchors.top: field.bottom
            anchors.topMargin: Theme.half
            color: Theme.secondaryText
            font.pixelSize: Theme.detailSize
            text: filter.table.filterResult
            visible: text !== ""
        }
    }
}
