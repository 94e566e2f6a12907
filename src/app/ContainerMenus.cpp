// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ContainerMenus.h"

#include <array>

namespace cvtamber {

namespace {

constexpr std::array<MenuEntry<FileCommand>, 5> FileMenu{{
    {"4.7", FileCommand::Preview},
    {"4.8", FileCommand::Send},
    {"4.9", FileCommand::Move},
    {"4.10", FileCommand::Mail},
    {"Emboss", FileCommand::Emboss},
}};

constexpr std::array<MenuEntry<FileCommand>, 8> ConflictCopyMenu{{
    {"4.7", FileCommand::Preview},
    {"Keep this version", FileCommand::KeepThis},
    {"Keep the other version", FileCommand::KeepOther},
    {"Keep both", FileCommand::KeepBoth},
    {"4.8", FileCommand::Send},
    {"4.9", FileCommand::Move},
    {"4.10", FileCommand::Mail},
    {"Emboss", FileCommand::Emboss},
}};

constexpr std::array<MenuEntry<AddCommand>, 2> AddMenuOfUser{{
    {"4.1", AddCommand::NewFolder},
    {"4.2", AddCommand::FetchFile},
}};

constexpr std::array<MenuEntry<AddCommand>, 1> AddMenuOfFolder{{
    {"4.2", AddCommand::FetchFile},
}};

constexpr std::array<MenuEntry<EditCommand>, 3> EditMenu{{
    {"Delete", EditCommand::Delete},
    {"4.9", EditCommand::Move},
    {"4.15", EditCommand::Rename},
}};

} // namespace

Menu<FileCommand> fileMenu()
{
    return FileMenu;
}

Menu<FileCommand> conflictCopyMenu()
{
    return ConflictCopyMenu;
}

Menu<AddCommand> addMenu(bool isUserLevel)
{
    return isUserLevel ? Menu<AddCommand>(AddMenuOfUser) : Menu<AddCommand>(AddMenuOfFolder);
}

Menu<EditCommand> editMenu()
{
    return EditMenu;
}

} // namespace cvtamber
