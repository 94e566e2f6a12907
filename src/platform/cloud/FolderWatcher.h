// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/FolderWatches.h"

#include <functional>
#include <memory>

namespace cvtamber {

class RunLoop;

// Says in which folders something changed, or that everything has to be looked through.
//
// Reports come from the loop; a handler must not destroy the watcher. Thread: main thread. Owner: a query.
class FolderWatcher
{
public:
    struct Handlers
    {
        // Something directly in this folder, or the folder itself.
        std::function<void(const FileURL &folder)> changed;
        // Another folder than before has this path: all below it is new.
        std::function<void(const FileURL &folder)> appeared;
        // Reports were lost, or there are none.
        std::function<void()> everythingChanged;
    };
    using Factory = std::function<std::unique_ptr<FolderWatcher>(Handlers)>;

    FolderWatcher() = default;
    FolderWatcher(const FolderWatcher &) = delete;
    FolderWatcher &operator=(const FolderWatcher &) = delete;
    virtual ~FolderWatcher() = default;

    virtual std::shared_ptr<FolderWatches> watches() = 0;
    // All that was reported has been looked at.
    virtual void caughtUp() {}

    // The best one that this system has: its own reports, else polling.
    static Factory bestFactory(RunLoop &runLoop);
};

} // namespace cvtamber
