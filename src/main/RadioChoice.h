// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Locations.h"
#include "base/RunLoop.h"
#include "base/SystemLog.h"
#include "cli/CommandLine.h"
#include "cli/ExitStatus.h"
#include "device/BluetoothCentral.h"

namespace cvtamber {

// The radio of the run, or why there is none.
struct RadioChoice
{
    BluetoothCentralFactory makeCentral; // empty: see the rest
    ExitStatus status = ExitStatus::Done;
    QString problem; // a sentence
};

// The one place where it is decided what carries the link. The run loop and the log outlive the centrals.
RadioChoice chooseRadio(const CommandLine &commandLine, RunLoop &runLoop, SystemLog &log,
                        Locations &locations);

} // namespace cvtamber
