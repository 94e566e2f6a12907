// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The gap above a section's card, with its title where it has one.
Item {
    id: header

    required property string section
    required property TableViewController table
    required property double side
    readonly property string title: table.titleForHeader(Number(section))

    implicitHeight: title === "" ? Theme.gap : label.height + Theme.gap + Theme.unit

    AppText {
        id: label

        Accessible.ignored: header.title === ""
        Accessible.name: header.title
        Accessible.role: Accessible.Heading
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.unit
        anchors.left: parent.left
        anchors.leftMargin: header.side + Theme.margin
        anchors.right: parent.right
        anchors.rightMargin: header.side + Theme.margin
        color: Theme.secondaryText
        font.pixelSize: Theme.detailSize
        visible: header.title !== ""
        words: header.title
        wrapMode: Text.Wrap
    }
}
