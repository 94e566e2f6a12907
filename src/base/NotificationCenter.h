// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>
#include <map>

namespace cvtamber {

struct Notification
{
    QString name;
    // Who posts it; compared, never used.
    const void *object = nullptr;
    QVariantMap userInfo;
};

// Notifications by name: whoever posts one does not know who listens.
//
// Observers are called during post(), in the order in which they were added; an observer may add and remove
// observers, itself too: one that was removed is not called any more, one that was added hears the next post.
// Thread: main thread. Owner: made at start-up, outlives observers and posters.
class NotificationCenter
{
public:
    enum class ObserverId : quint64 { None = 0 };
    using Observer = std::function<void(const Notification &)>;

    // With an object, only what that object posts is heard.
    ObserverId addObserver(const QString &name, Observer observer, const void *object = nullptr);
    // An id that is None or was removed is ignored.
    void removeObserver(ObserverId id);
    void post(const Notification &notification);

private:
    struct Entry
    {
        QString name;
        const void *object;
        Observer observer;
    };

    quint64 _lastId = 0;
    std::map<ObserverId, Entry> _entries;
};

} // namespace cvtamber
