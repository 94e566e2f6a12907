// SPDX-License-Identifier: GPL-3.0-or-later
import QtQml.Models
import QtQuick
import QtQuick.Templates as T
import CVTamber

// Any table: sections of rows on cards, a button under them, and words where there are no rows.
ScreenView {
    id: screen

    required property TableViewController controller
    property string typed: ""
    property double typedAt: 0
    // Nobody has scrolled yet: the list stays at its beginning while the room above it changes.
    property bool isUntouched: true

    // Longer than this between two letters, and a new word begins.
    readonly property int typingPause: 1000

    function takeFocus(): bool {
        if (rows.count === 0 && !emptyNote.visible)
            return false;
        (rows.count === 0 ? emptyNote : rows).forceActiveFocus(Qt.OtherFocusReason);
        return true;
    }
    // A table without a bar has its Cancel button at the end.
    function cancel(): bool {
        if (controller.footerButtonTitle === "")
            return leaveByDone(controller.leftItems, true) || leaveByDone(controller.rightItems, false);
        controller.footerButtonClicked();
        return true;
    }
    // Of a table that only shows something.
    function leaveByDone(items: var, atLeft: bool): bool {
        for (let i = 0; i < items.length; ++i) {
            if (items[i].kind === BarButtonItem.Done) {
                if (atLeft)
                    controller.leftItemClicked(i);
                else
                    controller.rightItemClicked(i);
                return true;
            }
        }
        return false;
    }
    function find(): bool {
        return filter.begin();
    }
    function rowItem(section: int, row: int): Item {
        for (let i = 0; i < rows.contentItem.children.length; ++i) {
            const cell = rows.contentItem.children[i] as TableRow;
            if (cell !== null && cell.visible && cell.section === section && cell.row === row)
                return cell.card;
        }
        return null;
    }
    function goTo(index: int): void {
        if (rows.count === 0)
            return;
        screen.isUntouched = false;
        rows.currentIndex = Math.max(0, Math.min(rows.count - 1, index));
        rows.positionViewAtIndex(rows.currentIndex, ListView.Contain);
        if (rows.currentIndex === 0)
            rows.positionViewAtBeginning();
        // From a control of a row back to the rows.
        if (rows.activeFocus && rows.currentItem !== null)
            rows.currentItem.forceActiveFocus(Qt.OtherFocusReason);
    }
    function page(forward: bool): void {
        const shown = Math.max(1, Math.floor(rows.height / Math.max(1, rows.currentItem === null ? Theme.target : rows.currentItem.height)) - 1);
        goTo(rows.currentIndex + (forward ? shown : -shown));
    }
    function typeAhead(text: string): void {
        const now = Date.now();
        screen.typed = now - screen.typedAt > screen.typingPause ? text : screen.typed + text;
        screen.typedAt = now;
        // A further letter may still mean the row that is found already.
        const from = rows.currentIndex + (screen.typed.length > 1 ? 0 : 1);
        const start = controller.model.index(from % rows.count, 0);
        const found = controller.model.match(start, TableModel.TextRole, screen.typed, 1, Qt.MatchStartsWith | Qt.MatchWrap);
        if (found.length > 0)
            goTo(found[0].row);
    }
    function handleKey(event: var): bool {
        const cell = rows.currentItem as TableRow;
        switch (event.key) {
        case Qt.Key_Up:
            goTo(rows.currentIndex - 1);
            return true;
        case Qt.Key_Down:
            goTo(rows.currentIndex + 1);
            return true;
        case Qt.Key_Home:
            goTo(0);
            return true;
        case Qt.Key_End:
            goTo(rows.count - 1);
            return true;
        case Qt.Key_PageUp:
        case Qt.Key_PageDown:
            if (event.modifiers & Qt.ControlModifier)
                return false;
            page(event.key === Qt.Key_PageDown);
            return true;
        case Qt.Key_Return:
        case Qt.Key_Enter:
            return cell !== null && cell.activate();
        case Qt.Key_Space:
            if (screen.typed !== "" && Date.now() - screen.typedAt < screen.typingPause)
                break;
            return cell !== null && cell.activate();
        case Qt.Key_Delete:
        case Qt.Key_Backspace:
            return cell !== null && cell.remove();
        case Qt.Key_F2:
            if (cell !== null)
                controller.renameClicked(cell.section, cell.row);
            return cell !== null;
        case Qt.Key_Menu:
            return cell !== null && cell.openDetail();
        case Qt.Key_F10:
            return (event.modifiers & Qt.ShiftModifier) && cell !== null && cell.openDetail();
        }
        if (event.text.length === 1 && event.text >= " " && event.text !== "\x7f" && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))) {
            typeAhead(event.text);
            return true;
        }
        return false;
    }

    // A table without a title has its question over the first section.
    spokenTitle: controller.titleForHeader(0)

    Keys.onEscapePressed: event => event.accepted = filter.end()

    // Between the title and the rows, also when the title has been scrolled away.
    FilterField {
        id: filter

        list: rows
        side: screen.side
        table: screen.controller
        width: parent.width
        y: Math.max(0, screen.topInset - Math.max(0, screen.scrolled))
        z: 1

        onEnded: {
            screen.takeFocus();
            screen.goTo(rows.currentIndex);
        }
        onModelTaken: swiping.close()
        onPassed: screen.takeFocus()
    }
    ListView {
        id: rows

        readonly property bool animates: Theme.motion > 0 && screen.visible
        readonly property string spokenName: screen.controller.title !== "" ? screen.controller.title : screen.spokenTitle

        // No binding: reading the origin may lay out the rows anew, which changes both.
        function tellScrolled(): void {
            screen.scrolled = contentY - originY;
        }
        // A row that grew while the others moved is covered by the one that went to the end of its old height; forceLayout()
        // looks at changes of the model alone.
        function layOutAnew(): void {
            spacing = 1;
            spacing = 0;
        }

        Accessible.name: spokenName
        Accessible.role: Accessible.List
        activeFocusOnTab: count > 0
        anchors.fill: parent
        anchors.topMargin: filter.visible ? filter.height : 0
        boundsBehavior: Flickable.StopAtBounds
        focus: true
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        reuseItems: true
        section.property: "section"

        T.ScrollBar.vertical: ListScrollBar {}
        // A new row stands above those that still make room for it: one that is used again would be under them.
        add: Transition {
            enabled: rows.animates

            SequentialAnimation {
                PropertyAction {
                    property: "z"
                    value: 1
                }
                PauseAnimation {
                    duration: Theme.shortMotion
                }
                PropertyAction {
                    property: "z"
                    value: 0
                }
            }
        }
        delegate: TableRow {
            list: rows
            side: screen.side
            swipe: swiping.row === index ? swiping.offset : 0
            table: screen.controller

            onSwipedAway: swiping.close()
        }
        displaced: Transition {
            enabled: rows.animates

            SequentialAnimation {
                NumberAnimation {
                    duration: Theme.shortMotion
                    easing.type: Easing.OutCubic
                    property: "y"
                }
                ScriptAction {
                    script: rows.layOutAnew()
                }
            }
        }
        footer: TableFooter {
            list: rows
            side: screen.side
            table: screen.controller
            width: rows.width
        }
        header: Item {
            height: screen.topInset
            width: rows.width
        }
        section.delegate: SectionHeader {
            side: screen.side
            table: screen.controller
            width: rows.width
        }

        // Tab comes back to the row, not to the control of it that had the focus last.
        onActiveFocusChanged: if (!activeFocus && currentItem !== null)
            currentItem.focus = true
        onContentYChanged: tellScrolled()
        // A model that was empty when it was taken leaves the list without a current row.
        onCountChanged: if (count > 0 && currentIndex < 0)
            currentIndex = 0
        onOriginYChanged: {
            if (screen.isUntouched)
                positionViewAtBeginning();
            tellScrolled();
        }
        Keys.onPressed: event => event.accepted = screen.handleKey(event)
        onCurrentIndexChanged: place.follow()
        // What takes room below does not hide the row that has the focus.
        onHeightChanged: if (activeFocus && !screen.isUntouched)
            positionViewAtIndex(currentIndex, ListView.Contain)
        onMovementStarted: {
            screen.isUntouched = false;
            swiping.close();
        }
    }
    // A new order resets the view; the row that the person was on is kept by the model.
    ItemSelectionModel {
        id: place

        property bool isRestoring: false

        function follow(): void {
            if (!isRestoring && rows.currentIndex >= 0 && rows.currentIndex < rows.count)
                setCurrentIndex(screen.controller.model.index(rows.currentIndex, 0), ItemSelectionModel.NoUpdate);
        }

        model: screen.controller.model
    }
    Connections {
        function onLayoutAboutToBeChanged() {
            place.follow();
            place.isRestoring = true;
        }
        function onLayoutChanged() {
            const row = place.currentIndex.row;
            place.isRestoring = false;
            if (row >= 0) {
                rows.currentIndex = row;
                rows.positionViewAtIndex(row, ListView.Contain);
            }
        }

        target: screen.controller.model
    }
    DragHandler {
        id: swiping

        // The row whose Delete button a finger pulls in from the side, and how far.
        property int row: -1
        property double offset: 0
        readonly property double openOffset: -112

        function close(): void {
            row = -1;
            offset = 0;
        }

        target: null
        xAxis.enabled: true
        yAxis.enabled: false

        onActiveChanged: {
            if (active) {
                const cell = rows.itemAt(rows.width / 2, rows.contentY + centroid.pressPosition.y - rows.y) as TableRow;
                row = cell !== null && cell.deletable ? cell.index : -1;
            } else {
                offset = row >= 0 && offset < openOffset / 2 ? openOffset : 0;
                if (offset === 0)
                    row = -1;
            }
        }
        onTranslationChanged: if (active && row >= 0)
            offset = Math.max(openOffset * 1.5, Math.min(0, translation.x))
    }
    // Takes the focus as a row would: an empty list is told, and is no hole in the way of the Tab key.
    AppText {
        id: emptyNote

        Accessible.focusable: true
        Accessible.name: text
        // Static text would be read again with every control beside it.
        Accessible.role: Accessible.Paragraph
        activeFocusOnTab: visible
        anchors.centerIn: parent
        color: Theme.secondaryText
        horizontalAlignment: Text.AlignHCenter
        text: screen.controller.emptyText
        visible: rows.count === 0 && text !== ""
        width: Math.min(parent.width - Theme.margin * 4, Theme.readableWidth)
        wrapMode: Text.Wrap

        onVisibleChanged: if (visible ? rows.activeFocus : activeFocus)
            screen.takeFocus()

        FocusRing {
            inset: -Theme.half
            radius: Theme.unit
            target: emptyNote
        }
    }
}
