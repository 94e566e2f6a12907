// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/BluezSession.h"

namespace cvtamber {

// Puts the devices of a simulated radio on a D-Bus, as the Bluetooth daemon of a Linux system would: any client
// of "org.bluez" can scan, connect, read, write and be notified, with the delays and faults of the profile.
//
// What the daemon remembers of devices lasts over its restarts, links do not. Owner: main(). Main thread.
class BluezDaemon
{
public:
    BluezDaemon(const BluezServices &services, const QString &busAddress);
    BluezDaemon(const BluezDaemon &) = delete;
    BluezDaemon &operator=(const BluezDaemon &) = delete;
    ~BluezDaemon();

    // The error is a sentence, empty when the name is owned. Later failures go to `failed`.
    QString start(const std::function<void(const QString &error)> &failed);
    // Dies now and comes back after this time. A restart that is under way goes on as it was.
    void restart(std::chrono::milliseconds takes);

private:
    QString openSession();

    BluezServices _services;
    QString _busAddress;
    QStringList _remembered;
    std::function<void(const QString &)> _failed;
    DelayedCall _plannedRestart;
    DelayedCall _step;
    std::unique_ptr<BluezSession> _session;
};

} // namespace cvtamber
