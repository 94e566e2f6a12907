// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A text that readers can jump to, and that takes the focus where a page has nothing else.
AppText {
    id: heading

    font.bold: true
    Accessible.role: Accessible.Heading
    Accessible.name: heading.words !== "" ? heading.words : heading.text
    Accessible.focusable: true

    FocusRing {
        target: heading
    }
}
