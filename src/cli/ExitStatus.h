// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cvtamber {

// What `corvane` tells the shell. The numbers are part of its interface: scripts test them.
enum class ExitStatus : int {
    Done = 0,
    Failed = 1,
    WrongUsage = 2,
    NoBluetooth = 3,
    NoDevice = 4,   // none found, not the named one, or several and none named
    LinkFailed = 5, // not connected, not identified, lost or stalled
    NoSuchFile = 6, // on the device, or here for put, emboss and batch
    // 128 and the number of the signal, as shells do it.
    HungUp = 129,
    Interrupted = 130,
    Terminated = 143,
};

} // namespace cvtamber
