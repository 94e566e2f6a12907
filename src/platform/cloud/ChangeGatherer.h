// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "store/FileURL.h"

#include <map>

namespace cvtamber {

// Which folders have to be listed again.
struct FolderChanges
{
    struct Folder
    {
        FileURL url;
        // With all that lies below it, known or not.
        bool isDeep = false;
    };

    bool everything = false;
    // Nothing changed for a while before it was handed over, so nobody was in the middle of something.
    bool isQuiet = true;
    // By path, so a folder comes before those below it.
    std::map<QString, Folder> folders;

    bool isEmpty() const { return !everything && folders.empty(); }
    void add(const FileURL &url, bool isDeep);
    void add(const FolderChanges &others);
};

// Gathers changes until there is quiet, but not for ever, and then hands them over. Main thread.
class ChangeGatherer
{
public:
    // A sync program that replaces a file, or a person who copies a few, is done by then.
    static constexpr std::chrono::milliseconds Quiet{300};
    static constexpr std::chrono::milliseconds Longest{2000};

    using Handler = std::function<void(const FolderChanges &changes)>;

    ChangeGatherer(RunLoop &runLoop, Handler handler);

    void changed(const FileURL &folder);
    void appeared(const FileURL &folder);
    void everythingChanged();
    void clear();

private:
    void startWaiting();
    void waitOrHandOver();

    RunLoop &_runLoop;
    Handler _handler;
    FolderChanges _changes;
    std::chrono::nanoseconds _first{0};
    std::chrono::nanoseconds _last{0};
    DelayedCall _wait;
};

} // namespace cvtamber
