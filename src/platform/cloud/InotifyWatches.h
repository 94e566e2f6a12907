// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/FolderWatches.h"

#include <mutex>
#include <unordered_map>

namespace cvtamber {

// One inotify instance and what it watches. Without an instance (the system has too many) nothing can be
// watched, which is the same as having reached the limit.
class InotifyWatches final : public FolderWatches
{
public:
    InotifyWatches();
    ~InotifyWatches() override;

    // -1 when there is none. It delivers events and never blocks.
    int descriptor() const { return _descriptor; }
    // Nil for a watch that has ended.
    FileURL folderOf(int watch) const;
    // The system has ended the watch.
    void forget(int watch);

    Result add(const FileURL &folder) override;
    void remove(const FileURL &folder) override;

private:
    void endWatchOf(const FileURL &folder);

    const int _descriptor;
    mutable std::mutex _mutex;
    std::unordered_map<int, FileURL> _folders;
    std::unordered_map<FileURL, int> _watches;
};

} // namespace cvtamber
