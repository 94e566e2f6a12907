// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber {

// The conversions of a chat with a device whose language is Chinese, on whole texts. Pure; any thread. Cost is
// linear in the text. Surrogates without a partner come out as U+FFFD.
//
//   typed --pinyinForText--> shown to the sender --toneSymbolsForPinyin--> sent
//   received line --marksForToneSymbols--> shown

// Each Hanzi as its reading with tone marks, full-width forms and Chinese signs as ASCII. A reading is preceded
// by a space unless its character is the first of the text.
QString pinyinForText(const QString &text);

// Tone marks as symbols. What is sent ends with U+0000, which the result holds.
QString toneSymbolsForPinyin(const QString &pinyin);

// Tone symbols as marks on the vowels before them. The line ends at its first U+0000, as what is sent does.
QString marksForToneSymbols(const QString &line);

} // namespace cvtamber
