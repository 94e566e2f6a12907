// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "base/VisibleText.h"
#include "cli/DeviceSentences.h"
#include "cli/VerbTable.h"
#include "text/DeviceNames.h"
#include "text/DeviceTables.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

constexpr int LongestTimeout = 3600;

// The words of a command line, sorted into options and operands, and then into a request.
class ArgumentParser
{
public:
    bool read(const QStringList &arguments);
    bool fillRequest(VerbRequest &request);
    bool fillGlobals(CommandLine &line);

    bool has(OptionId id) const { return (_given & optionBit(id)) != 0; }
    bool hasGlobals() const;
    const VerbEntry *verb() const { return _verb; }
    const QString &error() const { return _error; }

private:
    bool readOption(const QString &word);
    bool readShortOption(const QString &word);
    bool takeOption(const OptionEntry &entry, const QString &shown, const std::optional<QString> &attached);
    bool takeOperand(const QString &word);
    bool checkVerbOptions();
    bool fillOperand(VerbRequest &request);
    bool fillName(VerbRequest &request);
    bool readNumber(const QString &text, int least, int most, const QString &what, int &number);
    bool fail(const QString &sentence);

    QString value(OptionId id) const { return _values[static_cast<size_t>(id)]; }

    QStringList _waiting;
    const VerbEntry *_verb = nullptr;
    std::optional<QString> _operand;
    unsigned _given = 0;
    std::array<QString, 16> _values;
    QString _error;
};

bool ArgumentParser::fail(const QString &sentence)
{
    _error = sentence;
    return false;
}

bool ArgumentParser::read(const QStringList &arguments)
{
    _waiting = arguments;
    bool optionsEnded = false;
    while (!_waiting.isEmpty()) {
        const QString word = _waiting.takeFirst();
        if (!optionsEnded && word == "--"_L1) {
            optionsEnded = true;
            continue;
        }
        const bool isOption = !optionsEnded && word.size() > 1 && word.startsWith(u'-');
        if (!(isOption ? readOption(word) : takeOperand(word)))
            return false;
    }
    return true;
}

bool ArgumentParser::readOption(const QString &word)
{
    if (!word.startsWith("--"_L1))
        return readShortOption(word);
    const auto equals = word.indexOf(u'=');
    const QString name = equals < 0 ? word : word.left(equals);
    const OptionEntry *entry = findOption(QStringView(name).mid(2));
    if (entry == nullptr)
        return fail(u"There is no option %1."_s.arg(visibleText(name)));
    return takeOption(*entry, name, equals < 0 ? std::nullopt : std::optional(word.mid(equals + 1)));
}

bool ArgumentParser::readShortOption(const QString &word)
{
    const QString shown = word.left(2);
    const OptionEntry *entry = findOption(word.at(1).unicode());
    if (entry == nullptr)
        return fail(u"There is no option %1."_s.arg(visibleText(shown)));
    if (word.size() == 2)
        return takeOption(*entry, shown, std::nullopt);
    if (entry->value == OptionEntry::Value::None)
        return fail(u"Write %1 and what follows it as separate words."_s.arg(shown));
    return takeOption(*entry, shown, word.mid(2));
}

bool ArgumentParser::takeOption(const OptionEntry &entry, const QString &shown,
                                const std::optional<QString> &attached)
{
    using Value = OptionEntry::Value;
    if (attached && entry.value == Value::None)
        return fail(u"%1 takes no value."_s.arg(shown));
    QString given = attached.value_or(QString());
    if (!attached && entry.value == Value::Required) {
        if (_waiting.isEmpty())
            return fail(u"%1 needs a value."_s.arg(shown));
        given = _waiting.takeFirst();
    }
    const bool valueTaken = attached || entry.value == Value::Required;
    if (valueTaken && given.isEmpty())
        return fail(u"%1 needs a value that is not empty."_s.arg(shown));
    _given |= optionBit(entry.id);
    _values[static_cast<size_t>(entry.id)] = given;
    return true;
}

bool ArgumentParser::takeOperand(const QString &word)
{
    if (_verb == nullptr) {
        _verb = findVerb(word);
        return _verb != nullptr || fail(u"There is no command %1."_s.arg(visibleText(word)));
    }
    if (_operand || _verb->operand == VerbEntry::Operand::None)
        return fail(u"%1 does not take the word %2."_s.arg(_verb->name, visibleText(word)));
    _operand = word;
    return true;
}

bool ArgumentParser::hasGlobals() const
{
    constexpr unsigned Globals = optionBit(OptionId::Simulate) | optionBit(OptionId::Device) |
                                 optionBit(OptionId::Timeout) | optionBit(OptionId::Verbose) |
                                 optionBit(OptionId::Help) | optionBit(OptionId::Version);
    return (_given & Globals) != 0;
}

bool ArgumentParser::checkVerbOptions()
{
    for (const auto id : {OptionId::BackTranslate, OptionId::Output, OptionId::Force, OptionId::As,
                          OptionId::Translate, OptionId::Language, OptionId::ToMarks}) {
        if (has(id) && (_verb->options & optionBit(id)) == 0)
            return fail(u"%1 does not go with %2."_s.arg(optionName(id), _verb->name));
    }
    return true;
}

bool ArgumentParser::readNumber(const QString &text, int least, int most, const QString &what, int &number)
{
    bool isNumber = false;
    const int read = text.toInt(&isNumber, 10);
    if (!isNumber || read < least || read > most || !text.at(0).isDigit())
        return fail(u"%1 is a whole number from %2 to %3, not %4."_s.arg(
            what, QString::number(least), QString::number(most), visibleText(text)));
    number = read;
    return true;
}

