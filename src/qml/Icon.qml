// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// A line icon or a shape from the program's images, in one colour. Decoration: what it means is said by its owner.
Image {
    required property string name
    property color color: Theme.accent
    property int size: Theme.iconSize

    cache: true
    fillMode: Image.PreserveAspectFit
    height: size
    source: name === "" ? "" : "image://cvtamber/" + name + "/" + String(color).slice(1)
    sourceSize.height: size
    sourceSize.width: size
    width: size
}
