// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ContainerContents.h"

#include <algorithm>

namespace cvtamber {

const void *ContainerItem::address() const
{
    return folder ? static_cast<const void *>(folder.get()) : document.get();
}

QString ContainerItem::title() const
{
    if (folder)
        return folder->name();
    return document ? document->fileURL().nameWithoutExtension() : QString();
}

void ContainerContents::show(const std::shared_ptr<TamberFilesContainer> &container)
{
    _filesContainer = container;
    _user = std::dynamic_pointer_cast<TamberUser>(container);
    _folder = std::dynamic_pointer_cast<TamberDataFolder>(container);
}

int ContainerContents::filesCount() const
{
    return _filesContainer ? static_cast<int>(_filesContainer->files().size()) : 0;
}

int ContainerContents::foldersCount() const
{
    return _user ? static_cast<int>(_user->foldersCount()) : 0;
}

int ContainerContents::count(int section) const
{
    if (isFolderSection(section))
        return foldersCount();
    return section == filesSection() ? filesCount() : 0;
}

QString ContainerContents::title() const
{
    return _folder ? _folder->name() : userDisplayName(_user.get());
}

ContainerItem ContainerContents::itemAt(IndexPath path) const
{
    if (path.row < 0 || path.row >= count(path.section))
        return {};
    if (isFolderSection(path.section))
        return {nullptr, _user->folderAtIndex(path.row)};
    return {_filesContainer->files()[static_cast<size_t>(path.row)], nullptr};
}

std::shared_ptr<TamberDocument> ContainerContents::documentOfTitle(const QString &title) const
{
    if (!_filesContainer)
        return nullptr;
    const auto &files = _filesContainer->files();
    const auto found = std::find_if(files.begin(), files.end(), [&title](const auto &file) {
        return file->fileURL().nameWithoutExtension() == title;
    });
    return found == files.end() ? nullptr : *found;
}

bool ContainerContents::isNameShared(const TamberDataFolder &folder) const
{
    for (int i = 0; i < foldersCount(); ++i) {
        const auto other = _user->folderAtIndex(i);
        if (other.get() != &folder && other->name() == folder.name())
            return true;
    }
    return false;
}

StoreIndex ContainerContents::indexOf(const ContainerItem &item) const
{
    if (item.folder)
        return _user ? _user->indexOfFolder(item.folder) : NotFound;
    return item.document && _filesContainer ? _filesContainer->indexOfFile(item.document) : NotFound;
}

IndexPath ContainerContents::pathOf(const ContainerItem &item) const
{
    const StoreIndex index = indexOf(item);
    if (index == NotFound)
        return {-1, -1};
    return {item.folder ? 0 : filesSection(), static_cast<int>(index)};
}

} // namespace cvtamber
