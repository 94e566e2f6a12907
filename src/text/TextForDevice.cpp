// SPDX-License-Identifier: GPL-3.0-or-later
#include "text/TextForDevice.h"

#include "base/VisibleText.h"
#include "text/DeviceTables.h"
#include "text/TextCodec.h"
#include "text/TextComposition.h"

#include <algorithm>
#include <array>
#include <string>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// Unicode's bound for the marks on one character; more than that is no text.
constexpr qsizetype MostMarks = 30;

struct Spelling
{
    char16_t sign;
    const char *plain;
};

// Beside Unicode's own compatibility spellings, in the order of the signs.
constexpr std::array Spellings = {
    Spelling{0x0085, "\n"}, Spelling{0x00A1, "!"},  Spelling{0x00A8, "\""},  Spelling{0x00A9, "(C)"},
    Spelling{0x00AB, "\""}, Spelling{0x00AD, ""},   Spelling{0x00AE, "(R)"}, Spelling{0x00B4, "'"},
    Spelling{0x00BB, "\""}, Spelling{0x00BF, "?"},  Spelling{0x00C6, "AE"},  Spelling{0x00D7, "x"},
    Spelling{0x00DF, "ss"}, Spelling{0x00E6, "ae"}, Spelling{0x0152, "OE"},  Spelling{0x0153, "oe"},
    Spelling{0x02BC, "'"},  Spelling{0x02C6, "^"},  Spelling{0x02DC, "~"},   Spelling{0x200B, ""},
    Spelling{0x200C, ""},   Spelling{0x200D, ""},   Spelling{0x200E, ""},    Spelling{0x200F, ""},
    Spelling{0x2010, "-"},  Spelling{0x2011, "-"},  Spelling{0x2012, "-"},   Spelling{0x2013, "-"},
    Spelling{0x2014, "-"},  Spelling{0x2015, "-"},  Spelling{0x2018, "'"},   Spelling{0x2019, "'"},
    Spelling{0x201A, "'"},  Spelling{0x201B, "'"},  Spelling{0x201C, "\""},  Spelling{0x201D, "\""},
    Spelling{0x201E, "\""}, Spelling{0x201F, "\""}, Spelling{0x2022, "*"},   Spelling{0x2028, "\n"},
    Spelling{0x2029, "\n"}, Spelling{0x2032, "'"},  Spelling{0x2033, "\""},  Spelling{0x2039, "'"},
    Spelling{0x203A, "'"},  Spelling{0x2044, "/"},  Spelling{0x2060, ""},    Spelling{0x20AC, "EUR"},
    Spelling{0x2212, "-"},  Spelling{0x2215, "/"},  Spelling{0xFE0E, ""},    Spelling{0xFE0F, ""},
    Spelling{0xFEFF, ""},
};

static_assert(std::is_sorted(Spellings.begin(), Spellings.end(),
                             [](const Spelling &a, const Spelling &b) { return a.sign < b.sign; }));

const Spelling *spellingInTable(char32_t c)
{
    const auto *const found =
        std::lower_bound(Spellings.begin(), Spellings.end(), c,
                         [](const Spelling &entry, char32_t sign) { return entry.sign < sign; });
    return found != Spellings.end() && found->sign == c ? found : nullptr;
}

// Language numbers that stand for all that differ in their characters.
constexpr std::array Alphabets = {DeviceLanguage::Unknown, DeviceLanguage::French, DeviceLanguage::Greek,
                                  DeviceLanguage::Polish, DeviceLanguage::Arabic};

size_t alphabetOf(int language)
{
    const auto *const found = std::find(Alphabets.begin(), Alphabets.end(), language);
    return found == Alphabets.end() ? 0 : static_cast<size_t>(found - Alphabets.begin());
}

// The characters beyond ASCII that the device reads as they are meant, in order.
std::u16string readCharacters(int keyboardLanguage, int cvLanguage)
{
    std::u16string characters;
    const StringEncoding page = TextCodec::codePageOf(keyboardLanguage);
    for (int byte = 128; byte < 256; ++byte) {
        const QByteArray pageByte(1, static_cast<char>(byte));
        const QString character = TextCodec::decodeRaw(pageByte, page).text;
        const EncodedText sent = TextCodec::encode(character, keyboardLanguage);
        // A zero byte stands for what the device has no code for.
        const bool hasOwnCode = sent.bytes != pageByte && sent.bytes != QByteArray(1, '\0');
        if (sent.replaced == 0 && (hasOwnCode || TextCodec::decode(sent.bytes, cvLanguage).text == character))
            characters.push_back(character.front().unicode());
    }
    std::sort(characters.begin(), characters.end());
    return characters;
}

using TablesByCvLanguage = std::array<std::u16string, Alphabets.size()>;

std::array<TablesByCvLanguage, Alphabets.size()> makeAllTables()
{
    std::array<TablesByCvLanguage, Alphabets.size()> tables;
    for (size_t keyboard = 0; keyboard < Alphabets.size(); ++keyboard)
        for (size_t shown = 0; shown < Alphabets.size(); ++shown)
            tables[keyboard][shown] = readCharacters(Alphabets[keyboard], Alphabets[shown]);
    return tables;
}

