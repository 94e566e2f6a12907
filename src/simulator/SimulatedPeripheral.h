// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/CallGroup.h"
#include "device/BluetoothPeripheral.h"
#include "simulator/SimulatedDevice.h"
#include "simulator/SimulatedLinkHolder.h"

namespace cvtamber {

class SimulatedCentral;

// One simulated device as one central sees it. Owner: its central; it may outlive the central and is then
// disconnected for good.
class SimulatedPeripheral final : public BluetoothPeripheral,
                                  public SimulatedLinkHolder,
                                  public std::enable_shared_from_this<SimulatedPeripheral>
{
public:
    SimulatedPeripheral(RunLoop &runLoop, SimulatedCentral &central,
                        const std::shared_ptr<SimulatedDevice> &device);
    ~SimulatedPeripheral() override;

    QString identifier() const override { return _identifier; }
    QString name() const override { return _name; }
    State state() const override { return _state; }
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
    const std::shared_ptr<SimulatedDevice> &device() const { return _device; }
    void connect();
    // True when there was a link or an attempt to give up.
    bool cancel();
    void forgetCentral();

    void linkNotified(const QByteArray &value) override;
    void linkEnded(const QString &error) override;
    void deviceCameBack() override;

private:
    using Answer = void (BluetoothPeripheralDelegate::*)(const BluetoothPeripheralPtr &,
                                                         const BluetoothCharacteristicPtr &,
                                                         const BluetoothResult &);

    void tryConnect();
    void endLink();
    void addServices(const QList<BluetoothUuid> &uuids);
    void addCharacteristics(const QList<BluetoothUuid> &uuids, const BluetoothServicePtr &service);
    bool isOfThisLink(const BluetoothCharacteristicPtr &characteristic) const;
    void arriveWrite(const QByteArray &value, const BluetoothCharacteristicPtr &characteristic);
    void answer(Answer call, const BluetoothCharacteristicPtr &characteristic, const BluetoothResult &error);

    RunLoop &_runLoop;
    SimulatedCentral *_central;
    std::shared_ptr<SimulatedDevice> _device;
    QString _identifier;
    QString _name;
    std::weak_ptr<BluetoothPeripheralDelegate> _delegate;
    State _state = State::Disconnected;
    QList<BluetoothServicePtr> _services;
    BluetoothCharacteristicPtr _notifying;
    std::chrono::nanoseconds _writesDoneAt{0};
    CallGroup _linkCalls; // what a disconnect ends
};
using SimulatedPeripheralPtr = std::shared_ptr<SimulatedPeripheral>;

} // namespace cvtamber
