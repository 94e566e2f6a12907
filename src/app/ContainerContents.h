// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/TamberUser.h"
#include "ui/TableViewController.h"

#include <memory>

namespace cvtamber {

// A document or a folder of a container: what a menu, prompt or picker is about. Held itself and not its row, because
// rows move while a person thinks.
struct ContainerItem
{
    std::shared_ptr<TamberDocument> document;
    std::shared_ptr<TamberDataFolder> folder;

    bool isEmpty() const { return !document && !folder; }
    bool isFolder() const { return folder != nullptr; }
    const void *address() const;
    // What a person calls it: the folder's name, the document's file name without the extension.
    QString title() const;
};

// The container that a browser shows, as sections and rows over the store's own lists.
//
// A user: folders in section 0, documents in section 1. A folder: documents in section 0. Without a container: one
// section without rows.
// Thread: main thread. Owner: its screen. Keeps the container alive.
class ContainerContents
{
public:
    void show(const std::shared_ptr<TamberFilesContainer> &container);

    // Null for a folder, and the other way round.
    const std::shared_ptr<TamberUser> &user() const { return _user; }
    const std::shared_ptr<TamberDataFolder> &folder() const { return _folder; }
    const std::shared_ptr<TamberFilesContainer> &filesContainer() const { return _filesContainer; }
    bool isUserLevel() const { return _user != nullptr; }
    int sectionsCount() const { return isUserLevel() ? 2 : 1; }
    bool isFolderSection(int section) const { return isUserLevel() && section == 0; }
    int filesSection() const { return isUserLevel() ? 1 : 0; }
    int filesCount() const;
    int foldersCount() const;
    // Of the section's list.
    int count(int section) const;
    // What a person calls it.
    QString title() const;

    // Whether another folder of the user has its name.
    bool isNameShared(const TamberDataFolder &folder) const;
    // Empty outside the lists.
    ContainerItem itemAt(IndexPath path) const;
    // Null when none has it.
    std::shared_ptr<TamberDocument> documentOfTitle(const QString &title) const;
    // Index in its list now, NotFound when it is not in it any more.
    StoreIndex indexOf(const ContainerItem &item) const;
    bool holds(const ContainerItem &item) const { return indexOf(item) != NotFound; }
    // {-1, -1} when it is not in it any more.
    IndexPath pathOf(const ContainerItem &item) const;

private:
    std::shared_ptr<TamberFilesContainer> _filesContainer;
    std::shared_ptr<TamberUser> _user;
    std::shared_ptr<TamberDataFolder> _folder;
};

} // namespace cvtamber
