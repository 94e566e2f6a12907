// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// One row of a bubble table, of any of its kinds: what the model says of it, and its part in the list.
BubbleRowItem {
    id: cell

    function goThere(): void {
        list.currentIndex = index;
        list.forceActiveFocus(Qt.MouseFocusReason);
    }

    Accessible.focusable: isMessage
    Accessible.name: spoken + (isMessage ? ", " + qsTrId("%1 of %2").arg(table.positionOf(index)).arg(table.messageCount) : "")
    Accessible.role: kind === BubbleModel.Header ? Accessible.Heading : Accessible.ListItem
    Accessible.selectable: isMessage
    Accessible.selected: ListView.isCurrentItem
    height: rowHeight
    width: list.width

    Accessible.onPressAction: if (isMessage)
        cell.goThere()
    // A row that waits to be used again is not drawn, but screen readers would still find it.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    Loader {
        sourceComponent: cell.kind === BubbleModel.Header ? header : cell.kind === BubbleModel.Typing ? typing : message
    }
    Component {
        id: header

        BubbleHeader {
            row: cell
        }
    }
    Component {
        id: message

        BubbleMessage {
            row: cell
            textFont: cell.textFont
        }
    }
    Component {
        id: typing

        BubbleTyping {
            row: cell
        }
    }
    TapHandler {
        enabled: cell.isMessage

        onTapped: cell.goThere()
    }
    // Around the bubble, not on it: on mine it would be lost in high contrast.
    FocusRing {
        anchors.fill: undefined
        height: cell.bubbleFrame.height + Theme.half - 1
        radius: Theme.gap
        target: cell
        width: cell.bubbleFrame.width + Theme.half
        x: cell.bubbleFrame.x - (cell.mine ? Theme.half : 0)
        y: cell.bubbleFrame.y - Theme.half
    }
}
