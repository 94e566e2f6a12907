// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

#include <QStringList>

#include <vector>

namespace cvtamber {

// A document as one look at its folder finds it.
struct ScannedFile
{
    // The document's, also where only a placeholder is here.
    QString name;
    // Bytes; 0 for a placeholder, whose document's size is not known.
    qint64 size = 0;
    // Nanoseconds since 1970.
    qint64 modified = 0;
    bool isPlaceholder = false;
    // A placeholder whose document is on its way.
    bool isDownloading = false;
    bool isConflictCopy = false;

    bool operator==(const ScannedFile &) const = default;
};

struct ScannedFolder
{
    FileURL url;
    // False when it is not there or could not be read to the end: then what is missing below says nothing.
    bool isWhole = false;
    // Something went while it was listed.
    bool isChanging = false;
    // Both by name.
    std::vector<ScannedFile> files;
    QStringList folders;
};

// What a look at some folders, or at all, found: a folder comes before those in it, and these by name.
struct FolderScan
{
    std::vector<ScannedFolder> folders;
    // The file system of the root; 0 when it was not looked at or is not there.
    quint64 rootDevice = 0;
    // Some folder is listed and not watched.
    bool isWatchMissing = false;
};

} // namespace cvtamber
