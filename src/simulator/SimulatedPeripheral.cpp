// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/SimulatedPeripheral.h"

#include "simulator/SimulatedCentral.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

BluetoothError staleError()
{
    return {QStringLiteral("The characteristic is not one of this link.")};
}

} // namespace

SimulatedPeripheral::SimulatedPeripheral(RunLoop &runLoop, SimulatedCentral &central,
                                         const std::shared_ptr<SimulatedDevice> &device)
    : _runLoop(runLoop)
    , _central(&central)
    , _device(device)
    , _identifier(device->identifier())
    , _name(device->profile().advertisedName)
    , _linkCalls(runLoop)
{}

SimulatedPeripheral::~SimulatedPeripheral()
{
    _device->detach(this);
}

void SimulatedPeripheral::connect()
{
    if (_state == State::Connecting)
        return;
    if (_state == State::Connected) {
        _linkCalls.perform(0ns, [this] { _central->reportConnected(shared_from_this()); });
        return;
    }
    _state = State::Connecting;
    _linkCalls.perform(_device->profile().delays.connect, [this] { tryConnect(); });
}

void SimulatedPeripheral::tryConnect()
{
    // A client that let go and asked again has been told of the device's return twice: there is one link all the same.
    if (_state != State::Connecting)
        return;
    if (!_device->isInRange()) {
        _device->waitForReturn(weak_from_this());
        return;
    }
    FaultScript &faults = _device->faults();
    if (faults.take(Fault::Kind::ConnectNever))
        return;
    if (faults.take(Fault::Kind::ConnectFails)) {
        ++_device->counters().failedConnects;
        endLink();
        _central->reportFailedToConnect(shared_from_this(), {QStringLiteral("The device refused the link.")});
        return;
    }
    _device->attach(weak_from_this());
    _state = State::Connected;
    _writesDoneAt = _runLoop.now();
    if (const auto drop = faults.take(Fault::Kind::DropAfterConnect))
        _linkCalls.perform(0ns, [this, drop] { _device->dropLink(drop->withError); });
    _central->reportConnected(shared_from_this());
}

bool SimulatedPeripheral::cancel()
{
    if (_state == State::Disconnected)
        return false;
    endLink();
    _device->detach(this);
    return true;
}

void SimulatedPeripheral::forgetCentral()
{
    cancel();
    _central = nullptr;
}

void SimulatedPeripheral::endLink()
{
    _state = State::Disconnected;
    _services.clear();
    _notifying.reset();
    _linkCalls.cancelAll();
}

void SimulatedPeripheral::linkEnded(const QString &error)
{
    endLink();
    if (_central)
        _central->postDisconnected(shared_from_this(),
                                   error.isNull() ? BluetoothResult() : BluetoothError{error});
}

void SimulatedPeripheral::deviceCameBack()
{
    if (_state == State::Connecting)
        _linkCalls.perform(_device->profile().delays.connect, [this] { tryConnect(); });
}

void SimulatedPeripheral::discoverServices(const QList<BluetoothUuid> &uuids)
{
    if (_state != State::Connected)
        return;
    _linkCalls.perform(_device->profile().delays.discover, [this, uuids] {
        ++_device->counters().discoveries;
        FaultScript &faults = _device->faults();
        if (const auto drop = faults.take(Fault::Kind::DropDuringDiscovery)) {
            _device->dropLink(drop->withError);
            return;
        }
        if (faults.take(Fault::Kind::ServicesNever))
            return;
        BluetoothResult error;
        if (faults.take(Fault::Kind::DiscoveryFails))
            error = BluetoothError{QStringLiteral("The services could not be discovered.")};
        else
            addServices(uuids);
        if (const auto delegate = _delegate.lock())
            delegate->peripheralDidDiscoverServices(shared_from_this(), error);
    });
}

void SimulatedPeripheral::addServices(const QList<BluetoothUuid> &uuids)
{
    const auto known = [this](const BluetoothUuid &uuid) {
        return std::any_of(_services.cbegin(), _services.cend(),
                           [&uuid](const BluetoothServicePtr &service) { return service->uuid == uuid; });
    };
    for (const OfferedService &offered : _device->offeredServices()) {
        if ((uuids.isEmpty() || uuids.contains(offered.uuid)) && !known(offered.uuid))
            _services.append(std::make_shared<BluetoothService>(BluetoothService{offered.uuid, {}}));
    }
}

void SimulatedPeripheral::discoverCharacteristics(const QList<BluetoothUuid> &uuids,
                                                  const BluetoothServicePtr &service)
{
    if (_state != State::Connected || !service)
        return;
    _linkCalls.perform(_device->profile().delays.discover, [this, uuids, service] {
        BluetoothResult error;
        if (_services.contains(service))
            addCharacteristics(uuids, service);
        else
            error = BluetoothError{QStringLiteral("The service is not one of this link.")};
        if (const auto delegate = _delegate.lock())
            delegate->peripheralDidDiscoverCharacteristics(shared_from_this(), service, error);
    });
}

