// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothCentral.h"

namespace cvtamber {

// What is known of the Bluetooth daemon and the adapter that Qt uses, and what follows from it.
//
//   service Unknown                                       -> Unknown
//   NoBus, NotRunning, NotAnswering, Running, no adapter  -> Unsupported
//   Denied                                                -> Unauthorized
//   Running, adapter without power                        -> PoweredOff
//   Running, adapter with power                           -> PoweredOn
struct BluezAvailability
{
    enum class Service {
        Unknown, // not asked yet
        NoBus,   // there is no system bus
        NotRunning,
        NotAnswering,
        Denied,
        Running,
    };

    Service service = Service::Unknown;
    bool hasAdapter = false;
    bool isPowered = false;
    bool isBlocked = false; // by rfkill, as far as the daemon tells

    BluetoothCentral::State state() const;
    // One sentence that says what to do, empty when powered on.
    QString text() const;

    friend bool operator==(const BluezAvailability &, const BluezAvailability &) = default;
};

} // namespace cvtamber
