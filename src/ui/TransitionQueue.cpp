// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TransitionQueue.h"

#include <utility>

namespace cvtamber {

TransitionQueue::TransitionQueue(RunLoop &runLoop)
    : _later(runLoop)
{}

void TransitionQueue::add(Transition transition)
{
    _waiting.push_back(std::move(transition));
    startNext();
}

void TransitionQueue::later(std::function<void()> callback)
{
    _later.start(std::chrono::nanoseconds{0}, std::move(callback));
}

void TransitionQueue::startNext()
{
    if (_running || _waiting.empty())
        return;
    const auto next = std::move(_waiting.front());
    _waiting.pop_front();
    _running = std::make_shared<char>();
    next([this, running = std::weak_ptr(_running)] {
        if (running.expired())
            return;
        _running.reset();
        startNext();
    });
}

} // namespace cvtamber
