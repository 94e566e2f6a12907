// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/GattQueue.h"

#include "platform/bluetooth/Advertisement.h"

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QString textOf(QLowEnergyService::ServiceError error)
{
    switch (error) {
    case QLowEnergyService::CharacteristicWriteError:
        return u"The device did not take what was written."_s;
    case QLowEnergyService::CharacteristicReadError:
        return u"The value could not be read."_s;
    case QLowEnergyService::DescriptorWriteError:
        return u"Notifications could not be switched."_s;
    default:
        return u"The device does not offer this any more."_s;
    }
}

} // namespace

GattQueue::GattQueue(RunLoop &runLoop, QLowEnergyController &controller, Notified notified)
    : _controller(controller)
    , _notified(std::move(notified))
    , _writer(makeCharacteristicWriter(_controller.remoteAddress().toString()))
    , _calls(runLoop)
{
    QObject::connect(&_controller, &QLowEnergyController::discoveryFinished, &_context,
                     [this] { finishIf(Kind::DiscoverServices); });
    QObject::connect(&_controller, &QLowEnergyController::errorOccurred, &_context, [this] {
        if (isRunning(Kind::DiscoverServices) || isRunning(Kind::DiscoverCharacteristics))
            fail(u"The device's services could not be listed."_s);
    });
}

void GattQueue::add(const Request &request)
{
    _requests.push_back(request);
    startNext();
}

void GattQueue::startNext()
{
    if (_isRunning || _requests.empty() || _controller.state() == QLowEnergyController::UnconnectedState)
        return;
    _isRunning = true;
    ++_number;
    // A copy: Qt may answer before it returns.
    start(Request(_requests.front()));
}

void GattQueue::start(const Request &request)
{
    switch (request.kind) {
    case Kind::DiscoverServices:
        discoverServices();
        return;
    case Kind::DiscoverCharacteristics:
        discoverCharacteristics(request);
        return;
    case Kind::Fail:
        fail(QString::fromUtf8(request.value));
        return;
    case Kind::Read:
    case Kind::Write:
    case Kind::SetNotify:
        break;
    }
    QLowEnergyService *service = _services.value(request.service.toQUuid());
    const auto characteristic =
        service ? service->characteristic(toQt(request.characteristic)) : QLowEnergyCharacteristic();
    if (!characteristic.isValid())
        fail(textOf(QLowEnergyService::OperationError));
    else if (request.kind == Kind::Read)
        service->readCharacteristic(characteristic);
    else if (request.kind == Kind::Write && !writeDirectly(request))
        service->writeCharacteristic(characteristic, request.value, QLowEnergyService::WriteWithResponse);
    else if (request.kind == Kind::SetNotify)
        setNotify(*service, characteristic, request.enabled);
}

bool GattQueue::writeDirectly(const Request &request)
{
    return _writer && _writer->write(request.service, request.characteristic, request.value,
                                     [this, number = _number](bool success) {
                                         if (!_isRunning || _number != number)
                                             return;
                                         if (success)
                                             finish({}, {});
                                         else
                                             fail(textOf(QLowEnergyService::CharacteristicWriteError));
                                     });
}

void GattQueue::discoverServices()
{
    // Qt discovers once a link; what it found then stays known.
    if (_controller.state() == QLowEnergyController::DiscoveredState)
        finishIf(Kind::DiscoverServices);
    else
        _controller.discoverServices();
}

void GattQueue::discoverCharacteristics(const Request &request)
{
    if (_writer)
        _writer->look();
    QLowEnergyService *service = serviceObject(request.service);
    if (!service)
        fail(textOf(QLowEnergyService::OperationError));
    else if (service->state() == QLowEnergyService::RemoteServiceDiscovered)
        finishIf(Kind::DiscoverCharacteristics);
    else
        service->discoverDetails(QLowEnergyService::SkipValueDiscovery);
}

void GattQueue::setNotify(QLowEnergyService &service, const QLowEnergyCharacteristic &characteristic,
                          bool enabled)
{
    const auto switchDescriptor =
        characteristic.descriptor(QBluetoothUuid::DescriptorType::ClientCharacteristicConfiguration);
    if (!switchDescriptor.isValid()) {
        fail(textOf(QLowEnergyService::DescriptorWriteError));
        return;
    }
    const std::pair<QUuid, QUuid> key{service.serviceUuid(), characteristic.uuid()};
    _notifying.removeAll(key);
    // From here on, as the first notification may come before the confirmation.
    if (enabled)
        _notifying.append(key);
    service.writeDescriptor(switchDescriptor, QByteArray::fromHex(enabled ? "0100" : "0000"));
}

