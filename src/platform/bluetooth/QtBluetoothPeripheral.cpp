// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/QtBluetoothPeripheral.h"

#include "platform/bluetooth/Advertisement.h"
#include "platform/bluetooth/QtBluetoothCentral.h"

#include <algorithm>

namespace cvtamber {

using namespace Qt::StringLiterals;

QtBluetoothPeripheral::QtBluetoothPeripheral(RunLoop &runLoop, SharedLinks &sharedLinks,
                                             QtBluetoothCentral &central, const QBluetoothDeviceInfo &device)
    : _runLoop(runLoop)
    , _sharedLinks(sharedLinks)
    , _central(&central)
    , _device(device)
{}

QString QtBluetoothPeripheral::identifier() const
{
    return identifierOf(_device);
}

QString QtBluetoothPeripheral::name() const
{
    return advertisedNameOf(_device);
}

BluetoothPeripheral::State QtBluetoothPeripheral::state() const
{
    if (!_link)
        return State::Disconnected;
    return _link->isOpen() ? State::Connected : State::Connecting;
}

void QtBluetoothPeripheral::connect()
{
    const auto reportConnected = [this] {
        const auto self = shared_from_this();
        _central->reportConnected(self);
    };
    if (state() == State::Connected)
        _link->post(reportConnected);
    if (_link || !_central)
        return;
    _link = std::make_unique<QtBluetoothLink>(
        _runLoop, _sharedLinks, _device,
        QtBluetoothLink::Events{
            reportConnected,
            [this](QtBluetoothLink::End end, const QString &reason) { linkEnded(end, reason); },
            [this](const BluetoothUuid &service, const BluetoothUuid &characteristic,
                   const QByteArray &value) { notified(service, characteristic, value); }});
    _link->open();
}

bool QtBluetoothPeripheral::cancel()
{
    const bool wasLinked = _link != nullptr;
    endLink();
    return wasLinked;
}

void QtBluetoothPeripheral::forgetCentral()
{
    endLink();
    _central = nullptr;
}

void QtBluetoothPeripheral::endLink()
{
    _services.clear();
    _link.reset();
}

void QtBluetoothPeripheral::linkEnded(QtBluetoothLink::End end, const QString &reason)
{
    const auto self = shared_from_this();
    endLink();
    if (end == QtBluetoothLink::End::Refused)
        _central->reportFailedToConnect(self, BluetoothError{reason});
    else
        _central->reportDisconnected(self, BluetoothError{reason});
}

void QtBluetoothPeripheral::notified(const BluetoothUuid &service, const BluetoothUuid &characteristic,
                                     const QByteArray &value)
{
    const auto found = find(service, characteristic);
    const auto delegate = _delegate.lock();
    if (found && delegate)
        delegate->peripheralDidUpdateValue(shared_from_this(), found, value, {});
}

void QtBluetoothPeripheral::discoverServices(const QList<BluetoothUuid> &uuids)
{
    if (state() != State::Connected)
        return;
    GattQueue::Request request;
    request.kind = Kind::DiscoverServices;
    request.done = [this, uuids](const QByteArray &, const BluetoothResult &error) {
        const auto self = shared_from_this();
        if (!error)
            addServices(uuids);
        if (const auto delegate = _delegate.lock())
            delegate->peripheralDidDiscoverServices(self, error);
    };
    _link->gatt().add(request);
}

void QtBluetoothPeripheral::addServices(const QList<BluetoothUuid> &uuids)
{
    for (const BluetoothUuid &uuid : _link->gatt().services()) {
        const bool isKnown =
            std::any_of(_services.cbegin(), _services.cend(),
                        [&uuid](const BluetoothServicePtr &service) { return service->uuid == uuid; });
        if (!isKnown && (uuids.isEmpty() || uuids.contains(uuid)))
            _services.append(std::make_shared<BluetoothService>(BluetoothService{uuid, {}}));
    }
}

void QtBluetoothPeripheral::discoverCharacteristics(const QList<BluetoothUuid> &uuids,
                                                    const BluetoothServicePtr &service)
{
    if (state() != State::Connected || !service)
        return;
    GattQueue::Request request;
    if (_services.contains(service)) {
        request.kind = Kind::DiscoverCharacteristics;
        request.service = service->uuid;
    } else {
        request.value = QByteArrayLiteral("The service is not one of this link.");
    }
    request.done = [this, uuids, service](const QByteArray &, const BluetoothResult &error) {
        const auto self = shared_from_this();
        if (!error)
            addCharacteristics(uuids, service);
        if (const auto delegate = _delegate.lock())
            delegate->peripheralDidDiscoverCharacteristics(self, service, error);
    };
    _link->gatt().add(request);
}

void QtBluetoothPeripheral::addCharacteristics(const QList<BluetoothUuid> &uuids,
                                               const BluetoothServicePtr &service)
{
    for (const BluetoothUuid &uuid : _link->gatt().characteristics(service->uuid)) {
        if (!find(service->uuid, uuid) && (uuids.isEmpty() || uuids.contains(uuid)))
            service->characteristics.append(
                std::make_shared<BluetoothCharacteristic>(BluetoothCharacteristic{uuid, service->uuid}));
    }
}

BluetoothCharacteristicPtr QtBluetoothPeripheral::find(const BluetoothUuid &service,
                                                       const BluetoothUuid &characteristic) const
{
    for (const BluetoothServicePtr &candidate : _services) {
        if (candidate->uuid != service)
            continue;
        for (const BluetoothCharacteristicPtr &found : std::as_const(candidate->characteristics)) {
            if (found->uuid == characteristic)
                return found;
        }
    }
    return nullptr;
}

GattQueue::Request QtBluetoothPeripheral::request(Kind kind,
                                                  const BluetoothCharacteristicPtr &characteristic) const
{
    GattQueue::Request request;
    if (find(characteristic->serviceUuid, characteristic->uuid) != characteristic) {
        request.value = QByteArrayLiteral("The characteristic is not one of this link.");
        return request;
    }
    request.kind = kind;
    request.service = characteristic->serviceUuid;
    request.characteristic = characteristic->uuid;
    return request;
}

GattQueue::Done QtBluetoothPeripheral::answering(Answer answer,
                                                 const BluetoothCharacteristicPtr &characteristic)
{
    return [this, answer, characteristic](const QByteArray &, const BluetoothResult &error) {
        if (const auto delegate = _delegate.lock())
            (delegate.get()->*answer)(shared_from_this(), characteristic, error);
    };
}

void QtBluetoothPeripheral::readValue(const BluetoothCharacteristicPtr &characteristic)
{
    if (state() != State::Connected || !characteristic)
        return;
    auto read = request(Kind::Read, characteristic);
    read.done = [this, characteristic](const QByteArray &value, const BluetoothResult &error) {
        if (const auto delegate = _delegate.lock())
            delegate->peripheralDidUpdateValue(shared_from_this(), characteristic, value, error);
    };
    _link->gatt().add(read);
}

void QtBluetoothPeripheral::setNotifyValue(bool enabled, const BluetoothCharacteristicPtr &characteristic)
{
    if (state() != State::Connected || !characteristic)
        return;
    auto setNotify = request(Kind::SetNotify, characteristic);
    setNotify.enabled = enabled;
    setNotify.done =
        answering(&BluetoothPeripheralDelegate::peripheralDidUpdateNotificationState, characteristic);
    _link->gatt().add(setNotify);
}

void QtBluetoothPeripheral::writeValue(const QByteArray &value,
                                       const BluetoothCharacteristicPtr &characteristic)
{
    if (state() != State::Connected || !characteristic)
        return;
    auto write = request(Kind::Write, characteristic);
    if (write.kind == Kind::Write)
        write.value = value;
    write.done = answering(&BluetoothPeripheralDelegate::peripheralDidWriteValue, characteristic);
    _link->gatt().add(write);
}

} // namespace cvtamber
