// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/TaskRunner.h"

#include <QThreadPool>

#include <deque>
#include <memory>
#include <mutex>

namespace cvtamber {

// The background pool of a program.
//
// Made on the main thread, whose event loop runs the completions; both tasks are destroyed there too. The
// destructor waits until the work that was accepted is done; completions that have not run by then never do.
// Needs a QCoreApplication. Owner: main(); what the work uses outlives it.
class ThreadPoolTaskRunner final : public TaskRunner
{
public:
    ThreadPoolTaskRunner();
    ~ThreadPoolTaskRunner() override;

    void run(Task work, Task completion) override;

private:
    struct Job
    {
        Task work;
        Task completion;
    };
    // Lives on the main thread: each event that it gets is one job whose work is done. They go with it.
    class Finisher;

    void workOnNext();
    void completeNext();

    std::unique_ptr<Finisher> _finisher;
    // The jobs change threads under this lock alone, so that a sanitizer can follow them.
    std::mutex _mutex;
    std::deque<Job> _waiting;
    std::deque<Task> _completions;
    QThreadPool _pool;
};

} // namespace cvtamber
