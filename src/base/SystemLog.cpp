// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/SystemLog.h"

namespace cvtamber {

QString SystemLog::masked(const QString &text)
{
    static const bool showPrivate = qEnvironmentVariable("CVTAMBER_LOG_PRIVATE") == QStringLiteral("1");
    return showPrivate ? text : QStringLiteral("<hidden>");
}

} // namespace cvtamber
