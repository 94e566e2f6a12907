// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>

namespace cvtamber {

// The device's numbers for languages, braille codes and models, and their names.
// Names are keys of the translation catalogue and their own fallback.

namespace DeviceLanguage {
inline constexpr int Unknown = 0;
inline constexpr int French = 4;
inline constexpr int Greek = 14;
inline constexpr int Chinese = 15;
inline constexpr int Polish = 17;
inline constexpr int Arabic = 23;
inline constexpr int Count = 28;
} // namespace DeviceLanguage

inline constexpr int BrailleCodeCount = 21;
inline constexpr int ModelCount = 5;

// "Unknown" for a number outside the table.
QString languageName(int language);
// "BC_UNKNOWN" for a number outside the table.
QString brailleCodeName(int brailleCode);
// Empty for 0 (unknown) and outside the table.
QString modelName(int model);

// Language number from the set letter of the firmware version and the value of the language switch.
// Switch values 0 to 2 mean 1 to 3 whatever the set; outside the table the result is 0.
int languageFromSetAndDipSwitch(char16_t set, unsigned dipSwitch);
// Braille code number from field 0 of the state record and the set letter; 0 outside the table.
int brailleCodeFromField(int field, char16_t set);
// Model code from the letter of a version reply ("W", "P", "F", "L"); -1 for any other.
int modelFromLetter(char16_t letter);

} // namespace cvtamber
