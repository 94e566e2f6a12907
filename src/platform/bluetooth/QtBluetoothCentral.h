// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/CallGroup.h"
#include "device/BluetoothCentral.h"
#include "platform/bluetooth/DeviceScanner.h"
#include "platform/bluetooth/QtBluetoothPeripheral.h"

#include <QMap>

namespace cvtamber {

class QtBluetoothRadio;

// A central over Qt Bluetooth. The state is Unknown until the run loop has told it once.
//
// A scan that is wanted begins again by itself when the radio comes back; links and attempts end with an error
// when it goes. An asked-for disconnect is reported at once, while the link is being closed; a connect that
// comes meanwhile waits for that. A link that is lost before its services are resolved counts as one that was
// made: it is reported as disconnected with an error, though it was never reported as connected, so that it is
// tried again as after any other loss. Destroying the central ends its links without a word.
class QtBluetoothCentral final : public BluetoothCentral
{
public:
    // The run loop outlives the central.
    QtBluetoothCentral(RunLoop &runLoop, const std::shared_ptr<QtBluetoothRadio> &radio);
    ~QtBluetoothCentral() override;

    State state() const override;
    QString stateText() const override;
    void setDelegate(const std::weak_ptr<BluetoothCentralDelegate> &delegate) override
    {
        _delegate = delegate;
    }
    void scanForPeripherals(const QList<BluetoothUuid> &services, bool allowDuplicates) override;
    void stopScan() override;
    void connectPeripheral(const BluetoothPeripheralPtr &peripheral) override;
    void cancelPeripheralConnection(const BluetoothPeripheralPtr &peripheral) override;

    // The radio's side, from the run loop.
    void radioChanged();

    // The peripherals' side, from the run loop.
    void reportConnected(const BluetoothPeripheralPtr &peripheral);
    void reportFailedToConnect(const BluetoothPeripheralPtr &peripheral, const BluetoothError &error);
    void reportDisconnected(const BluetoothPeripheralPtr &peripheral, const BluetoothResult &error);

private:
    void found(const QBluetoothDeviceInfo &device);
    QtBluetoothPeripheralPtr own(const BluetoothPeripheralPtr &peripheral) const;
    QtBluetoothPeripheralPtr peripheralFor(const QBluetoothDeviceInfo &device);
    void endLinks();
    void postFailedToConnect(const BluetoothPeripheralPtr &peripheral, const QString &error);

    RunLoop &_runLoop;
    std::shared_ptr<QtBluetoothRadio> _radio;
    std::weak_ptr<BluetoothCentralDelegate> _delegate;
    QMap<QString, QtBluetoothPeripheralPtr> _peripherals; // by identifier
    bool _isStateTold = false;
    quint64 _scanNumber = 0;
    DeviceScanner _scanner;
    CallGroup _calls;
};

} // namespace cvtamber
