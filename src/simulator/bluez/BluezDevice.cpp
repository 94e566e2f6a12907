// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/BluezDevice.h"

#include <QCryptographicHash>
#include <QDBusObjectPath>

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QString DeviceInterface = u"org.bluez.Device1"_s;
// No two advertisements in a row have the same strength: the daemon tells of changes alone.
constexpr short StrongestRssi = -52;
constexpr int RssiSteps = 7;
constexpr int AddressSize = 6;
// The two highest bits of a static random address.
constexpr char RandomAddressBits = '\xC0';
constexpr int FirstHandle = 0x0a;

QString pathOf(const QString &adapterPath, const QString &address)
{
    return adapterPath + u"/dev_"_s + QString(address).replace(u':', u'_');
}

} // namespace

QString BluezDevice::addressOf(const DeviceProfile &profile)
{
    if (!profile.address.isEmpty())
        return profile.address;
    QByteArray bytes = QCryptographicHash::hash(profile.serial, QCryptographicHash::Sha1).left(AddressSize);
    bytes[0] = static_cast<char>(bytes[0] | RandomAddressBits);
    return QString::fromLatin1(bytes.toHex(':')).toUpper();
}

BluezDevice::BluezDevice(BluezContext &context, const std::shared_ptr<SimulatedDevice> &peer,
                         const QString &adapterPath, const Wanted &wanted)
    : BusObject(pathOf(adapterPath, addressOf(peer->profile())))
    , _context(context)
    , _peer(peer)
    , _address(addressOf(peer->profile()))
    , _wanted(wanted)
    , _advertising(context.runLoop)
    , _connectTimer(context.runLoop)
    , _forgetTimer(context.runLoop)
    , _linkCalls(context.runLoop)
{
    addInterface(DeviceInterface);
    declareIdentity(adapterPath);
    declareState();
    declareMethods();
    if (_peer->profile().remembered)
        remember();
}

BluezDevice::~BluezDevice()
{
    _peer->detach(this);
    _services.clear();
    _context.tree.remove(*this);
}

void BluezDevice::declareIdentity(const QString &adapterPath)
{
    BusInterface &device = ownInterface();
    device.property(u"Address"_s, u"s"_s, [this] { return _address; });
    device.property(u"AddressType"_s, u"s"_s, [this] {
        const int highest = QStringView(_address).left(2).toInt(nullptr, 16);
        return (highest & 0xC0) == 0xC0 ? u"random"_s : u"public"_s;
    });
    device.property(u"Name"_s, u"s"_s, [this] {
        const QString &name = _peer->profile().advertisedName;
        return name.isNull() ? QVariant() : QVariant(name);
    });
    device.property(
        u"Alias"_s, u"s"_s, [this] { return alias(); },
        [this](const QVariant &value) -> std::optional<BusError> {
            _alias = value.toString();
            tell({u"Alias"_s});
            return std::nullopt;
        });
    device.property(u"Adapter"_s, u"o"_s,
                    [adapterPath] { return QVariant::fromValue(QDBusObjectPath(adapterPath)); });
    device.property(u"UUIDs"_s, u"as"_s, [this] { return uuids(); });
}

void BluezDevice::declareState()
{
    BusInterface &device = ownInterface();
    const auto flag = [this, &device](const QString &name, bool &value) {
        device.property(
            name, u"b"_s, [&value] { return value; },
            [this, name, &value](const QVariant &wanted) -> std::optional<BusError> {
                value = wanted.toBool();
                tell({name});
                return std::nullopt;
            });
    };
    flag(u"Trusted"_s, _trusted);
    flag(u"Blocked"_s, _blocked);
    device.property(u"Paired"_s, u"b"_s, [this] { return _paired; });
    device.property(u"Bonded"_s, u"b"_s, [this] { return _paired; });
    device.property(u"LegacyPairing"_s, u"b"_s, [] { return false; });
    device.property(u"Connected"_s, u"b"_s,
                    [this] { return _state == State::Linked || _state == State::Resolved; });
    device.property(u"ServicesResolved"_s, u"b"_s, [this] { return isResolved(); });
    device.property(u"RSSI"_s, u"n"_s, [this] { return _rssi ? QVariant::fromValue(*_rssi) : QVariant(); });
}

