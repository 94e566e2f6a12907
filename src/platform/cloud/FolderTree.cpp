// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/FolderTree.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cvtamber {

// One folder's part of a scan, and where its consequences go.
struct FolderTree::Look
{
    const ScannedFolder &scanned;
    const bool isCalm;
    Folder &folder;
    Change &change;
    bool isUnclear = false;

    // What is not found any more is gone.
    bool decides(bool wasMissed) const { return scanned.isWhole && (isCalm || wasMissed); }

    File arrived(const ScannedFile &found)
    {
        File file{found};
        file.isHere = !found.isPlaceholder && isCalm && found.size > 0;
        isUnclear = isUnclear || (!found.isPlaceholder && !file.isHere);
        return file;
    }

    File seenAgain(const File &former, const ScannedFile &found)
    {
        if (found.isPlaceholder || former.isPlaceholder)
            return arrived(found);
        File file{found};
        file.isHere = former.size == found.size && former.modified == found.modified;
        isUnclear = isUnclear || !file.isHere;
        return file;
    }

    void tell(const File &file)
    {
        MetadataItem item;
        item.url = scanned.url.appendingFile(file.name);
        item.size = file.size;
        item.contentChangeDate = QDateTime::fromMSecsSinceEpoch(file.modified / 1000000, Qt::UTC);
        item.isDownloaded = file.isHere;
        item.isDownloading = file.isPlaceholder ? file.isDownloading : !file.isHere;
        item.isUploaded = file.isPlaceholder;
        item.hasUnresolvedConflicts = file.isConflictCopy;
        change.items.push_back(std::move(item));
    }
};

FolderTree::FolderTree(FileURL root)
    : _root(std::move(root))
{
    _folders.try_emplace(_root);
}

FolderTree::Change FolderTree::apply(const FolderScan &scan, bool isCalm)
{
    Change change;
    if (isUnmounted(scan)) {
        change.failed.push_back(_root);
        return change;
    }
    for (const ScannedFolder &scanned : scan.folders) {
        if (!isReachable(scanned.url))
            continue;
        Look look{scanned, isCalm && !scanned.isChanging, _folders[scanned.url], change};
        applyFiles(look);
        applyFolders(look);
        if (look.isUnclear)
            change.unclear.push_back(scanned.url);
        if (!scanned.isWhole) {
            noteFailure(scanned.url, change);
            continue;
        }
        change.read.push_back(scanned.url);
        if (scanned.url == _root)
            _device = scan.rootDevice;
    }
    return change;
}

// A folder whose parent does not hold it has gone meanwhile; the parent's listing decides.
bool FolderTree::isReachable(const FileURL &folder) const
{
    if (folder == _root)
        return true;
    const auto parent = _folders.find(folder.deletingLastPathComponent());
    if (parent == _folders.end())
        return false;
    const QStringList &names = parent->second.folders;
    return std::binary_search(names.begin(), names.end(), folder.lastPathComponent());
}

bool FolderTree::isUnmounted(const FolderScan &scan) const
{
    if (_device == 0 || scan.rootDevice == _device || scan.folders.empty())
        return false;
    const ScannedFolder &root = scan.folders.front();
    return root.url == _root && root.isWhole && root.files.empty() && root.folders.isEmpty();
}

void FolderTree::noteFailure(const FileURL &folder, Change &change) const
{
    change.failed.push_back(folder);
    // It may have gone, which only the folder that held it can tell.
    if (folder != _root)
        change.unclear.push_back(folder.deletingLastPathComponent());
}

void FolderTree::applyFiles(Look &look)
{
    std::vector<File> files;
    files.reserve(std::max(look.folder.files.size(), look.scanned.files.size()));
    auto former = look.folder.files.begin();
    const auto formerEnd = look.folder.files.end();
    const auto keepOrRemove = [&](File &file) {
        if (look.decides(file.isMissed)) {
            look.change.removed.push_back(look.scanned.url.appendingFile(file.name));
            return;
        }
        look.isUnclear = look.isUnclear || look.scanned.isWhole;
        file.isMissed = look.scanned.isWhole;
        files.push_back(std::move(file));
    };
    for (const ScannedFile &found : look.scanned.files) {
        for (; former != formerEnd && former->name < found.name; ++former)
            keepOrRemove(*former);
        if (former == formerEnd || former->name != found.name) {
            files.push_back(look.arrived(found));
            look.tell(files.back());
            continue;
        }
        // A listing that broke off may have seen the placeholder and not the file.
        const File file = look.scanned.isWhole ? look.seenAgain(*former, found) : *former;
        if (file != *former)
            look.tell(file);
        files.push_back(file);
        ++former;
    }
    for (; former != formerEnd; ++former)
        keepOrRemove(*former);
    look.folder.files = std::move(files);
}

void FolderTree::applyFolders(Look &look)
{
    const QStringList &found = look.scanned.folders;
    QStringList lost;
    std::set_difference(look.folder.folders.begin(), look.folder.folders.end(), found.begin(), found.end(),
                        std::back_inserter(lost));
    QStringList kept;
    for (const QString &name : std::as_const(lost)) {
        if (look.decides(look.folder.missedFolders.contains(name)))
            drop(look.scanned.url.appendingDirectory(name), look.change);
        else
            kept.append(name);
    }
    look.isUnclear = look.isUnclear || (look.scanned.isWhole && !kept.isEmpty());
    look.folder.missedFolders = look.scanned.isWhole ? kept : QStringList();
    look.folder.folders = found;
    if (!kept.isEmpty()) {
        look.folder.folders += kept;
        look.folder.folders.sort();
    }
}

void FolderTree::drop(const FileURL &folder, Change &change)
{
    std::vector<FileURL> waiting{folder};
    while (!waiting.empty()) {
        const FileURL url = waiting.back();
        waiting.pop_back();
        auto node = _folders.extract(url);
        if (node.empty())
            continue;
        change.leftFolders.push_back(url);
        for (const File &file : node.mapped().files)
            change.removed.push_back(url.appendingFile(file.name));
        for (const QString &name : std::as_const(node.mapped().folders))
            waiting.push_back(url.appendingDirectory(name));
    }
}

} // namespace cvtamber
