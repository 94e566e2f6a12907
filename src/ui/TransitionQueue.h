// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"

#include <deque>
#include <functional>
#include <memory>

namespace cvtamber {

// Transitions between screens, one after the other: what is asked for while one runs waits its turn and is not lost.
//
// Idle -> add() starts it inside the call -> running -> its Done is called -> the next one starts, inside that call.
// Thread: main thread. Owner: the presenter.
class TransitionQueue
{
public:
    // Says that the transition is over, its completion included; further calls do nothing.
    using Done = std::function<void()>;
    using Transition = std::function<void(const Done &done)>;

    // The loop outlives the queue.
    explicit TransitionQueue(RunLoop &runLoop);

    void add(Transition transition);
    // For a transition that has nothing to show: the callback runs from the loop. One at a time.
    void later(std::function<void()> callback);
    bool isRunning() const { return _running != nullptr; }
    // The screen is about to change again.
    bool hasWaiting() const { return !_waiting.empty(); }

private:
    void startNext();

    std::deque<Transition> _waiting;
    // Held while a transition runs; its Done does nothing once this is gone.
    std::shared_ptr<char> _running;
    DelayedCall _later;
};

} // namespace cvtamber
