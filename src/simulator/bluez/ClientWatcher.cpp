// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/ClientWatcher.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace cvtamber {

using namespace Qt::StringLiterals;

ClientWatcher::ClientWatcher(const QDBusConnection &connection, const Gone &gone)
    : _connection(connection)
    , _gone(gone)
{
    _watcher.setConnection(connection);
    _watcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(&_watcher, &QDBusServiceWatcher::serviceUnregistered, &_watcher,
                     [this](const QString &client) { leave(client); });
}

void ClientWatcher::seen(const QString &client)
{
    if (client.isEmpty() || _clients.contains(client))
        return;
    _clients.insert(client);
    _watcher.addWatchedService(client);
    // It may have left before the watch began.
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << client;
    auto *answer = new QDBusPendingCallWatcher(_connection.asyncCall(question), &_watcher);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &_watcher, [this, client, answer] {
        answer->deleteLater();
        const QDBusPendingReply<bool> hasOwner = *answer;
        if (hasOwner.isValid() && !hasOwner.value())
            leave(client);
    });
}

void ClientWatcher::leave(const QString &client)
{
    if (!_clients.remove(client))
        return;
    _watcher.removeWatchedService(client);
    _gone(client);
}

} // namespace cvtamber
