// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/VerbTable.h"

#include <algorithm>
#include <array>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

using Value = OptionEntry::Value;
using Operand = VerbEntry::Operand;

constexpr std::array Options{
    OptionEntry{OptionId::Simulate, "simulate"_L1, 0, Value::Optional, true},
    OptionEntry{OptionId::Device, "device"_L1, 0, Value::Required, true},
    OptionEntry{OptionId::Timeout, "timeout"_L1, 0, Value::Required, true},
    OptionEntry{OptionId::Json, "json"_L1, 0, Value::None, true},
    OptionEntry{OptionId::Verbose, "verbose"_L1, u'v', Value::None, true},
    OptionEntry{OptionId::Help, "help"_L1, u'h', Value::None, true},
    OptionEntry{OptionId::Version, "version"_L1, 0, Value::None, true},
    OptionEntry{OptionId::BackTranslate, "back-translate"_L1, 0, Value::None, false},
    OptionEntry{OptionId::Output, "output"_L1, u'o', Value::Required, false},
    OptionEntry{OptionId::Force, "force"_L1, 0, Value::None, false},
    OptionEntry{OptionId::As, "as"_L1, 0, Value::Required, false},
    OptionEntry{OptionId::Translate, "translate"_L1, 0, Value::None, false},
    OptionEntry{OptionId::Language, "language"_L1, 0, Value::Required, false},
    OptionEntry{OptionId::ToMarks, "to-marks"_L1, 0, Value::None, false},
};

constexpr unsigned GetOptions =
    optionBit(OptionId::BackTranslate) | optionBit(OptionId::Output) | optionBit(OptionId::Force);
constexpr unsigned PutOptions =
    optionBit(OptionId::As) | optionBit(OptionId::Translate) | optionBit(OptionId::Force);
constexpr unsigned EmbossOptions = optionBit(OptionId::Translate) | optionBit(OptionId::Force);
constexpr unsigned LanguageOption = optionBit(OptionId::Language);

constexpr std::array Verbs{
    VerbEntry{VerbId::Scan, "scan"_L1, Operand::None, 0, true, "scan"_L1,
              "List the devices in reach, one a line: serial number, tab, name.\n"
              "\"-\" stands for what is not known. Ends after --timeout seconds,\n"
              "or as soon as the device named with --device is found.\n"_L1},
    VerbEntry{VerbId::Info, "info"_L1, Operand::None, 0, true, "info"_L1,
              "Show the device's model, firmware, serial number, languages,\n"
              "braille code, grades and state.\n"_L1},
    VerbEntry{VerbId::Ls, "ls"_L1, Operand::None, 0, true, "ls"_L1,
              "List the files on the device, one a line: size, tab, name.\n"_L1},
    VerbEntry{VerbId::Get, "get"_L1, Operand::Required, GetOptions, true,
              "get NAME [--back-translate] [-o FILE] [--force]"_L1,
              "Fetch a file from the device, as UTF-8.\n"
              "  --back-translate  have the device turn braille into print\n"
              "  -o, --output FILE write to FILE; without it, or with \"-\",\n"
              "                    to standard output\n"
              "  --force           replace FILE if it is there already\n"_L1},
    VerbEntry{VerbId::Put, "put"_L1, Operand::Required, PutOptions, true,
              "put FILE|- [--as NAME] [--translate] [--force]"_L1,
              "Store a UTF-8 text on the device. \"-\" reads standard input.\n"
              "  --as NAME         name on the device; else the name of FILE\n"
              "  --translate       have the device turn print into braille\n"
              "  --force           replace a file of that name, and send a text\n"
              "                    that holds an opening brace\n"_L1},
    VerbEntry{VerbId::Emboss, "emboss"_L1, Operand::Required, EmbossOptions, true,
              "emboss FILE|- [--translate] [--force]"_L1,
              "Emboss a UTF-8 text. \"-\" reads standard input.\n"
              "  --translate       have the device turn print into braille\n"
              "  --force           send a text that holds an opening brace\n"_L1},
    VerbEntry{VerbId::Rm, "rm"_L1, Operand::Required, 0, true, "rm NAME"_L1,
              "Delete a file on the device.\n"_L1},
    VerbEntry{VerbId::Grade, "grade"_L1, Operand::Required, 0, true, "grade 1|2"_L1,
              "Set the braille grade, for both directions.\n"_L1},
    VerbEntry{VerbId::Chat, "chat"_L1, Operand::None, 0, true, "chat"_L1,
              "Exchange lines: each line of standard input goes to the device,\n"
              "each line that it sends is printed. Ends with the input (Ctrl-D).\n"_L1},
    VerbEntry{VerbId::Board, "board"_L1, Operand::None, 0, true, "board"_L1,
              "Share the whiteboard: lines of standard input are written on it,\n"
              "lines that the device writes are printed. Ends with the input.\n"_L1},
    VerbEntry{VerbId::Batch, "batch"_L1, Operand::Optional, 0, true, "batch [FILE]"_L1,
              "Run commands, one a line, over one connection. Stops at the first\n"
              "that fails. Without FILE, or with \"-\", reads standard input.\n"
              "A word with spaces stands in double quotes. Empty lines and lines\n"
              "that begin with # are skipped. All lines are checked before the\n"
              "first one runs.\n"_L1},
    VerbEntry{VerbId::Encode, "encode"_L1, Operand::None, LanguageOption, false, "encode --language N"_L1,
              "Turn UTF-8 from standard input into the bytes that a device of\n"
              "language N (0 to 27) uses. Needs no device.\n"_L1},
    VerbEntry{VerbId::Decode, "decode"_L1, Operand::None, LanguageOption, false, "decode --language N"_L1,
              "Turn bytes of a device of language N (0 to 27) from standard input\n"
              "into UTF-8. Needs no device.\n"_L1},
    VerbEntry{VerbId::Pinyin, "pinyin"_L1, Operand::None, optionBit(OptionId::ToMarks), false,
              "pinyin [--to-marks]"_L1,
              "Turn each line of standard input into what chat sends to a Chinese\n"
              "device: Hanzi become pinyin with tone symbols. Needs no device.\n"
              "  --to-marks        the way back: tone symbols become marks\n"_L1},
};

