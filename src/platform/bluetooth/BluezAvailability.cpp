// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/BluezAvailability.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

BluetoothCentral::State BluezAvailability::state() const
{
    using State = BluetoothCentral::State;
    switch (service) {
    case Service::Unknown:
        return State::Unknown;
    case Service::NoBus:
    case Service::NotRunning:
    case Service::NotAnswering:
        return State::Unsupported;
    case Service::Denied:
        return State::Unauthorized;
    case Service::Running:
        break;
    }
    if (!hasAdapter)
        return State::Unsupported;
    return isPowered ? State::PoweredOn : State::PoweredOff;
}

QString BluezAvailability::text() const
{
    switch (service) {
    case Service::Unknown:
        return u"Bluetooth is starting; wait a moment."_s;
    case Service::NoBus:
        return u"There is no system message bus, through which Bluetooth is reached; start it with "
               "\"systemctl start dbus\"."_s;
    case Service::NotRunning:
        return u"The Bluetooth service is not running; start it with \"systemctl start bluetooth\"."_s;
    case Service::NotAnswering:
        return u"The Bluetooth service does not answer; restart it with \"systemctl restart bluetooth\"."_s;
    case Service::Denied:
        return u"You have no permission to use Bluetooth; ask for it, on many systems with "
               "\"adduser NAME bluetooth\", and log in again."_s;
    case Service::Running:
        break;
    }
    if (!hasAdapter)
        return u"This computer has no Bluetooth adapter; plug one in or switch it on."_s;
    if (isPowered)
        return {};
    if (isBlocked)
        return u"Bluetooth is blocked; unblock it with \"rfkill unblock bluetooth\"."_s;
    return u"Bluetooth is switched off; switch it on with \"bluetoothctl power on\"."_s;
}

} // namespace cvtamber
