// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"

namespace cvtamber {

// One delayed call at a time: starting it again replaces the earlier one, destroying it cancels.
// The callback may start or cancel the same DelayedCall, or destroy it.
class DelayedCall
{
public:
    explicit DelayedCall(RunLoop &runLoop);
    DelayedCall(const DelayedCall &) = delete;
    DelayedCall &operator=(const DelayedCall &) = delete;
    ~DelayedCall();

    void start(std::chrono::nanoseconds delay, RunLoop::Callback callback);
    void cancel();
    bool isActive() const { return _id != RunLoop::CallId::None; }

private:
    RunLoop &_runLoop;
    RunLoop::CallId _id = RunLoop::CallId::None;
};

} // namespace cvtamber
