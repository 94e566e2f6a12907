// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import CVTamber

// A menu of actions: at the bottom of a phone, on a larger window under or over what it belongs to. Escape and a touch
// beside it are the Cancel button.
Dialog {
    id: sheet

    // Over the choices; the title is what screen readers say of the menu, also where nothing is over them.
    required property string heading
    required property list<string> buttons
    required property int cancelIndex
    required property int destructiveIndex
    // What it belongs to; null where that is the whole screen.
    required property Item owner
    // Where that is in the window.
    property rect anchor
    readonly property bool isLarge: Math.min(parent.width, parent.height) >= Theme.tabletSide
    readonly property bool isAnchored: isLarge && owner !== null
    readonly property double below: anchor.y + anchor.height + Theme.half
    readonly property double above: anchor.y - height - Theme.half
    readonly property double lowest: Math.max(Theme.unit, parent.height - height - Theme.unit)
    property bool isAnswered: false

    signal answered(int button, string text)

    function choose(index: int): void {
        if (isAnswered)
            return;
        isAnswered = true;
        answered(index, "");
        close();
    }
    function leave(): bool {
        if (cancelIndex >= 0)
            choose(cancelIndex);
        return true;
    }
    function findOwner(): void {
        if (owner !== null)
            anchor = owner.mapToItem(null, 0, 0, owner.width, owner.height);
    }
    function focusChoice(index: int): void {
        if (index >= 0 && index < buttons.length)
            choices.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
    }

    // Nothing beside a modal popup hears a touch but the popup itself.
    closePolicy: cancelIndex >= 0 ? Popup.CloseOnPressOutside : Popup.NoAutoClose
    focus: true
    footer: null
    header: null
    margins: Theme.unit
    modal: true
    padding: Theme.unit
    title: heading !== "" ? heading : qsTrId("Actions")
    width: isAnchored ? Math.min(parent.width - Theme.gap, 320 * Math.min(Theme.textScale, 1.5)) : Math.min(parent.width - Theme.gap, Theme.sheetWidth)
    x: isAnchored ? Math.max(Theme.unit, Math.min(parent.width - width - Theme.unit, anchor.x + (anchor.width - width) / 2)) : (parent.width - width) / 2
    y: !isLarge ? parent.height - height - Theme.unit : !isAnchored ? (parent.height - height) / 2 : below > lowest && above >= Theme.unit ? above : Math.min(below, lowest)
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

        Keys.onBackPressed: event => event.accepted = sheet.leave()
        Keys.onEscapePressed: event => event.accepted = sheet.leave()

        Column {
            id: column

            spacing: Theme.half
            width: sheet.availableWidth

            AppText {
                Accessible.name: words
                Accessible.role: Accessible.StaticText
                bottomPadding: Theme.unit
                color: Theme.secondaryText
                font.pixelSize: Theme.detailSize
                horizontalAlignment: Text.AlignHCenter
                topPadding: Theme.unit
                visible: words !== ""
                width: parent.width
                words: sheet.heading
                wrapMode: Text.Wrap
            }
            Repeater {
                id: choices

                model: sheet.buttons.length

                PlainButton {
                    required property int index

                    font.bold: index === sheet.cancelIndex
                    foreground: index === sheet.destructiveIndex ? Theme.destructive : Theme.accent
                    surface: Theme.background
                    wraps: true
                    text: sheet.buttons[index]
                    // Its three dots say to the eye that a question follows; spoken or in braille they are noise.
                    spokenName: text.replace(/…$/, "")
                    width: column.width

                    Keys.onDownPressed: sheet.focusChoice(index + 1)
                    Keys.onUpPressed: sheet.focusChoice(index - 1)
                    onClicked: sheet.choose(index)
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

    // What it belongs to is laid out anew when the window has another size.
    Connections {
        function onHeightChanged() {
            layingOut.restart();
        }
        function onWidthChanged() {
            layingOut.restart();
        }

        target: sheet.parent
    }
    Timer {
        id: layingOut

        interval: 0

        onTriggered: sheet.findOwner()
    }

    Component.onCompleted: findOwner()
    onAboutToHide: leave()
    onOpened: focusChoice(destructiveIndex === 0 && buttons.length > 1 ? 1 : 0)
}
