// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/BluezAdapter.h"

#include <QDBusObjectPath>

#include <algorithm>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;

const QString AdapterInterface = u"org.bluez.Adapter1"_s;
const QString AdapterPath = u"/org/bluez/hci0"_s;
// Locally administered, so that it is nobody's.
const QString AdapterAddress = u"02:C0:2A:7E:00:01"_s;
const QString AdapterName = u"corvane-simulator"_s;

} // namespace

BluezAdapter::BluezAdapter(BluezContext &context, const QStringList &remembered)
    : BusObject(AdapterPath)
    , _context(context)
{
    addInterface(AdapterInterface);
    declareIdentity();
    declareState();
    declareMethods();
    _context.tree.add(*this);
    for (const auto &peer : context.radio.devices()) {
        const auto device = std::make_shared<BluezDevice>(
            context, peer, path(), [this](const auto &services) { return isWanted(services); });
        if (remembered.contains(device->address()))
            device->remember();
        _devices.append(device);
    }
}

BluezAdapter::~BluezAdapter()
{
    _devices.clear();
    _context.tree.remove(*this);
}

void BluezAdapter::declareIdentity()
{
    BusInterface &adapter = ownInterface();
    adapter.property(u"Address"_s, u"s"_s, [] { return AdapterAddress; });
    adapter.property(u"AddressType"_s, u"s"_s, [] { return u"public"_s; });
    adapter.property(u"Name"_s, u"s"_s, [] { return AdapterName; });
    adapter.property(
        u"Alias"_s, u"s"_s, [this] { return _alias.isEmpty() ? AdapterName : _alias; },
        [this](const QVariant &value) -> std::optional<BusError> {
            _alias = value.toString();
            tell({u"Alias"_s});
            return std::nullopt;
        });
    adapter.property(u"Class"_s, u"u"_s, [] { return 0U; });
    adapter.property(u"UUIDs"_s, u"as"_s, [] { return QStringList(); });
    adapter.property(u"Roles"_s, u"as"_s, [] { return QStringList{u"central"_s}; });
}

void BluezAdapter::declareState()
{
    BusInterface &adapter = ownInterface();
    adapter.property(
        u"Powered"_s, u"b"_s, [this] { return _context.isPowered(); },
        [this](const QVariant &value) { return setPowered(value.toBool()); });
    const auto flag = [this, &adapter](const QString &name, bool &value) {
        adapter.property(
            name, u"b"_s, [&value] { return value; },
            [this, name, &value](const QVariant &wanted) -> std::optional<BusError> {
                value = wanted.toBool();
                tell({name});
                return std::nullopt;
            });
    };
    flag(u"Discoverable"_s, _discoverable);
    flag(u"Pairable"_s, _pairable);
    adapter.property(u"DiscoverableTimeout"_s, u"u"_s, [] { return 0U; });
    adapter.property(u"PairableTimeout"_s, u"u"_s, [] { return 0U; });
    adapter.property(u"Discovering"_s, u"b"_s, [this] { return _listening; });
}

void BluezAdapter::declareMethods()
{
    BusInterface &adapter = ownInterface();
    adapter.method(u"StartDiscovery"_s, {}, {}, [this](const BusCall &call) { startDiscovery(call); });
    adapter.method(u"StopDiscovery"_s, {}, {}, [this](const BusCall &call) { stopDiscovery(call); });
    adapter.method(u"SetDiscoveryFilter"_s, u"a{sv}"_s, {},
                   [this](const BusCall &call) { setDiscoveryFilter(call); });
    adapter.method(u"GetDiscoveryFilters"_s, {}, u"as"_s, [](const BusCall &call) {
        call.reply(QStringList{u"UUIDs"_s, u"RSSI"_s, u"Pathloss"_s, u"Transport"_s, u"DuplicateData"_s,
                               u"Discoverable"_s, u"Pattern"_s});
    });
    adapter.method(u"RemoveDevice"_s, u"o"_s, {}, [this](const BusCall &call) { removeDevice(call); });
}

