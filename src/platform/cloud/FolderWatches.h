// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

namespace cvtamber {

// The folders that a watcher watches, each by itself and not what lies below it.
//
// Owner: shared by the watcher and by listings that run in the background. Any thread.
class FolderWatches
{
public:
    enum class Result {
        Watched,
        // It is not there, or cannot be watched.
        Failed,
        // The system lets this person watch no more folders.
        LimitReached,
    };

    FolderWatches() = default;
    FolderWatches(const FolderWatches &) = delete;
    FolderWatches &operator=(const FolderWatches &) = delete;
    virtual ~FolderWatches() = default;

    // What changes after this returns is reported. Watching a watched folder again is what finds out that
    // another folder has its path by now.
    virtual Result add(const FileURL &folder) = 0;
    virtual void remove(const FileURL &folder) = 0;
};

} // namespace cvtamber
