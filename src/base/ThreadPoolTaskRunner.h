// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/TaskRunner.h"

#include <QObject>
#include <QThreadPool>

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
    // Where the completions are posted to; they go with it.
    QObject _mainThread;
    QThreadPool _pool;
};

} // namespace cvtamber