bool ArgumentParser::fillRequest(VerbRequest &request)
{
    if (_verb == nullptr)
        return fail(u"A command is missing."_s);
    if (!checkVerbOptions())
        return false;
    request.verb = _verb->id;
    request.output = value(OptionId::Output);
    request.backTranslate = has(OptionId::BackTranslate);
    request.translate = has(OptionId::Translate);
    request.force = has(OptionId::Force);
    request.toMarks = has(OptionId::ToMarks);
    request.json = has(OptionId::Json);
    if ((_verb->options & optionBit(OptionId::Language)) != 0) {
        if (!has(OptionId::Language))
            return fail(u"%1 needs --language."_s.arg(_verb->name));
        if (!readNumber(value(OptionId::Language), 0, DeviceLanguage::Count - 1, u"The language"_s,
                        request.language))
            return false;
    }
    return fillOperand(request) && fillName(request);
}

bool ArgumentParser::fillOperand(VerbRequest &request)
{
    if (_operand)
        request.operand = *_operand;
    if (_verb->operand == VerbEntry::Operand::Required && !_operand)
        return fail(u"%1 needs one word more. Usage: %2."_s.arg(_verb->name, _verb->usage));
    if (_verb->id == VerbId::Grade) {
        if (request.operand != "1"_L1 && request.operand != "2"_L1)
            return fail(u"The grade is 1 or 2, not %1."_s.arg(visibleText(request.operand)));
        request.grade = request.operand.toInt();
    }
    const bool isPath = _verb->id == VerbId::Put || _verb->id == VerbId::Emboss || _verb->id == VerbId::Batch;
    if (isPath && _operand && _operand->isEmpty())
        return fail(u"The file's name is empty."_s);
    return true;
}

bool ArgumentParser::fillName(VerbRequest &request)
{
    if (_verb->id == VerbId::Put) {
        if (!has(OptionId::As) && request.operand == "-"_L1)
            return fail(u"put - needs --as NAME, the name on the device."_s);
        request.as = has(OptionId::As) ? value(OptionId::As) : request.operand.section(u'/', -1);
        QString problem = fileNameProblem(request.as);
        if (request.translate && endsTranslatedStore(request.as))
            problem = u"The device takes the name END for the end of the text when it translates it."_s;
        if (problem.isEmpty())
            return true;
        return fail(has(OptionId::As) ? problem : problem + u" Give another name with --as."_s);
    }
    if (_verb->id == VerbId::Get || _verb->id == VerbId::Rm) {
        const QString problem = fileNameProblem(request.operand);
        return problem.isEmpty() || fail(problem);
    }
    return true;
}

bool ArgumentParser::fillGlobals(CommandLine &line)
{
    line.simulate = has(OptionId::Simulate);
    line.profile = value(OptionId::Simulate);
    line.device = value(OptionId::Device);
    line.verbose = has(OptionId::Verbose);
    if (!has(OptionId::Timeout))
        return true;
    int seconds = 0;
    if (!readNumber(value(OptionId::Timeout), 1, LongestTimeout, u"The time-out"_s, seconds))
        return false;
    line.timeout = std::chrono::seconds(seconds);
    return true;
}

// The words of a line, or nothing when a quote is not closed.
std::optional<QStringList> splitWords(const QString &line)
{
    QStringList words;
    QString word;
    bool inWord = false;
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        const QChar next = i + 1 < line.size() ? line.at(i + 1) : QChar();
        if (!quoted && (c == u' ' || c == u'\t')) {
            if (inWord)
                words.append(std::exchange(word, QString()));
            inWord = false;
            continue;
        }
        inWord = true;
        if (c == u'\\' && (next == u'"' || next == u'\\')) {
            word += next;
            ++i;
        } else if (c == u'"') {
            quoted = !quoted;
        } else {
            word += c;
        }
    }
    if (quoted)
        return std::nullopt;
    if (inWord)
        words.append(word);
    return words;
}

} // namespace

Parsed<CommandLine> parseCommandLine(const QStringList &arguments)
{
    ArgumentParser parser;
    CommandLine line;
    const bool read = parser.read(arguments);
    // Help is given also when the rest is wrong: whoever asks for it may not know better yet.
    if (parser.has(OptionId::Help)) {
        line.action = CommandLine::Action::ShowHelp;
        if (parser.verb() != nullptr)
            line.helpFor = parser.verb()->id;
        return {line, {}};
    }
    if (read && parser.has(OptionId::Version)) {
        line.action = CommandLine::Action::ShowVersion;
        return {line, {}};
    }
    if (!read || !parser.fillGlobals(line) || !parser.fillRequest(line.request))
        return {std::nullopt, parser.error()};
    return {line, {}};
}

Parsed<VerbRequest> parseBatchLine(const QString &line)
{
    const auto words = splitWords(line);
    if (!words)
        return {std::nullopt, u"A double quote is not closed."_s};
    ArgumentParser parser;
    VerbRequest request;
    if (!parser.read(*words))
        return {std::nullopt, parser.error()};
    if (parser.hasGlobals())
        return {std::nullopt, u"Options for the whole batch belong on the command line, before batch."_s};
    if (!parser.fillRequest(request))
        return {std::nullopt, parser.error()};
    const VerbEntry &entry = verbEntry(request.verb);
    if (!entry.needsDevice || request.verb == VerbId::Scan || request.verb == VerbId::Batch)
        return {std::nullopt, u"%1 cannot be part of a batch."_s.arg(entry.name)};
    return {request, {}};
}

} // namespace cvtamber
