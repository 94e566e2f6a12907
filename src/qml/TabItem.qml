// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// One tab: an image over its name.
Item {
    id: tab

    property string title: ""
    required property string image
    required property bool selected
    // Filled, so that it is not taken for what has the focus.
    readonly property bool isFilled: Theme.highContrast && selected
    // Around the filled part, for the focus.
    readonly property int inset: Theme.highContrast ? Theme.focusWidth + Theme.hairline : 0
    // A rail has room for two lines, and little for long words.
    property bool wraps: false

    signal chosen

    Accessible.checkable: true
    Accessible.checked: tab.selected
    Accessible.focusable: true
    Accessible.name: tab.title
    Accessible.role: Accessible.PageTab
    Accessible.selectable: true
    Accessible.selected: tab.selected
    activeFocusOnTab: selected
    implicitHeight: Math.max(Theme.target, icon.height + label.implicitHeight + Theme.half * 3 + inset * 2)

    Accessible.onPressAction: tab.chosen()
    Keys.onSpacePressed: tab.chosen()
    Keys.onReturnPressed: tab.chosen()

    Rectangle {
        anchors.fill: parent
        anchors.margins: tab.isFilled ? tab.inset : Theme.half
        color: tab.isFilled ? Theme.accent : press.pressed ? Theme.pressed : "transparent"
        radius: Theme.unit

        FocusRing {
            inset: tab.isFilled ? -tab.inset : 0
            target: tab
        }
    }
    Icon {
        id: icon

        anchors.horizontalCenter: parent.horizontalCenter
        color: label.color
        name: tab.image
        y: Theme.half * 1.5 + tab.inset
    }
    AppText {
        id: label

        anchors.left: parent.left
        anchors.leftMargin: Theme.half + tab.inset
        anchors.right: parent.right
        anchors.rightMargin: Theme.half + tab.inset
        anchors.top: icon.bottom
        anchors.topMargin: 2
        color: tab.isFilled ? Theme.accentText : tab.selected ? Theme.accent : Theme.secondaryText
        elide: Text.ElideRight
        font.bold: tab.selected
        // So that the longest word fits into a narrow tab.
        font.pixelSize: Math.min(Theme.noteSize, 22, Math.max(13, (tab.width - Theme.unit - tab.inset * 2) / 5.5))
        horizontalAlignment: Text.AlignHCenter
        maximumLineCount: tab.wraps ? 2 : 1
        text: tab.title
        wrapMode: tab.wraps ? Text.Wrap : Text.NoWrap
    }
    MouseArea {
        id: press

        anchors.fill: parent
        onClicked: tab.chosen()
    }
}
