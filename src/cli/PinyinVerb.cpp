// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PinyinVerb.h"

#include "chat/text/ChineseText.h"
#include "cli/Utf8Text.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

PinyinVerb::~PinyinVerb()
{
    if (_isReading)
        console().stopInput();
}

void PinyinVerb::prepare()
{
    _isReading = true;
    console().startInput([this](const QByteArray &bytes, const QString &error) { take(bytes, error); });
}

void PinyinVerb::take(const QByteArray &bytes, const QString &error)
{
    if (isOver())
        return;
    QByteArray output;
    const QByteArrayList lines = _input.feed(bytes);
    for (const QByteArray &line : lines)
        output += converted(line);
    const bool atEnd = bytes.isEmpty();
    if (atEnd && _input.hasRest())
        output += converted(_input.takeRest());
    const bool written = output.isEmpty() || console().writeOutput(output);
    if (!atEnd && written)
        return;
    _isReading = false;
    console().stopInput();
    if (!error.isEmpty())
        fail(ExitStatus::Failed, error);
    else
        finish(written ? _status : ExitStatus::Failed);
}

QByteArray PinyinVerb::converted(const QByteArray &line)
{
    ++_lineNumber;
    if (const auto offset = badUtf8Offset(line)) {
        console().writeMessage(u"Line %1 was left out: its byte at offset %2 is no UTF-8."_s.arg(
            QString::number(_lineNumber), QString::number(*offset)));
        _status = ExitStatus::Failed;
        return {};
    }
    const QString text = readUtf8(line).text;
    if (request().toMarks)
        return marksForToneSymbols(text).toUtf8() + '\n';
    QString sent = toneSymbolsForPinyin(pinyinForText(text));
    sent.chop(1);
    return sent.toUtf8() + '\n';
}

} // namespace cvtamber
