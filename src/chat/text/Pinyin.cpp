// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/text/Pinyin.h"

#include "chat/text/HanziReadings.h"

#include <algorithm>
#include <array>
#include <vector>

namespace cvtamber {

namespace {

struct MarkedVowel
{
    char32_t vowel;
    char32_t marked[4]; // by tone, from 1
};

constexpr std::array Vowels{
    MarkedVowel{U'a', {U'\u0101', U'\u00E1', U'\u01CE', U'\u00E0'}},
    MarkedVowel{U'e', {U'\u0113', U'\u00E9', U'\u011B', U'\u00E8'}},
    MarkedVowel{U'i', {U'\u012B', U'\u00ED', U'\u01D0', U'\u00EC'}},
    MarkedVowel{U'o', {U'\u014D', U'\u00F3', U'\u01D2', U'\u00F2'}},
    MarkedVowel{U'u', {U'\u016B', U'\u00FA', U'\u01D4', U'\u00F9'}},
};

// What a character below Size is to the conversions; all marked vowels, separators and plain vowels are below.
class CharacterTable
{
public:
    static constexpr char32_t Size = 0x200;

    struct Entry
    {
        char16_t plain = 0; // a vowel without its mark, else the character itself
        quint8 tone = 0;    // of a marked vowel, else 0
        bool isSeparator = false;
        bool isPlainVowel = false;
    };

    constexpr CharacterTable()
    {
        for (char16_t c = 0; c < Size; ++c)
            _entries[c].plain = c;
        for (const char32_t c : {U'\r', U' ', U'"', U',', U'.'})
            _entries[c].isSeparator = true;
        for (const MarkedVowel &row : Vowels) {
            _entries[row.vowel].isPlainVowel = true;
            for (quint8 tone = 1; tone <= 4; ++tone) {
                Entry &entry = _entries[row.marked[tone - 1]];
                entry.plain = static_cast<char16_t>(row.vowel);
                entry.tone = tone;
            }
        }
    }

    constexpr const Entry &operator[](char32_t c) const { return _entries[c]; }

private:
    std::array<Entry, Size> _entries{};
};

constexpr CharacterTable Characters;

constexpr char32_t markedVowel(char32_t vowel, int tone)
{
    for (const MarkedVowel &row : Vowels) {
        if (row.vowel == vowel)
            return row.marked[tone - 1];
    }
    return vowel;
}

// 1 to 4 for a tone symbol, else 0.
int toneOfSymbol(char32_t c, const char32_t *toneSymbols)
{
    for (int tone = 1; tone <= 4; ++tone) {
        if (c == toneSymbols[tone - 1])
            return tone;
    }
    return 0;
}

// The text that is written while tones are put back. It keeps where plain vowels stand, so that a tone finds its
// vowel without reading back over a text that may be long and have none.
class MarkedOutput
{
public:
    explicit MarkedOutput(char32_t *text)
        : _text(text)
    {}

    qsizetype size() const { return _size; }

    void append(char32_t c)
    {
        if (c < CharacterTable::Size && Characters[c].isPlainVowel)
            _vowels.push_back(_size);
        _text[_size++] = c;
    }

    // False when there is no plain vowel.
    bool placeTone(int tone)
    {
        if (_vowels.empty())
            return false;
        qsizetype at = _vowels.back();
        if (belongsToVowelBefore(at)) {
            // The vowel before is marked, this one stays plain.
            _vowels.pop_back();
            _vowels.back() = at--;
        } else {
            _vowels.pop_back();
        }
        _text[at] = markedVowel(_text[at], tone);
        return true;
    }

private:
    // Whether the mark goes to the "a" of "ai" and "ao" or to the "o" of "ou", which it does inside a word only.
    bool belongsToVowelBefore(qsizetype at) const
    {
        if (at < 2)
            return false;
        const char32_t vowel = _text[at];
        const char32_t before = _text[at - 1];
        const bool isPair =
            ((vowel == U'i' || vowel == U'o') && before == U'a') || (vowel == U'u' && before == U'o');
        const char32_t atStart = _text[at - 2];
        return isPair && atStart != U'\n' && atStart != U'\r' && atStart != U' ';
    }

    char32_t *_text;
    qsizetype _size = 0;
    std::vector<qsizetype> _vowels; // positions, ascending
};

} // namespace

const char32_t *pinyinForHanzi(char32_t character)
{
    if (character < HanziReadings::First || character > HanziReadings::Last)
        return nullptr;
    return HanziReadings::Strings + HanziReadings::Starts[character - HanziReadings::First];
}

char32_t foldFullWidthCharacter(char32_t character)
{
    constexpr char32_t FullWidthOffset = 0xFEE0;
    if (character >= 0xFF01 && character <= 0xFF5E)
        return character - FullWidthOffset;
    switch (character) {
    case 0x3001:
        return U',';
    case 0x3002:
        return U'.';
    case 0x2014:
        return U'-';
    case 0x2018:
    case 0x2019:
        return U'`';
    case 0x201C:
    case 0x201D:
        return U'"';
    default:
        return character;
    }
}

qsizetype pinyinMarksToToneSymbols(const char32_t *source, qsizetype sourceLength, char32_t *destination,
                                   qsizetype destinationCapacity, const char32_t *toneSymbols)
{
    if (destination == nullptr || destinationCapacity < 1)
        return 0;
    const qsizetype last = destinationCapacity - 1;
    const qsizetype length = source != nullptr ? sourceLength : 0;
    int pendingTone = 0;
    qsizetype n = 0;
    for (qsizetype i = 0; i < length && n < last; ++i) {
        char32_t c = source[i];
        if (c < CharacterTable::Size) {
            const CharacterTable::Entry &entry = Characters[c];
            if (entry.tone != 0) {
                pendingTone = entry.tone;
                c = entry.plain;
            } else if (entry.isSeparator && pendingTone != 0 && toneSymbols != nullptr) {
                destination[n++] = toneSymbols[pendingTone - 1];
                pendingTone = 0;
            }
        }
        if (n < last)
            destination[n++] = c;
    }
    destination[n] = 0;
    return n + 1;
}

qsizetype pinyinToneSymbolsToMarks(const char32_t *source, char32_t *destination,
                                   qsizetype destinationCapacity, const char32_t *toneSymbols)
{
    if (destination == nullptr || destinationCapacity < 1)
        return 0;
    const qsizetype last = destinationCapacity - 1;
    MarkedOutput output(destination);
    int pendingTone = 0;
    for (; source != nullptr && *source != 0 && output.size() < last; ++source) {
        const int tone = toneSymbols != nullptr ? toneOfSymbol(*source, toneSymbols) : 0;
        if (tone == 0 && pendingTone == 0) {
            output.append(*source);
            continue;
        }
        if (tone != 0)
            pendingTone = tone;
        // An ordinary character that finds a tone waiting is dropped, and the tone tried once more.
        if (output.placeTone(pendingTone))
            pendingTone = 0;
    }
    destination[output.size()] = 0;
    return output.size();
}

} // namespace cvtamber
