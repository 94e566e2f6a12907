// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// Text as people wrote it: no mark-up. Screen readers hear of it through what it belongs to.
Text {
    // Given instead of the text where it is a name, or may have one in it: a long name breaks at its dots and underscores
    // before it breaks within a word. What is spoken, copied or compared is this, without the places to break at.
    property string words: ""

    // Dots between figures are no place to break.
    function breakable(words: string): string {
        return words.replace(/_+(?=[^_\s])|\.+(?=[^.\s\d])|[^\d.]\.+(?=\d)/g, "$&\u200b");
    }

    color: Theme.text
    font.pixelSize: Theme.bodySize
    text: breakable(words)
    textFormat: Text.PlainText
}
