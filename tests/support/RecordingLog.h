// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/SystemLog.h"

#include <QStringList>

#include <algorithm>

namespace cvtamber {

// A system log that a test can read.
class RecordingLog final : public SystemLog
{
public:
    void write(const QString &message) override { lines.append(message); }
    // How many lines begin with the text.
    qsizetype count(const QString &start) const
    {
        return std::count_if(lines.begin(), lines.end(),
                             [&](const QString &line) { return line.startsWith(start); });
    }

    QStringList lines;
};

} // namespace cvtamber
