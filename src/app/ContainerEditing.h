// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ContainerContents.h"

#include <functional>

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
    // Both buttons of the prompt rename, Cancel too; Escape does not.
    void askForNewName(const ContainerItem &item);
    void handleDeleteFileCommand(const ContainerItem &item);
    // Of two versions of a document, of which `copy` is the one beside it. What is not kept is asked for first. Without the
    // other one the copy takes its title.
    void keepThisVersion(const ContainerItem &copy);
    void keepOtherVersion(const ContainerItem &copy) { handleDeleteFileCommand(copy); }
    void keepBothVersions(const ContainerItem &copy);

private:
    void addFolder(const QString &name);
    void rename(const ContainerItem &item, const QString &name);
    void askToDelete(const ContainerItem &item, std::function<void()> then);
    void remove(const ContainerItem &item);
    void replaceText(const std::shared_ptr<TamberDocument> &original, const ContainerItem &copy,
                     const QString &text);

    ContainerScreen &_screen;
};

} // namespace cvtamber
