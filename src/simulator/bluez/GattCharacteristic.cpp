// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/GattCharacteristic.h"

#include <QDBusObjectPath>

#include <utility>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;

// The longest value that a characteristic can have.
// "Unlikely error", which a device gives when it has no better one.
constexpr char RefusedText[] = "Operation failed with ATT error: 0x0e";

BusError refused()
{
    return BusErrors::failed(QLatin1StringView(RefusedText));
}

BusError notConnectedFailure()
{
    return BusErrors::failed(u"Not connected"_s);
}

} // namespace

GattCharacteristic::GattCharacteristic(BluezContext &context, GattLink &link, const QString &servicePath,
                                       int handle, const BluetoothUuid &uuid)
    : BusObject(servicePath + u"/char%1"_s.arg(handle, 4, 16, QLatin1Char('0')))
    , _context(context)
    , _link(link)
    , _uuid(uuid)
    , _servicePath(servicePath)
{
    BusInterface &interface = addInterface(QLatin1StringView(Interface));
    interface.property(u"UUID"_s, u"s"_s, [this] { return _uuid.toString(); });
    interface.property(u"Service"_s, u"o"_s,
                       [this] { return QVariant::fromValue(QDBusObjectPath(_servicePath)); });
    interface.property(u"Value"_s, u"ay"_s, [this] { return _value; });
    interface.property(u"Flags"_s, u"as"_s, [this] { return flags(); });
    interface.property(u"Notifying"_s, u"b"_s,
                       [this] { return carriesData() ? QVariant(!_subscribers.isEmpty()) : QVariant(); });
    interface.method(u"ReadValue"_s, u"a{sv}"_s, u"ay"_s, [this](const BusCall &call) { read(call); });
    interface.method(u"WriteValue"_s, u"aya{sv}"_s, {}, [this](const BusCall &call) { write(call); });
    interface.method(u"StartNotify"_s, {}, {}, [this](const BusCall &call) { startNotify(call); });
    interface.method(u"StopNotify"_s, {}, {}, [this](const BusCall &call) { stopNotify(call); });
    _context.tree.add(*this);
    if (carriesData())
        _descriptor = std::make_unique<NotifyDescriptor>(
            context, link, path() + u"/desc%1"_s.arg(handle + 2, 4, 16, QLatin1Char('0')), path(),
            [this] { return !_subscribers.isEmpty(); });
}

GattCharacteristic::~GattCharacteristic()
{
    failPending();
    _descriptor.reset();
    _context.tree.remove(*this);
}

QStringList GattCharacteristic::flags() const
{
    if (carriesData())
        return {u"read"_s, u"write-without-response"_s, u"write"_s, u"notify"_s};
    return {u"read"_s};
}

void GattCharacteristic::read(const BusCall &call)
{
    if (!_link.isResolved()) {
        call.fail(BusErrors::notConnected());
        return;
    }
    if (_pendingRead) {
        call.fail(BusErrors::inProgress());
        return;
    }
    _pendingRead = call;
    _link.after(_link.peer().profile().delays.read, [this] {
        const BusCall pending = *std::exchange(_pendingRead, {});
        if (_link.peer().faults().take(Fault::Kind::ReadFails)) {
            pending.fail(refused());
            return;
        }
        const QByteArray value = _link.peer().readableValue(_uuid);
        // The daemon tells a value that was read as a change, too.
        tellValue(value);
        pending.reply(value);
    });
}

void GattCharacteristic::write(const BusCall &call)
{
    const auto value = call.argument<QByteArray>(0);
    const auto options = call.argument<QVariantMap>(1);
    const bool isCommand = options.value(u"type"_s).toString() == u"command";
    if (!_link.isResolved())
        call.fail(BusErrors::notConnected());
    else if (!carriesData())
        call.fail(BusErrors::notSupported());
    else if (value.size() > MaximalValue || options.value(u"offset"_s).toUInt() != 0)
        call.fail(BusErrors::invalidArguments(u"Invalid arguments in method call"_s));
    else if (!isCommand && _pendingWrite)
        call.fail(BusErrors::inProgress());
    else
        deliver(call, value, isCommand);
}

