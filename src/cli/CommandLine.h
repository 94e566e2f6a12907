// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/VerbRequest.h"

#include <QStringList>

#include <chrono>
#include <optional>

namespace cvtamber {

// The command line of `corvane`, taken apart and checked. Pure: nothing is read, opened or asked.
struct CommandLine
{
    enum class Action { Run, ShowHelp, ShowVersion };

    Action action = Action::Run;
    std::optional<VerbId> helpFor; // ShowHelp: the verb, or none for the whole program

    bool simulate = false;
    QString profile; // path; null for the built-in one
    QString device;  // serial number or name; null when none was named
    std::chrono::seconds timeout{10};
    bool verbose = false;
    VerbRequest request;
};

// Either a value or a sentence that says what is wrong.
template<typename T> struct Parsed
{
    std::optional<T> value;
    QString error;
};

// The arguments come without the program's name. Options may stand before and after the verb; "--" ends them.
Parsed<CommandLine> parseCommandLine(const QStringList &arguments);

// One line of a batch: a verb with its operand and its own options, split at blanks; double quotes keep
// blanks, and a backslash before a quote or a backslash keeps that. Blank lines and comments are the
// caller's.
Parsed<VerbRequest> parseBatchLine(const QString &line);

} // namespace cvtamber
