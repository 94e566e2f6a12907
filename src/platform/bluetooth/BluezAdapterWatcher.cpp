// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/BluezAdapterWatcher.h"

#include "platform/bluetooth/BluezNames.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QMetaObject>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

using Service = BluezAvailability::Service;

// A daemon that takes longer for its list of objects is as good as none.
constexpr int answerTimeoutMilliseconds = 5000;

QString adapterInterface()
{
    return u"org.bluez.Adapter1"_s;
}

Service serviceFor(const QDBusError &error)
{
    switch (error.type()) {
    case QDBusError::AccessDenied:
        return Service::Denied;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return Service::NotAnswering;
    case QDBusError::Disconnected:
        return Service::NoBus;
    default:
        return Service::NotRunning;
    }
}

BluezAvailability availabilityOf(const ManagedObjects &objects)
{
    BluezAvailability availability;
    availability.service = Service::Running;
    for (const Interfaces &interfaces : objects) {
        const QVariantMap adapter = interfaces.value(adapterInterface());
        if (adapter.value(u"Address"_s).toString().isEmpty())
            continue;
        availability.hasAdapter = true;
        availability.isPowered = adapter.value(u"Powered"_s).toBool();
        availability.isBlocked = adapter.value(u"PowerState"_s).toString() == u"off-blocked"_s;
        break;
    }
    return availability;
}

} // namespace

BluezAdapterWatcher::BluezAdapterWatcher()
    : _bus(QDBusConnection::systemBus())
    , _serviceWatcher(bluezDaemon(), _bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&_serviceWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) { ownerChanged(newOwner); });
    const QString any;
    _bus.connect(bluezDaemon(), any, objectManagerInterface(), u"InterfacesAdded"_s, this,
                 SLOT(interfacesAdded(QDBusMessage)));
    _bus.connect(bluezDaemon(), any, objectManagerInterface(), u"InterfacesRemoved"_s, this,
                 SLOT(interfacesRemoved(QDBusMessage)));
    _bus.connect(bluezDaemon(), any, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s,
                 {adapterInterface()}, QString(), this, SLOT(propertiesChanged(QDBusMessage)));
    QMetaObject::invokeMethod(
        this, [this] { ask(); }, Qt::QueuedConnection);
}

void BluezAdapterWatcher::ownerChanged(const QString &newOwner)
{
    // Also when another daemon takes over at once: what the old one kept is gone.
    ++_question;
    BluezAvailability gone;
    gone.service = Service::NotRunning;
    update(gone);
    if (!newOwner.isEmpty())
        ask();
}

void BluezAdapterWatcher::interfacesAdded(const QDBusMessage &message)
{
    // Each device that is found comes this way too.
    const auto interfaces = qdbus_cast<Interfaces>(message.arguments().value(1));
    if (interfaces.contains(adapterInterface()))
        ask();
}

void BluezAdapterWatcher::interfacesRemoved(const QDBusMessage &message)
{
    if (message.arguments().value(1).toStringList().contains(adapterInterface()))
        ask();
}

void BluezAdapterWatcher::propertiesChanged(const QDBusMessage &message)
{
    const auto changed = qdbus_cast<QVariantMap>(message.arguments().value(1));
    if (changed.contains(u"Powered"_s) || changed.contains(u"PowerState"_s))
        ask();
}

void BluezAdapterWatcher::ask()
{
    // Qt makes its connection once a process, and calls over one that failed get no answer.
    if (!_bus.isConnected()) {
        BluezAvailability availability;
        availability.service = Service::NoBus;
        update(availability);
        return;
    }
    auto message = QDBusMessage::createMethodCall(bluezDaemon(), u"/"_s, objectManagerInterface(),
                                                  u"GetManagedObjects"_s);
    // Where the daemon is installed but cannot run, having it started takes 25 seconds to fail.
    message.setAutoStartService(false);
    auto *watcher = new QDBusPendingCallWatcher(_bus.asyncCall(message, answerTimeoutMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, question = ++_question] {
        watcher->deleteLater();
        if (question == _question)
            answered(*watcher);
    });
}

void BluezAdapterWatcher::answered(const QDBusPendingCall &call)
{
    if (!call.isError()) {
        update(availabilityOf(qdbus_cast<ManagedObjects>(call.reply().arguments().value(0))));
        return;
    }
    BluezAvailability availability;
    availability.service = serviceFor(call.error());
    update(availability);
    // It may only be slow; each question takes its time, so this is no busy loop.
    if (availability.service == Service::NotAnswering)
        ask();
}

void BluezAdapterWatcher::update(const BluezAvailability &availability)
{
    if (availability == _availability)
        return;
    _availability = availability;
    if (_changed)
        _changed();
}

} // namespace cvtamber