void GattCharacteristic::deliver(const BusCall &call, const QByteArray &value, bool isCommand)
{
    SimulatedDevice &device = _link.peer();
    const int number = ++device.counters().writes;
    const bool fails = device.faults().take(Fault::Kind::FailWrite, {}, number).has_value();
    if (!fails)
        device.receive(value);
    if (isCommand)
        call.reply();
    else
        _pendingWrite = call;
    if (!breaksAtWrite(number) && !isCommand)
        _link.after(device.profile().delays.write, [this, fails] { confirm(fails); });
}

bool GattCharacteristic::breaksAtWrite(int number)
{
    SimulatedDevice &device = _link.peer();
    FaultScript &faults = device.faults();
    const auto delay = device.profile().delays.write;
    if (const auto restart = faults.take(Fault::Kind::DaemonRestartAtWrite, {}, number)) {
        _context.restart(restart->time);
    } else if (const auto off = faults.take(Fault::Kind::RadioOffAtWrite, {}, number)) {
        _link.later(delay, [this, off] { _context.radio.switchOff(off->time); });
    } else if (const auto drop = faults.take(Fault::Kind::DropAtWrite, {}, number)) {
        // With an error, what is under way fails before the end is told.
        _link.later(delay, [&device, drop] { device.dropLink(drop->withError); });
    } else if (faults.take(Fault::Kind::LoseConfirmation, {}, number)) {
        _link.later(_context.daemon.answerTimeout, [&device] { device.dropLink(true); });
    } else {
        return false;
    }
    return true;
}

void GattCharacteristic::confirm(bool fails)
{
    const BusCall pending = *std::exchange(_pendingWrite, {});
    if (fails)
        pending.fail(refused());
    else
        pending.reply();
}

void GattCharacteristic::startNotify(const BusCall &call)
{
    if (!_link.isResolved())
        call.fail(BusErrors::notConnected());
    else if (!carriesData())
        call.fail(BusErrors::notSupported());
    else if (_subscribers.contains(call.client()))
        call.reply();
    else if (_pendingNotify)
        call.fail(BusErrors::inProgress());
    else
        subscribe(call);
}

void GattCharacteristic::subscribe(const BusCall &call)
{
    _pendingNotify = call;
    _link.after(_link.peer().profile().delays.read, [this] {
        // The client may have left meanwhile.
        const auto pending = std::exchange(_pendingNotify, {});
        if (!pending)
            return;
        if (_link.peer().faults().take(Fault::Kind::NotifyFails)) {
            pending->fail(refused());
            return;
        }
        _subscribers.insert(pending->client());
        if (_subscribers.size() == 1)
            tellNotifying();
        pending->reply();
    });
}

void GattCharacteristic::stopNotify(const BusCall &call)
{
    if (!_subscribers.remove(call.client())) {
        call.fail(BusErrors::failed(u"No notify session started"_s));
        return;
    }
    if (_subscribers.isEmpty())
        tellNotifying();
    call.reply();
}

void GattCharacteristic::forgetClient(const QString &client)
{
    if (_pendingNotify && _pendingNotify->client() == client)
        _pendingNotify.reset();
    if (_subscribers.remove(client) && _subscribers.isEmpty())
        tellNotifying();
}

void GattCharacteristic::notified(const QByteArray &value)
{
    if (!_subscribers.isEmpty())
        tellValue(value);
}

void GattCharacteristic::failPending()
{
    for (auto *pending : {&_pendingRead, &_pendingWrite, &_pendingNotify}) {
        if (const auto call = std::exchange(*pending, {}))
            call->fail(notConnectedFailure());
    }
}

void GattCharacteristic::tellValue(const QByteArray &value)
{
    _value = value;
    _context.tree.tellChanged(*this, QLatin1StringView(Interface), {u"Value"_s});
}

void GattCharacteristic::tellNotifying()
{
    _context.tree.tellChanged(*this, QLatin1StringView(Interface), {u"Notifying"_s});
}

} // namespace cvtamber
