// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ThreadPoolTaskRunner.h"

#include <algorithm>
#include <memory>

namespace cvtamber {

ThreadPoolTaskRunner::ThreadPoolTaskRunner()
{
    // The work waits for the disk more than for a processor.
    _pool.setMaxThreadCount(std::clamp(QThread::idealThreadCount(), 4, 8));
}

ThreadPoolTaskRunner::~ThreadPoolTaskRunner()
{
    _pool.waitForDone();
}

void ThreadPoolTaskRunner::run(Task work, Task completion)
{
    struct Job
    {
        Task work;
        Task completion;
    };
    auto job = std::make_unique<Job>(Job{std::move(work), std::move(completion)});
    _pool.start([this, kept = std::shared_ptr<Job>(std::move(job))]() mutable {
        kept->work();
        // Moved, so that the last hold on it is given up on the main thread.
        QMetaObject::invokeMethod(
            &_mainThread,
            [moved = std::move(kept)] {
                if (moved->completion)
                    moved->completion();
            },
            Qt::QueuedConnection);
    });
}

} // namespace cvtamber
