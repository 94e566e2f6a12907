// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace cvtamber {

// What corvane-simulator was asked for.
struct SimulatorCommandLine
{
    enum class Action { Run, ShowHelp, ShowVersion };

    Action action = Action::Run;
    QString profile;                    // empty: the built-in one
    QString busAddress;                 // never empty when there is something to run
    bool reallySystem = false;          // the real system bus is meant
    std::optional<QString> stateFolder; // not there: the usual place; empty: nothing lasts
    bool fast = false;
    bool verbose = false;
    bool printAddress = false;

    static QString helpText();
};

struct ParsedSimulatorCommandLine
{
    SimulatorCommandLine commandLine;
    QString error; // a sentence; empty when all is well
};

// The arguments come without the program's name. Looks at the bus variables of the environment.
ParsedSimulatorCommandLine parseSimulatorCommandLine(const QStringList &arguments);

} // namespace cvtamber
