// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QSet>

#include <functional>

namespace cvtamber {

// Tells when a client that called has left the bus, once for each. Keeps the connection open as long as it
// lives. Main thread.
class ClientWatcher
{
public:
    using Gone = std::function<void(const QString &client)>;

    ClientWatcher(const QDBusConnection &connection, const Gone &gone);

    // Clients that are known already are ignored.
    void seen(const QString &client);

private:
    void leave(const QString &client);

    QDBusConnection _connection;
    Gone _gone;
    QSet<QString> _clients;
    QDBusServiceWatcher _watcher;
};

} // namespace cvtamber
