// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/QtBluetoothCentral.h"

#include "platform/bluetooth/QtBluetoothRadio.h"

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

QtBluetoothCentral::QtBluetoothCentral(RunLoop &runLoop, const std::shared_ptr<QtBluetoothRadio> &radio)
    : _runLoop(runLoop)
    , _radio(radio)
    , _scanner(runLoop, [this](const QBluetoothDeviceInfo &device) { found(device); })
    , _calls(runLoop)
{
    _radio->addCentral(this);
    if (_radio->state() != State::Unknown)
        _calls.perform(0ns, [this] { radioChanged(); });
}

QtBluetoothCentral::~QtBluetoothCentral()
{
    _radio->removeCentral(this);
    for (const auto &peripheral : std::as_const(_peripherals))
        peripheral->forgetCentral();
}

BluetoothCentral::State QtBluetoothCentral::state() const
{
    return _isStateTold ? _radio->state() : State::Unknown;
}

QString QtBluetoothCentral::stateText() const
{
    return _isStateTold ? _radio->stateText() : u"Bluetooth is starting; wait a moment."_s;
}

void QtBluetoothCentral::radioChanged()
{
    const bool isOn = _radio->state() == State::PoweredOn;
    _isStateTold = true;
    _scanner.setRadioOn(isOn);
    _calls.perform(0ns, [this] {
        if (const auto delegate = _delegate.lock())
            delegate->centralDidUpdateState();
    });
    if (!isOn)
        endLinks();
}

void QtBluetoothCentral::endLinks()
{
    const QString error = stateText();
    for (const auto &peripheral : std::as_const(_peripherals)) {
        const auto state = peripheral->state();
        if (!peripheral->cancel())
            continue;
        if (state == BluetoothPeripheral::State::Connecting)
            postFailedToConnect(peripheral, error);
        else
            _calls.perform(
                0ns, [this, peripheral, error] { reportDisconnected(peripheral, BluetoothError{error}); });
    }
}

void QtBluetoothCentral::scanForPeripherals(const QList<BluetoothUuid> &services, bool allowDuplicates)
{
    ++_scanNumber;
    _scanner.start(services, allowDuplicates);
}

void QtBluetoothCentral::stopScan()
{
    ++_scanNumber;
    _scanner.stop();
}

void QtBluetoothCentral::found(const QBluetoothDeviceInfo &device)
{
    _calls.perform(0ns, [this, device, scan = _scanNumber] {
        // The scan may have been stopped or replaced meanwhile.
        if (scan != _scanNumber)
            return;
        const auto peripheral = peripheralFor(device);
        if (const auto delegate = _delegate.lock())
            delegate->centralDidDiscoverPeripheral(peripheral);
    });
}

QtBluetoothPeripheralPtr QtBluetoothCentral::peripheralFor(const QBluetoothDeviceInfo &device)
{
    QtBluetoothPeripheralPtr &peripheral = _peripherals[identifierOf(device)];
    if (peripheral)
        peripheral->setDevice(device);
    else
        peripheral = std::make_shared<QtBluetoothPeripheral>(_runLoop, _radio->sharedLinks(), *this, device);
    return peripheral;
}

QtBluetoothPeripheralPtr QtBluetoothCentral::own(const BluetoothPeripheralPtr &peripheral) const
{
    const auto candidate = peripheral ? _peripherals.value(peripheral->identifier()) : nullptr;
    return candidate == peripheral ? candidate : nullptr;
}

void QtBluetoothCentral::connectPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    const auto known = own(peripheral);
    if (known && state() == State::PoweredOn)
        known->connect();
    else if (known)
        postFailedToConnect(known, stateText());
    else if (peripheral)
        postFailedToConnect(peripheral, u"The device was not found by this central."_s);
}

void QtBluetoothCentral::cancelPeripheralConnection(const BluetoothPeripheralPtr &peripheral)
{
    const auto known = own(peripheral);
    if (known && known->cancel())
        _calls.perform(0ns, [this, known] { reportDisconnected(known, {}); });
}

void QtBluetoothCentral::reportConnected(const BluetoothPeripheralPtr &peripheral)
{
    if (const auto delegate = _delegate.lock())
        delegate->centralDidConnectPeripheral(peripheral);
}

void QtBluetoothCentral::reportFailedToConnect(const BluetoothPeripheralPtr &peripheral,
                                               const BluetoothError &error)
{
    if (const auto delegate = _delegate.lock())
        delegate->centralDidFailToConnectPeripheral(peripheral, error);
}

void QtBluetoothCentral::reportDisconnected(const BluetoothPeripheralPtr &peripheral,
                                            const BluetoothResult &error)
{
    if (const auto delegate = _delegate.lock())
        delegate->centralDidDisconnectPeripheral(peripheral, error);
}

void QtBluetoothCentral::postFailedToConnect(const BluetoothPeripheralPtr &peripheral, const QString &error)
{
    _calls.perform(0ns,
                   [this, peripheral, error] { reportFailedToConnect(peripheral, BluetoothError{error}); });
}

} // namespace cvtamber
