// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/DelayedCall.h"

#include <utility>

namespace cvtamber {

DelayedCall::DelayedCall(RunLoop &runLoop)
    : _runLoop(runLoop)
{}

DelayedCall::~DelayedCall()
{
    cancel();
}

void DelayedCall::start(std::chrono::nanoseconds delay, RunLoop::Callback callback)
{
    cancel();
    _id = _runLoop.performAfter(delay, [this, callback = std::move(callback)] {
        _id = RunLoop::CallId::None;
        // A copy on the stack: the callback may destroy this object and with it the loop's copy.
        const auto call = callback;
        call();
    });
}

void DelayedCall::cancel()
{
    if (_id == RunLoop::CallId::None)
        return;
    _runLoop.cancel(std::exchange(_id, RunLoop::CallId::None));
}

} // namespace cvtamber
