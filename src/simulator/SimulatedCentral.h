// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/CallGroup.h"
#include "base/DelayedCall.h"
#include "simulator/SimulatedPeripheral.h"
#include "simulator/SimulatedRadio.h"

#include <QSet>

namespace cvtamber {

// A central on the simulated radio. The state is Unknown until the run loop has turned once.
//
// A scan reports advertisements every so often, and ends when the radio is switched off. Destroying the
// central ends its links without a word.
class SimulatedCentral final : public BluetoothCentral
{
public:
    SimulatedCentral(RunLoop &runLoop, const std::shared_ptr<SimulatedRadio> &radio);
    ~SimulatedCentral() override;

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

    SimulatedRadio &radio() { return *_radio; }
    // The radio's side: its state has changed.
    void radioChanged();

    // The peripherals' side; "report" calls the delegate, "post" does so from the run loop.
    void reportConnected(const SimulatedPeripheralPtr &peripheral);
    void reportFailedToConnect(const SimulatedPeripheralPtr &peripheral, const BluetoothError &error);
    void postDisconnected(const SimulatedPeripheralPtr &peripheral, const BluetoothResult &error);

private:
    SimulatedPeripheralPtr own(const BluetoothPeripheralPtr &peripheral) const;
    const SimulatedPeripheralPtr &peripheralFor(const std::shared_ptr<SimulatedDevice> &device);
    void postState();
    void postFailedToConnect(const BluetoothPeripheralPtr &peripheral, const QString &error);
    void scheduleAdvertisements();
    void reportAdvertisements();

    RunLoop &_runLoop;
    std::shared_ptr<SimulatedRadio> _radio;
    std::weak_ptr<BluetoothCentralDelegate> _delegate;
    QList<SimulatedPeripheralPtr> _peripherals;
    bool _stateKnown = false;
    QList<BluetoothUuid> _scanServices;
    bool _allowDuplicates = false;
    std::shared_ptr<QSet<QString>> _reported; // by the scan that is on; null without one
    DelayedCall _advertising;
    CallGroup _calls;
};

} // namespace cvtamber
