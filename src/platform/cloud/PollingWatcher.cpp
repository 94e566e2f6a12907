// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/PollingWatcher.h"

namespace cvtamber {

namespace {

// Nothing is needed: every folder is looked at anyway.
class NoWatches final : public FolderWatches
{
public:
    Result add(const FileURL &) override { return Result::Watched; }
    void remove(const FileURL &) override {}
};

} // namespace

PollingWatcher::PollingWatcher(RunLoop &runLoop, Handlers handlers)
    : _handlers(std::move(handlers))
    , _watches(std::make_shared<NoWatches>())
    , _next(runLoop)
{}

void PollingWatcher::caughtUp()
{
    if (!_next.isActive())
        _next.start(Interval, [this] { _handlers.everythingChanged(); });
}

} // namespace cvtamber