void BluezAdapter::tell(const QStringList &properties)
{
    _context.tree.tellChanged(*this, AdapterInterface, properties);
}

QStringList BluezAdapter::rememberedAddresses() const
{
    QStringList addresses;
    for (const auto &device : _devices) {
        if (device->isRemembered())
            addresses.append(device->address());
    }
    return addresses;
}

std::optional<BusError> BluezAdapter::setPowered(bool powered)
{
    _context.radio.setState(powered ? BluetoothCentral::State::PoweredOn
                                    : BluetoothCentral::State::PoweredOff);
    return std::nullopt;
}

void BluezAdapter::radioChanged()
{
    if (!_context.isPowered()) {
        for (const auto &device : _devices)
            device->radioOff();
        for (Discovery &discovery : _discoveries)
            discovery.running = false;
        updateDiscovering();
    }
    tell({u"Powered"_s});
}

bool BluezAdapter::isDiscovering() const
{
    return std::any_of(_discoveries.cbegin(), _discoveries.cend(),
                       [](const Discovery &discovery) { return discovery.running; });
}

bool BluezAdapter::isWanted(const QList<BluetoothUuid> &services) const
{
    return std::any_of(_discoveries.cbegin(), _discoveries.cend(), [&](const Discovery &discovery) {
        if (!discovery.running || discovery.classicOnly)
            return false;
        return discovery.services.isEmpty() ||
               std::any_of(services.cbegin(), services.cend(), [&](const BluetoothUuid &service) {
                   return discovery.services.contains(service);
               });
    });
}

void BluezAdapter::updateDiscovering()
{
    if (_listening == isDiscovering())
        return;
    _listening = !_listening;
    for (const auto &device : _devices)
        device->setListening(_listening);
    tell({u"Discovering"_s});
}

void BluezAdapter::startDiscovery(const BusCall &call)
{
    if (!_context.isPowered()) {
        call.fail(BusErrors::notReady());
        return;
    }
    Discovery &discovery = _discoveries[call.client()];
    if (discovery.running) {
        call.fail(BusErrors::inProgress());
        return;
    }
    discovery.running = true;
    updateDiscovering();
    call.reply();
}

void BluezAdapter::stopDiscovery(const BusCall &call)
{
    if (!_discoveries.value(call.client()).running) {
        call.fail(_context.isPowered() ? BusErrors::failed(u"No discovery started"_s)
                                       : BusErrors::notReady());
        return;
    }
    _discoveries.remove(call.client());
    updateDiscovering();
    call.reply();
}

void BluezAdapter::setDiscoveryFilter(const BusCall &call)
{
    const auto filter = call.argument<QVariantMap>(0);
    Discovery &discovery = _discoveries[call.client()];
    discovery.services.clear();
    for (const QString &text : filter.value(u"UUIDs"_s).toStringList()) {
        const BluetoothUuid uuid(text);
        if (uuid.isNull()) {
            call.fail(BusErrors::invalidArguments(u"Invalid arguments in method call"_s));
            return;
        }
        discovery.services.append(uuid);
    }
    discovery.classicOnly = filter.value(u"Transport"_s).toString() == u"bredr";
    call.reply();
}

void BluezAdapter::removeDevice(const BusCall &call)
{
    const QString wanted = call.argument<QDBusObjectPath>(0).path();
    for (const auto &device : _devices) {
        if (device->path() == wanted && _context.tree.contains(*device)) {
            device->removeFromBus();
            call.reply();
            return;
        }
    }
    call.fail(BusErrors::doesNotExist());
}

void BluezAdapter::forgetClient(const QString &client)
{
    _discoveries.remove(client);
    updateDiscovering();
    for (const auto &device : _devices)
        device->forgetClient(client);
}

} // namespace cvtamber
