// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Window
import CVTamber

// The page that a person and the device write on together.
ScreenView {
    id: screen

    required property ChatViewController controller

    function takeFocus(): bool {
        area.forceActiveFocus(Qt.OtherFocusReason);
        return true;
    }
    function followKeyboard(): void {
        const height = InputMethod.keyboardRectangle.height / Screen.devicePixelRatio;
        if (InputMethod.visible && height > 0)
            screen.controller.keyboardWasShown(screen.mapFromItem(null, 0, screen.Window.height - height).y);
        else
            screen.controller.keyboardWillBeHidden();
    }
    // The area does so when the caret moves, not when its room does.
    function showCaret(): void {
        const caret = area.cursorRectangle;
        const lowest = Math.max(0, page.contentHeight - page.height);
        if (caret.y < page.contentY)
            page.contentY = Math.max(0, Math.min(caret.y - area.topPadding, lowest));
        else if (caret.y + caret.height > page.contentY + page.height)
            page.contentY = Math.min(caret.y + caret.height + area.bottomPadding - page.height, lowest);
    }

    column: measured.column

    TextColumn {
        id: measured

        font: area.font
    }
    Connections {
        function onKeyboardRectangleChanged() {
            screen.followKeyboard();
        }
        function onVisibleChanged() {
            screen.followKeyboard();
        }

        target: InputMethod
    }
    PageEditor {
        id: editor

        area: area
        page: screen.controller.page
    }
    Column {
        id: status

        anchors.left: parent.left
        anchors.leftMargin: screen.side
        anchors.right: parent.right
        anchors.rightMargin: screen.side
        bottomPadding: words.visible ? Theme.unit : 0
        y: screen.topInset

        AppText {
            id: words

            Accessible.name: text
            Accessible.role: Accessible.StaticText
            color: Theme.destructive
            font.pixelSize: Theme.detailSize
            text: screen.controller.statusText
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
    Flickable {
        id: page

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: status.bottom
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        height: Math.max(0, (screen.controller.pageHeight > 0 ? screen.controller.pageHeight : screen.height) - y)

        onHeightChanged: screen.showCaret()
        onWidthChanged: screen.showCaret()

        ScrollBar.vertical: ScrollBar {
            Accessible.ignored: true
        }
        TextArea.flickable: TextArea {
            id: area

            readonly property PageEditor pageEditor: editor
            readonly property string spokenName: qsTrId("Whiteboard")

            Accessible.name: spokenName
            bottomPadding: Theme.margin
            color: Theme.text
            focus: true
            // Doubled letters stay so small that a line has eight: a page of more and shorter lines is too high for Qt.
            font.pixelSize: Math.max(Theme.bodySize, Math.min(Theme.bodySize * screen.controller.fontScale,
                (screen.width - 2 * Theme.margin) / 8))
            inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
            leftPadding: screen.side
            rightPadding: screen.side
            selectByMouse: true
            selectedTextColor: Theme.accentText
            selectionColor: Theme.accent
            textFormat: TextEdit.PlainText
            topPadding: Theme.margin
            wrapMode: TextEdit.Wrap

            background: Rectangle {
                color: Theme.card

                FocusRing {
                    inset: 2
                    target: area
                }
            }

            // A text area keeps Tab to itself otherwise.
            Keys.onBacktabPressed: area.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            Keys.onTabPressed: area.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)

            DropArea {
                anchors.fill: parent

                // Files are opened by the window.
                onEntered: drag => drag.accepted = !drag.hasUrls
                onDropped: drop => {
                    if (!drop.hasText)
                        return;
                    editor.dropText(drop.text, drop.x, drop.y);
                    drop.accept(Qt.CopyAction);
                }
            }
        }
    }
}
