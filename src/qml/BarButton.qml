// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A button of the navigation bar, made from its value.
PlainButton {
    id: button

    required property barButtonItem item

    enabled: item.enabled
    font.bold: item.kind === BarButtonItem.Done || item.kind === BarButtonItem.Save
    iconName: item.kind === BarButtonItem.Add ? "add" : item.kind === BarButtonItem.Action ? "action" : item.kind === BarButtonItem.Refresh ? "refresh" : ""
    text: item.title
}
