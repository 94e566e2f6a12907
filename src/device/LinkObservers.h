// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/LinkObserver.h"

#include <vector>

namespace cvtamber {

// The link observers of one device object; adding and removing inside a call is allowed.
class LinkObservers
{
public:
    void add(LinkObserver &observer);
    void remove(LinkObserver &observer);

    template<typename... Parameters, typename... Arguments>
    void tell(void (LinkObserver::*message)(Parameters...), const Arguments &...arguments)
    {
        // A copy: the list may change in a call. Who was removed meanwhile may be gone and is not called.
        const std::vector<LinkObserver *> observers = _observers;
        for (LinkObserver *observer : observers) {
            if (contains(*observer))
                (observer->*message)(arguments...);
        }
    }

private:
    bool contains(const LinkObserver &observer) const;

    std::vector<LinkObserver *> _observers;
};

} // namespace cvtamber
