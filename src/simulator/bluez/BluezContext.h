// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"
#include "simulator/SimulatedRadio.h"
#include "simulator/bluez/ObjectTree.h"

namespace cvtamber {

// What the objects of the stand-in daemon share; outlives them all.
struct BluezContext
{
    RunLoop &runLoop;
    ObjectTree &tree;
    SimulatedRadio &radio;
    const DaemonProfile &daemon;
    // Ends the daemon soon and starts it again after this time.
    std::function<void(std::chrono::milliseconds)> restart;

    bool isPowered() const { return radio.state() == BluetoothCentral::State::PoweredOn; }
};

} // namespace cvtamber
