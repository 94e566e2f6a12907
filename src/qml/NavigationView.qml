// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A navigation: its pages, one above the other.
FocusScope {
    id: view

    required property NavigationController controller
    property bool modal: false
    readonly property ScreenView screen: {
        const page = stack.topPage as NavigationPage;
        return page === null ? null : page.screen;
    }

    function takeFocus(): void {
        const page = stack.topPage as NavigationPage;
        if (page !== null)
            page.takeFocus();
    }
    function anchorItem(kind: int, section: int, row: int, button: int): Item {
        const page = stack.topPage as NavigationPage;
        return page === null ? null : page.anchorItem(kind, section, row, button);
    }

    NavigationStack {
        id: stack

        anchors.fill: parent
        controller: view.controller
        duration: Theme.motion
        focus: true
        modal: view.modal
    }
}
