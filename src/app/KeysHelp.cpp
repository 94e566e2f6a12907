// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/KeysHelp.h"

#include "ui/Texts.h"

namespace cvtamber {

AlertView keysHelp()
{
    AlertView alert;
    alert.title = localized("Keys");
    alert.message = QStringList{localized("Tab, Shift+Tab: from control to control."),
                                localized("Arrows, Home, End, Page Up, Page Down, letters: from row to row."),
                                localized("Enter, Space: what a touch does."),
                                localized("Menu, Shift+F10: the row's detail button."),
                                localized("Delete: deletes the row, where rows can be deleted."),
                                localized("F2: renames a document or folder."),
                                localized("Escape: Cancel or back. It closes Rename without renaming."),
                                localized("Ctrl+Page Up, Ctrl+Page Down: from section to section."),
                                localized("Ctrl+C: copies a message of the chat.")}
                        .join(u'\n');
    alert.buttons = {localized("OK")};
    alert.cancelButtonIndex = 0;
    return alert;
}

} // namespace cvtamber
