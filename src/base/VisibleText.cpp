// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/VisibleText.h"

#include <algorithm>

namespace cvtamber {

namespace {

bool isControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
}

bool changesLineOrDirection(char16_t unit)
{
    return unit == 0x061C || unit == 0x200E || unit == 0x200F || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069);
}

void appendEscape(QString &result, char16_t unit)
{
    const bool control = isControl(unit);
    result += control ? QStringLiteral("\\x") : QStringLiteral("\\u{");
    const auto digits = QString::number(unit, 16);
    result += control ? digits.rightJustified(2, u'0') : digits.toUpper().rightJustified(4, u'0');
    if (!control)
        result += u'}';
}

} // namespace

QString visibleText(QStringView text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            result += text.sliced(i, 2);
            ++i;
        } else if (QChar::isSurrogate(unit) || isControl(unit) || changesLineOrDirection(unit)) {
            appendEscape(result, unit);
        } else {
            result += text[i];
        }
    }
    return result;
}

bool isBlank(QStringView text)
{
    constexpr char16_t emptyCell = 0x2800;
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return c.isSpace() || c.category() == QChar::Other_Control || c.category() == QChar::Other_Format ||
               c == emptyCell;
    });
}

} // namespace cvtamber
