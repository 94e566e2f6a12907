// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

namespace cvtamber {

// Any number of observers of one object. They are not kept alive: each is removed before it goes. Adding and removing
// inside a call is allowed. Thread: the owner's.
template<typename Observer> class Observers
{
public:
    void add(Observer &observer)
    {
        if (!contains(observer))
            _observers.push_back(&observer);
    }
    void remove(Observer &observer) { std::erase(_observers, &observer); }

    template<typename Base, typename... Parameters, typename... Arguments>
    void tell(void (Base::*message)(Parameters...), const Arguments &...arguments) const
    {
        // A copy: the list may change in a call. An observer that was removed meanwhile may be gone and is not called.
        const std::vector<Observer *> observers = _observers;
        for (Observer *observer : observers) {
            if (contains(*observer))
                (observer->*message)(arguments...);
        }
    }

private:
    bool contains(const Observer &observer) const
    {
        return std::find(_observers.begin(), _observers.end(), &observer) != _observers.end();
    }

    std::vector<Observer *> _observers;
};

// A delegate, which is weak, and the observers that hear what it hears, after it.
template<typename Delegate> class Listeners
{
public:
    void setDelegate(std::weak_ptr<Delegate> delegate) { _delegate = std::move(delegate); }
    std::shared_ptr<Delegate> delegate() const { return _delegate.lock(); }
    Observers<Delegate> &observers() { return _observers; }
    const Observers<Delegate> &observers() const { return _observers; }

    template<typename... Parameters, typename... Arguments>
    void tell(void (Delegate::*message)(Parameters...), const Arguments &...arguments) const
    {
        if (const auto delegate = _delegate.lock())
            ((*delegate).*message)(arguments...);
        _observers.tell(message, arguments...);
    }

private:
    std::weak_ptr<Delegate> _delegate;
    Observers<Delegate> _observers;
};

} // namespace cvtamber
