// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick
import CVTamber

// Colours, sizes and motion: the one place that names them. Texts meet WCAG AA on the surfaces that they stand on.
QtObject {
    id: theme

    readonly property SystemAppearance appearance: SystemAppearance {}
    readonly property bool dark: appearance.dark
    readonly property bool highContrast: appearance.highContrast
    readonly property double textScale: appearance.textScale
    // Texts so large that what stands side by side goes one under the other.
    readonly property bool largeText: textScale >= 1.4
    readonly property bool showsFocus: appearance.keyboardInUse

    // Of the four looks the one that is in force.
    function pick(light: color, darkColor: color, strong: color, strongDark: color): color {
        if (highContrast)
            return dark ? strongDark : strong;
        return dark ? darkColor : light;
    }

    readonly property color background: pick("#f1f2f6", "#0f1115", "#ffffff", "#000000")
    readonly property color bar: pick("#f8f8fb", "#16181d", "#ffffff", "#000000")
    readonly property color card: pick("#ffffff", "#1c1f26", "#ffffff", "#000000")
    readonly property color raised: pick("#ffffff", "#262a33", "#ffffff", "#000000")
    readonly property color pressed: pick("#e3e7f0", "#2e3440", "#d5dcea", "#333333")
    readonly property color text: pick("#16181d", "#f2f3f7", "#000000", "#ffffff")
    readonly property color secondaryText: pick("#585d6b", "#a9afbd", "#1a1a1a", "#f0f0f0")
    readonly property color disabledText: pick("#737886", "#868c9a", "#4a4a4a", "#c0c0c0")
    readonly property color accent: pick("#1d5bb8", "#8ab4ff", "#00318a", "#9fd0ff")
    readonly property color accentText: pick("#ffffff", "#0b1a33", "#ffffff", "#000000")
    readonly property color destructive: pick("#b3261e", "#ff9a92", "#8a0000", "#ffb3ad")
    readonly property color destructiveText: pick("#ffffff", "#330503", "#ffffff", "#000000")
    readonly property color success: pick("#1a6b35", "#7fd99a", "#00501e", "#a8f0be")
    readonly property color separator: pick("#d9dbe3", "#343944", "#000000", "#ffffff")
    readonly property color outline: pick("#7d8394", "#7d8394", "#000000", "#ffffff")
    readonly property color scrim: pick("#66101318", "#99000000", "#99000000", "#b3404040")
    readonly property color notice: pick("#262a33", "#e6e8ee", "#000000", "#ffffff")
    readonly property color noticeText: pick("#ffffff", "#16181d", "#ffffff", "#000000")
    // The bubbles of a conversation: mine and those of the other side, in which side and tail differ as well.
    readonly property color bubbleMine: pick("#cfe0fb", "#1f4380", "#00318a", "#9fd0ff")
    readonly property color bubbleMineText: pick("#16181d", "#f2f3f7", "#ffffff", "#000000")
    readonly property color bubbleSomeone: pick("#ffffff", "#262a33", "#ffffff", "#000000")
    readonly property color bubbleSomeoneText: text
    readonly property color bubbleOutline: pick("#b4bfd4", "#505869", "#000000", "#ffffff")
    readonly property color headerShadow: pick("#ffffff", "#000000", "#ffffff", "#000000")
    readonly property color avatarBorder: pick("#33000000", "#33ffffff", "#000000", "#ffffff")
    // Around cards: colour alone does not part them from the background in high contrast.
    readonly property int cardBorder: highContrast ? 1 : 0
    readonly property int hairline: highContrast ? 2 : 1
    // Around buttons, which colour alone parts from what is under them otherwise.
    readonly property int buttonBorder: highContrast ? hairline : 0
    readonly property int focusWidth: highContrast ? 4 : 3

    // Text sizes in pixels of 96 to the inch.
    readonly property int titleSize: Math.round(28 * Math.min(textScale, 1.6))
    readonly property int bodySize: Math.round(17 * textScale)
    readonly property int detailSize: Math.round(15 * textScale)
    readonly property int noteSize: Math.round(13 * textScale)
    readonly property int iconSize: Math.round(24 * Math.min(textScale, 1.5))

    // A grid of 8 units.
    readonly property int half: 4
    readonly property int unit: 8
    readonly property int gap: 16
    readonly property int margin: 16
    readonly property int radius: 12
    readonly property int panelRadius: 10
    // The least that a finger hits.
    readonly property int target: 44
    // Rows and forms grow no wider than what is read at a glance, a text no wider than lines of this many characters.
    readonly property int readableWidth: 720
    readonly property int lineLength: 90
    readonly property int sheetWidth: 560
    readonly property int sheetHeight: 680
    readonly property int dialogWidth: 360
    readonly property int tabletSide: 600
    readonly property int railFrom: 900
    // A window of this width shows a navigation in two columns, of which the root is between these widths.
    readonly property int columnsFrom: 900
    readonly property int leastRoot: 320
    readonly property int mostRoot: 400

    // Milliseconds.
    readonly property int motion: appearance.reducedMotion ? 0 : 250
    readonly property int shortMotion: appearance.reducedMotion ? 0 : 200
}
