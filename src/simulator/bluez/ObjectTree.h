// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/SystemLog.h"
#include "simulator/bluez/BusObject.h"

#include <QDBusVirtualObject>

#include <map>

namespace cvtamber {

// The objects that clients see, from "/" down: passes calls on to them, answers for their properties and
// descriptions, and tells of what comes, changes and goes.
//
// Objects belong to whoever adds them and are removed before they are destroyed; a method must not destroy
// its own object while it runs. Messages go out in the order in which they are sent. Main thread.
class ObjectTree final : public QDBusVirtualObject
{
public:
    ObjectTree(SystemLog &log, const BusCall::Send &send);
    ~ObjectTree() override;

    void add(const BusObject &object);
    void remove(const BusObject &object);
    bool contains(const BusObject &object) const;
    // Tells the current values of the properties; those that are not there are told as gone.
    void tellChanged(const BusObject &object, const QString &interface, const QStringList &properties);

    // Every call is refused as on a machine where this person may not speak to the daemon.
    void setDenied(bool denied) { _denied = denied; }
    // Hears of every client that calls.
    void setClientSeen(const std::function<void(const QString &client)> &seen) { _clientSeen = seen; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    QString introspect(const QString &path) const override;

private:
    void callObject(const BusObject &object, const BusCall &call) const;
    void callStandard(const BusObject *object, const BusCall &call) const;
    void callProperties(const BusObject &object, const BusCall &call) const;
    void setProperty(const BusProperty &property, const BusCall &call) const;
    QVariant managedObjects() const;
    QStringList childrenOf(const QString &path) const;

    SystemLog &_log;
    BusCall::Send _send;
    std::function<void(const QString &)> _clientSeen;
    bool _denied = false;
    std::map<QString, const BusObject *> _objects;
};

} // namespace cvtamber
