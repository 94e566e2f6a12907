// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/CVCSVRecord.h"

namespace cvtamber {

namespace {

constexpr char16_t quote = u'"';
constexpr char16_t comma = u',';

} // namespace

CVCSVRecord::CVCSVRecord(QStringView line)
    : _fields(makeFieldsArrayFromString(line))
{}

CVCSVRecord CVCSVRecord::recordFromString(QStringView line)
{
    return CVCSVRecord(line);
}

QStringList CVCSVRecord::makeFieldsArrayFromString(QStringView line)
{
    QStringList fields;
    qsizetype start = 0;
    bool quoting = false;
    char16_t previous = 0;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char16_t unit = line[i].unicode();
        if (unit == comma && !quoting) {
            fields.append(unquoteString(line.sliced(start, i - start)));
            start = i + 1;
        } else if (unit == comma) {
            quoting = previous != quote;
        } else if (unit == quote && !quoting) {
            quoting = i == 0 || previous == comma;
        }
        previous = unit;
    }
    fields.append(unquoteString(line.sliced(start)));
    return fields;
}

QString CVCSVRecord::unquoteString(QStringView text)
{
    if (!text.startsWith(quote))
        return text.toString();
    while (text.startsWith(quote))
        text = text.sliced(1);
    while (text.endsWith(quote))
        text.chop(1);
    return text.toString().replace(QStringLiteral("\"\""), QStringLiteral("\""));
}

} // namespace cvtamber
