// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/bluetooth/AdapterWatcher.h"
#include "platform/bluetooth/BluezAvailability.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

class QDBusMessage;
class QDBusPendingCall;

namespace cvtamber {

// Asks the Bluetooth daemon on the system bus, without ever waiting for it or having it started.
//
// Qt Bluetooth cannot be asked first: a process in which it once found no daemon never finds one again. The
// adapter is the one that Qt takes: the first by path that has an address.
class BluezAdapterWatcher final : public QObject, public AdapterWatcher
{
    Q_OBJECT

public:
    BluezAdapterWatcher();

    BluetoothCentral::State state() const override { return _availability.state(); }
    QString stateText() const override { return _availability.text(); }
    bool isServiceRunning() const override
    {
        return _availability.service == BluezAvailability::Service::Running;
    }
    void setChanged(const std::function<void()> &changed) override { _changed = changed; }

private slots:
    void interfacesAdded(const QDBusMessage &message);
    void interfacesRemoved(const QDBusMessage &message);
    void propertiesChanged(const QDBusMessage &message);

private:
    void ownerChanged(const QString &newOwner);
    void ask();
    void answered(const QDBusPendingCall &call);
    void update(const BluezAvailability &availability);

    QDBusConnection _bus;
    QDBusServiceWatcher _serviceWatcher;
    BluezAvailability _availability;
    quint64 _question = 0; // an answer to an earlier one is out of date
    std::function<void()> _changed;
};

} // namespace cvtamber
