// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// What a page asks of the screen's view that it shows.
FocusScope {
    // Room that the content leaves free at the top, for the large title that scrolls away with it.
    property double topInset: 0
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
    function rowItem(section: int, row: int): Item {
        return null;
    }
}
