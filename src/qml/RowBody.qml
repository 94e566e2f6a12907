// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The texts of a row: side by side while they fit, else one under the other, with the controls last.
Item {
    id: body

    required property TableCellItem cell
    required property double controlsWidth
    required property double controlsHeight
    readonly property bool isPair: cell.style === TableCell.Value1 || cell.style === TableCell.Value2
    readonly property bool isSmallLabel: cell.style === TableCell.Value2
    readonly property double labelWidth: isSmallLabel ? Math.min(160 * Theme.textScale, width * 0.32) : Math.max(0, width - second.implicitWidth - Theme.gap)
    // A label of several words may take two lines; one word is never broken.
    readonly property double labelLines: Theme.largeText || !cell.text.includes(" ") ? 1 : 1.6
    readonly property bool controlsBelow: controlsWidth > 0 && (isSmallLabel ? labelWidth : first.implicitWidth) + second.implicitWidth + controlsWidth + Theme.gap + Theme.unit > width
    readonly property double room: width - (controlsBelow || controlsWidth === 0 ? 0 : controlsWidth + Theme.unit)
    readonly property bool stacked: !isPair || (isSmallLabel ? first.implicitWidth > labelWidth * labelLines || (Theme.largeText && labelWidth + second.implicitWidth + Theme.gap > room) : first.implicitWidth + second.implicitWidth + Theme.gap > room)
    readonly property double textHeight: stacked ? first.height + (second.visible ? second.height + 2 : 0) : Math.max(first.height, second.height)
    readonly property double controlsTop: textHeight + Theme.half
    readonly property int lines: Theme.largeText ? 6 : 2

    height: textHeight + (wait.active ? wait.y - first.height + wait.height : 0) + (controlsBelow ? controlsHeight + Theme.half : 0)

    Loader {
        id: wait

        active: body.cell.style === TableCell.Wait
        anchors.horizontalCenter: parent.horizontalCenter
        y: body.cell.text === "" ? 0 : first.height + Theme.unit

        sourceComponent: Spinner {}
    }
    AppText {
        id: first

        color: !body.cell.cellEnabled ? Theme.disabledText : body.isSmallLabel ? Theme.secondaryText : body.cell.style === TableCell.Centered && body.cell.selectable ? Theme.accent : Theme.text
        elide: Text.ElideRight
        font.pixelSize: body.isSmallLabel ? Theme.detailSize : Theme.bodySize
        horizontalAlignment: body.cell.isCentered ? Text.AlignHCenter : Text.AlignLeft
        maximumLineCount: body.cell.isCentered ? 8 : body.lines
        width: body.stacked ? body.room : body.isSmallLabel ? body.labelWidth : body.room - second.implicitWidth - Theme.gap
        words: body.cell.text
        wrapMode: Text.Wrap
        y: body.stacked ? 0 : (body.textHeight - height) / 2
    }
    AppText {
        id: second

        color: !body.cell.cellEnabled ? Theme.disabledText : body.cell.detailTone === TableCell.Success ? Theme.success : body.isSmallLabel ? Theme.text : Theme.secondaryText
        elide: Text.ElideRight
        font.pixelSize: body.isSmallLabel ? Theme.bodySize : Theme.detailSize
        horizontalAlignment: body.cell.style === TableCell.Value1 && !body.stacked ? Text.AlignRight : Text.AlignLeft
        maximumLineCount: body.lines
        visible: words !== ""
        width: body.stacked ? body.room : body.isSmallLabel ? body.room - x : implicitWidth
        words: body.cell.detail
        wrapMode: Text.Wrap
        x: body.stacked ? 0 : body.isSmallLabel ? body.labelWidth + Theme.gap : body.room - width
        y: body.stacked ? first.height + 2 : (body.textHeight - height) / 2
    }
}
