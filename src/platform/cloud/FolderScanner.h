// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileOperations.h"
#include "platform/cloud/FolderScan.h"
#include "platform/cloud/FolderWatches.h"

#include <atomic>
#include <memory>
#include <unordered_set>

namespace cvtamber {

// Which folders are to be listed.
struct ScanRequest
{
    struct Folder
    {
        FileURL url;
        // Folders in it that are known and not listed again, by name; all others are, with all below.
        QStringList knownFolders;
    };

    FileURL root;
    // Of a file's path below the root, as isLike() takes it.
    QString filter;
    // A folder stands before those in it.
    std::vector<Folder> folders;
};

// Lists folders and watches them. Links are neither listed nor followed; neither are the folders of sync
// programs and hidden ones, where no document of the store ever is.
//
// One object for one request. run() works in the background; cancel() may be called meanwhile.
class FolderScanner
{
public:
    FolderScanner(FileOperations &operations, std::shared_ptr<FolderWatches> watches, ScanRequest request);

    void run();
    // Nobody wants the result any more.
    void cancel() { _isCancelled = true; }
    // After run().
    const FolderScan &result() const { return _scan; }

private:
    struct Names;

    void scanFrom(const ScanRequest::Folder &start);
    ScannedFolder look(const FileURL &folder);
    bool listWatched(const FileURL &folder, QList<FolderEntry> &entries);
    bool isWatched(const FileURL &folder);
    void sortOut(QList<FolderEntry> &&entries, ScannedFolder &folder, Names &names) const;
    void addFile(const QString &name, Names &names) const;
    void measure(ScannedFolder &folder, const Names &names) const;

    FileOperations &_operations;
    std::shared_ptr<FolderWatches> _watches;
    ScanRequest _request;
    std::atomic<bool> _isCancelled = false;
    FolderScan _scan;
    std::unordered_set<FileURL> _seen;
};

} // namespace cvtamber
