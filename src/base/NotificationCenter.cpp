// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NotificationCenter.h"

#include <utility>
#include <vector>

namespace cvtamber {

NotificationCenter::ObserverId NotificationCenter::addObserver(const QString &name, Observer observer,
                                                               const void *object)
{
    const auto id = ObserverId{++_lastId};
    _entries.emplace(id, Entry{name, object, std::move(observer)});
    return id;
}

void NotificationCenter::removeObserver(ObserverId id)
{
    _entries.erase(id);
}

void NotificationCenter::post(const Notification &notification)
{
    std::vector<ObserverId> listeners;
    for (const auto &[id, entry] : _entries) {
        if (entry.name == notification.name && (!entry.object || entry.object == notification.object))
            listeners.push_back(id);
    }
    for (const ObserverId id : listeners) {
        const auto found = _entries.find(id);
        if (found == _entries.end())
            continue;
        // A copy: the observer may remove itself while it runs.
        const Observer observer = found->second.observer;
        observer(notification);
    }
}

} // namespace cvtamber
