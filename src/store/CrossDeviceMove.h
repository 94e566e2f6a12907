// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileResult.h"

#include <vector>

namespace cvtamber {

// Moves a file or a folder to another file system.
//
//   copy to a hidden name beside the destination, everything synced
//     -> rename to the destination, which must be new, and sync its folder
//     -> remove the source, file by file, where it is still what was copied
// Up to the rename the source is all there is; after it the copy is whole. What cannot be copied truly (a
// link, a device) fails it all. What stays of the source is told. Used once. Any thread.
class CrossDeviceMove
{
public:
    CrossDeviceMove(FileOperations &operations, FileURL from, FileURL to);

    FileResult run();

private:
    struct CopiedFile
    {
        QString source;
        FileStamp stamp;
    };

    std::error_code copy();
    std::error_code copyItem(const QString &source, FileStatus::Kind kind);
    std::error_code copyFile(const QString &source, const QString &target);
    std::error_code syncFolders();
    // What went wrong first; empty when all is gone.
    QString removeSource();

    FileOperations &_operations;
    FileURL _from;
    FileURL _to;
    QString _hiddenPath;
    std::vector<CopiedFile> _files;
    // Of the source, each before those in it.
    std::vector<QString> _folders;
};

} // namespace cvtamber
