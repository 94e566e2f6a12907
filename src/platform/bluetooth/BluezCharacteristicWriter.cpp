// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/BluezCharacteristicWriter.h"

#include "platform/bluetooth/BluezNames.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <algorithm>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

BluetoothUuid uuidOf(const QVariantMap &properties)
{
    return BluetoothUuid(properties.value(u"UUID"_s).toString());
}

QDBusObjectPath pathIn(const QVariantMap &properties, const QString &name)
{
    return properties.value(name).value<QDBusObjectPath>();
}

} // namespace

BluezCharacteristicWriter::BluezCharacteristicWriter(const QString &address)
    : _address(address)
    , _bus(QDBusConnection::systemBus())
{}

void BluezCharacteristicWriter::call(const QDBusMessage &message,
                                     const std::function<void(const QDBusPendingCall &)> &answered)
{
    auto *watcher = new QDBusPendingCallWatcher(_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered] {
        watcher->deleteLater();
        answered(*watcher);
    });
}

void BluezCharacteristicWriter::look()
{
    QDBusMessage message = QDBusMessage::createMethodCall(bluezDaemon(), u"/"_s, objectManagerInterface(),
                                                          u"GetManagedObjects"_s);
    message.setAutoStartService(false);
    call(message, [this](const QDBusPendingCall &answer) { found(answer); });
}

void BluezCharacteristicWriter::found(const QDBusPendingCall &call)
{
    _paths.clear();
    if (call.isError())
        return;
    const auto objects = qdbus_cast<ManagedObjects>(call.reply().arguments().value(0));
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        const QVariantMap characteristic = object->value(u"org.bluez.GattCharacteristic1"_s);
        const QVariantMap service =
            objects.value(pathIn(characteristic, u"Service"_s)).value(u"org.bluez.GattService1"_s);
        const QVariantMap device = objects.value(pathIn(service, u"Device"_s)).value(u"org.bluez.Device1"_s);
        if (device.value(u"Address"_s).toString().compare(_address, Qt::CaseInsensitive) == 0 &&
            device.value(u"Connected"_s).toBool())
            _paths.append({{uuidOf(service), uuidOf(characteristic)}, object.key().path()});
    }
}

bool BluezCharacteristicWriter::write(const BluetoothUuid &service, const BluetoothUuid &characteristic,
                                      const QByteArray &value, const Done &done)
{
    // Of two with one UUID the first, as Qt has it.
    const auto known = std::find_if(_paths.begin(), _paths.end(), [&](const auto &entry) {
        return entry.first == Place{service, characteristic};
    });
    if (known == _paths.end())
        return false;
    QDBusMessage message = QDBusMessage::createMethodCall(
        bluezDaemon(), known->second, u"org.bluez.GattCharacteristic1"_s, u"WriteValue"_s);
    message.setArguments({value, QVariantMap{{u"type"_s, u"request"_s}}});
    message.setAutoStartService(false);
    call(message, [done](const QDBusPendingCall &answer) { done(!answer.isError()); });
    return true;
}

} // namespace cvtamber
