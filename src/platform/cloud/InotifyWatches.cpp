// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/InotifyWatches.h"

#include "base/PathBytes.h"

#include <cerrno>

#include <sys/inotify.h>
#include <unistd.h>

namespace cvtamber {

namespace {

constexpr uint32_t Mask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY | IN_CLOSE_WRITE |
                          IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW |
                          IN_EXCL_UNLINK;

} // namespace

InotifyWatches::InotifyWatches()
    : _descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{}

InotifyWatches::~InotifyWatches()
{
    if (_descriptor >= 0)
        ::close(_descriptor);
}

FileURL InotifyWatches::folderOf(int watch) const
{
    const std::lock_guard lock(_mutex);
    const auto found = _folders.find(watch);
    return found == _folders.end() ? FileURL() : found->second;
}

void InotifyWatches::forget(int watch)
{
    const std::lock_guard lock(_mutex);
    const auto found = _folders.find(watch);
    if (found == _folders.end())
        return;
    _watches.erase(found->second);
    _folders.erase(found);
}

FolderWatches::Result InotifyWatches::add(const FileURL &folder)
{
    if (_descriptor < 0)
        return Result::LimitReached;
    const QByteArray path = bytesOfPath(folder.path());
    // Outside the lock, since a slow file system may take its time. An event that comes before the watch is
    // noted below is lost, which does no harm: who adds a folder lists it afterwards.
    const int watch = path.isEmpty() ? -1 : ::inotify_add_watch(_descriptor, path.constData(), Mask);
    const bool isLimit = watch < 0 && !path.isEmpty() && (errno == ENOSPC || errno == ENOMEM);

    const std::lock_guard lock(_mutex);
    const auto former = _watches.find(folder);
    if (former != _watches.end() && former->second == watch)
        return Result::Watched;
    endWatchOf(folder);
    if (watch < 0)
        return isLimit ? Result::LimitReached : Result::Failed;
    // A folder that was moved keeps its watch under the new path.
    if (const auto moved = _folders.find(watch); moved != _folders.end())
        _watches.erase(moved->second);
    _folders[watch] = folder;
    _watches[folder] = watch;
    return Result::Watched;
}

void InotifyWatches::remove(const FileURL &folder)
{
    const std::lock_guard lock(_mutex);
    endWatchOf(folder);
}

void InotifyWatches::endWatchOf(const FileURL &folder)
{
    const auto found = _watches.find(folder);
    if (found == _watches.end())
        return;
    ::inotify_rm_watch(_descriptor, found->second);
    _folders.erase(found->second);
    _watches.erase(found);
}

} // namespace cvtamber
