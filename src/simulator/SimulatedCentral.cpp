// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/SimulatedCentral.h"

#include <algorithm>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

} // namespace

SimulatedCentral::SimulatedCentral(RunLoop &runLoop, const std::shared_ptr<SimulatedRadio> &radio)
    : _runLoop(runLoop)
    , _radio(radio)
    , _advertising(runLoop)
    , _calls(runLoop)
{
    _radio->addCentral(this);
    postState();
}

SimulatedCentral::~SimulatedCentral()
{
    _radio->removeCentral(this);
    for (const auto &peripheral : _peripherals)
        peripheral->forgetCentral();
}

BluetoothCentral::State SimulatedCentral::state() const
{
    return _stateKnown ? _radio->state() : State::Unknown;
}

QString SimulatedCentral::stateText() const
{
    switch (state()) {
    case State::PoweredOn:
        return {};
    case State::PoweredOff:
        return QStringLiteral("Bluetooth is switched off; switch it on in the system settings.");
    case State::Unsupported:
        return QStringLiteral("This computer has no Bluetooth that can reach the device.");
    case State::Unauthorized:
        return QStringLiteral("This program may not use Bluetooth; allow it in the system settings.");
    case State::Unknown:
    case State::Resetting:
        break;
    }
    return QStringLiteral("Bluetooth is starting; wait a moment.");
}

void SimulatedCentral::postState()
{
    _calls.perform(0ns, [this] {
        _stateKnown = true;
        if (const auto delegate = _delegate.lock())
            delegate->centralDidUpdateState();
    });
}

void SimulatedCentral::radioChanged()
{
    postState();
    if (_radio->state() == State::PoweredOn)
        return;
    stopScan();
    const auto peripherals = _peripherals;
    for (const auto &peripheral : peripherals) {
        if (peripheral->state() == BluetoothPeripheral::State::Connecting && peripheral->cancel())
            postFailedToConnect(peripheral, stateText());
        else if (peripheral->cancel())
            postDisconnected(peripheral, BluetoothError{QStringLiteral("Bluetooth was switched off.")});
    }
}

void SimulatedCentral::scanForPeripherals(const QList<BluetoothUuid> &services, bool allowDuplicates)
{
    if (state() != State::PoweredOn)
        return;
    _scanServices = services;
    _allowDuplicates = allowDuplicates;
    _reported = std::make_shared<QSet<QString>>();
    scheduleAdvertisements();
}

void SimulatedCentral::stopScan()
{
    _reported.reset();
    _advertising.cancel();
}

void SimulatedCentral::scheduleAdvertisements()
{
    _advertising.start(_radio->advertisingInterval(), [this] { reportAdvertisements(); });
}

void SimulatedCentral::reportAdvertisements()
{
    scheduleAdvertisements();
    const std::weak_ptr scan = _reported;
    const auto devices = _radio->devices();
    for (const auto &device : devices) {
        if (!device->advertises(_scanServices))
            continue;
        if (!_allowDuplicates && _reported->contains(device->identifier()))
            continue;
        _reported->insert(device->identifier());
        const auto peripheral = peripheralFor(device);
        if (const auto delegate = _delegate.lock())
            delegate->centralDidDiscoverPeripheral(peripheral);
        // The delegate may have stopped or replaced the scan, or destroyed the central.
        if (scan.expired())
            return;
    }
}

const SimulatedPeripheralPtr &SimulatedCentral::peripheralFor(const std::shared_ptr<SimulatedDevice> &device)
{
    for (const auto &peripheral : std::as_const(_peripherals)) {
        if (peripheral->device() == device)
            return peripheral;
    }
    _peripherals.append(std::make_shared<SimulatedPeripheral>(_runLoop, *this, device));
    return _peripherals.constLast();
}

SimulatedPeripheralPtr SimulatedCentral::own(const BluetoothPeripheralPtr &peripheral) const
{
    for (const auto &candidate : _peripherals) {
        if (candidate == peripheral)
            return candidate;
    }
    return nullptr;
}

void SimulatedCentral::connectPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    if (!peripheral)
        return;
    const auto simulated = own(peripheral);
    if (!simulated)
        postFailedToConnect(peripheral, QStringLiteral("The device was not found by this central."));
    else if (state() != State::PoweredOn)
        postFailedToConnect(peripheral, stateText());
    else
        simulated->connect();
}

void SimulatedCentral::cancelPeripheralConnection(const BluetoothPeripheralPtr &peripheral)
{
    const auto simulated = own(peripheral);
    if (simulated && simulated->cancel())
        postDisconnected(simulated, {});
}

void SimulatedCentral::reportConnected(const SimulatedPeripheralPtr &peripheral)
{
    if (const auto delegate = _delegate.lock())
        delegate->centralDidConnectPeripheral(peripheral);
}

void SimulatedCentral::reportFailedToConnect(const SimulatedPeripheralPtr &peripheral,
                                             const BluetoothError &error)
{
    if (const auto delegate = _delegate.lock())
        delegate->centralDidFailToConnectPeripheral(peripheral, error);
}

void SimulatedCentral::postFailedToConnect(const BluetoothPeripheralPtr &peripheral, const QString &error)
{
    _calls.perform(0ns, [this, peripheral, error] {
        if (const auto delegate = _delegate.lock())
            delegate->centralDidFailToConnectPeripheral(peripheral, BluetoothError{error});
    });
}

void SimulatedCentral::postDisconnected(const SimulatedPeripheralPtr &peripheral,
                                        const BluetoothResult &error)
{
    _calls.perform(0ns, [this, peripheral, error] {
        if (const auto delegate = _delegate.lock())
            delegate->centralDidDisconnectPeripheral(peripheral, error);
    });
}

} // namespace cvtamber
