// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// One row of a table in any of its styles. The views of 10,000 rows share a few dozen of these: parts that most rows do
// not have are made when a row has them.
Item {
    id: cell

    required property int index
    required property int style
    required property string text
    required property string detail
    required property string image
    required property int accessory
    required property string accessoryName
    required property var controls
    required property bool cellEnabled
    required property bool canHighlight
    required property string accessibleName
    required property int section
    required property int row
    required property int count
    required property bool deletable
    required property TableViewController table
    required property ListView list
    required property double side
    required property double swipe
    readonly property alias card: card

    readonly property bool isFirst: row === 0
    readonly property bool isLast: row === count - 1
    readonly property bool isCentered: style === TableCell.Centered || style === TableCell.Wait
    readonly property bool isFilled: style === TableCell.Action || (style === TableCell.Default && controlCount === 1 && text === "")
    readonly property bool selectable: canHighlight && cellEnabled && table.allowsSelection
    readonly property int controlCount: controls === undefined ? 0 : controls.length
    readonly property bool showsDelete: table.editing && deletable
    readonly property string spokenName: accessibleName !== "" ? accessibleName : detail === "" ? text : text + ", " + detail

    signal swipedAway

    // What Enter does: the row's own action, else that of its first control.
    function activate(): bool {
        if (selectable) {
            table.rowClicked(section, row);
            return true;
        }
        return parts.item !== null && (parts.item as RowControls).activateFirst();
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

    Accessible.description: cellEnabled ? "" : qsTrId("Not available")
    Accessible.focusable: true
    Accessible.name: (spokenName === "" ? "" : spokenName + ", ") + qsTrId("%1 of %2").arg(row + 1).arg(count)
    Accessible.role: Accessible.ListItem
    Accessible.selectable: selectable
    Accessible.selected: ListView.isCurrentItem
    implicitHeight: Math.max(Theme.target + Theme.half, isFilled ? controlsHeight + Theme.unit : body.height + Theme.half * 5)
    width: list.width

    Accessible.onPressAction: cell.activate()
    ListView.onReused: opacity = 1

    readonly property double controlsHeight: parts.item === null ? 0 : parts.height

    Rectangle {
        id: card

        border.color: Theme.separator
        border.width: Theme.cardBorder
        color: press.pressed ? Theme.pressed : Theme.card
        height: parent.height
        radius: cell.isFirst || cell.isLast ? Theme.radius : 0
        width: cell.width - cell.side * 2
        x: cell.side

        // Squares the corners of the side where the card goes on.
        Rectangle {
            color: card.color
            height: Theme.radius
            visible: cell.isFirst !== cell.isLast
            width: parent.width - Theme.cardBorder * 2
            x: Theme.cardBorder
            y: cell.isFirst ? parent.height - height : 0
        }
        MouseArea {
            id: press

            anchors.fill: parent
            enabled: cell.selectable

            onClicked: {
                cell.list.currentIndex = cell.index;
                cell.list.forceActiveFocus(Qt.MouseFocusReason);
                cell.activate();
            }
        }
        Item {
            id: content

            height: parent.height
            width: parent.width
            x: cell.swipe

            Loader {
                id: removal

                active: cell.showsDelete
                anchors.verticalCenter: parent.verticalCenter
                x: Theme.half

                sourceComponent: RemoveButton {
                    isCurrent: cell.ListView.isCurrentItem
                    rowName: cell.spokenName

                    onClicked: cell.remove()
                }
            }
            Icon {
                id: picture

                anchors.verticalCenter: parent.verticalCenter
                color: Theme.secondaryText
                name: cell.image
                visible: cell.image !== ""
                x: Theme.margin + (cell.showsDelete ? Theme.target : 0)
            }
            RowBody {
                id: body

                anchors.verticalCenter: parent.verticalCenter
                cell: cell
                controlsHeight: cell.controlsHeight
                controlsWidth: parts.item === null || cell.isFilled ? 0 : parts.implicitWidth
                visible: !cell.isFilled
                width: parent.width - x - Theme.margin - (ends.width > 0 ? ends.width : 0)
                x: picture.x + (picture.visible ? picture.width + Theme.unit * 1.5 : 0)
            }
            Loader {
                id: parts

                active: cell.controlCount > 0
                anchors.right: parent.right
                anchors.rightMargin: cell.isFilled ? 0 : Theme.unit
                width: cell.isFilled ? parent.width : implicitWidth
                y: body.controlsBelow && !cell.isFilled ? body.y + body.controlsTop : (parent.height - height) / 2

                sourceComponent: RowControls {
                    cell: cell
                }
            }
            Loader {
                id: ends

                active: cell.accessory !== TableCell.None
                anchors.right: parent.right
                anchors.rightMargin: Theme.half
                anchors.verticalCenter: parent.verticalCenter

                sourceComponent: RowAccessory {
                    cell: cell
                }
            }
        }
        Rectangle {
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.leftMargin: body.x
            anchors.right: parent.right
            color: Theme.separator
            height: Theme.hairline
            visible: !cell.isLast
        }
        Loader {
            active: cell.swipe < 0
            anchors.right: parent.right
            height: parent.height
            width: -cell.swipe

            sourceComponent: PlainButton {
                clip: true
                filled: true
                focusPolicy: Qt.NoFocus
                foreground: Theme.destructive
                spokenName: qsTrId("Delete %1").arg(cell.spokenName)
                text: qsTrId("Delete")

                onClicked: {
                    cell.swipedAway();
                    cell.remove();
                }
            }
        }
        FocusRing {
            inset: 2
            radius: Theme.unit + 2
            target: cell
        }
    }
}
