// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A label over a field. The field shows `value` and tells what a person types.
Column {
    id: labelled

    required property string label
    required property string value
    property alias field: field

    signal typed(string text)

    spacing: Theme.half

    AppText {
        color: Theme.secondaryText
        font.pixelSize: Theme.detailSize
        text: labelled.label
        width: parent.width
        wrapMode: Text.Wrap
    }
    FormField {
        id: field

        hasClearButton: true
        spokenName: labelled.label
        width: parent.width

        onTyped: text => labelled.typed(text)
    }
    // Setting the same text would move the cursor.
    Binding {
        property: "text"
        target: field
        value: labelled.value
        when: field.text !== labelled.value
        restoreMode: Binding.RestoreNone
    }
}
