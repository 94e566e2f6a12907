// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>

namespace cvtamber {

// The main loop as everything that waits sees it: delayed calls and a monotonic clock.
//
// Thread: the main thread only. Owner: made once at start-up and handed to whoever waits; it outlives them
// all. A call runs once, from the loop and never from inside performAfter, also with a delay of zero. Calls
// that are due at the same instant run in the order in which they were asked for.
class RunLoop
{
public:
    enum class CallId : quint64 { None = 0 };
    using Callback = std::function<void()>;

    RunLoop() = default;
    RunLoop(const RunLoop &) = delete;
    RunLoop &operator=(const RunLoop &) = delete;
    virtual ~RunLoop() = default;

    virtual CallId performAfter(std::chrono::nanoseconds delay, Callback callback) = 0;
    // An id that has run, was cancelled or is None is ignored.
    virtual void cancel(CallId id) = 0;
    // Time since an arbitrary start; never goes back.
    virtual std::chrono::nanoseconds now() const = 0;
};

} // namespace cvtamber
