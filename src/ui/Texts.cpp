// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Texts.h"

#include <QtGlobal>

namespace cvtamber {

QString localized(const char *key)
{
    return qtTrId(key);
}

QString localizedFormat(const char *key, const QString &argument)
{
    static const auto placeholder = QStringLiteral("%@");
    auto text = localized(key);
    const auto place = text.indexOf(placeholder);
    // Once only: the argument may hold the placeholder itself.
    return place < 0 ? text : text.replace(place, placeholder.size(), argument);
}

} // namespace cvtamber
