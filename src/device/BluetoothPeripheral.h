// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "device/BluetoothUuid.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace cvtamber {

class BluetoothPeripheral;

// What the platform says went wrong, in its own words. Absent means success.
struct BluetoothError
{
    QString text;
};
using BluetoothResult = std::optional<BluetoothError>;
// As log lines show it.
inline QString shown(const BluetoothResult &error)
{
    return error ? error->text : QStringLiteral("(null)");
}

// One characteristic of one link; identity is the object. It dies with the link it was discovered on.
struct BluetoothCharacteristic
{
    BluetoothUuid uuid;
    BluetoothUuid serviceUuid;
};
using BluetoothCharacteristicPtr = std::shared_ptr<BluetoothCharacteristic>;

struct BluetoothService
{
    BluetoothUuid uuid;
    QList<BluetoothCharacteristicPtr> characteristics; // those discovered so far
};
using BluetoothServicePtr = std::shared_ptr<BluetoothService>;

// Answers of a peripheral. All come from the run loop, on the main thread, never from inside the request.
class BluetoothPeripheralDelegate : public InterfaceBase
{
public:
    virtual void peripheralDidDiscoverServices(const std::shared_ptr<BluetoothPeripheral> &peripheral,
                                               const BluetoothResult &error) = 0;
    virtual void peripheralDidDiscoverCharacteristics(const std::shared_ptr<BluetoothPeripheral> &peripheral,
                                                      const BluetoothServicePtr &service,
                                                      const BluetoothResult &error) = 0;
    // A value that was read, or a notification; several may come in one turn of the loop, in the order sent.
    virtual void peripheralDidUpdateValue(const std::shared_ptr<BluetoothPeripheral> &peripheral,
                                          const BluetoothCharacteristicPtr &characteristic,
                                          const QByteArray &value, const BluetoothResult &error) = 0;
    virtual void peripheralDidUpdateNotificationState(const std::shared_ptr<BluetoothPeripheral> &peripheral,
                                                      const BluetoothCharacteristicPtr &characteristic,
                                                      const BluetoothResult &error) = 0;
    // One call for each write, in the order of the writes; with an error for a write that failed.
    virtual void peripheralDidWriteValue(const std::shared_ptr<BluetoothPeripheral> &peripheral,
                                         const BluetoothCharacteristicPtr &characteristic,
                                         const BluetoothResult &error) = 0;
};

// One remote device as the platform sees it. The same device is the same object for a central, across links.
//
// Requests while not connected are dropped without an answer: the disconnect is the answer. A disconnect ends
// every request under way, none of them is answered after it.
class BluetoothPeripheral
{
public:
    enum class State { Disconnected = 0, Connecting = 1, Connected = 2 };

    BluetoothPeripheral() = default;
    BluetoothPeripheral(const BluetoothPeripheral &) = delete;
    BluetoothPeripheral &operator=(const BluetoothPeripheral &) = delete;
    virtual ~BluetoothPeripheral() = default;

    // Stable for the run of the program: the address or the platform's identifier. Never shown as a serial
    // number.
    virtual QString identifier() const = 0;
    // The advertised name; null when none was advertised.
    virtual QString name() const = 0;
    virtual State state() const = 0;
    virtual void setDelegate(const std::weak_ptr<BluetoothPeripheralDelegate> &delegate) = 0;

    // Services found on this link so far; empty after a disconnect.
    virtual QList<BluetoothServicePtr> services() const = 0;
    // An empty list asks for all services. A service that is not there is no error: look in services().
    virtual void discoverServices(const QList<BluetoothUuid> &uuids) = 0;
    // An empty list asks for all characteristics of the service.
    virtual void discoverCharacteristics(const QList<BluetoothUuid> &uuids,
                                         const BluetoothServicePtr &service) = 0;
    virtual void readValue(const BluetoothCharacteristicPtr &characteristic) = 0;
    virtual void setNotifyValue(bool enabled, const BluetoothCharacteristicPtr &characteristic) = 0;
    // A write with response. Several may be outstanding; they go out in order.
    virtual void writeValue(const QByteArray &value, const BluetoothCharacteristicPtr &characteristic) = 0;
};
using BluetoothPeripheralPtr = std::shared_ptr<BluetoothPeripheral>;

} // namespace cvtamber
