// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// Content that may be higher than its room: what has the focus is brought into sight, and Page Up and Page Down read on.
Flickable {
    id: view

    readonly property Item focused: Window.activeFocusItem

    function reveal(): void {
        let ancestor = focused;
        while (ancestor !== null && ancestor !== contentItem)
            ancestor = ancestor.parent;
        if (ancestor === null || focused === contentItem)
            return;
        const top = focused.mapToItem(contentItem, 0, 0).y - Theme.unit;
        const bottom = top + focused.height + Theme.unit * 2;
        if (bottom > contentY + height)
            contentY = Math.max(0, Math.min(contentHeight, bottom) - height);
        if (top < contentY)
            contentY = Math.max(0, top);
    }
    function scroll(distance: double): void {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + distance));
    }

    boundsBehavior: Flickable.StopAtBounds
    contentWidth: width

    Keys.onPressed: event => {
        const forward = event.key === Qt.Key_PageDown;
        event.accepted = (forward || event.key === Qt.Key_PageUp) && !(event.modifiers & Qt.ControlModifier);
        if (event.accepted)
            view.scroll((forward ? 1 : -1) * Math.max(Theme.target, view.height - Theme.target));
    }
    onContentHeightChanged: reveal()
    onFocusedChanged: reveal()
    onHeightChanged: reveal()
}
