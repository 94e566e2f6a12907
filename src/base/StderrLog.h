// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/SystemLog.h"

namespace cvtamber {

// The system log of the programs: each message is one line on standard error, in UTF-8, with everything that
// a terminal would obey made visible. A standard error that is closed or full loses messages silently.
class StderrLog final : public SystemLog
{
public:
    void write(const QString &message) override;
};

} // namespace cvtamber
