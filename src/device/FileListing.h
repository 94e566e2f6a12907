// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/CVFileData.h"

#include <QList>

#include <optional>

namespace cvtamber {

// The device's file listing, as pure functions. Any text is allowed.

// One line: the name up to the first space, then the size as a decimal or a braille number, else size 0. What
// follows the size is ignored. A negative decimal size is 0.
CVFileData fileDataFromString(QStringView line, int keyboardLanguage);

// A whole reply: one file a line, CR LF or LF, lines without a name left out. Cost is linear in the text.
QList<CVFileData> filesFromListing(const QString &listing, int keyboardLanguage);

// A number in braille digits: "#" and the letters A to J (1 to 9 and 0), in either case; in French "," and
// the signs of the French table, where the digits 1 to 9 count one more than they say. Nothing when it is no
// such number, or one that does not fit 64 bits.
std::optional<quint64> CVParseBrailleNumber(QStringView text, int language);

} // namespace cvtamber
