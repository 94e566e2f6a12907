// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber {

// The text of a bubble as it may be drawn, measured and spoken: every line end is "\n", other control characters and
// lone surrogates are U+FFFD (a NUL would end a name on its way to a screen reader). At most `most` UTF-16 units of the
// text are read, and never half a pair; 0: all.
QString drawableText(QStringView text, qsizetype most = 0);

// The part that is drawn, with a sign at its end that there is more.
QString shortenedText(const QString &text, qsizetype shown);

} // namespace cvtamber