void BluezDevice::declareMethods()
{
    BusInterface &device = ownInterface();
    device.method(u"Connect"_s, {}, {}, [this](const BusCall &call) { connect(call); });
    device.method(u"Disconnect"_s, {}, {}, [this](const BusCall &call) {
        disconnect();
        call.reply();
    });
    device.method(u"Pair"_s, {}, {}, [this](const BusCall &call) { pair(call); });
    device.method(u"CancelPairing"_s, {}, {},
                  [](const BusCall &call) { call.fail(BusErrors::doesNotExist()); });
}

QStringList BluezDevice::uuids() const
{
    QStringList texts;
    for (const BluetoothUuid &uuid : _peer->profile().advertisedServices)
        texts.append(uuid.toString());
    if (_servicesKnown || _peer->profile().remembered) {
        for (const OfferedService &service : _peer->offeredServices())
            texts.append(service.uuid.toString());
    }
    texts.removeDuplicates();
    return texts;
}

QString BluezDevice::alias() const
{
    if (!_alias.isEmpty())
        return _alias;
    const QString &name = _peer->profile().advertisedName;
    return name.isNull() ? QString(_address).replace(u':', u'-') : name;
}

void BluezDevice::tell(const QStringList &properties)
{
    _context.tree.tellChanged(*this, DeviceInterface, properties);
}

void BluezDevice::remember()
{
    _remembered = true;
    _forgetTimer.cancel();
    show();
}

void BluezDevice::show()
{
    _context.tree.add(*this);
}

void BluezDevice::removeFromBus()
{
    disconnect();
    _remembered = false;
    _servicesKnown = false;
    _paired = false;
    _rssi.reset();
    _forgetTimer.cancel();
    _services.clear();
    _context.tree.remove(*this);
}

void BluezDevice::setListening(bool listening)
{
    if (listening) {
        _advertising.start(std::max(_peer->profile().delays.advertising, 1ms), [this] {
            setListening(true);
            if (_peer->advertises({}) && _wanted(_peer->profile().advertisedServices))
                advertised();
        });
        return;
    }
    _advertising.cancel();
    if (std::exchange(_rssi, {}))
        tell({u"RSSI"_s});
}

void BluezDevice::advertised()
{
    ++_timesSeen;
    _rssi = static_cast<short>(StrongestRssi - _timesSeen % RssiSteps);
    if (_context.tree.contains(*this))
        tell({u"RSSI"_s});
    else
        show();
    forgetLater();
}

void BluezDevice::forgetLater()
{
    if (!_remembered)
        _forgetTimer.start(_context.daemon.forgetsAfter, [this] { removeFromBus(); });
}

void BluezDevice::connect(const BusCall &call)
{
    if (!_context.isPowered()) {
        call.fail(BusErrors::notReady());
    } else if (_state == State::Connecting) {
        call.fail(BusErrors::inProgress());
    } else if (_state != State::Disconnected) {
        call.reply();
    } else {
        remember();
        _state = State::Connecting;
        _connectCall = call;
        _connectClient = call.client();
        _connectTimer.start(_context.daemon.connectTimeout,
                            [this] { connectFailed(u"le-connection-abort-by-local"_s); });
        after(_peer->profile().delays.connect, [this] { tryConnect(); });
    }
}

void BluezDevice::tryConnect()
{
    if (!_peer->isInRange()) {
        _peer->waitForReturn(weak_from_this());
        return;
    }
    FaultScript &faults = _peer->faults();
    if (faults.take(Fault::Kind::ConnectNever)) {
        _connectTimer.cancel();
        return;
    }
    if (faults.take(Fault::Kind::ConnectFails)) {
        ++_peer->counters().failedConnects;
        connectFailed(u"le-connection-refused"_s);
        return;
    }
    _connectTimer.cancel();
    _peer->attach(weak_from_this());
    _state = State::Linked;
    tell({u"Connected"_s});
    if (const auto drop = faults.take(Fault::Kind::DropAfterConnect))
        dropSoon(drop->withError);
    else
        after(_peer->profile().delays.discover, [this] { discover(); });
}

void BluezDevice::discover()
{
    ++_peer->counters().discoveries;
    FaultScript &faults = _peer->faults();
    if (const auto drop = faults.take(Fault::Kind::DropDuringDiscovery))
        dropSoon(drop->withError);
    else if (faults.take(Fault::Kind::DiscoveryFails))
        dropSoon(true);
    else if (faults.take(Fault::Kind::ServicesNever))
        answerConnect();
    else
        resolve();
}

