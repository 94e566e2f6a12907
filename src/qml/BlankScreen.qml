// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A screen for which there is no view: the bar above it is all it has.
ScreenView {
    required property ViewController controller
}
