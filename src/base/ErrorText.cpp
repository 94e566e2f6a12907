// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ErrorText.h"

namespace cvtamber {

QString errorText(const std::error_code &error)
{
    QString text = QString::fromLocal8Bit(error.message()).trimmed();
    if (text.endsWith(u'.'))
        text.chop(1);
    // An abbreviation ("RPC ...") keeps its capitals.
    if (text.size() > 1 && text[1].isLower())
        text[0] = text[0].toLower();
    return text;
}

} // namespace cvtamber
