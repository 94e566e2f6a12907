// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/FolderScan.h"
#include "store/MetadataQuery.h"

#include <unordered_map>

namespace cvtamber {

// What is known of a folder and all below it, and what a new look at some of it means.
//
// A document: new -> here (also at once, when nobody was in the middle of something) -> on its way, when it
// changes -> here again once two looks find the same. An empty document is believed at the second look, too.
// What a look does not find is gone when the look could read the whole folder and nothing was changing,
// else when a second look misses it as well. Nothing is gone where a folder could not be read, nor where all is
// gone together with the root's file system: that has been unmounted. Thread: main thread.
class FolderTree
{
public:
    struct Change
    {
        // New or different, folder by folder.
        std::vector<MetadataItem> items;
        std::vector<FileURL> removed;
        // No part of the tree any more.
        std::vector<FileURL> leftFolders;
        // To be looked at once more soon.
        std::vector<FileURL> unclear;
        // Folders that could be read whole, and others.
        std::vector<FileURL> read;
        std::vector<FileURL> failed;
    };

    explicit FolderTree(FileURL root);

    const FileURL &root() const { return _root; }

    // Calm: nothing was changing when the look was taken.
    Change apply(const FolderScan &scan, bool isCalm);
    bool contains(const FileURL &folder) const { return _folders.count(folder) > 0; }
    // Of a folder of the tree, by name.
    const QStringList &foldersIn(const FileURL &folder) const { return _folders.at(folder).folders; }

private:
    struct File : ScannedFile
    {
        // Not a placeholder, and found the same by two looks, or by a calm one.
        bool isHere = false;
        // The last look did not find it.
        bool isMissed = false;

        bool operator==(const File &) const = default;
    };
    struct Folder
    {
        // All by name.
        std::vector<File> files;
        QStringList folders;
        QStringList missedFolders;
    };
    struct Look;

    bool isReachable(const FileURL &folder) const;
    bool isUnmounted(const FolderScan &scan) const;
    void noteFailure(const FileURL &folder, Change &change) const;
    static void applyFiles(Look &look);
    void applyFolders(Look &look);
    void drop(const FileURL &folder, Change &change);

    FileURL _root;
    quint64 _device = 0;
    std::unordered_map<FileURL, Folder> _folders;
};

} // namespace cvtamber
