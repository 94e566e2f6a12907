// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"

#include <functional>
#include <map>
#include <utility>

namespace cvtamber {

// A run loop whose time moves only when it is told.
class ManualRunLoop final : public RunLoop
{
public:
    CallId performAfter(std::chrono::nanoseconds delay, Callback callback) override
    {
        const auto id = CallId{++_lastId};
        const auto due = _now + (delay.count() > 0 ? delay : std::chrono::nanoseconds{0});
        _calls.emplace(Key{due, id}, std::move(callback));
        _dueTimes.emplace(id, due);
        return id;
    }

    void cancel(CallId id) override
    {
        const auto found = _dueTimes.find(id);
        if (found == _dueTimes.end())
            return;
        _calls.erase(Key{found->second, id});
        _dueTimes.erase(found);
    }

    std::chrono::nanoseconds now() const override { return _now; }

    // Runs what falls due within the time given, each call at its own instant, and leaves the clock at the
    // end.
    void advance(std::chrono::nanoseconds time)
    {
        const auto end = _now + time;
        while (!_calls.empty() && _calls.begin()->first.first <= end)
            runNext();
        _now = end;
    }

    // Moves time from call to call until the condition holds; false when the limit or the last call comes
    // first.
    bool advanceUntil(const std::function<bool()> &condition, std::chrono::nanoseconds limit)
    {
        const auto end = _now + limit;
        while (!condition()) {
            if (_calls.empty() || _calls.begin()->first.first > end)
                return false;
            runNext();
        }
        return true;
    }

    // How many calls are waiting: nothing may be left behind when everything is over.
    size_t pendingCalls() const { return _calls.size(); }

private:
    using Key = std::pair<std::chrono::nanoseconds, CallId>;

    void runNext()
    {
        auto node = _calls.extract(_calls.begin());
        _now = node.key().first;
        _dueTimes.erase(node.key().second);
        node.mapped()();
    }

    std::chrono::nanoseconds _now{0};
    quint64 _lastId = 0;
    std::map<Key, Callback> _calls;
    std::map<CallId, std::chrono::nanoseconds> _dueTimes;
};

} // namespace cvtamber
