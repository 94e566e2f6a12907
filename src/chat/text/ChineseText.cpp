// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/text/ChineseText.h"

#include "chat/text/HanziReadings.h"
#include "chat/text/Pinyin.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <memory>

namespace cvtamber {

namespace {

// Own conversions between UTF-16 and UTF-32: Qt's take a byte order mark at the start of a text for a sign of the
// encoding, but here it is a character.
struct Utf32Text
{
    explicit Utf32Text(qsizetype capacity)
        : characters(std::make_unique_for_overwrite<char32_t[]>(static_cast<size_t>(capacity)))
    {}

    std::unique_ptr<char32_t[]> characters;
    qsizetype size = 0;
};

// With a zero after the last character, which `size` does not count.
Utf32Text toUtf32(QStringView text)
{
    Utf32Text result(text.size() + 1);
    const char16_t *unit = text.utf16();
    const char16_t *const end = unit + text.size();
    char32_t *out = result.characters.get();
    while (unit < end) {
        const char16_t c = *unit++;
        if (!QChar::isSurrogate(c)) {
            *out++ = c;
        } else if (QChar::isHighSurrogate(c) && unit < end && QChar::isLowSurrogate(*unit)) {
            *out++ = QChar::surrogateToUcs4(c, *unit++);
        } else {
            *out++ = QChar::ReplacementCharacter;
        }
    }
    *out = 0;
    result.size = out - result.characters.get();
    return result;
}

QString toUtf16(const char32_t *characters, qsizetype size)
{
    const char32_t *const end = characters + size;
    const auto pairs =
        std::count_if(characters, end, [](char32_t c) { return QChar::requiresSurrogates(c); });
    QString text(size + pairs, Qt::Uninitialized);
    QChar *out = text.data();
    for (; characters < end; ++characters) {
        if (QChar::requiresSurrogates(*characters)) {
            *out++ = QChar::highSurrogate(*characters);
            *out++ = QChar::lowSurrogate(*characters);
        } else {
            *out++ = static_cast<char16_t>(*characters);
        }
    }
    return text;
}

} // namespace

QString pinyinForText(const QString &text)
{
    constexpr qsizetype StretchSize = 512;
    // A reading with the space before it.
    constexpr qsizetype Longest = HanziReadings::LongestReading + 1;
    std::array<char16_t, StretchSize * Longest> stretch;
    QString pinyin;
    pinyin.reserve(text.size());
    for (qsizetype from = 0; from < text.size(); from += StretchSize) {
        char16_t *out = stretch.data();
        const qsizetype to = std::min(from + StretchSize, text.size());
        for (qsizetype i = from; i < to; ++i) {
            const char16_t unit = text.at(i).unicode();
            const char32_t *reading = pinyinForHanzi(unit);
            if (reading == nullptr) {
                *out++ = static_cast<char16_t>(foldFullWidthCharacter(unit));
                continue;
            }
            if (i > 0)
                *out++ = u' ';
            while (*reading != 0)
                *out++ = static_cast<char16_t>(*reading++);
        }
        pinyin.append(QStringView(stretch.data(), out));
    }
    return pinyin;
}

QString toneSymbolsForPinyin(const QString &pinyin)
{
    const Utf32Text source = toUtf32(pinyin);
    // At most a symbol and itself for each character, and the closing zero.
    const qsizetype capacity = 2 * source.size + 1;
    Utf32Text result(capacity);
    // Characters, not UTF-16 units, of which a pair of surrogates would count as two.
    result.size = pinyinMarksToToneSymbols(source.characters.get(), source.size, result.characters.get(),
                                           capacity, ToneSymbols);
    return toUtf16(result.characters.get(), result.size);
}

QString marksForToneSymbols(const QString &line)
{
    const Utf32Text source = toUtf32(line);
    const qsizetype capacity = source.size + 1;
    Utf32Text result(capacity);
    result.size =
        pinyinToneSymbolsToMarks(source.characters.get(), result.characters.get(), capacity, ToneSymbols);
    return toUtf16(result.characters.get(), result.size);
}

} // namespace cvtamber
