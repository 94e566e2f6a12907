// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "platform/cloud/ChangeGatherer.h"
#include "platform/cloud/FolderTree.h"
#include "platform/cloud/FolderWatcher.h"

#include <memory>
#include <unordered_set>

namespace cvtamber {

class FileOperations;
class FolderScanner;
class SystemLog;
class TaskRunner;
struct ScanRequest;

// Follows the documents below one directory: looks at all of them once, and then wherever something changes.
//
// Folders are listed in the background, one request at a time, and compared with what is known on the main
// thread. A folder that cannot be read is tried again every few seconds. Where folders cannot be watched any
// more, all is looked through every few seconds; it does not go back to watching.
// The listener hears of each look that was taken, from the loop, and may drop the follower meanwhile.
// Thread: main thread. Owner: shared, held by one query.
class FolderFollower : public std::enable_shared_from_this<FolderFollower>
{
public:
    static constexpr std::chrono::seconds RetryInterval{5};
    // A folder that cannot be read holds up the first whole listing no longer than so many tries more.
    static constexpr int MostRetries = 2;

    struct Surroundings
    {
        RunLoop &runLoop;
        TaskRunner &tasks;
        FileOperations &operations;
        SystemLog &log;
        FolderWatcher::Factory makeWatcher;
    };
    using Listener = std::function<void(const FolderTree::Change &change)>;

    // Goes on from what the tree knows, and keeps it up to date.
    FolderFollower(const Surroundings &surroundings, std::shared_ptr<FolderTree> tree, const QString &filter,
                   Listener listener);
    FolderFollower(const FolderFollower &) = delete;
    FolderFollower &operator=(const FolderFollower &) = delete;
    ~FolderFollower();

    void start();
    // While it is held, the listener hears nothing; what was seen meanwhile it hears after that.
    void setHeld(bool isHeld);
    // All is known that can be: the root has been read, and each folder below has been or was tried often.
    bool isWhole() const;

private:
    FolderWatcher::Handlers watcherHandlers();
    void noteChanges(const FolderChanges &changes);
    void lookIfIdle();
    ScanRequest takePending();
    void lookDone();
    void applyLook();
    void noteUnread(const FolderTree::Change &change);
    void readAgain();
    void pollFromNowOn();

    const Surroundings _surroundings;
    const FileURL _root;
    const QString _filter;
    Listener _listener;
    bool _isHeld = false;
    const std::shared_ptr<FolderTree> _tree;
    std::unique_ptr<FolderWatcher> _watcher;
    bool _isPolling = false;
    ChangeGatherer _gatherer;
    FolderChanges _pending;
    // Under way, or done and not applied.
    std::shared_ptr<FolderScanner> _scanner;
    bool _isLookCalm = true;
    bool _isLookDone = false;
    bool _isRootRead = false;
    // Folders that could not be read when they were looked at last.
    std::unordered_set<FileURL> _unread;
    int _retries = 0;
    DelayedCall _retry;
    DelayedCall _applyLater;
};

} // namespace cvtamber
