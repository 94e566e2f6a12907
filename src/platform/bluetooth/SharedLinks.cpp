// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/SharedLinks.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

SharedLinks::~SharedLinks()
{
    for (const Released &released : std::exchange(_released, {})) {
        QObject::disconnect(released.controller, nullptr, nullptr, nullptr);
        delete released.controller;
    }
}

void SharedLinks::use(const QString &device)
{
    ++_users[device];
}

void SharedLinks::release(const QString &device, QLowEnergyController *controller)
{
    if (--_users[device] == 0)
        _users.remove(device);
    if (controller->state() == QLowEnergyController::UnconnectedState) {
        controller->deleteLater();
    } else {
        _released.append({device, controller});
        QObject::connect(controller, &QLowEnergyController::stateChanged, controller,
                         [this, controller](QLowEnergyController::ControllerState state) {
                             if (state == QLowEnergyController::UnconnectedState)
                                 remove(controller);
                         });
    }
    closeUnused(device);
}

void SharedLinks::closeUnused(const QString &device)
{
    if (_isServiceAway || _users.contains(device))
        return;
    // A copy: a controller may be unconnected before the call returns.
    const auto candidates = _released;
    for (const Released &released : candidates) {
        if (released.device == device && released.controller->state() != QLowEnergyController::ClosingState)
            released.controller->disconnectFromDevice();
    }
}

void SharedLinks::remove(const QLowEnergyController *controller)
{
    const auto found =
        std::find_if(_released.begin(), _released.end(),
                     [controller](const Released &released) { return released.controller == controller; });
    if (found == _released.end())
        return;
    found->controller->deleteLater();
    _released.erase(found);
    callWaiting();
}

bool SharedLinks::isClosing(const QString &device) const
{
    return !_users.contains(device) &&
           std::any_of(_released.begin(), _released.end(),
                       [&device](const Released &released) { return released.device == device; });
}

void SharedLinks::whenClosed(const QString &device, const std::function<void()> &call)
{
    _waiting.append({device, call});
}

void SharedLinks::callWaiting()
{
    const auto isReady = [this](const Waiting &waiting) { return !isClosing(waiting.device); };
    const auto firstReady = std::stable_partition(_waiting.begin(), _waiting.end(), std::not_fn(isReady));
    const QList<Waiting> ready(firstReady, _waiting.end());
    _waiting.erase(firstReady, _waiting.end());
    for (const Waiting &waiting : ready)
        waiting.call();
}

void SharedLinks::serviceCameBack()
{
    _isServiceAway = false;
    for (const Released &released : std::exchange(_released, {})) {
        QObject::disconnect(released.controller, nullptr, released.controller, nullptr);
        released.controller->deleteLater();
    }
    callWaiting();
}

} // namespace cvtamber
