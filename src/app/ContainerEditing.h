// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ContainerContents.h"

namespace cvtamber {

class ContainerScreen;

// What a container browser changes in its container: new folders, new names, deletions. Each is asked for first.
// Thread: main thread. Owner: the browser.
class ContainerEditing
{
public:
    explicit ContainerEditing(ContainerScreen &screen)
        : _screen(screen)
    {}

    void handleAddFolderCommand();
    // Both buttons of the prompt rename, Cancel (and with it Escape) too.
    void askForNewName(const ContainerItem &item);
    void handleDeleteFileCommand(const ContainerItem &item);

private:
    void addFolder(const QString &name);
    void rename(const ContainerItem &item, const QString &name);
    void remove(const ContainerItem &item);

    ContainerScreen &_screen;
};

} // namespace cvtamber
