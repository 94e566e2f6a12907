// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Records.h"

#include "store/StoreNames.h"

#include <QStringDecoder>

#include <array>

using namespace Qt::StringLiterals;

namespace cvtamber {

namespace {

constexpr QChar ByteOrderMark = QChar::ByteOrderMark;

// The first line of the text, which is cut off it; empty at the end.
QString takeLine(QStringView &text)
{
    const qsizetype end = text.indexOf(u'\n');
    QStringView line = end < 0 ? text : text.first(end);
    text = end < 0 ? QStringView() : text.sliced(end + 1);
    while (line.endsWith(u'\r'))
        line.chop(1);
    // Not null: the line is there, with nothing on it.
    return line.isEmpty() ? u""_s : line.toString();
}

QStringView withoutMarks(QStringView text)
{
    while (text.startsWith(ByteOrderMark))
        text = text.sliced(1);
    return text;
}

} // namespace

UserRecord UserRecord::fromText(const QString &text)
{
    UserRecord record;
    if (text.isNull())
        return record;
    QStringView rest = withoutMarks(text);
    for (QString *field : std::array{&record.firstName, &record.lastName, &record.displayName})
        *field = takeLine(rest);
    return record;
}

QString UserRecord::toText() const
{
    return singleLine(firstName) % u'\n' % singleLine(lastName) % u'\n' % singleLine(displayName) % u'\n';
}

QString folderNameFromBytes(const QByteArray &bytes)
{
    const QString text = textFromUtf8(bytes);
    if (text.isNull())
        return {};
    QStringView rest = withoutMarks(text);
    return takeLine(rest);
}

QByteArray folderNameToBytes(const QString &name)
{
    return utf8FromText(singleLine(name) % u'\n');
}

QString textFromUtf8(const QByteArray &bytes)
{
    // Not isValidUtf8(), which refuses some short texts with a byte-order mark.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return {};
    return text.isEmpty() ? u""_s : text;
}

QByteArray utf8FromText(const QString &text)
{
    // Qt would write "?", which looks like part of the text.
    QString whole = text;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (!text[at].isSurrogate())
            continue;
        if (text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
            ++at;
        else
            whole[at] = QChar::ReplacementCharacter;
    }
    return whole.toUtf8();
}

} // namespace cvtamber
