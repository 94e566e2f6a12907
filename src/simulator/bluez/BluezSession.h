// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/AgentRegistry.h"
#include "simulator/bluez/BluezAdapter.h"
#include "simulator/bluez/ClientWatcher.h"

#include <QTimer>

namespace cvtamber {

// What a session stands on; outlives it.
struct BluezServices
{
    RunLoop &runLoop;
    SystemLog &log;
    SimulatedRadio &radio;
    const DaemonProfile &daemon;
};

// One run of the stand-in daemon: its connection to the bus, its name and its objects.
//
// Destroying it closes the connection first, so that clients see a daemon that dies: calls without an answer
// fail, and nothing is told of objects and links. Opening waits for the bus, otherwise nothing here waits.
// Owner: BluezDaemon. Main thread.
class BluezSession
{
public:
    BluezSession(const BluezServices &services,
                 const std::function<void(std::chrono::milliseconds)> &restart);
    BluezSession(const BluezSession &) = delete;
    BluezSession &operator=(const BluezSession &) = delete;
    ~BluezSession();

    // Takes the name on the bus. The error is a sentence, empty when all is well.
    QString open(const QString &busAddress, const QStringList &remembered,
                 const std::function<void()> &busLost);
    void radioChanged();
    QStringList rememberedAddresses() const;

private:
    void close();

    BluezServices _services;
    QString _connectionName;
    QTimer _busLost;
    BusCall::Send _send;
    ObjectTree _tree;
    BluezContext _context;
    std::unique_ptr<ClientWatcher> _clients;
    QStringList _remembered;
    AgentRegistry _agents;
    std::unique_ptr<BluezAdapter> _adapter; // none where the machine has no Bluetooth
};

} // namespace cvtamber
