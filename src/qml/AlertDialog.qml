// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import CVTamber

// A question with buttons and at most one text to type. Escape is the Cancel button, or closes without a button.
Dialog {
    id: dialog

    required property string message
    required property list<string> buttons
    required property int cancelIndex
    required property bool closesWithoutButton
    required property bool hasTextField
    required property string initialText
    required property bool selectsAll
    required property bool hasClearButton
    // Enter in the text field means the last button that is not Cancel.
    readonly property int defaultIndex: cancelIndex === buttons.length - 1 ? Math.max(0, buttons.length - 2) : buttons.length - 1
    property bool isAnswered: false

    signal answered(int button, string text)

    function choose(index: int): void {
        if (isAnswered)
            return;
        isAnswered = true;
        answered(index, field.text);
        close();
    }
    function leave(): bool {
        if (closesWithoutButton || cancelIndex >= 0)
            choose(closesWithoutButton ? -1 : cancelIndex);
        return true;
    }
    function focusFirst(): void {
        if (hasTextField) {
            field.forceActiveFocus(Qt.PopupFocusReason);
            if (selectsAll)
                field.selectAll();
        } else {
            choices.itemAt(Math.max(0, cancelIndex)).forceActiveFocus(Qt.PopupFocusReason);
        }
    }

    closePolicy: Popup.NoAutoClose
    focus: true
    margins: Theme.margin
    modal: true
    padding: Theme.gap
    width: Math.min(parent.width - Theme.margin * 2, Theme.dialogWidth * Math.min(Theme.textScale, 1.4))
    x: (parent.width - width) / 2
    y: (parent.height - height) / 2
    z: 10

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }
    background: Rectangle {
        border.color: Theme.separator
        border.width: Theme.cardBorder
        color: Theme.raised
        radius: Theme.radius
    }
    contentItem: FollowingFlickable {
        clip: true
        contentHeight: column.height
        implicitHeight: column.height

        Keys.onBackPressed: event => event.accepted = dialog.leave()
        Keys.onEscapePressed: event => event.accepted = dialog.leave()

        Column {
            id: column

            spacing: Theme.unit
            width: dialog.availableWidth

            Heading {
                horizontalAlignment: Text.AlignHCenter
                visible: words !== ""
                width: parent.width
                words: dialog.title
                wrapMode: Text.Wrap
            }
            AppText {
                Accessible.name: words
                Accessible.role: Accessible.StaticText
                font.pixelSize: Theme.detailSize
                horizontalAlignment: Text.AlignHCenter
                visible: words !== ""
                width: parent.width
                words: dialog.message
                wrapMode: Text.Wrap
            }
            FormField {
                id: field

                hasClearButton: dialog.hasClearButton
                spokenName: dialog.title
                text: dialog.initialText
                visible: dialog.hasTextField
                width: parent.width

                onAccepted: dialog.choose(dialog.defaultIndex)
            }
            Item {
                height: Theme.half
                width: 1
            }
            Grid {
                id: grid

                readonly property bool sideBySide: dialog.buttons.length === 2 && choices.count === 2 && Math.max(choices.itemAt(0).implicitWidth, choices.itemAt(1).implicitWidth) * 2 + Theme.unit <= column.width
                readonly property double cellWidth: sideBySide ? (column.width - Theme.unit) / 2 : column.width

                columns: sideBySide ? 2 : 1
                spacing: Theme.unit

                Repeater {
                    id: choices

                    model: dialog.buttons.length

                    PlainButton {
                        required property int index

                        font.bold: index === dialog.cancelIndex
                        surface: Theme.background
                        wraps: true
                        text: dialog.buttons[index]
                        width: grid.cellWidth

                        onClicked: dialog.choose(index)
                    }
                }
            }
        }
    }
    enter: Transition {
        NumberAnimation {
            duration: Theme.shortMotion
            from: 0
            property: "opacity"
            to: 1
        }
    }
    exit: Transition {
        NumberAnimation {
            duration: Theme.shortMotion
            property: "opacity"
            to: 0
        }
    }
    header: null

    // A quick hand may have begun to write.
    onOpened: if (!field.activeFocus || field.text === initialText)
        focusFirst()
}
