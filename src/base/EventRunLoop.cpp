// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/EventRunLoop.h"

#include <algorithm>

namespace cvtamber {

EventRunLoop::EventRunLoop()
{
    _clock.start();
    _timer.setSingleShot(true);
    _timer.setTimerType(Qt::PreciseTimer);
    _timer.callOnTimeout([this] { runDueCalls(); });
}

RunLoop::CallId EventRunLoop::performAfter(std::chrono::nanoseconds delay, Callback callback)
{
    const auto start = now();
    const auto longest = std::chrono::nanoseconds::max() - start;
    const auto due = start + std::clamp(delay, std::chrono::nanoseconds{0}, longest);
    const auto id = CallId{++_lastId};
    const auto added = _calls.emplace(Key{due, id}, std::move(callback)).first;
    _dueTimes.emplace(id, due);
    if (added == _calls.begin())
        arm();
    return id;
}

void EventRunLoop::cancel(CallId id)
{
    const auto found = _dueTimes.find(id);
    if (found == _dueTimes.end())
        return;
    // The timer stays as it is: firing with nothing due only arms it again.
    _calls.erase(Key{found->second, id});
    _dueTimes.erase(found);
}

std::chrono::nanoseconds EventRunLoop::now() const
{
    return std::chrono::nanoseconds{_clock.nsecsElapsed()};
}

void EventRunLoop::arm()
{
    using namespace std::chrono;
    if (_calls.empty()) {
        _timer.stop();
        return;
    }
    // QTimer counts in int milliseconds, so a far call is reached in steps of a day.
    const auto wait = std::clamp<nanoseconds>(_calls.begin()->first.first - now(), 0ns, 24h);
    _timer.start(ceil<milliseconds>(wait));
}

void EventRunLoop::runDueCalls()
{
    // What the calls themselves ask for waits for the next turn, so that a chain of immediate calls cannot
    // keep the event loop from its other work.
    const auto limit = Key{now(), CallId{_lastId}};
    while (!_calls.empty() && _calls.begin()->first <= limit) {
        auto node = _calls.extract(_calls.begin());
        _dueTimes.erase(node.key().second);
        // Armed first: the call may run an event loop of its own.
        arm();
        node.mapped()();
    }
    arm();
}

} // namespace cvtamber
