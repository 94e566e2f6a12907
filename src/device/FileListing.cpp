// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/FileListing.h"

#include "text/DeviceTables.h"

#include <algorithm>
#include <limits>

namespace cvtamber {

namespace {

std::optional<unsigned> brailleDigit(char16_t sign)
{
    if (sign >= u'A' && sign <= u'I')
        return sign - u'A' + 1U;
    if (sign == u'J')
        return 0U;
    return std::nullopt;
}

std::optional<unsigned> frenchBrailleDigit(char16_t sign)
{
    // "1" counts as 2 and "9" as 10: the device's own reckoning.
    if (sign >= u'1' && sign <= u'9')
        return sign - 47U;
    if (sign == u'0')
        return 0U;
    const qsizetype digit = QStringView(u"#*<%?:$]\\[").indexOf(sign);
    return digit < 0 ? std::nullopt : std::optional(static_cast<unsigned>(digit));
}

// Appends one decimal digit (or 10, in French); nothing when the value no longer fits.
std::optional<quint64> shifted(quint64 value, unsigned digit)
{
    constexpr quint64 most = std::numeric_limits<quint64>::max();
    if (value > (most - digit) / 10)
        return std::nullopt;
    return value * 10 + digit;
}

std::optional<quint64> leadingDecimal(QStringView token)
{
    const bool negative = token.startsWith(u'-');
    if (negative || token.startsWith(u'+'))
        token = token.mid(1);
    // The most that a signed size holds: a longer row of digits stays there.
    constexpr quint64 most = std::numeric_limits<qint64>::max();
    std::optional<quint64> value;
    for (const QChar sign : token) {
        if (sign < u'0' || sign > u'9')
            break;
        value = std::min(shifted(value.value_or(0), sign.unicode() - u'0').value_or(most), most);
    }
    return negative && value ? 0 : value;
}

} // namespace

std::optional<quint64> CVParseBrailleNumber(QStringView text, int language)
{
    const bool french = language == DeviceLanguage::French;
    if (!text.startsWith(french ? u',' : u'#'))
        return std::nullopt;
    quint64 value = 0;
    for (const QChar sign : text.mid(1)) {
        const char16_t upper = sign.toUpper().unicode();
        const auto digit = french ? frenchBrailleDigit(upper) : brailleDigit(upper);
        const auto next = digit ? shifted(value, *digit) : std::nullopt;
        if (!next)
            return std::nullopt;
        value = *next;
    }
    return value;
}

CVFileData fileDataFromString(QStringView line, int keyboardLanguage)
{
    line = line.trimmed();
    const qsizetype nameEnd = line.indexOf(u' ');
    if (nameEnd < 0)
        return CVFileData(line.toString(), 0);
    const QStringView rest = line.mid(nameEnd).trimmed();
    const qsizetype sizeEnd = rest.indexOf(u' ');
    const QStringView sizeToken = sizeEnd < 0 ? rest : rest.left(sizeEnd);
    auto size = leadingDecimal(sizeToken);
    if (!size)
        size = CVParseBrailleNumber(sizeToken, keyboardLanguage);
    return CVFileData(line.left(nameEnd).toString(), size.value_or(0));
}

QList<CVFileData> filesFromListing(const QString &listing, int keyboardLanguage)
{
    QList<CVFileData> files;
    const QStringView all(listing);
    for (qsizetype start = 0; start < all.size();) {
        qsizetype end = all.indexOf(u'\n', start);
        if (end < 0)
            end = all.size();
        QStringView line = all.mid(start, end - start);
        // Only a carriage return that belongs to the line end goes.
        if (end < all.size() && line.endsWith(u'\r'))
            line.chop(1);
        if (!line.trimmed().isEmpty())
            files.append(fileDataFromString(line, keyboardLanguage));
        start = end + 1;
    }
    return files;
}

} // namespace cvtamber
