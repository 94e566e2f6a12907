// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator_bluez/BusClient.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

const QString Daemon = u"org.bluez"_s;
const QString Properties = u"org.freedesktop.DBus.Properties"_s;

QDBusMessage callMessage(const QString &path, const QString &method, const QVariantList &arguments)
{
    const qsizetype dot = method.lastIndexOf(u'.');
    QDBusMessage message =
        QDBusMessage::createMethodCall(Daemon, path, method.left(dot), method.mid(dot + 1));
    message.setArguments(arguments);
    return message;
}

} // namespace

BusClient::BusClient(const QString &address)
    : _name(u"client-%1"_s.arg(reinterpret_cast<quintptr>(this)))
    , _connection(QDBusConnection::connectToBus(address, _name))
{
    qDBusRegisterMetaType<InterfaceValues>();
    qDBusRegisterMetaType<ManagedObjects>();
    for (const auto &[interface, member] :
         {std::pair(Properties, u"PropertiesChanged"_s),
          std::pair(u"org.freedesktop.DBus.ObjectManager"_s, u"InterfacesAdded"_s),
          std::pair(u"org.freedesktop.DBus.ObjectManager"_s, u"InterfacesRemoved"_s)})
        _connection.connect(Daemon, {}, interface, member, this, SLOT(hear(QDBusMessage)));
}

BusClient::~BusClient()
{
    // The connection closes with its last reference.
    _connection = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(_name);
}

QDBusMessage BusClient::call(const QString &path, const QString &method, const QVariantList &arguments)
{
    return _connection.call(callMessage(path, method, arguments));
}

void BusClient::send(const QString &path, const QString &method, const QVariantList &arguments,
                     const std::function<void(const QDBusMessage &)> &answered)
{
    auto *watcher =
        new QDBusPendingCallWatcher(_connection.asyncCall(callMessage(path, method, arguments)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

QVariant BusClient::property(const QString &path, const QString &interface, const QString &name)
{
    const QDBusMessage reply = call(path, Properties + u".Get"_s, {interface, name});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QDBusMessage BusClient::setProperty(const QString &path, const QString &interface, const QString &name,
                                    const QVariant &value)
{
    return call(path, Properties + u".Set"_s, {interface, name, QVariant::fromValue(QDBusVariant(value))});
}

ManagedObjects BusClient::objects()
{
    const QDBusMessage reply = call(u"/"_s, u"org.freedesktop.DBus.ObjectManager.GetManagedObjects"_s);
    return qdbus_cast<ManagedObjects>(reply.arguments().value(0));
}

QStringList BusClient::paths(const QString &interface, const QString &property, const QVariant &value)
{
    QStringList found;
    const ManagedObjects all = objects();
    for (auto object = all.begin(); object != all.end(); ++object) {
        if (object->contains(interface) &&
            (property.isEmpty() || object->value(interface).value(property) == value))
            found.append(object.key().path());
    }
    return found;
}

QVariantList BusClient::told(const QString &path, const QString &property) const
{
    QVariantList values;
    for (const QDBusMessage &signal : _signals) {
        if (signal.path() != path || signal.member() != u"PropertiesChanged")
            continue;
        const auto changed = qdbus_cast<QVariantMap>(signal.arguments().value(1));
        if (changed.contains(property))
            values.append(changed.value(property));
        else if (signal.arguments().value(2).toStringList().contains(property))
            values.append(QVariant());
    }
    return values;
}

bool BusClient::isNameOwned()
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << Daemon;
    return _connection.call(question).arguments().value(0).toBool();
}

} // namespace cvtamber
