// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"

#include <QElapsedTimer>
#include <QTimer>

#include <map>
#include <utility>

namespace cvtamber {

// The run loop of a program: calls run from the Qt event loop of the thread that made it.
//
// A call never runs before its time; Qt's timers count milliseconds, so it may run up to one late. Needs a
// QCoreApplication. Owner: main().
class EventRunLoop final : public RunLoop
{
public:
    EventRunLoop();

    CallId performAfter(std::chrono::nanoseconds delay, Callback callback) override;
    void cancel(CallId id) override;
    std::chrono::nanoseconds now() const override;

private:
    // Due time first, then the order of asking.
    using Key = std::pair<std::chrono::nanoseconds, CallId>;

    void arm();
    void runDueCalls();

    QElapsedTimer _clock;
    QTimer _timer;
    quint64 _lastId = 0;
    std::map<Key, Callback> _calls;
    std::map<CallId, std::chrono::nanoseconds> _dueTimes;
};

} // namespace cvtamber
