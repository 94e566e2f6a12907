// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// What a row of a table is, without how it looks: its cell's values, and what a person can do with it.
Item {
    id: cell

    required property int index
    required property int style
    required property string text
    required property string detail
    required property int detailTone
    required property string image
    required property int accessory
    required property string accessoryName
    required property var controls
    required property bool cellEnabled
    required property bool canHighlight
    required property bool isOpen
    required property string accessibleName
    required property int section
    required property int row
    required property int count
    // Among the rows of the section that are shown.
    required property int place
    required property bool deletable
    required property TableViewController table
    required property ListView list
    required property double side
    required property double swipe

    readonly property bool isFirst: place === 0
    readonly property bool isLast: place === count - 1
    readonly property bool isCentered: style === TableCell.Centered || style === TableCell.Wait
    readonly property bool isFilled: style === TableCell.Action || (style === TableCell.Default && controlCount === 1 && text === "")
    readonly property bool selectable: canHighlight && cellEnabled && table.allowsSelection
    readonly property int controlCount: controls === undefined ? 0 : controls.length
    readonly property bool showsDelete: table.editing && deletable
    // A colon that parts label and value for the eye is a comma for the ear, and so is the dot of a row that is a
    // sentence. Names of a person's own keep theirs.
    readonly property string spokenLabel: style === TableCell.Value2 ? text.replace(/:+$/, "") : isCentered ? text.replace(/[.…]+$/, "") : text
    readonly property string spokenName: accessibleName !== "" ? accessibleName : text === "" && controlCount > 0 ? controls[0].title : detail === "" ? spokenLabel : spokenLabel + ", " + detail

    // What Enter does: the row's own action, else that of its first control.
    function activate(): bool {
        if (selectable) {
            table.rowClicked(section, row);
            return true;
        }
        return activateControl();
    }
    function activateControl(): bool {
        return false;
    }
    function remove(): bool {
        if (deletable)
            table.deleteClicked(section, row);
        return deletable;
    }
    function openDetail(): bool {
        const has = accessory === TableCell.DetailDisclosure;
        if (has)
            table.accessoryClicked(section, row);
        return has;
    }
}
