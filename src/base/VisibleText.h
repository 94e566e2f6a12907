// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace cvtamber {

// The text as a terminal or a line of a log may be given it.
//
// Control characters (C0, DEL, C1: also line breaks and tabs) become "\x1b"; line and paragraph separators,
// the marks that change the direction of writing and lone surrogates become "\u{202E}". Everything else
// stays, the backslash too: the result is for reading, not for decoding. Any thread.
QString visibleText(QStringView text);

// Whether there is nothing in it to see or hear: empty, or only spaces of any kind, control and formatting characters, and the
// empty braille cell. Any thread.
bool isBlank(QStringView text);

} // namespace cvtamber
