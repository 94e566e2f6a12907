// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import CVTamber

// A button of words, or of an icon with words for readers.
T.Button {
    id: button

    property string iconName: ""
    property color foreground: Theme.accent
    property color surface: "transparent"
    property bool filled: false
    property string spokenName: button.text
    // For buttons that are given a width.
    property bool wraps: false

    Accessible.description: button.enabled ? "" : qsTrId("Not available")
    Accessible.name: button.spokenName
    font.pixelSize: Theme.bodySize
    leftPadding: Theme.unit + leftInset
    rightPadding: Theme.unit + rightInset
    topPadding: Theme.half
    bottomPadding: Theme.half
    implicitHeight: Math.max(Theme.target, implicitContentHeight + topPadding + bottomPadding)
    implicitWidth: Math.max(Theme.target, implicitContentWidth + leftPadding + rightPadding)
    Accessible.onPressAction: if (button.enabled)
        button.clicked()
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    // So that the outlines of neighbours stand apart, and apart from that of the row that has the focus.
    bottomInset: Theme.buttonBorder * 2
    leftInset: Theme.buttonBorder
    rightInset: Theme.buttonBorder
    topInset: Theme.buttonBorder * 2

    background: Rectangle {
        border.color: button.enabled ? Theme.outline : Theme.disabledText
        border.width: Theme.buttonBorder
        color: button.down ? Theme.pressed : button.filled ? (button.enabled ? button.foreground : Theme.disabledText) : button.surface
        radius: Theme.unit

        FocusRing {
            // On a filled button it would have the colour of what is under it.
            inset: button.filled ? -Theme.half : 0
            target: button
        }
    }
    contentItem: ButtonFace {
        ink: button.filled && !button.down ? Theme.accentText : button.enabled ? button.foreground : Theme.disabledText
        iconName: button.iconName
        room: button.availableWidth
        textFont: button.font
        words: button.text
        wraps: button.wraps
    }
}
