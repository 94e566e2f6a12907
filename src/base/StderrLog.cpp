// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/StderrLog.h"

#include "base/VisibleText.h"

#include <cstdio>

namespace cvtamber {

void StderrLog::write(const QString &message)
{
    const QByteArray line = (visibleText(message) + u'\n').toUtf8();
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
    std::fflush(stderr);
}

} // namespace cvtamber
