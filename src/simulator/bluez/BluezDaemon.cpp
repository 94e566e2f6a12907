// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/BluezDaemon.h"

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

BluezDaemon::BluezDaemon(const BluezServices &services, const QString &busAddress)
    : _services(services)
    , _busAddress(busAddress)
    , _plannedRestart(services.runLoop)
    , _step(services.runLoop)
{
    _services.radio.setStateChanged([this] {
        if (_session)
            _session->radioChanged();
    });
}

BluezDaemon::~BluezDaemon()
{
    _services.radio.setStateChanged({});
}

QString BluezDaemon::start(const std::function<void(const QString &)> &failed)
{
    _failed = failed;
    QString error = openSession();
    if (error.isEmpty() && _services.daemon.restartsAfter >= 0ms)
        _plannedRestart.start(_services.daemon.restartsAfter,
                              [this] { restart(_services.daemon.restartTakes); });
    return error;
}

QString BluezDaemon::openSession()
{
    _session = std::make_unique<BluezSession>(_services,
                                              [this](std::chrono::milliseconds takes) { restart(takes); });
    QString error = _session->open(_busAddress, _remembered, [this] { _failed(u"The bus has ended."_s); });
    if (!error.isEmpty())
        _session.reset();
    return error;
}

void BluezDaemon::restart(std::chrono::milliseconds takes)
{
    if (!_session || _step.isActive())
        return;
    // Never from inside a call of a client, whose objects go away here.
    _step.start(0ns, [this, takes] {
        _services.log.info(u"The daemon goes away for %1 ms."_s.arg(takes.count()));
        _remembered = _session->rememberedAddresses();
        _session.reset();
        _step.start(takes, [this] {
            const QString error = openSession();
            if (!error.isEmpty())
                _failed(error);
        });
    });
}

} // namespace cvtamber
