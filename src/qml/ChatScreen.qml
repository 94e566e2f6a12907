// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import CVTamber

// A conversation with the person at the device: the bubbles, and under them the line that is written.
ScreenView {
    id: screen

    required property Chat2ViewController controller

    function takeFocus(): bool {
        field.forceActiveFocus(Qt.OtherFocusReason);
        return true;
    }
    function followKeyboard(): void {
        const height = InputMethod.keyboardRectangle.height / Screen.devicePixelRatio;
        if (InputMethod.visible && height > 0)
            screen.controller.keyboardWasShown(height, screen.Window.height - screen.mapToItem(null, 0, screen.height).y);
        else
            screen.controller.keyboardWillBeHidden();
    }
    function send(): void {
        // What an input method still holds is part of the line.
        InputMethod.commit();
        screen.controller.okButtonClicked();
        field.forceActiveFocus(Qt.OtherFocusReason);
    }

    // Bubbles stand at the sides of it.
    column: Theme.readableWidth * 1.25

    Connections {
        function onKeyboardRectangleChanged() {
            screen.followKeyboard();
        }
        function onVisibleChanged() {
            screen.followKeyboard();
        }

        target: InputMethod
    }
    Item {
        id: container

        anchors.fill: parent
        anchors.bottomMargin: Math.max(0, screen.controller.keyboardInset)
        anchors.topMargin: screen.topInset

        BubbleTable {
            anchors.bottom: bar.top
            anchors.left: parent.left
            // A bubble has a margin of its own.
            anchors.leftMargin: screen.side - Theme.margin
            anchors.right: parent.right
            anchors.rightMargin: screen.side - Theme.margin
            anchors.top: parent.top
            table: screen.controller.chatBubbleTableView
        }
        Rectangle {
            id: bar

            anchors.bottom: parent.bottom
            color: Theme.bar
            height: column.height + Theme.unit * 2
            width: parent.width

            Rectangle {
                color: Theme.separator
                height: Theme.hairline
                width: parent.width
            }
            Column {
                id: column

                anchors.left: parent.left
                anchors.leftMargin: screen.side
                anchors.right: parent.right
                anchors.rightMargin: screen.side
                spacing: Theme.half
                y: Theme.unit

                AppText {
                    Accessible.name: text
                    Accessible.role: Accessible.StaticText
                    color: Theme.destructive
                    font.pixelSize: Theme.detailSize
                    text: screen.controller.statusText
                    visible: text !== ""
                    width: parent.width
                    wrapMode: Text.Wrap
                }
                Item {
                    height: Math.max(field.height, ok.height)
                    width: parent.width

                    FormField {
                        id: field

                        anchors.left: parent.left
                        anchors.right: ok.left
                        anchors.rightMargin: Theme.unit
                        anchors.verticalCenter: parent.verticalCenter
                        focus: true
                        // As in the bubble that it becomes.
                        font.pixelSize: screen.controller.chatBubbleTableView.fontSize
                        inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
                        placeholderText: qsTrId("Message to the device")
                        spokenName: placeholderText

                        onAccepted: screen.controller.textFieldShouldReturn()
                        // One line: what is pasted has no line ends.
                        onTyped: text => screen.controller.chatTextTyped(text.replace(/[\r\n\u2028\u2029]+/g, " "))
                    }
                    PlainButton {
                        id: ok

                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        filled: true
                        // A touch leaves the keyboard on the screen where it is.
                        focusPolicy: Qt.TabFocus
                        font.pixelSize: field.font.pixelSize
                        text: qsTrId("Send")

                        onClicked: screen.send()
                    }
                }
            }
        }
    }
    // Setting the same text would move the cursor.
    Binding {
        property: "text"
        target: field
        value: screen.controller.chatText
        when: field.text !== screen.controller.chatText
        restoreMode: Binding.RestoreNone
    }
}
