// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothPeripheral.h"
#include "platform/bluetooth/QtBluetoothLink.h"

namespace cvtamber {

class QtBluetoothCentral;

// One remote device as one central sees it. Owner: its central; it may outlive the central and is then
// disconnected for good.
class QtBluetoothPeripheral final : public BluetoothPeripheral,
                                    public std::enable_shared_from_this<QtBluetoothPeripheral>
{
public:
    // The run loop outlives the peripheral, the shared links live as long as the central.
    QtBluetoothPeripheral(RunLoop &runLoop, SharedLinks &sharedLinks, QtBluetoothCentral &central,
                          const QBluetoothDeviceInfo &device);

    QString identifier() const override;
    QString name() const override;
    State state() const override;
    void setDelegate(const std::weak_ptr<BluetoothPeripheralDelegate> &delegate) override
    {
        _delegate = delegate;
    }
    QList<BluetoothServicePtr> services() const override { return _services; }
    void discoverServices(const QList<BluetoothUuid> &uuids) override;
    void discoverCharacteristics(const QList<BluetoothUuid> &uuids,
                                 const BluetoothServicePtr &service) override;
    void readValue(const BluetoothCharacteristicPtr &characteristic) override;
    void setNotifyValue(bool enabled, const BluetoothCharacteristicPtr &characteristic) override;
    void writeValue(const QByteArray &value, const BluetoothCharacteristicPtr &characteristic) override;

    // The central's side.
    void setDevice(const QBluetoothDeviceInfo &device) { _device = device; }
    void connect();
    // True when there was a link or an attempt to give up.
    bool cancel();
    void forgetCentral();

private:
    using Kind = GattQueue::Request::Kind;
    using Answer = void (BluetoothPeripheralDelegate::*)(const BluetoothPeripheralPtr &,
                                                         const BluetoothCharacteristicPtr &,
                                                         const BluetoothResult &);

    void endLink();
    void linkEnded(QtBluetoothLink::End end, const QString &reason);
    void notified(const BluetoothUuid &service, const BluetoothUuid &characteristic, const QByteArray &value);
    void addServices(const QList<BluetoothUuid> &uuids);
    void addCharacteristics(const QList<BluetoothUuid> &uuids, const BluetoothServicePtr &service);
    BluetoothCharacteristicPtr find(const BluetoothUuid &service, const BluetoothUuid &characteristic) const;
    GattQueue::Request request(Kind kind, const BluetoothCharacteristicPtr &characteristic) const;
    GattQueue::Done answering(Answer answer, const BluetoothCharacteristicPtr &characteristic);

    RunLoop &_runLoop;
    SharedLinks &_sharedLinks;
    QtBluetoothCentral *_central;
    QBluetoothDeviceInfo _device;
    std::weak_ptr<BluetoothPeripheralDelegate> _delegate;
    QList<BluetoothServicePtr> _services;
    std::unique_ptr<QtBluetoothLink> _link; // null while disconnected
};
using QtBluetoothPeripheralPtr = std::shared_ptr<QtBluetoothPeripheral>;

} // namespace cvtamber
