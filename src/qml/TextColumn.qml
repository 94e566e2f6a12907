// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// How wide a column of text is whose lines are as long as is read with ease, measured in the font of the text.
TextMetrics {
    readonly property double column: advanceWidth / text.length * Theme.lineLength

    // Letters as often as prose has them. Nobody sees it.
    text: "The children read the first lines of the story aloud, and then they wrote down what they had heard."
}
