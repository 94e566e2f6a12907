// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/RadioChoice.h"

#include "platform/bluetooth/QtBluetoothRadio.h"
#include "simulator/SimulatedRadio.h"

#include <QLoggingCategory>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

RadioChoice platformRadio(const CommandLine &commandLine, RunLoop &runLoop)
{
    // Qt warns of what this program says in words of its own, and of rights that it does not need.
    if (!commandLine.verbose)
        QLoggingCategory::setFilterRules(u"qt.bluetooth*.warning=false"_s);
    const auto radio = QtBluetoothRadio::create(runLoop);
    return {[radio] { return radio->makeCentral(); }, ExitStatus::Done, {}};
}

} // namespace

RadioChoice chooseRadio(const CommandLine &commandLine, RunLoop &runLoop, SystemLog &log,
                        Locations &locations)
{
    if (!commandLine.simulate)
        return platformRadio(commandLine, runLoop);
    const SimulationResult result =
        SimulatedRadio::fromFile(runLoop, log, commandLine.profile, locations.stateFolder());
    if (!result.radio)
        return {nullptr, ExitStatus::WrongUsage, result.error};
    return {[radio = result.radio] { return radio->makeCentral(); }, ExitStatus::Done, {}};
}

} // namespace cvtamber
