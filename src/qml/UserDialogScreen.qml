// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The form for a user's names.
ScreenView {
    id: screen

    required property MEditUserDialog controller

    function takeFocus(): bool {
        first.field.forceActiveFocus(Qt.OtherFocusReason);
        return true;
    }
    // A field with the focus is scrolled to where it is seen, above a keyboard on the screen too.
    function reveal(): void {
        const item = screen.Window.activeFocusItem;
        if (item === null || !content.visible)
            return;
        const top = item.mapToItem(column, 0, 0).y;
        if (top < 0 || top > column.height)
            return;
        const bottom = top + item.height + Theme.gap + column.y;
        if (bottom > content.contentY + content.height)
            content.contentY = bottom - content.height;
        else if (top + column.y - Theme.target < content.contentY)
            content.contentY = Math.max(0, top + column.y - Theme.target);
    }

    column: Theme.sheetWidth
    scrolled: content.contentY

    Flickable {
        id: content

        anchors.fill: parent
        anchors.bottomMargin: InputMethod.visible ? InputMethod.keyboardRectangle.height / Screen.devicePixelRatio : 0
        boundsBehavior: Flickable.StopAtBounds
        contentHeight: column.y + column.height + Theme.gap
        contentWidth: width
        focus: true

        onHeightChanged: screen.reveal()

        Column {
            id: column

            spacing: Theme.gap
            width: parent.width - screen.side * 2
            x: screen.side
            y: screen.topInset + Theme.unit

            LabelledField {
                id: first

                field.placeholderText: screen.controller.firstNamePlaceholder
                label: screen.controller.firstNameLabel
                value: screen.controller.firstName
                width: parent.width

                field.onAccepted: screen.controller.saveClicked()
                field.onActiveFocusChanged: screen.reveal()
                onTyped: text => screen.controller.firstNameTyped(text)
            }
            LabelledField {
                field.placeholderText: screen.controller.lastNamePlaceholder
                label: screen.controller.lastNameLabel
                value: screen.controller.lastName
                width: parent.width

                field.onAccepted: screen.controller.saveClicked()
                field.onActiveFocusChanged: screen.reveal()
                onTyped: text => screen.controller.lastNameTyped(text)
            }
            LabelledField {
                field.placeholderText: screen.controller.displayNamePlaceholder
                label: screen.controller.displayNameLabel
                value: screen.controller.displayName
                width: parent.width

                field.onAccepted: screen.controller.saveClicked()
                field.onActiveFocusChanged: screen.reveal()
                onTyped: text => screen.controller.displayNameTyped(text)
            }
            Item {
                height: Theme.half
                width: 1
            }
            PlainButton {
                surface: Theme.card
                text: screen.controller.moveTitle
                visible: screen.controller.moveVisible
                wraps: true
                width: parent.width

                onActiveFocusChanged: screen.reveal()
                onClicked: screen.controller.moveClicked()
            }
            PlainButton {
                foreground: Theme.destructive
                surface: Theme.card
                text: screen.controller.deleteTitle
                visible: screen.controller.deleteVisible
                wraps: true
                width: parent.width

                onActiveFocusChanged: screen.reveal()
                onClicked: screen.controller.deleteClicked()
            }
        }
    }
}
