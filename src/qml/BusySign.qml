// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import CVTamber

// The sign that turns. A file of its own: its style is loaded when it is first seen, and not at start-up.
BusyIndicator {
    Accessible.ignored: true
    padding: 0
    palette.dark: Theme.accent
}
