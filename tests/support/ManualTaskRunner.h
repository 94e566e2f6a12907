// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"
#include "base/TaskRunner.h"

#include <deque>
#include <utility>

namespace cvtamber {

// A background pool whose tasks run on the main thread, when the test says and in the order that it chooses.
// Completions come through the run loop.
class ManualTaskRunner final : public TaskRunner
{
public:
    explicit ManualTaskRunner(RunLoop &runLoop)
        : _runLoop(runLoop)
    {}

    void run(Task work, Task completion) override
    {
        _waiting.push_back({std::move(work), std::move(completion)});
    }

    // Tasks accepted and not run, the oldest at 0.
    size_t waiting() const { return _waiting.size(); }

    void runTask(size_t index = 0)
    {
        Job job = std::move(_waiting[index]);
        _waiting.erase(_waiting.begin() + static_cast<std::ptrdiff_t>(index));
        job.work();
        if (job.completion)
            _runLoop.performAfter({}, std::move(job.completion));
    }

    // In the order of coming; what they ask for too.
    void runAll()
    {
        while (!_waiting.empty())
            runTask();
    }

private:
    struct Job
    {
        Task work;
        Task completion;
    };

    RunLoop &_runLoop;
    std::deque<Job> _waiting;
};

} // namespace cvtamber
