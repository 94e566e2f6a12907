// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// One row of a table in any of its styles. The views of 10,000 rows share a few dozen of these: parts that most rows do
// not have are made when a row has them.
TableCellItem {
    id: tableRow

    readonly property alias card: card
    readonly property double controlsHeight: parts.item === null ? 0 : parts.height

    signal swipedAway

    function activateControl(): bool {
        const controls = parts.item as RowControls;
        return controls !== null && controls.activateFirst();
    }

    Accessible.description: !cellEnabled ? qsTrId("Not available") : isOpen ? qsTrId("Open at the side") : ""
    Accessible.focusable: true
    Accessible.name: (spokenName === "" ? "" : spokenName + ", ") + qsTrId("%1 of %2").arg(place + 1).arg(count)
    Accessible.role: Accessible.ListItem
    Accessible.selectable: selectable
    Accessible.selected: ListView.isCurrentItem
    implicitHeight: Math.max(Theme.target + Theme.half, isFilled ? controlsHeight + Theme.unit : body.height + Theme.half * 5)
    width: list.width

    Accessible.onPressAction: tableRow.activate()
    // A screen reader gives the focus to any row; keys act on the current one.
    onActiveFocusChanged: if (activeFocus)
        list.currentIndex = index
    // A row that waits to be used again is not drawn, but screen readers would still find it.
    ListView.onPooled: visible = false
    ListView.onReused: {
        opacity = 1;
        visible = true;
        z = 0;
    }

    Rectangle {
        id: card

        border.color: Theme.separator
        border.width: Theme.cardBorder
        color: press.pressed || tableRow.isOpen ? Theme.pressed : Theme.card
        height: parent.height
        radius: tableRow.isFirst || tableRow.isLast ? Theme.radius : 0
        width: tableRow.width - tableRow.side * 2
        x: tableRow.side

        // Squares the corners of the side where the card goes on.
        Loader {
            active: tableRow.isFirst !== tableRow.isLast
            width: parent.width - Theme.cardBorder * 2
            x: Theme.cardBorder
            y: tableRow.isFirst ? parent.height - Theme.radius : 0

            sourceComponent: Rectangle {
                id: square

                color: card.color
                implicitHeight: Theme.radius

                // The card's own border goes round the corner here.
                Repeater {
                    model: Theme.cardBorder > 0 ? [-Theme.cardBorder, square.width] : []

                    Rectangle {
                        required property double modelData

                        color: Theme.separator
                        height: Theme.radius
                        width: Theme.cardBorder
                        x: modelData
                    }
                }
            }
        }
        MouseArea {
            id: press

            anchors.fill: parent
            enabled: tableRow.selectable

            onClicked: {
                tableRow.list.currentIndex = tableRow.index;
                tableRow.list.forceActiveFocus(Qt.MouseFocusReason);
                tableRow.activate();
            }
        }
        Item {
            id: content

            height: parent.height
            width: parent.width
            x: tableRow.swipe

            Loader {
                id: removal

                active: tableRow.showsDelete
                anchors.verticalCenter: parent.verticalCenter
                x: Theme.half

                sourceComponent: RemoveButton {
                    isCurrent: tableRow.ListView.isCurrentItem
                    rowName: tableRow.spokenName

                    onClicked: tableRow.remove()
                }
            }
            Icon {
                id: picture

                anchors.verticalCenter: parent.verticalCenter
                color: Theme.secondaryText
                name: tableRow.image
                visible: tableRow.image !== ""
                x: Theme.margin + (tableRow.showsDelete ? Theme.target : 0)
            }
            RowBody {
                id: body

                anchors.verticalCenter: parent.verticalCenter
                cell: tableRow
                controlsHeight: tableRow.controlsHeight
                controlsWidth: tableRow.isFilled ? 0 : Math.max(0, parts.implicitWidth - Theme.unit)
                visible: !tableRow.isFilled
                width: parent.width - x - Theme.margin - (ends.width > 0 ? ends.width : 0)
                x: picture.x + (picture.visible ? picture.width + Theme.unit * 1.5 : 0)
            }
            Loader {
                id: parts

                active: tableRow.controlCount > 0
                anchors.right: parent.right
                anchors.rightMargin: tableRow.isFilled ? 0 : Theme.unit
                width: tableRow.isFilled ? parent.width : implicitWidth
                y: body.controlsBelow && !tableRow.isFilled ? body.y + body.controlsTop : (parent.height - height) / 2

                sourceComponent: RowControls {
                    cell: tableRow
                }
            }
            RowAccessory {
                id: ends

                anchors.right: parent.right
                anchors.rightMargin: Theme.half
                anchors.verticalCenter: parent.verticalCenter
                cell: tableRow
            }
        }
        Rectangle {
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.leftMargin: body.x
            anchors.right: parent.right
            color: Theme.separator
            height: Theme.hairline
            visible: !tableRow.isLast
        }
        Loader {
            active: tableRow.swipe < 0
            anchors.right: parent.right
            height: parent.height
            width: -tableRow.swipe

            sourceComponent: PlainButton {
                clip: true
                filled: true
                focusPolicy: Qt.NoFocus
                foreground: Theme.destructive
                spokenName: qsTrId("Delete %1").arg(tableRow.spokenName)
                text: qsTrId("Delete")

                onClicked: {
                    tableRow.swipedAway();
                    tableRow.remove();
                }
            }
        }
        FocusRing {
            inset: 2
            radius: Theme.unit + 2
            target: tableRow
        }
    }
}
