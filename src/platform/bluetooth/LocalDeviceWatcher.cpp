// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/LocalDeviceWatcher.h"

#include <QMetaObject>

namespace cvtamber {

using namespace Qt::StringLiterals;

LocalDeviceWatcher::LocalDeviceWatcher()
{
    QObject::connect(&_device, &QBluetoothLocalDevice::hostModeStateChanged, &_device, [this] { update(); });
    QObject::connect(&_device, &QBluetoothLocalDevice::errorOccurred, &_device,
                     [this](QBluetoothLocalDevice::Error error) {
                         _isDenied = error == QBluetoothLocalDevice::MissingPermissionsError;
                         update();
                     });
    QMetaObject::invokeMethod(
        &_device, [this] { update(); }, Qt::QueuedConnection);
}

void LocalDeviceWatcher::update()
{
    using State = BluetoothCentral::State;
    State state = State::PoweredOn;
    if (_isDenied)
        state = State::Unauthorized;
    else if (!_device.isValid())
        state = State::Unsupported;
    else if (_device.hostMode() == QBluetoothLocalDevice::HostPoweredOff)
        state = State::PoweredOff;
    if (state == _state)
        return;
    _state = state;
    if (_changed)
        _changed();
}

QString LocalDeviceWatcher::stateText() const
{
    using State = BluetoothCentral::State;
    switch (_state) {
    case State::PoweredOn:
        return {};
    case State::PoweredOff:
        return u"Bluetooth is switched off; switch it on in the system settings."_s;
    case State::Unsupported:
        return u"There is no Bluetooth adapter here; plug one in or switch it on."_s;
    case State::Unauthorized:
        return u"This program may not use Bluetooth; allow it in the system settings."_s;
    case State::Unknown:
    case State::Resetting:
        break;
    }
    return u"Bluetooth is starting; wait a moment."_s;
}

} // namespace cvtamber
