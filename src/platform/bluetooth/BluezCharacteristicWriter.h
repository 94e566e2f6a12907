// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/bluetooth/CharacteristicWriter.h"

#include <QDBusConnection>
#include <QMap>
#include <QObject>

class QDBusPendingCall;

namespace cvtamber {

// One asynchronous call of the daemon a write. Qt reads two properties first and waits for each, so that a write takes more than
// twice as long, and a daemon that does not answer holds the whole program.
class BluezCharacteristicWriter final : public QObject, public CharacteristicWriter
{
public:
    explicit BluezCharacteristicWriter(const QString &address);

    void look() override;
    bool write(const BluetoothUuid &service, const BluetoothUuid &characteristic, const QByteArray &value,
               const Done &done) override;

private:
    using Place = std::pair<BluetoothUuid, BluetoothUuid>; // service and characteristic

    void call(const QDBusMessage &message, const std::function<void(const QDBusPendingCall &)> &answered);
    void found(const QDBusPendingCall &call);

    QString _address;
    QDBusConnection _bus;
    QList<std::pair<Place, QString>> _paths;
};

} // namespace cvtamber
