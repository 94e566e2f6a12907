// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The tabs: a bar at the bottom, or a rail at the side of a wide window with the program's menu at its end.
FocusScope {
    id: view

    required property TabBarController controller
    readonly property bool hasRail: width >= Theme.railFrom

    function takeFocus(): void {
        // What its menu opened has gone.
        if (menu.focus && menu.visible) {
            menu.forceActiveFocus(Qt.OtherFocusReason);
            return;
        }
        const shown = stack.currentView as NavigationView;
        if (shown !== null)
            shown.takeFocus();
        else if (stack.currentView !== null)
            stack.currentView.forceActiveFocus();
    }
    function anchorItem(kind: int, section: int, row: int, button: int): Item {
        if (kind === SheetAnchor.TabBar)
            return rail.active ? rail : bar;
        if (kind === SheetAnchor.Menu)
            return menu;
        const shown = stack.currentView as NavigationView;
        return shown === null ? null : shown.anchorItem(kind, section, row, button);
    }

    Shortcut {
        sequences: ["Ctrl+PgDown", "Ctrl+Tab"]
        onActivated: view.controller.selectTab((view.controller.selectedIndex + 1) % view.controller.count)
    }
    Shortcut {
        sequences: ["Ctrl+PgUp", "Ctrl+Shift+Tab"]
        onActivated: view.controller.selectTab((view.controller.selectedIndex + view.controller.count - 1) % view.controller.count)
    }
    // The rail stands before the content and the bar after it, for the keyboard as for the eye.
    Loader {
        id: rail

        active: view.hasRail
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.top: parent.top
        // An empty loader keeps the size of what it held.
        width: active ? implicitWidth : 0

        sourceComponent: TabStrip {
            controller: view.controller
            vertical: true
        }
    }
    // At the end of the rail, but no tab.
    PlainButton {
        id: menu

        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.unit
        anchors.left: parent.left
        anchors.leftMargin: Theme.half
        text: qsTrId("Menu")
        visible: view.hasRail && view.controller.hasMenu
        width: rail.width - Theme.unit
        wraps: true

        onClicked: view.controller.menuClicked()
    }
    TabStack {
        id: stack

        anchors.bottom: bar.top
        anchors.left: rail.right
        anchors.right: parent.right
        anchors.top: parent.top
        controller: view.controller
        focus: true
    }
    Loader {
        id: bar

        active: !view.hasRail
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        height: active ? implicitHeight : 0

        sourceComponent: TabStrip {
            controller: view.controller
        }
    }
}
