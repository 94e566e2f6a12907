// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/SystemLog.h"

#include <QStringList>

namespace cvtamber {

// A system log that a test can read.
class RecordingLog final : public SystemLog
{
public:
    void write(const QString &message) override { messages.append(message); }

    QStringList messages;
};

} // namespace cvtamber
