// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/FaultScript.h"

namespace cvtamber {

namespace {

// "PR" fits "PR NAME" but not "PR2".
bool fitsCommand(const QByteArray &wanted, const QByteArray &command)
{
    return wanted.isEmpty() || command == wanted ||
           (command.startsWith(wanted) && command.at(wanted.size()) == ' ');
}

} // namespace

std::optional<Fault> FaultScript::take(Fault::Kind kind, const QByteArray &command, int number)
{
    for (Fault &fault : _faults) {
        if (fault.kind != kind || fault.times == 0 || !fitsCommand(fault.command, command))
            continue;
        if (fault.number != 0 && fault.number != number)
            continue;
        if (fault.times > 0)
            --fault.times;
        return fault;
    }
    return std::nullopt;
}

} // namespace cvtamber
