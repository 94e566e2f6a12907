// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/FolderFollower.h"

#include "base/SystemLog.h"
#include "base/TaskRunner.h"
#include "platform/cloud/FolderScanner.h"
#include "platform/cloud/PollingWatcher.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

FolderFollower::FolderFollower(const Surroundings &surroundings, std::shared_ptr<FolderTree> tree,
                               const QString &filter, Listener listener)
    : _surroundings(surroundings)
    , _root(tree->root())
    , _filter(filter)
    , _listener(std::move(listener))
    , _tree(std::move(tree))
    , _gatherer(surroundings.runLoop, [this](const FolderChanges &changes) { noteChanges(changes); })
    , _retry(surroundings.runLoop)
    , _applyLater(surroundings.runLoop)
{}

FolderFollower::~FolderFollower()
{
    if (_scanner)
        _scanner->cancel();
}

void FolderFollower::start()
{
    _watcher = _surroundings.makeWatcher(watcherHandlers());
    _pending.everything = true;
    lookIfIdle();
}

void FolderFollower::setHeld(bool isHeld)
{
    _isHeld = isHeld;
    if (_isLookDone && !_isHeld)
        _applyLater.start({}, [this] { lookDone(); });
}

bool FolderFollower::isWhole() const
{
    return _isRootRead && (_unread.empty() || _retries >= MostRetries);
}

FolderWatcher::Handlers FolderFollower::watcherHandlers()
{
    return {[this](const FileURL &folder) { _gatherer.changed(folder); },
            [this](const FileURL &folder) { _gatherer.appeared(folder); },
            [this] { _gatherer.everythingChanged(); }};
}

void FolderFollower::noteChanges(const FolderChanges &changes)
{
    _pending.add(changes);
    lookIfIdle();
}

void FolderFollower::lookIfIdle()
{
    if (_scanner || _pending.isEmpty())
        return;
    _isLookCalm = _pending.isQuiet;
    ScanRequest request = takePending();
    if (request.folders.empty())
        return;
    _scanner =
        std::make_shared<FolderScanner>(_surroundings.operations, _watcher->watches(), std::move(request));
    _surroundings.tasks.run([scanner = _scanner] { scanner->run(); },
                            [weakSelf = weak_from_this()] {
                                const auto self = weakSelf.lock();
                                if (!self)
                                    return;
                                self->_isLookDone = true;
                                self->lookDone();
                            });
}

ScanRequest FolderFollower::takePending()
{
    const FolderChanges changes = std::exchange(_pending, {});
    ScanRequest request{_root, _filter, {}};
    if (changes.everything) {
        request.folders.push_back({_root, {}});
        return request;
    }
    for (const auto &[path, folder] : changes.folders) {
        // One that is not known comes with the folder that holds it, which has changed too.
        if (_tree->contains(folder.url))
            request.folders.push_back(
                {folder.url, folder.isDeep ? QStringList() : _tree->foldersIn(folder.url)});
    }
    return request;
}

void FolderFollower::lookDone()
{
    if (_isHeld || !_isLookDone)
        return;
    // The listener may drop this.
    const auto self = shared_from_this();
    applyLook();
}

void FolderFollower::applyLook()
{
    const auto scanner = std::exchange(_scanner, nullptr);
    _isLookDone = false;
    const FolderTree::Change change = _tree->apply(scanner->result(), _isLookCalm);
    for (const FileURL &folder : change.leftFolders)
        _watcher->watches()->remove(folder);
    if (scanner->result().isWatchMissing && !_isPolling)
        pollFromNowOn();
    noteUnread(change);
    for (const FileURL &folder : change.unclear)
        _gatherer.changed(folder);
    lookIfIdle();
    if (!_scanner)
        _watcher->caughtUp();
    _listener(change);
}

void FolderFollower::noteUnread(const FolderTree::Change &change)
{
    for (const FileURL &folder : change.read)
        _unread.erase(folder);
    for (const FileURL &folder : change.leftFolders)
        _unread.erase(folder);
    _unread.insert(change.failed.begin(), change.failed.end());
    _isRootRead =
        _isRootRead || std::find(change.read.begin(), change.read.end(), _root) != change.read.end();
    if (_unread.empty())
        _retries = 0;
    else if (!_retry.isActive())
        _retry.start(RetryInterval, [this] { readAgain(); });
}

void FolderFollower::readAgain()
{
    ++_retries;
    // With all that lies below, since it may be another folder by now.
    for (const FileURL &folder : _unread)
        _gatherer.appeared(folder);
}

void FolderFollower::pollFromNowOn()
{
    _isPolling = true;
    _surroundings.log.info(
        QStringLiteral(
            "No more folders can be watched, so the cloud folder is looked through every %1 seconds")
            .arg(PollingWatcher::Interval.count()));
    _watcher = std::make_unique<PollingWatcher>(_surroundings.runLoop, watcherHandlers());
}

} // namespace cvtamber
