// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QLowEnergyController>
#include <QMap>
#include <QString>

#include <functional>

namespace cvtamber {

// Which devices are in use, and the controllers that nobody uses any more but that may not go yet.
//
// All controllers of one device share one link: closing any of them, destroying included, closes it for all. So
// a controller that is let go is kept aside while another uses the device, closed with the last one, and
// deleted once it is unconnected. Owner: the radio. Main thread.
class SharedLinks
{
public:
    SharedLinks() = default;
    SharedLinks(const SharedLinks &) = delete;
    SharedLinks &operator=(const SharedLinks &) = delete;
    ~SharedLinks();

    void use(const QString &device);
    // The end of what use() began. Takes the controller over.
    void release(const QString &device, QLowEnergyController *controller);
    // A link that is being closed is not fit for a new connection: it would be made and lost at once.
    bool isClosing(const QString &device) const;
    // Calls once, when the link that is being closed is gone; from inside a handler of Qt's.
    void whenClosed(const QString &device, const std::function<void()> &call);

    // While the service is away nothing is closed or deleted: either would have the service started again.
    void serviceWentAway() { _isServiceAway = true; }
    void serviceCameBack();

private:
    struct Released
    {
        QString device;
        QLowEnergyController *controller;
    };
    struct Waiting
    {
        QString device;
        std::function<void()> call;
    };

    void closeUnused(const QString &device);
    void remove(const QLowEnergyController *controller);
    void callWaiting();

    QMap<QString, int> _users;
    QList<Released> _released;
    QList<Waiting> _waiting;
    bool _isServiceAway = false;
};

} // namespace cvtamber