QLowEnergyService *GattQueue::serviceObject(const BluetoothUuid &uuid)
{
    QLowEnergyService *&service = _services[uuid.toQUuid()];
    if (!service) {
        service = _controller.createServiceObject(toQt(uuid), &_controller);
        if (service)
            connectService(service);
    }
    return service;
}

void GattQueue::connectService(QLowEnergyService *service)
{
    const BluetoothUuid uuid = fromQt(service->serviceUuid());
    const auto connect = [this, service](auto signal, auto handler) {
        QObject::connect(service, signal, &_context, handler);
    };
    connect(&QLowEnergyService::stateChanged,
            [this, uuid](QLowEnergyService::ServiceState state) { serviceStateChanged(uuid, state); });
    connect(&QLowEnergyService::errorOccurred,
            [this](QLowEnergyService::ServiceError error) { serviceFailed(error); });
    connect(
        &QLowEnergyService::characteristicRead,
        [this](const QLowEnergyCharacteristic &, const QByteArray &value) { finishIf(Kind::Read, value); });
    connect(&QLowEnergyService::characteristicWritten, [this] { finishIf(Kind::Write); });
    connect(&QLowEnergyService::descriptorWritten, [this] { finishIf(Kind::SetNotify); });
    connect(&QLowEnergyService::characteristicChanged,
            [this, uuid](const QLowEnergyCharacteristic &characteristic, const QByteArray &value) {
                changed(uuid, characteristic, value);
            });
}

void GattQueue::serviceStateChanged(const BluetoothUuid &service, QLowEnergyService::ServiceState state)
{
    if (!isRunning(Kind::DiscoverServices) && _isRunning && _requests.front().service == service &&
        state == QLowEnergyService::InvalidService) {
        // Not yet: the link may be what is being lost, and that is told without an answer.
        _calls.perform(0ns, [this, service, number = _number] { serviceBecameInvalid(service, number); });
    } else if (state == QLowEnergyService::RemoteServiceDiscovered) {
        finishIf(Kind::DiscoverCharacteristics);
    }
}

void GattQueue::serviceBecameInvalid(const BluetoothUuid &service, quint64 number)
{
    if (_isRunning && _number == number && _requests.front().service == service &&
        _controller.state() != QLowEnergyController::UnconnectedState)
        fail(textOf(QLowEnergyService::OperationError));
}

void GattQueue::serviceFailed(QLowEnergyService::ServiceError error)
{
    if (!_isRunning || isRunning(Kind::DiscoverServices))
        return;
    const Request &request = _requests.front();
    if (request.kind == Kind::SetNotify)
        _notifying.removeAll({request.service.toQUuid(), request.characteristic.toQUuid()});
    fail(textOf(error));
}

void GattQueue::changed(const BluetoothUuid &service, const QLowEnergyCharacteristic &characteristic,
                        const QByteArray &value)
{
    // Reading a value reports a change too, at times an empty one.
    if (value.isEmpty() ||
        !_notifying.contains(std::pair<QUuid, QUuid>{service.toQUuid(), characteristic.uuid()}))
        return;
    _calls.perform(0ns, [this, service, uuid = fromQt(characteristic.uuid()), value] {
        const auto notified = _notified;
        notified(service, uuid, value);
    });
}

bool GattQueue::isRunning(Kind kind) const
{
    return _isRunning && _requests.front().kind == kind;
}

void GattQueue::finishIf(Kind kind, const QByteArray &value)
{
    if (isRunning(kind))
        finish(value, {});
}

void GattQueue::finish(const QByteArray &value, const BluetoothResult &error)
{
    _isRunning = false;
    _calls.perform(0ns, [done = std::move(_requests.front().done), value, error] { done(value, error); });
    _requests.pop_front();
    _calls.perform(0ns, [this] { startNext(); });
}

QList<BluetoothUuid> GattQueue::services() const
{
    QList<BluetoothUuid> uuids;
    for (const QBluetoothUuid &uuid : _controller.services())
        uuids.append(fromQt(uuid));
    return uuids;
}

QList<BluetoothUuid> GattQueue::characteristics(const BluetoothUuid &service) const
{
    QList<BluetoothUuid> uuids;
    const QLowEnergyService *object = _services.value(service.toQUuid());
    if (!object)
        return uuids;
    for (const QLowEnergyCharacteristic &characteristic : object->characteristics())
        uuids.append(fromQt(characteristic.uuid()));
    return uuids;
}

} // namespace cvtamber
