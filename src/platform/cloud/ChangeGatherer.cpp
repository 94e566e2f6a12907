// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/ChangeGatherer.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

void FolderChanges::add(const FileURL &url, bool isDeep)
{
    Folder &folder = folders[url.path()];
    folder.url = url;
    folder.isDeep = folder.isDeep || isDeep;
}

void FolderChanges::add(const FolderChanges &others)
{
    everything = everything || others.everything;
    isQuiet = isQuiet && others.isQuiet;
    for (const auto &[path, folder] : others.folders)
        add(folder.url, folder.isDeep);
}

ChangeGatherer::ChangeGatherer(RunLoop &runLoop, Handler handler)
    : _runLoop(runLoop)
    , _handler(std::move(handler))
    , _wait(runLoop)
{}

void ChangeGatherer::changed(const FileURL &folder)
{
    _changes.add(folder, false);
    startWaiting();
}

void ChangeGatherer::appeared(const FileURL &folder)
{
    _changes.add(folder, true);
    startWaiting();
}

void ChangeGatherer::everythingChanged()
{
    _changes.everything = true;
    startWaiting();
}

void ChangeGatherer::clear()
{
    _changes = {};
    _wait.cancel();
}

void ChangeGatherer::startWaiting()
{
    _last = _runLoop.now();
    if (_wait.isActive())
        return;
    _first = _last;
    _wait.start(Quiet, [this] { waitOrHandOver(); });
}

void ChangeGatherer::waitOrHandOver()
{
    const auto now = _runLoop.now();
    const auto end = std::min<std::chrono::nanoseconds>(_last + Quiet, _first + Longest);
    if (now < end) {
        _wait.start(end - now, [this] { waitOrHandOver(); });
        return;
    }
    FolderChanges changes = std::exchange(_changes, {});
    changes.isQuiet = !changes.everything && now >= _last + Quiet;
    _handler(changes);
}

} // namespace cvtamber
