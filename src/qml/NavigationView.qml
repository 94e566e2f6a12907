// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A navigation: its pages, one above the other, or in a wide window the root beside the others.
FocusScope {
    id: view

    required property NavigationController controller
    property bool modal: false
    readonly property ScreenView screen: {
        const page = stack.topPage as NavigationPage;
        return page === null ? null : page.screen;
    }

    function takeFocus(): void {
        const page = stack.pageInUse() as NavigationPage;
        if (page !== null)
            page.takeFocus();
    }
    function anchorItem(kind: int, section: int, row: int, button: int): Item {
        const page = stack.pageInUse() as NavigationPage;
        return page === null ? null : page.anchorItem(kind, section, row, button);
    }

    NavigationStack {
        id: stack

        anchors.fill: parent
        controller: view.controller
        duration: Theme.motion
        focus: true
        modal: view.modal
        rootWidth: Math.round(Math.max(Theme.leastRoot, Math.min(Theme.mostRoot, view.width * 0.34)))
        wide: !view.modal && view.Window.width >= Theme.columnsFrom

        onTopAskedFor: {
            const page = stack.topPage as NavigationPage;
            if (page !== null)
                page.takeFocus();
        }
    }
    AppText {
        id: hint

        Accessible.name: text
        Accessible.role: Accessible.StaticText
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.leftMargin: stack.rootWidth + Theme.margin * 2
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin * 2
        anchors.top: parent.top
        color: Theme.secondaryText
        horizontalAlignment: Text.AlignHCenter
        text: view.controller.rootViewController === null ? "" : view.controller.rootViewController.detailHint
        verticalAlignment: Text.AlignVCenter
        visible: view.controller.hasColumns && view.controller.depth === 1
        wrapMode: Text.Wrap
    }
    Rectangle {
        anchors.bottom: parent.bottom
        anchors.top: parent.top
        color: Theme.separator
        visible: view.controller.hasColumns
        width: Theme.hairline
        x: stack.rootWidth - width
    }
    Shortcut {
        enabled: view.visible && view.controller.hasColumns
        sequences: ["F6", "Shift+F6"]
        onActivated: {
            const page = stack.otherPage() as NavigationPage;
            if (page !== null)
                page.takeFocus();
        }
    }
}
