// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/LinkObservers.h"

#include <algorithm>

namespace cvtamber {

void LinkObservers::add(LinkObserver &observer)
{
    if (!contains(observer))
        _observers.push_back(&observer);
}

void LinkObservers::remove(LinkObserver &observer)
{
    std::erase(_observers, &observer);
}

bool LinkObservers::contains(const LinkObserver &observer) const
{
    return std::find(_observers.begin(), _observers.end(), &observer) != _observers.end();
}

} // namespace cvtamber
