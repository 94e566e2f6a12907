// SPDX-License-Identifier: GPL-3.0-or-later
#include "text/DeviceTables.h"

#include <algorithm>

namespace cvtamber {

namespace {

constexpr std::array<const char *, DeviceLanguage::Count> LanguageNames = {
    "Unknown",    "Australian", "English",   "American", "French",   "Spanish",   "Italian",
    "Portuguese", "German",     "Norwegian", "Swedish",  "Danish",   "Dutch",     "Finnish",
    "Greek",      "Chinese",    "Indonesia", "Polish",   "Canadian", "Brazilian", "Czech",
    "Lithuanian", "Turkish",    "Arabic",    "Korean",   "Russian",  "Srilanka",  "Latvian",
};

constexpr std::array<const char *, BrailleCodeCount> BrailleCodeNames = {
    "BC_UNKNOWN",  "BC_NABCC",    "BC_ENGLISH_US",   "BC_ENGLISH_UK",   "BC_POLISH_6",
    "BC_POLISH_8", "BC_SWEDISH",  "BC_NORWEGIAN_6",  "BC_NORWEGIAN_8",  "BC_FRENCH",
    "BC_ITALIAN",  "BC_GERMAN_6", "BC_GERMAN_DIN_8", "BC_GERMAN_437_8", "BC_GERMAN_850_8",
    "BC_CZECH_6",  "BC_CZECH_8",  "BC_LITHUANIAN_8", "BC_RUSSIAN_6",    "BC_ARABIC",
    "BC_LATVIAN",
};

constexpr std::array<const char *, ModelCount> ModelNames = {
    "", "Scribe", "Scribe Plus", "Expert", "Tutor System",
};

template<size_t Count>
QString nameAt(const std::array<const char *, Count> &names, int index, const char *otherwise)
{
    const bool inside = index >= 0 && index < static_cast<int>(Count);
    return QString::fromLatin1(inside ? names[static_cast<size_t>(index)] : otherwise);
}

// The languages of one set letter, by the value of the language switch.
struct LanguageSet
{
    static constexpr unsigned FirstSwitch = 3; // lower values do not depend on the set

    char16_t letter;
    std::array<qint8, 6> languages; // for the switch values 3 to 8
};

constexpr std::array<LanguageSet, 9> LanguageSets = {{
    {u'A', {4, 5, 6, 0, 0, 0}},
    {u'B', {21, 20, 25, 8, 17, 27}},
    {u'C', {0, 0, 19, 7, 14, 0}},
    {u'D', {0, 13, 10, 9, 12, 0}},
    {u'E', {0, 24, 0, 0, 15, 0}},
    {u'F', {22, 0, 0, 0, 0, 0}},
    {u'G', {4, 23, 12, 0, 0, 0}},
    {u'H', {26, 0, 0, 0, 0, 0}},
    {u'S', {4, 0, 0, 4, 0, 0}},
}};

// One value of field 0: the braille code in the sets "B" and "D", and in all others.
struct BrailleCodeRow
{
    qint8 setB;
    qint8 setD;
    qint8 others;
};

constexpr std::array<BrailleCodeRow, 17> BrailleCodes = {{
    {10, 10, 10}, // 0
    {1, 1, 1},    // 1
    {3, 6, 3},    // 2
    {9, 7, 9},    // 3
    {11, 11, 0},  // 4
    {12, 8, 0},   // 5
    {13, 0, 0},   // 6
    {14, 0, 0},   // 7
    {0, 0, 0},    // 8
    {0, 0, 0},    // 9
    {5, 5, 5},    // 10
    {16, 16, 16}, // 11
    {17, 17, 17}, // 12
    {4, 4, 4},    // 13
    {15, 15, 15}, // 14
    {18, 18, 18}, // 15
    {20, 19, 19}, // 16
}};

} // namespace

QString languageName(int language)
{
    return nameAt(LanguageNames, language, "Unknown");
}

QString brailleCodeName(int brailleCode)
{
    return nameAt(BrailleCodeNames, brailleCode, "BC_UNKNOWN");
}

QString modelName(int model)
{
    return nameAt(ModelNames, model, "");
}

int languageFromSetAndDipSwitch(char16_t set, unsigned dipSwitch)
{
    if (dipSwitch < LanguageSet::FirstSwitch)
        return static_cast<int>(dipSwitch) + 1;
    const auto *const row = std::find_if(LanguageSets.begin(), LanguageSets.end(),
                                         [set](const LanguageSet &entry) { return entry.letter == set; });
    const size_t column = dipSwitch - LanguageSet::FirstSwitch;
    if (row == LanguageSets.end() || column >= row->languages.size())
        return DeviceLanguage::Unknown;
    return row->languages[column];
}

int brailleCodeFromField(int field, char16_t set)
{
    if (field < 0 || field >= static_cast<int>(BrailleCodes.size()))
        return 0;
    const BrailleCodeRow &row = BrailleCodes[static_cast<size_t>(field)];
    if (set == u'B')
        return row.setB;
    return set == u'D' ? row.setD : row.others;
}

int modelFromLetter(char16_t letter)
{
    switch (letter) {
    case u'W':
        return 1;
    case u'P':
        return 2;
    case u'F':
        return 3;
    case u'L':
        return 4;
    default:
        return -1;
    }
}

} // namespace cvtamber
