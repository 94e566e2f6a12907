// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileResult.h"

#include <QStringList>

#include <vector>

namespace cvtamber {

// The store's file manager: what it does with files and folders, each call whole or not at all.
//
// Nothing here replaces a file by accident, follows a symbolic link, or is done before it is on the disk: a
// call that returns Ok has synced what it wrote and the folders whose names it changed (removals excepted:
// after a power failure a removed item may be back). What a crash leaves behind has a hidden name of ours
// (isHiddenName in HiddenFile.h), which list() leaves out; see oldLeftovers().
// In a cloud folder an item may be there as a placeholder only (CloudNames.h): remove() and move() then take
// the placeholder, exists() counts it, read() and replace() say NotDownloaded.
// Any thread; holds no state but the operations, which outlive it.
class StoreDisk
{
public:
    struct Entry
    {
        QString name;
        FileStatus::Kind kind = FileStatus::Kind::Unknown;
    };
    struct Listing : FileResult
    {
        // By name without regard to letter case; links, devices and leftovers of ours are left out. When the result is
        // not Ok, what could be read.
        std::vector<Entry> entries;
        // Names of our own leftovers that were met.
        QStringList leftovers;
    };

    explicit StoreDisk(FileOperations &operations)
        : _operations(operations)
    {}

    Listing list(const FileURL &directory) const;
    bool isFolder(const FileURL &url) const;
    // True also for a placeholder, and for what cannot be looked at: only what is certainly absent does not
    // exist.
    bool exists(const FileURL &url) const;
    FileStatus status(const FileURL &url) const { return _operations.status(url.path()); }

    ReadResult read(const FileURL &url) const;
    // AlreadyExists when anything has the name, a placeholder too.
    WriteResult create(const FileURL &url, const QByteArray &bytes) const;

    enum class OtherVersion {
        // What stands there and is not the version known is kept beside it, under a free name
        // ("Letter (conflicted copy).tamber").
        Keep,
        // For records that are written whole each time: the last writer wins.
        Replace,
    };
    // Makes the file or replaces it. `known` is the version that the caller has read or written last; unknown
    // makes every other version another's, unless its bytes are the same. A file that has gone is made anew.
    WriteResult replace(const FileURL &url, const QByteArray &bytes, const FileStamp &known,
                        OtherVersion otherVersion) const;

    // One folder; with intermediate ones, as far as they are missing.
    FileResult makeFolder(const FileURL &directory) const;
    FileResult makeFolders(const FileURL &directory) const;
    // File or folder, to a name that must be new; between file systems it copies, syncs, then removes the
    // source.
    FileResult move(const FileURL &from, const FileURL &to) const;
    // A file, or a folder that holds nothing but our leftovers. A link itself, not what it points to.
    FileResult remove(const FileURL &url) const;
    // True when the folder holds nothing but our leftovers; false also when it cannot be read.
    bool isEmptyFolder(const FileURL &directory) const;
    // Every file below the directory but our leftovers; links are neither entered nor told. A subfolder that
    // cannot be read makes the result not Ok.
    struct Walk : FileResult
    {
        std::vector<FileURL> files;
    };
    Walk walk(const FileURL &directory) const;
    // Those of the leftovers that are not young: what a crash has left.
    QStringList oldLeftovers(const FileURL &directory, const QStringList &leftovers) const;
    // The file or folder, or anything in it, was touched within the hour or cannot be looked at: another program may be at
    // work on it.
    bool isYoung(const FileURL &item) const;

private:
    FileOperations &_operations;
};

} // namespace cvtamber
