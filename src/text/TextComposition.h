// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber::TextComposition {

// The precomposed character for a base and the combining mark after it ("e", U+0301 -> U+00E9), when one of
// the device's code pages has it; 0 otherwise. Any thread.
char16_t compose(char16_t base, char16_t mark);

// Whether the character belongs to the one before it, as combining marks do, and the later letters of a Hangul syllable.
bool isMark(char32_t c);
// What Unicode calls the same as the character, fully decomposed ("s", U+0326 for U+0219); empty where there is nothing.
QString canonicalParts(char32_t c);
// Whether the character without its marks is still much the same: not 0, and not a sign that a mark negates.
bool standsWithoutMarks(char16_t base);

} // namespace cvtamber::TextComposition
