// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// What a page asks of the screen's view that it shows.
FocusScope {
    // Room that the content leaves free at the top, for the large title that scrolls away with it.
    property double topInset: 0
    // How wide the content grows; the room that is left stands at both its sides.
    property double column: Theme.readableWidth
    readonly property double side: Math.max(Theme.margin, (width - column) / 2)
    // The content is a text to read: a card takes all the room that there is.
    property bool isText: false
    // What a sheet of the screen belongs to, where it is neither a row nor a button.
    property Item sheetPlace: null
    // What a screen without a title is called for screen readers.
    property string spokenTitle: ""
    // How far the content has been scrolled.
    property double scrolled: 0

    // The focus goes to where work begins; false where there is nothing for it.
    function takeFocus(): bool {
        return false;
    }
    // What Escape does where no Cancel button is in the bar; whether it did anything.
    function cancel(): bool {
        return false;
    }
    // The focus goes to where a person types what they look for; false where nothing can be looked for.
    function find(): bool {
        return false;
    }
    function rowItem(section: int, row: int): Item {
        return null;
    }
}