void SimulatedPeripheral::addCharacteristics(const QList<BluetoothUuid> &uuids,
                                             const BluetoothServicePtr &service)
{
    const auto known = [&service](const BluetoothUuid &uuid) {
        return std::any_of(service->characteristics.cbegin(), service->characteristics.cend(),
                           [&uuid](const auto &characteristic) { return characteristic->uuid == uuid; });
    };
    for (const OfferedService &offered : _device->offeredServices()) {
        if (offered.uuid != service->uuid)
            continue;
        for (const BluetoothUuid &uuid : offered.characteristics) {
            if ((uuids.isEmpty() || uuids.contains(uuid)) && !known(uuid))
                service->characteristics.append(
                    std::make_shared<BluetoothCharacteristic>(BluetoothCharacteristic{uuid, service->uuid}));
        }
    }
}

bool SimulatedPeripheral::isOfThisLink(const BluetoothCharacteristicPtr &characteristic) const
{
    return std::any_of(_services.cbegin(), _services.cend(), [&](const BluetoothServicePtr &service) {
        return service->characteristics.contains(characteristic);
    });
}

void SimulatedPeripheral::readValue(const BluetoothCharacteristicPtr &characteristic)
{
    if (_state != State::Connected || !characteristic)
        return;
    _linkCalls.perform(_device->profile().delays.read, [this, characteristic] {
        BluetoothResult error;
        QByteArray value;
        if (!isOfThisLink(characteristic))
            error = staleError();
        else if (_device->faults().take(Fault::Kind::ReadFails))
            error = BluetoothError{QStringLiteral("The value could not be read.")};
        else
            value = _device->readableValue(characteristic->uuid);
        if (const auto delegate = _delegate.lock())
            delegate->peripheralDidUpdateValue(shared_from_this(), characteristic, value, error);
    });
}

void SimulatedPeripheral::setNotifyValue(bool enabled, const BluetoothCharacteristicPtr &characteristic)
{
    if (_state != State::Connected || !characteristic)
        return;
    _linkCalls.perform(_device->profile().delays.read, [this, enabled, characteristic] {
        BluetoothResult error;
        if (!isOfThisLink(characteristic))
            error = staleError();
        else if (characteristic->uuid != BluetoothIdentifiers::dataCharacteristic() ||
                 _device->faults().take(Fault::Kind::NotifyFails))
            error = BluetoothError{QStringLiteral("Notifications could not be switched.")};
        else
            _notifying = enabled ? characteristic : nullptr;
        answer(&BluetoothPeripheralDelegate::peripheralDidUpdateNotificationState, characteristic, error);
    });
}

void SimulatedPeripheral::writeValue(const QByteArray &value,
                                     const BluetoothCharacteristicPtr &characteristic)
{
    if (_state != State::Connected || !characteristic)
        return;
    // One write at a time is on the air: the next begins when the one before is confirmed.
    const auto begin = std::max(_runLoop.now(), _writesDoneAt);
    _writesDoneAt = begin + _device->profile().delays.write;
    _linkCalls.perform(begin - _runLoop.now(),
                       [this, value, characteristic] { arriveWrite(value, characteristic); });
}

void SimulatedPeripheral::arriveWrite(const QByteArray &value,
                                      const BluetoothCharacteristicPtr &characteristic)
{
    FaultScript &faults = _device->faults();
    const int number = ++_device->counters().writes;
    BluetoothResult error;
    if (!isOfThisLink(characteristic))
        error = staleError();
    else if (characteristic->uuid != BluetoothIdentifiers::dataCharacteristic() ||
             value.size() > MaximalValue)
        error = BluetoothError{QStringLiteral("The value cannot be written there.")};
    else if (faults.take(Fault::Kind::FailWrite, {}, number))
        error = BluetoothError{QStringLiteral("The device refused the write.")};

    const auto drop = faults.take(Fault::Kind::DropAtWrite, {}, number);
    const bool silent = faults.take(Fault::Kind::LoseConfirmation, {}, number).has_value();
    if (const auto off = faults.take(Fault::Kind::RadioOffAtWrite, {}, number)) {
        _linkCalls.perform(_device->profile().delays.write,
                           [this, off] { _central->radio().switchOff(off->time); });
    } else if (drop) {
        _linkCalls.perform(_device->profile().delays.write,
                           [this, drop] { _device->dropLink(drop->withError); });
    } else if (!silent) {
        _linkCalls.perform(_device->profile().delays.write, [this, characteristic, error] {
            answer(&BluetoothPeripheralDelegate::peripheralDidWriteValue, characteristic, error);
        });
    }
    if (!error)
        _device->receive(value);
}

void SimulatedPeripheral::linkNotified(const QByteArray &value)
{
    // A copy: the delegate may end the link and with it the member.
    const auto characteristic = _notifying;
    const auto delegate = _delegate.lock();
    if (characteristic && delegate)
        delegate->peripheralDidUpdateValue(shared_from_this(), characteristic, value, {});
}

void SimulatedPeripheral::answer(Answer call, const BluetoothCharacteristicPtr &characteristic,
                                 const BluetoothResult &error)
{
    if (const auto delegate = _delegate.lock())
        (delegate.get()->*call)(shared_from_this(), characteristic, error);
}

} // namespace cvtamber
