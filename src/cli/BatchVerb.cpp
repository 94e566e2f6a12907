// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/BatchVerb.h"

#include "cli/CommandLine.h"
#include "cli/Utf8Text.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

BatchVerb::BatchVerb(const VerbContext &context, const VerbRequest &request)
    : Verb(context, request)
    , _reader(context.console)
    , _inputUsed(request.operand.isNull() || request.operand == "-"_L1)
{}

void BatchVerb::prepare()
{
    _reader.read(_inputUsed ? u"-"_s : request().operand,
                 [this](const InputReader::Outcome &input) { take(input); });
}

void BatchVerb::take(const InputReader::Outcome &input)
{
    if (!input.error.isEmpty()) {
        fail(input.status, input.error);
        return;
    }
    const Utf8Text read = readUtf8(input.bytes);
    if (!read.error.isEmpty()) {
        fail(ExitStatus::Failed, read.error);
        return;
    }
    const QStringList lines = read.text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString problem = addLine(i + 1, lines.at(i).trimmed());
        if (!problem.isEmpty()) {
            fail(ExitStatus::WrongUsage,
                 u"Line %1: %2 Nothing was done."_s.arg(QString::number(i + 1), problem));
            return;
        }
    }
    if (_entries.isEmpty())
        fail(ExitStatus::Done, u"The batch is empty."_s);
    else
        ready();
}

QString BatchVerb::addLine(qsizetype number, const QString &line)
{
    if (line.isEmpty() || line.startsWith(u'#'))
        return {};
    auto parsed = parseBatchLine(line);
    if (!parsed.value)
        return parsed.error;
    if (parsed.value->readsInput()) {
        if (_inputUsed)
            return u"Standard input is taken already."_s;
        _inputUsed = true;
    }
    parsed.value->json = parsed.value->json || request().json;
    _entries.append({number, *parsed.value});
    return {};
}

void BatchVerb::run(Session &session)
{
    _session = &session;
    runNext();
}

void BatchVerb::runNext()
{
    if (_next == _entries.size()) {
        finish(ExitStatus::Done);
        return;
    }
    _current = makeVerb(context(), _entries.at(_next++).request);
    _current->begin([this] { _current->run(*_session); },
                    [this](ExitStatus status) { entryFinished(status); });
}

void BatchVerb::entryFinished(ExitStatus status)
{
    if (status == ExitStatus::Done)
        _session->whenWritten([this] { runNext(); });
    else
        fail(status, u"The batch stopped at line %1."_s.arg(_entries.at(_next - 1).line));
}

void BatchVerb::interrupted()
{
    if (!_current)
        return;
    _current->interrupted();
    _current->abandon();
    if (!isOver())
        console().writeMessage(u"The batch stopped at line %1."_s.arg(_entries.at(_next - 1).line));
}

} // namespace cvtamber
