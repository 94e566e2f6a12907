// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import CVTamber

// A drawing of the bubble table in the colours of the look. With caps, what lies between them is stretched.
Item {
    id: picture

    required property string name
    required property bool mine
    property int leftCap: 0
    property int topCap: 0

    readonly property int rendition: Math.max(1, Math.min(3, Math.ceil(Screen.devicePixelRatio)))
    readonly property string file: name.replace(/\.png$/, "") + (rendition === 1 ? "" : "@" + rendition + "x")
    readonly property color fill: mine ? Theme.bubbleMine : Theme.bubbleSomeone
    readonly property color ink: mine ? Theme.bubbleMineText : Theme.bubbleSomeoneText
    // The columns of a bubble's image; one is stretched, the others keep their width.
    readonly property int columns: 37
    readonly property int rows: 35

    function digits(color: color): string {
        return String(color).slice(1);
    }

    // A border image counts its borders in pixels of the image: it is made in those and scaled down.
    BorderImage {
        asynchronous: false
        border.bottom: picture.topCap === 0 ? 0 : (picture.rows - picture.topCap - 1) * picture.rendition
        border.left: picture.leftCap * picture.rendition
        border.right: picture.leftCap === 0 ? 0 : (picture.columns - picture.leftCap - 1) * picture.rendition
        border.top: picture.topCap * picture.rendition
        height: picture.height * picture.rendition
        source: "image://bubbles/" + picture.file + "/" + picture.digits(picture.fill) + "/" + picture.digits(Theme.bubbleOutline) + "/" + picture.digits(picture.ink)
        transformOrigin: Item.TopLeft
        // Caps that are wider than the whole bubble would lie over each other: it is drawn wide enough and pressed together.
        width: Math.max(picture.width, picture.leftCap === 0 ? 0 : picture.columns) * picture.rendition

        transform: Scale {
            xScale: picture.leftCap === 0 || picture.width >= picture.columns ? 1 / picture.rendition : picture.width / picture.columns / picture.rendition
            yScale: 1 / picture.rendition
        }
    }
}
