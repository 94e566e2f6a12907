// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// Text as people wrote it: no mark-up. Screen readers hear of it through what it belongs to.
Text {
    color: Theme.text
    font.pixelSize: Theme.bodySize
    textFormat: Text.PlainText
}
