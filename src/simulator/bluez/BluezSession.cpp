// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/BluezSession.h"

#include <QDBusConnection>
#include <QDBusError>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;

const QString DaemonName = u"org.bluez"_s;

QString nextConnectionName()
{
    static int number = 0;
    return u"simulator-%1"_s.arg(++number);
}

} // namespace

BluezSession::BluezSession(const BluezServices &services,
                           const std::function<void(std::chrono::milliseconds)> &restart)
    : _services(services)
    , _connectionName(nextConnectionName())
    , _send([this](const QDBusMessage &message) { QDBusConnection(_connectionName).send(message); })
    , _tree(services.log, _send)
    , _context{services.runLoop, _tree, services.radio, services.daemon, restart}
    , _agents(_context)
{
    _busLost.setSingleShot(true);
}

BluezSession::~BluezSession()
{
    close();
}

QString BluezSession::open(const QString &busAddress, const QStringList &remembered,
                           const std::function<void()> &busLost)
{
    _remembered = remembered;
    QDBusConnection connection = QDBusConnection::connectToBus(busAddress, _connectionName);
    if (!connection.isConnected())
        return u"The bus %1 cannot be reached: %2"_s.arg(busAddress, connection.lastError().message());
    _busLost.callOnTimeout(busLost);
    connection.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                       u"Disconnected"_s, &_busLost, SLOT(start()));
    _clients = std::make_unique<ClientWatcher>(connection, [this](const QString &client) {
        _agents.forgetClient(client);
        if (_adapter)
            _adapter->forgetClient(client);
    });
    _tree.setClientSeen([this](const QString &client) { _clients->seen(client); });
    radioChanged();
    connection.registerVirtualObject(u"/"_s, &_tree, QDBusConnection::SubPath);
    if (!connection.registerService(DaemonName))
        return u"The name %1 cannot be had on the bus %2: another Bluetooth daemon has it, or the bus does "
               "not allow it."_s.arg(DaemonName, busAddress);
    return {};
}

void BluezSession::radioChanged()
{
    const auto state = _services.radio.state();
    _tree.setDenied(state == BluetoothCentral::State::Unauthorized);
    if (state == BluetoothCentral::State::Unsupported)
        _adapter.reset();
    else if (_adapter)
        _adapter->radioChanged();
    else
        _adapter = std::make_unique<BluezAdapter>(_context, _remembered);
}

QStringList BluezSession::rememberedAddresses() const
{
    return _adapter ? _adapter->rememberedAddresses() : _remembered;
}

void BluezSession::close()
{
    // All that refers to the connection goes first: it closes with the last reference.
    _tree.setClientSeen({});
    _clients.reset();
    QDBusConnection::disconnectFromBus(_connectionName);
}

} // namespace cvtamber