void BluezDevice::resolve()
{
    if (_services.empty()) {
        int handle = FirstHandle;
        for (const OfferedService &offered : _peer->offeredServices()) {
            // The daemon keeps generic access to itself.
            if (offered.uuid != BluetoothIdentifiers::genericAccessService())
                _services.push_back(std::make_unique<GattService>(_context, *this, path(), handle, offered));
        }
    }
    _servicesKnown = true;
    _state = State::Resolved;
    tell({u"UUIDs"_s, u"ServicesResolved"_s});
    answerConnect();
}

void BluezDevice::answerConnect()
{
    if (const auto call = std::exchange(_connectCall, {}))
        call->reply();
}

void BluezDevice::connectFailed(const QString &why)
{
    _state = State::Disconnected;
    _linkCalls.cancelAll();
    _connectTimer.cancel();
    if (const auto call = std::exchange(_connectCall, {}))
        call->fail(BusErrors::failed(why));
}

void BluezDevice::disconnect()
{
    if (_state == State::Connecting) {
        connectFailed(u"le-connection-canceled"_s);
        return;
    }
    _peer->detach(this);
    linkDown(false);
}

void BluezDevice::radioOff()
{
    setListening(false);
    if (_state == State::Connecting)
        connectFailed(u"le-connection-aborted-by-local"_s);
    else
        linkEnded(u"Bluetooth was switched off."_s);
    _peer->detach(this);
}

void BluezDevice::linkDown(bool operationsFirst)
{
    if (_state == State::Disconnected)
        return;
    QStringList changes{u"Connected"_s};
    if (isResolved())
        changes.prepend(u"ServicesResolved"_s);
    _state = State::Disconnected;
    _linkCalls.cancelAll();
    _connectClient.clear();
    if (operationsFirst)
        failPending();
    tell(changes);
    failPending();
    if (const auto call = std::exchange(_connectCall, {}))
        call->fail(BusErrors::failed(u"le-connection-abort-by-remote"_s));
    if (!_context.daemon.keepsServices)
        _services.clear();
}

void BluezDevice::failPending()
{
    for (const auto &service : _services) {
        for (const auto &characteristic : service->characteristics())
            characteristic->failPending();
    }
}

void BluezDevice::pair(const BusCall &call)
{
    if (!_context.isPowered()) {
        call.fail(BusErrors::notReady());
    } else if (_paired) {
        call.fail(BusErrors::alreadyExists());
    } else if (!_peer->isInRange()) {
        call.fail({u"org.bluez.Error.ConnectionAttemptFailed"_s, u"Page Timeout"_s});
    } else {
        remember();
        _paired = true;
        tell({u"Paired"_s, u"Bonded"_s});
        call.reply();
    }
}

void BluezDevice::forgetClient(const QString &client)
{
    for (const auto &service : _services) {
        for (const auto &characteristic : service->characteristics())
            characteristic->forgetClient(client);
    }
    if (_context.daemon.linksEndWithClients && client == _connectClient)
        disconnect();
}

void BluezDevice::after(std::chrono::nanoseconds delay, const RunLoop::Callback &callback)
{
    if (delay > 0ns)
        _linkCalls.perform(delay, callback);
    else
        callback();
}

void BluezDevice::later(std::chrono::nanoseconds delay, const RunLoop::Callback &callback)
{
    _linkCalls.perform(delay, callback);
}

void BluezDevice::dropSoon(bool withError)
{
    later(0ns, [this, withError] { _peer->dropLink(withError); });
}

void BluezDevice::linkNotified(const QByteArray &value)
{
    if (!isResolved())
        return;
    for (const auto &service : _services) {
        for (const auto &characteristic : service->characteristics()) {
            if (characteristic->uuid() == BluetoothIdentifiers::dataCharacteristic())
                characteristic->notified(value);
        }
    }
}

void BluezDevice::linkEnded(const QString &error)
{
    linkDown(!error.isNull());
}

void BluezDevice::deviceCameBack()
{
    if (_state == State::Connecting)
        after(_peer->profile().delays.connect, [this] { tryConnect(); });
}

} // namespace cvtamber
