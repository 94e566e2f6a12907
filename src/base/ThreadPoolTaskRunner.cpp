// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ThreadPoolTaskRunner.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <utility>

namespace cvtamber {

class ThreadPoolTaskRunner::Finisher final : public QObject
{
public:
    explicit Finisher(ThreadPoolTaskRunner &runner)
        : _runner(runner)
    {}

    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        _runner.completeNext();
        return true;
    }

private:
    ThreadPoolTaskRunner &_runner;
};

ThreadPoolTaskRunner::ThreadPoolTaskRunner()
    : _finisher(std::make_unique<Finisher>(*this))
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
    {
        const std::scoped_lock lock(_mutex);
        _waiting.push_back({std::move(work), std::move(completion)});
    }
    _pool.start([this] { workOnNext(); });
}

void ThreadPoolTaskRunner::workOnNext()
{
    Job job;
    {
        const std::scoped_lock lock(_mutex);
        job = std::move(_waiting.front());
        _waiting.pop_front();
    }
    job.work();
    {
        // What the work holds is let go of on the main thread, which made it.
        const std::scoped_lock lock(_mutex);
        _completions.emplace_back([work = std::move(job.work), completion = std::move(job.completion)] {
            if (completion)
                completion();
        });
    }
    QCoreApplication::postEvent(_finisher.get(), new QEvent(QEvent::User));
}

void ThreadPoolTaskRunner::completeNext()
{
    Task completion;
    {
        const std::scoped_lock lock(_mutex);
        completion = std::move(_completions.front());
        _completions.pop_front();
    }
    completion();
}

} // namespace cvtamber
