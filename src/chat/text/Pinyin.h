// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace cvtamber {

// Hanzi to pinyin, and pinyin between its two written forms: tone marks on vowels ("zhōng"), as people read it,
// and tone symbols after syllables ("zhong$"), as the device writes it. Plain functions on UTF-32 without state;
// any thread. Cost is linear in the text; pinyinToneSymbolsToMarks() alone allocates, 8 bytes a vowel at most.
//
// Only the twenty marked small vowels a, e, i, o, u take part; capitals and every form of ü pass unchanged. No
// call writes past `destinationCapacity`, and none writes at all when that is below 1 or `destination` is null:
// it returns 0 then. Source and destination do not overlap.

// The symbols of tones 1 to 4; the neutral tone has none.
inline constexpr char32_t ToneSymbols[4] = {U'$', U'%', U'^', U'&'};

// The reading of a character from U+4E00 to U+9FA5, zero-terminated, "*" for one without a known reading; null
// for any other code point. The string is constant data.
const char32_t *pinyinForHanzi(char32_t character);

// The ASCII character that stands for a full-width form or for a Chinese or typographic sign; every other code
// point unchanged. U+2018 and U+2019 both give the grave accent: the device has always been sent that.
char32_t foldFullWidthCharacter(char32_t character);

// Takes the marks off the vowels and writes each tone's symbol before the next CR, space, double quote, comma or
// full stop; the tone of a last syllable without such a separator is lost. Without `toneSymbols` the marks are
// only taken off. Reads exactly `sourceLength` code points, so `source` has at least that many: a count in
// UTF-16 units is too large for a text with surrogate pairs. Returns the number of code points written,
// including the terminating zero.
qsizetype pinyinMarksToToneSymbols(const char32_t *source, qsizetype sourceLength, char32_t *destination,
                                   qsizetype destinationCapacity, const char32_t *toneSymbols);

// Marks a vowel before each tone symbol and leaves the symbol out. `source` is zero-terminated. A symbol without
// a plain vowel before it is kept for later, and each ordinary character that comes meanwhile is dropped.
// Without `toneSymbols` the text is copied. Returns the number of code points written, without the terminating
// zero.
qsizetype pinyinToneSymbolsToMarks(const char32_t *source, char32_t *destination,
                                   qsizetype destinationCapacity, const char32_t *toneSymbols);

} // namespace cvtamber
