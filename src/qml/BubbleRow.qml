// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// One row of a bubble table, of any of its kinds: what the model says of it, and its part in the list.
Item {
    id: cell

    required property int index
    required property int kind
    required property string title
    required property string spoken
    required property bool mine
    required property double rowHeight
    required property rect bubbleFrame
    required property rect viewFrame
    required property string bubbleImage
    required property int leftCap
    required property int topCap
    required property string picture
    required property string avatarImage
    required property rect avatarFrame
    required property UIBubbleTableView table
    required property ListView list
    required property font textFont
    readonly property bool isMessage: kind === BubbleModel.Bubble

    function goThere(): void {
        list.currentIndex = index;
        list.forceActiveFocus(Qt.MouseFocusReason);
    }

    Accessible.focusable: isMessage
    Accessible.name: spoken
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
    FocusRing {
        anchors.fill: undefined
        height: cell.bubbleFrame.height
        radius: Theme.radius
        target: cell
        width: cell.bubbleFrame.width
        x: cell.bubbleFrame.x
        y: cell.bubbleFrame.y
    }
}
