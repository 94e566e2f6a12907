// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import CVTamber

// A line to type in, with a button that empties it.
TextField {
    id: field

    property bool hasClearButton: false
    property string spokenName: ""

    // A person changed the text; setting it does not count.
    signal typed(string text)

    Accessible.name: field.spokenName
    color: Theme.text
    font.pixelSize: Theme.bodySize
    leftPadding: Theme.unit * 1.5
    placeholderTextColor: Theme.secondaryText
    rightPadding: clear.visible ? clear.width + Theme.half : Theme.unit * 1.5
    selectByMouse: true
    selectedTextColor: Theme.accentText
    selectionColor: Theme.accent
    implicitHeight: Math.max(Theme.target, contentHeight + Theme.gap)
    verticalAlignment: TextInput.AlignVCenter

    background: Rectangle {
        border.color: field.activeFocus ? Theme.accent : Theme.outline
        border.width: field.activeFocus ? 2 : 1
        color: Theme.card
        radius: Theme.unit
    }

    onTextEdited: field.typed(text)

    PlainButton {
        id: clear

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        iconName: "clear"
        spokenName: field.spokenName === "" ? qsTrId("Clear text") : qsTrId("Clear %1").arg(field.spokenName)
        text: spokenName
        visible: field.hasClearButton && field.text !== ""

        onClicked: {
            field.clear();
            field.typed("");
            field.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
}