constexpr QLatin1StringView HelpHead = "corvane - talk to a Corvane braille writing device\n"
                                       "\n"
                                       "Usage: corvane [OPTIONS] COMMAND\n"
                                       "\n"
                                       "Commands:\n"_L1;

constexpr QLatin1StringView HelpTail =
    "\n"
    "Options:\n"
    "  --simulate[=PROFILE.json]  use the built-in simulated device\n"
    "  --device SERIAL-OR-NAME    which device; needed when several are in reach\n"
    "  --timeout SECONDS          how long to look for a device, 1 to 3600 (10)\n"
    "  --json                     scan, info and ls print JSON\n"
    "  -v, --verbose              write the log of the link to standard error\n"
    "  -h, --help                 this help; with a command, about that command\n"
    "  --version                  the version\n"
    "\n"
    "Exit status: 0 done, 1 failed, 2 wrong usage, 3 no Bluetooth,\n"
    "4 no such device or several and none named, 5 link failed or lost,\n"
    "6 no such file.\n"_L1;

} // namespace

std::span<const VerbEntry> verbTable()
{
    return Verbs;
}

const VerbEntry &verbEntry(VerbId id)
{
    return *std::find_if(Verbs.begin(), Verbs.end(), [id](const VerbEntry &entry) { return entry.id == id; });
}

const VerbEntry *findVerb(QStringView name)
{
    const auto *found = std::find_if(Verbs.begin(), Verbs.end(),
                                     [name](const VerbEntry &entry) { return entry.name == name; });
    return found == Verbs.end() ? nullptr : found;
}

const OptionEntry *findOption(QStringView longName)
{
    const auto *found = std::find_if(Options.begin(), Options.end(), [longName](const OptionEntry &entry) {
        return entry.longName == longName;
    });
    return found == Options.end() ? nullptr : found;
}

const OptionEntry *findOption(char16_t shortName)
{
    const auto *found = std::find_if(Options.begin(), Options.end(), [shortName](const OptionEntry &entry) {
        return entry.shortName != 0 && entry.shortName == shortName;
    });
    return found == Options.end() ? nullptr : found;
}

QString optionName(OptionId id)
{
    return "--"_L1 + Options[static_cast<size_t>(id)].longName;
}

QString helpText()
{
    QString text = HelpHead;
    for (const VerbEntry &entry : Verbs)
        text += "  "_L1 + entry.usage + u'\n';
    return text + HelpTail;
}

QString helpText(VerbId verb)
{
    const VerbEntry &entry = verbEntry(verb);
    return "Usage: corvane [OPTIONS] "_L1 + entry.usage + "\n\n"_L1 + entry.help +
           "\ncorvane --help lists the options that go with every command.\n"_L1;
}

} // namespace cvtamber
