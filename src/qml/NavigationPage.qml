// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// One screen of a navigation: its bar, its large title, and its view.
FocusScope {
    id: page

    required property ViewController controller
    required property NavigationController navigation
    required property int index
    required property bool modal
    readonly property bool isRoot: index === 0
    // What the root of two columns has opened: nothing lies under it.
    readonly property bool isDetail: index === 1 && navigation.hasColumns
    // Where the page stands while it slides: 0 in place, 1 outside at the right.
    property double slide: 0
    // A sheet has its title in the bar, unless texts are so large that the buttons leave no room for it there.
    readonly property bool hasLargeTitle: (!modal || Theme.largeText) && controller.title !== ""
    readonly property ScreenView screen: host.view as ScreenView
    // Assigned, not bound: a list tells it in the midst of laying out its rows.
    property double scrolled: 0
    property bool wasFocused: false

    // Whether a person writes in it already: the slide of a sheet ends after a quick hand has begun.
    function isWrittenIn(): bool {
        const field = page.Window.activeFocusItem as TextInput;
        return field !== null && page.activeFocus;
    }
    function takeFocus(): void {
        if (page.isWrittenIn())
            return;
        page.forceActiveFocus();
        if (page.wasFocused && page.Window.activeFocusItem !== page && page.Window.activeFocusItem !== page.screen)
            return;
        page.wasFocused = true;
        if (page.screen === null || !page.screen.takeFocus())
            page.heading().forceActiveFocus(Qt.OtherFocusReason);
    }
    function heading(): Item {
        return page.hasLargeTitle ? largeTitle : bar.heading;
    }
    function anchorItem(kind: int, section: int, row: int, button: int): Item {
        switch (kind) {
        case SheetAnchor.Row:
            return page.screen === null ? null : page.screen.rowItem(section, row);
        case SheetAnchor.LeftBarButton:
            return bar.leftButton(button);
        case SheetAnchor.RightBarButton:
            return bar.rightButton(button);
        default:
            return page.screen === null ? null : page.screen.sheetPlace;
        }
    }
    // Cancel where there is one, else back.
    function leave(): bool {
        for (let i = 0; i < controller.leftItems.length; ++i) {
            if (controller.leftItems[i].kind === BarButtonItem.Cancel) {
                controller.leftItemClicked(i);
                return true;
            }
        }
        for (let i = 0; i < controller.rightItems.length; ++i) {
            if (controller.rightItems[i].kind === BarButtonItem.Cancel) {
                controller.rightItemClicked(i);
                return true;
            }
        }
        if (!page.isRoot) {
            page.navigation.backClicked();
            return true;
        }
        return page.screen !== null && page.screen.cancel();
    }

    Accessible.name: controller.title
    Accessible.role: Accessible.Pane
    transform: Translate {
        x: page.slide * page.width
    }

    Keys.onEscapePressed: event => event.accepted = page.leave()
    Keys.onBackPressed: event => event.accepted = page.leave()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Left && (event.modifiers & Qt.AltModifier) && !page.isRoot) {
            page.navigation.backClicked();
            event.accepted = true;
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }
    NavigationBar {
        id: bar

        backName: page.isDetail ? qsTrId("Close") : qsTrId("Back")
        backSign: page.isDetail ? "clear" : "back"
        controller: page.controller
        hasBack: !page.isRoot
        heading.Accessible.ignored: page.hasLargeTitle
        side: titleBox.side - Theme.margin
        titleOpacity: !page.hasLargeTitle ? 1 : Math.max(0, Math.min(1, (page.scrolled - titleBox.height / 2) / (Theme.unit * 2)))
        width: parent.width
        z: 2

        onBack: page.navigation.backClicked()
    }
    Item {
        id: titleBox

        readonly property double side: page.screen === null ? Theme.margin : page.screen.side

        anchors.left: parent.left
        anchors.leftMargin: side + Theme.half
        anchors.right: parent.right
        anchors.rightMargin: side
        height: page.hasLargeTitle ? largeTitle.height + Theme.unit * 2 : 0
        visible: page.hasLargeTitle
        y: bar.height - Math.max(0, page.scrolled)
        z: 1

        Heading {
            id: largeTitle

            elide: Text.ElideRight
            font.pixelSize: Theme.titleSize
            maximumLineCount: 2
            opacity: 1 - bar.titleOpacity
            width: parent.width
            words: page.controller.title
            wrapMode: Text.Wrap
            // Room for the ring of the focus under the bar.
            y: Theme.half
        }
    }
    ScreenHost {
        id: host

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: bar.bottom
        controller: page.controller
        focus: true
    }
    Connections {
        function onScrolledChanged() {
            page.scrolled = page.screen.scrolled;
        }

        target: page.screen
    }
    Binding {
        property: "topInset"
        target: page.screen
        value: titleBox.height
        when: page.screen !== null
    }
}
