// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ActionSheet.h"
#include "ui/Texts.h"

#include <optional>
#include <span>

namespace cvtamber {

// The menus of a container browser as tables, and the tags that tell its menus and prompts apart.

enum ContainerSheetTag : int {
    FileMenuTag = 1,
    DeleteConfirmationTag = 2,
    AddMenuTag = 3,
    EditMenuTag = 4,
};

enum ContainerAlertTag : int {
    NewFolderTag = 1,
    // 2 asked before a folder's deletion once; nothing asks with it any more.
    NameForSendingTag = 3,
    RenameTag = 4,
    BracesTag = 5,
    LostCharactersTag = 6,
};

template<typename Command> struct MenuEntry
{
    const char *key;
    Command command;
};
template<typename Command> using Menu = std::span<const MenuEntry<Command>>;

enum class FileCommand { Preview, Send, Move, Mail, Emboss, KeepThis, KeepOther, KeepBoth };
Menu<FileCommand> fileMenu();
// Of a version that another program has put beside a document.
Menu<FileCommand> conflictCopyMenu();

enum class AddCommand { NewFolder = 1, FetchFile = 2 };
Menu<AddCommand> addMenu(bool isUserLevel);

enum class EditCommand { Delete, Move, Rename };
// The first is the destructive one.
Menu<EditCommand> editMenu();

// The entries in their order, and Cancel as the last button.
template<typename Command> ActionSheet menuSheet(int tag, const QString &title, Menu<Command> menu)
{
    ActionSheet sheet;
    sheet.tag = tag;
    sheet.title = title;
    for (const MenuEntry<Command> &entry : menu)
        sheet.buttons.append(localized(entry.key));
    sheet.cancelButtonIndex = static_cast<int>(sheet.buttons.size());
    sheet.buttons.append(localized("Cancel"));
    return sheet;
}

// Nothing for the cancel button.
template<typename Command> std::optional<Command> commandAt(Menu<Command> menu, int buttonIndex)
{
    if (buttonIndex < 0 || static_cast<size_t>(buttonIndex) >= menu.size())
        return std::nullopt;
    return menu[static_cast<size_t>(buttonIndex)].command;
}

} // namespace cvtamber
