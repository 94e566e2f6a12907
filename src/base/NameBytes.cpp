// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NameBytes.h"

#include <QTextBoundaryFinder>

namespace cvtamber {

namespace {

struct CodePoint
{
    qsizetype units = 1;
    qsizetype bytes = 1;
};

CodePoint codePointAt(QStringView name, qsizetype at)
{
    const QChar unit = name[at];
    if (unit.unicode() < 0x80)
        return {1, 1};
    if (unit.unicode() < 0x800)
        return {1, 2};
    if (unit.isHighSurrogate() && at + 1 < name.size() && name[at + 1].isLowSurrogate())
        return {2, 4};
    return {1, isOddByte(unit) ? 1 : 3};
}

} // namespace

qsizetype nameBytes(QStringView name)
{
    qsizetype bytes = 0;
    for (qsizetype at = 0; at < name.size();) {
        const CodePoint point = codePointAt(name, at);
        bytes += point.bytes;
        at += point.units;
    }
    return bytes;
}

QString cutToBytes(const QString &name, qsizetype bytes)
{
    qsizetype fits = 0;
    while (fits < name.size()) {
        const CodePoint point = codePointAt(name, fits);
        if (point.bytes > bytes)
            break;
        bytes -= point.bytes;
        fits += point.units;
    }
    if (fits == name.size())
        return name;
    // The code point that no longer fits says whether the character goes on.
    const QString start = name.first(fits + codePointAt(name, fits).units);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, start);
    finder.setPosition(fits);
    if (finder.isAtBoundary())
        return name.first(fits);
    const qsizetype boundary = finder.toPreviousBoundary();
    return name.first(boundary > 0 ? boundary : fits);
}

} // namespace cvtamber
