// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "platform/cloud/FolderWatcher.h"

namespace cvtamber {

// For systems that report no changes, and for when they report no more: all is looked through again some time
// after the last look ended. The dates of folders cannot narrow that, since an edit in place leaves them.
class PollingWatcher final : public FolderWatcher
{
public:
    // A person who waits for a document bears it, and a large tree on a slow disk is not read all the time.
    static constexpr std::chrono::seconds Interval{5};

    PollingWatcher(RunLoop &runLoop, Handlers handlers);

    std::shared_ptr<FolderWatches> watches() override { return _watches; }
    void caughtUp() override;

private:
    Handlers _handlers;
    std::shared_ptr<FolderWatches> _watches;
    DelayedCall _next;
};

} // namespace cvtamber
