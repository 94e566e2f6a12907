// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "device/BluetoothCentral.h"

#include <functional>

namespace cvtamber {

// Knows whether Bluetooth can be used, and says when that changes.
//
// The state is Unknown at first and becomes known from the event loop. Main thread. Owner: the radio.
class AdapterWatcher : public InterfaceBase
{
public:
    virtual BluetoothCentral::State state() const = 0;
    // One sentence that says what to do, empty when powered on.
    virtual QString stateText() const = 0;
    // False while the process that keeps the links is not there: what it was asked for is gone.
    virtual bool isServiceRunning() const = 0;
    // Called after each change, never from inside setChanged.
    virtual void setChanged(const std::function<void()> &changed) = 0;
};

// The watcher of this platform.
std::unique_ptr<AdapterWatcher> makeAdapterWatcher();

} // namespace cvtamber
