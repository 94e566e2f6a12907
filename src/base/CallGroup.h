// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"

#include <memory>
#include <set>
#include <utility>

namespace cvtamber {

// Delayed calls that end together: cancelled at once, or with the group. A call may destroy the group. Main thread;
// the loop outlives the group.
class CallGroup
{
public:
    explicit CallGroup(RunLoop &runLoop)
        : _runLoop(runLoop)
    {}
    CallGroup(const CallGroup &) = delete;
    CallGroup &operator=(const CallGroup &) = delete;
    ~CallGroup() { cancelAll(); }

    RunLoop::CallId perform(std::chrono::nanoseconds delay, RunLoop::Callback callback)
    {
        // The id is known only after the call was asked for.
        const auto id = std::make_shared<RunLoop::CallId>();
        *id = _runLoop.performAfter(delay, [this, id, callback = std::move(callback)] {
            _ids.erase(*id);
            // A copy on the stack: the callback may destroy the group and with it the loop's copy.
            const auto call = callback;
            call();
        });
        _ids.insert(*id);
        return *id;
    }

    // Nothing for one that has run.
    void cancel(RunLoop::CallId id)
    {
        if (_ids.erase(id) > 0)
            _runLoop.cancel(id);
    }

    void cancelAll()
    {
        for (const auto id : std::exchange(_ids, {}))
            _runLoop.cancel(id);
    }

private:
    RunLoop &_runLoop;
    std::set<RunLoop::CallId> _ids;
};

} // namespace cvtamber