char32_t codePointAt(QStringView text, qsizetype at)
{
    const QChar unit = text[at];
    const bool isPair = unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    return isPair ? QChar::surrogateToUcs4(unit, text[at + 1]) : unit.unicode();
}

qsizetype sizeOf(char32_t c)
{
    return QChar::requiresSurrogates(c) ? 2 : 1;
}

// One text on its way to its plain spelling, a character with its marks at a time.
class PlainWriter
{
public:
    PlainWriter(QStringView text, const std::u16string &readCharacters)
        : _text(text)
        , _readCharacters(readCharacters)
    {
        _result.text = u""_s;
        _result.text.reserve(text.size());
    }

    PlainText run()
    {
        while (_at < _text.size()) {
            const qsizetype start = _at;
            while (_at < _text.size() && isRead(_text[_at].unicode()))
                ++_at;
            // The last one belongs to the marks after it.
            if (_at > start && _at < _text.size() && TextComposition::isMark(codePointAt(_text, _at)))
                --_at;
            _result.text += _text.sliced(start, _at - start);
            if (_at < _text.size())
                takeCluster();
        }
        return std::move(_result);
    }

private:
    bool isRead(char32_t c) const
    {
        return c < 128 || (c < 0x10000 && std::binary_search(_readCharacters.begin(), _readCharacters.end(),
                                                             static_cast<char16_t>(c)));
    }
    bool isAllRead(QStringView text) const
    {
        return std::all_of(text.begin(), text.end(), [this](QChar c) { return isRead(c.unicode()); });
    }

    void takeCluster()
    {
        const qsizetype start = _at;
        qsizetype kept = 0;
        for (qsizetype characters = 0; _at < _text.size(); ++characters) {
            const char32_t c = codePointAt(_text, _at);
            if (characters > 0 && !TextComposition::isMark(c))
                break;
            _at += sizeOf(c);
            if (characters <= MostMarks)
                kept = _at - start;
        }
        const QString cluster = _text.sliced(start, kept).toString().normalized(QString::NormalizationForm_C);
        bool isWhole = kept == _at - start;
        for (qsizetype at = 0; at < cluster.size();) {
            const char32_t c = codePointAt(cluster, at);
            isWhole = write(c, at > 0) && isWhole;
            at += sizeOf(c);
        }
        if (!isWhole)
            lose(cluster);
    }

    // False when something of the character is lost.
    bool write(char32_t c, bool isMark)
    {
        if (isRead(c)) {
            _result.text += QChar(static_cast<char16_t>(c));
            return true;
        }
        if (const auto plain = plainSpelling(c)) {
            // "1 1/2" is not "11/2".
            if (QChar::decompositionTag(c) == QChar::Fraction && !_result.text.isEmpty() &&
                _result.text.back().isDigit())
                _result.text += u' ';
            _result.text += *plain;
            return true;
        }
        if (!isMark)
            _result.text += baseOf(c);
        return false;
    }

    std::optional<QString> plainSpelling(char32_t c) const
    {
        if (const Spelling *const entry = spellingInTable(c))
            return QString::fromLatin1(entry->plain);
        QString plain;
        const QString compatible = QString::fromUcs4(&c, 1).normalized(QString::NormalizationForm_KC);
        for (const QChar part : compatible) {
            const Spelling *const entry = spellingInTable(part.unicode());
            if (isRead(part.unicode()))
                plain += part;
            else if (entry)
                plain += QLatin1StringView(entry->plain);
            else
                return std::nullopt;
        }
        return withoutBraces(plain);
    }

    QChar baseOf(char32_t c) const
    {
        const QString parts = TextComposition::canonicalParts(c);
        char16_t base = parts.isEmpty() || !isRead(parts.front().unicode()) ? u'\0' : parts.front().unicode();
        for (qsizetype i = 1; i < parts.size(); ++i) {
            const char16_t composed = TextComposition::compose(base, parts[i].unicode());
            if (composed != 0 && isRead(composed))
                base = composed;
        }
        return TextComposition::standsWithoutMarks(base) ? QChar(base) : u'?';
    }

    void lose(const QString &cluster)
    {
        ++_result.lost;
        const QString shown = visibleText(cluster);
        if (_result.examples.size() < PlainText::MostExamples && !_result.examples.contains(shown))
            _result.examples.append(shown);
    }

    const QStringView _text;
    const std::u16string &_readCharacters;
    qsizetype _at = 0;
    PlainText _result;
};

} // namespace

PlainText plainForDevice(const QString &text, int keyboardLanguage, int cvLanguage)
{
    static const auto tables = makeAllTables();
    return PlainWriter(text, tables[alphabetOf(keyboardLanguage)][alphabetOf(cvLanguage)]).run();
}

std::optional<qsizetype> lineOfFirst(QStringView text, QStringView signs)
{
    const auto *const found = std::find_first_of(text.begin(), text.end(), signs.begin(), signs.end());
    if (found == text.end())
        return std::nullopt;
    return std::count(text.begin(), found, u'\n') + 1;
}

QString withoutBraces(QString text)
{
    return text.replace(u'{', u'(').replace(u'}', u')');
}

} // namespace cvtamber
