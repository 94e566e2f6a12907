// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/RadioChoice.h"

#include "simulator/SimulatedRadio.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

RadioChoice chooseRadio(const CommandLine &commandLine, RunLoop &runLoop, SystemLog &log,
                        Locations &locations)
{
    if (!commandLine.simulate)
        return {nullptr, ExitStatus::NoBluetooth,
                u"This build of corvane has no Bluetooth. Use --simulate for a simulated device."_s};
    const SimulationResult result =
        SimulatedRadio::fromFile(runLoop, log, commandLine.profile, locations.stateFolder());
    if (!result.radio)
        return {nullptr, ExitStatus::WrongUsage, result.error};
    return {[radio = result.radio] { return radio->makeCentral(); }, ExitStatus::Done, {}};
}

} // namespace cvtamber
