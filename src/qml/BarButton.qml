// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A button of the navigation bar, made from its value.
PlainButton {
    id: button

    required property barButtonItem item
    // Also when it has just been disabled, which takes the focus away.
    property bool hadFocus: false

    enabled: item.enabled
    font.bold: item.kind === BarButtonItem.Done || item.kind === BarButtonItem.Save
    iconName: item.kind === BarButtonItem.Add ? "add" : item.kind === BarButtonItem.Action ? "action" : item.kind === BarButtonItem.Refresh ? "refresh" : ""
    text: item.title

    onActiveFocusChanged: if (activeFocus || enabled)
        hadFocus = activeFocus
    // Who has pressed it stands beside it, not at the start of the page.
    onEnabledChanged: if (!enabled && hadFocus) {
        hadFocus = false;
        const next = nextItemInFocusChain();
        if (next !== null)
            next.forceActiveFocus(Qt.TabFocusReason);
    }
}
