// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/VerbRequest.h"

#include <QLatin1StringView>
#include <QStringView>

#include <span>

namespace cvtamber {

// Options of the program; which verbs take the later ones is in the table of verbs.
enum class OptionId : unsigned {
    Simulate,
    Device,
    Timeout,
    Json,
    Verbose,
    Help,
    Version,
    BackTranslate,
    Output,
    Force,
    As,
    Translate,
    Language,
    ToMarks,
};

struct OptionEntry
{
    enum class Value { None, Optional, Required };

    OptionId id;
    QLatin1StringView longName; // without the dashes
    char16_t shortName;         // 0 when there is none
    Value value;
    bool global; // goes with every verb, on the command line only
};

struct VerbEntry
{
    enum class Operand { None, Optional, Required };

    VerbId id;
    QLatin1StringView name;
    Operand operand;
    unsigned options; // bits of optionBit()
    bool needsDevice; // or at least a radio
    QLatin1StringView usage;
    QLatin1StringView help;
};

constexpr unsigned optionBit(OptionId id)
{
    return 1U << static_cast<unsigned>(id);
}

std::span<const VerbEntry> verbTable();
const VerbEntry &verbEntry(VerbId id);
// Null for a word that is no verb.
const VerbEntry *findVerb(QStringView name);
// Null for an unknown option.
const OptionEntry *findOption(QStringView longName);
const OptionEntry *findOption(char16_t shortName);
// With its dashes.
QString optionName(OptionId id);

// What --help prints: the whole program, or one verb.
QString helpText();
QString helpText(VerbId verb);

} // namespace cvtamber
