// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The date above a section of bubbles. Screen readers hear of it through its row.
AppText {
    required property BubbleRowItem row

    color: Theme.secondaryText
    elide: Text.ElideRight
    font.bold: true
    font.pixelSize: row.table.headerFontSize
    height: row.height
    horizontalAlignment: Text.AlignHCenter
    style: Text.Raised
    styleColor: Theme.headerShadow
    text: row.title
    verticalAlignment: Text.AlignVCenter
    width: row.width
}
