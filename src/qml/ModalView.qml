// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import CVTamber

// A screen above the others: a card in the middle of a large window, else over all of it.
Dialog {
    id: modal

    required property ViewController controller
    required property bool formSheet
    // Fades in instead of coming from below.
    required property bool fades
    required property bool animated
    // How many modal screens are under it.
    required property int layer
    property bool covered: false
    readonly property bool isCard: formSheet && Math.min(parent.width, parent.height) >= Theme.tabletSide
    // Of the card: a text has all the room that there is, up to the width of its lines.
    readonly property ScreenView shown: host.view instanceof NavigationView ? (host.view as NavigationView).screen : page.screen
    readonly property bool showsText: shown !== null && shown.isText
    readonly property double cardWidth: showsText ? Math.max(Theme.sheetWidth, shown.column + (Theme.margin + padding) * 2) : Theme.sheetWidth
    readonly property int duration: animated ? Theme.motion : 0
    readonly property double restY: (parent.height - height) / 2
    readonly property string spokenTitle: {
        const navigation = controller as NavigationController;
        if (navigation !== null)
            return navigation.topViewController === null ? "" : navigation.topViewController.title;
        return controller.title !== "" || page.screen === null ? controller.title : page.screen.spokenTitle;
    }

    function takeFocus(): void {
        const navigation = host.view as NavigationView;
        if (navigation !== null)
            navigation.takeFocus();
        else
            page.takeFocus();
    }
    function anchorItem(kind: int, section: int, row: int, button: int): Item {
        const navigation = host.view as NavigationView;
        if (navigation !== null)
            return navigation.anchorItem(kind, section, row, button);
        if (page.screen === null)
            return null;
        return kind === SheetAnchor.Row ? page.screen.rowItem(section, row) : page.screen.sheetPlace;
    }

    closePolicy: Popup.NoAutoClose
    dim: isCard
    focus: true
    // The name for screen readers; it is drawn by what is inside.
    title: spokenTitle !== "" ? spokenTitle : qsTrId("Dialog")
    footer: null
    header: null
    height: isCard ? Math.min(parent.height - Theme.unit * 8, showsText ? parent.height : Theme.sheetHeight) : parent.height
    modal: true
    // What is square does not reach into the round corners.
    padding: isCard ? Theme.half : 0
    width: isCard ? Math.min(parent.width - Theme.unit * 8, cardWidth) : parent.width
    x: (parent.width - width) / 2
    y: restY
    z: layer + 1

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }
    background: Rectangle {
        border.color: Theme.separator
        border.width: modal.isCard && Theme.dark ? Theme.hairline : Theme.cardBorder
        color: Theme.background
        radius: modal.isCard ? Theme.radius : 0
    }
    contentItem: FocusScope {
        FocusScope {
            id: page

            readonly property ScreenView screen: host.view as ScreenView
            property bool wasFocused: false

            function takeFocus(): void {
                page.forceActiveFocus();
                if (page.wasFocused && page.Window.activeFocusItem !== page && page.Window.activeFocusItem !== page.screen)
                    return;
                page.wasFocused = true;
                if (page.screen === null || !page.screen.takeFocus())
                    heading.forceActiveFocus(Qt.OtherFocusReason);
            }

            anchors.fill: parent
            clip: modal.isCard
            focus: true
            visible: !modal.covered

            Keys.onEscapePressed: event => event.accepted = page.screen !== null && page.screen.cancel()
            Keys.onBackPressed: event => event.accepted = page.screen !== null && page.screen.cancel()

            Heading {
                id: heading

                anchors.left: parent.left
                anchors.leftMargin: Theme.margin
                anchors.right: parent.right
                anchors.rightMargin: Theme.margin
                height: visible ? Math.max(52, implicitHeight + Theme.gap) : 0
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                visible: !(host.view instanceof NavigationView) && words !== ""
                words: modal.controller.title
                wrapMode: Text.Wrap
            }
            ScreenHost {
                id: host

                anchors.bottom: parent.bottom
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: heading.bottom
                controller: modal.controller
                focus: true
            }
            Binding {
                property: "modal"
                target: host.view as NavigationView
                value: true
                when: host.view instanceof NavigationView
            }
        }
    }
    enter: Transition {
        NumberAnimation {
            duration: modal.duration
            easing.type: Easing.OutCubic
            from: modal.fades ? modal.restY : modal.parent.height
            property: "y"
            to: modal.restY
        }
        NumberAnimation {
            duration: modal.duration
            from: modal.fades ? 0 : 1
            property: "opacity"
            to: 1
        }
    }
    exit: Transition {
        NumberAnimation {
            duration: modal.duration
            easing.type: Easing.InCubic
            property: "y"
            to: modal.fades ? modal.restY : modal.parent.height
        }
        NumberAnimation {
            duration: modal.duration
            property: "opacity"
            to: modal.fades ? 0 : 1
        }
    }
}
