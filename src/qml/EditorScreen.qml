// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import CVTamber

// A text to read.
ScreenView {
    id: screen

    required property MTextEditViewController controller

    function page(forward: bool): void {
        const caret = area.cursorRectangle;
        const step = Math.max(caret.height, scrolling.height - caret.height * 2);
        area.cursorPosition = area.positionAt(caret.x, caret.y + caret.height / 2 + (forward ? step : -step));
    }
    function takeFocus(): bool {
        area.forceActiveFocus(Qt.OtherFocusReason);
        return true;
    }

    column: measured.column
    isText: true

    TextColumn {
        id: measured

        font: area.font
    }
    Connections {
        function onResignFirstResponder() {
            screen.forceActiveFocus();
        }

        target: screen.controller
    }
    ScrollView {
        id: scrolling

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.topMargin: screen.topInset
        Accessible.ignored: true
        ScrollBar.horizontal.Accessible.ignored: true
        ScrollBar.vertical.Accessible.ignored: true
        contentWidth: availableWidth

        TextArea {
            id: area

            Accessible.name: screen.controller.title
            bottomPadding: Theme.margin
            color: Theme.text
            // A text that is only read is gone through by keys as well.
            cursorVisible: activeFocus
            focus: true
            font.pixelSize: Theme.bodySize
            leftPadding: screen.side
            readOnly: screen.controller.readOnly
            rightPadding: screen.side
            selectByKeyboard: true
            selectByMouse: true
            selectedTextColor: Theme.accentText
            selectionColor: Theme.accent
            text: screen.controller.text
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
            Keys.onPressed: event => {
                event.accepted = (event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp) && event.modifiers === Qt.NoModifier;
                if (event.accepted)
                    screen.page(event.key === Qt.Key_PageDown);
            }
            Keys.onTabPressed: area.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
        }
    }
    Spinner {
        Accessible.name: qsTrId("Opening")
        Accessible.role: Accessible.Animation
        anchors.centerIn: parent
        visible: screen.controller.busy
    }
}
