// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import CVTamber

// A conversation as bubbles. The focus stays on the message that is being read while new ones come; a list that nobody
// reads is entered at the newest one.
FocusScope {
    id: bubbles

    required property UIBubbleTableView table
    // What the list is called for screen readers.
    property string name: qsTrId("Conversation")
    readonly property alias count: rows.count

    function goTo(index: int): bool {
        if (index < 0)
            return false;
        gliding.stop();
        rows.currentIndex = index;
        // The date stands right over the first message of a section, and is seen with it.
        if (index > 0 && table.bubbleIndexFrom(index - 1, true) === index)
            rows.positionViewAtIndex(index - 1, ListView.Contain);
        rows.positionViewAtIndex(index, ListView.Contain);
        return true;
    }
    function page(forward: bool): bool {
        const item = rows.currentItem;
        if (item === null)
            return false;
        // A message that is higher than the list is read on first.
        const step = rows.height - Theme.target;
        const hidden = forward ? item.y + item.height - rows.contentY - rows.height : rows.contentY - item.y;
        if (hidden > 0 && item.height > rows.height) {
            gliding.stop();
            rows.contentY += (forward ? 1 : -1) * Math.min(step, hidden);
            return true;
        }
        return goTo(table.bubbleIndexAfterPage(rows.currentIndex, forward, step));
    }
    function handleKey(event: var): bool {
        switch (event.key) {
        case Qt.Key_Up:
            return goTo(table.bubbleIndexFrom(rows.currentIndex - 1, false)) || goTo(rows.currentIndex);
        case Qt.Key_Down:
            return goTo(table.bubbleIndexFrom(rows.currentIndex + 1, true)) || goTo(rows.currentIndex);
        case Qt.Key_Home:
            return goTo(table.bubbleIndexFrom(0, true));
        case Qt.Key_End:
            return goTo(table.bubbleIndexFrom(rows.count - 1, false));
        case Qt.Key_PageUp:
        case Qt.Key_PageDown:
            return !(event.modifiers & Qt.ControlModifier) && page(event.key === Qt.Key_PageDown);
        }
        if (event.matches(StandardKey.Copy)) {
            metrics.copy(table.textAt(rows.currentIndex));
            return true;
        }
        return false;
    }
    function showRow(index: int, atBottom: bool, animated: bool): void {
        if (!rows.activeFocus)
            rows.currentIndex = table.bubbleIndexFrom(index, false);
        const from = rows.contentY;
        rows.positionViewAtIndex(index, atBottom ? ListView.End : ListView.Beginning);
        const to = rows.contentY;
        gliding.stop();
        // What lies further away would have to make all rows on its way.
        if (!animated || Theme.motion === 0 || !visible || to === from || Math.abs(to - from) > rows.height)
            return;
        gliding.from = from;
        gliding.to = to;
        gliding.start();
    }

    Connections {
        function onScrollRequested(index, atBottom, animated) {
            bubbles.showRow(index, atBottom, animated);
        }

        target: bubbles.table
    }
    BubbleMetrics {
        id: metrics

        table: bubbles.table
        tablet: Math.min(bubbles.Window.width, bubbles.Window.height) >= Theme.tabletSide
        textScale: Theme.textScale
        titleSize: Theme.titleSize
        width: rows.width
    }
    ListView {
        id: rows

        property double knownHeight: height
        readonly property string spokenName: bubbles.name

        // What takes room below, a keyboard or a line of words, leaves the last row that is seen where it is.
        function keepBottom(): void {
            const taken = knownHeight - height;
            knownHeight = height;
            const most = originY + contentHeight - height;
            if (gliding.running)
                gliding.complete();
            if (taken > 0 && most > contentY)
                contentY = Math.min(contentY + taken, most);
        }
        function tellVisible(): void {
            const last = indexAt(width / 2, contentY + height - 1);
            bubbles.table.setLastVisibleIndex(last >= 0 ? last : count - 1);
        }

        Accessible.name: spokenName
        Accessible.role: Accessible.List
        activeFocusOnTab: count > 0
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        focus: true
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        model: bubbles.table.model
        reuseItems: true

        delegate: BubbleRow {
            list: rows
            table: bubbles.table
            textFont: metrics.textFont
        }

        Component.onCompleted: bubbles.showRow(count - 1, true, false)
        Keys.onPressed: event => event.accepted = bubbles.handleKey(event)
        onContentYChanged: tellVisible()
        onCountChanged: tellVisible()
        onHeightChanged: {
            keepBottom();
            tellVisible();
        }
    }
    NumberAnimation {
        id: gliding

        duration: Theme.motion
        easing.type: Easing.OutCubic
        property: "contentY"
        target: rows
    }
}
