// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace cvtamber {

// The background pool.
//
// run() is called on the main thread. The work runs once, later, on a thread of the pool, and several at the
// same time; what has been accepted is also done when the program ends. The completion then runs once on the
// main thread, from the loop and never from inside run(); it does not run when the runner has gone by then.
// Work that must be ordered is ordered by whoever asks for it. Owner: made at start-up, outlives its users.
class TaskRunner
{
public:
    using Task = std::function<void()>;

    TaskRunner() = default;
    TaskRunner(const TaskRunner &) = delete;
    TaskRunner &operator=(const TaskRunner &) = delete;
    virtual ~TaskRunner() = default;

    virtual void run(Task work, Task completion) = 0;
};

} // namespace cvtamber
