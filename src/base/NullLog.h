// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/SystemLog.h"

namespace cvtamber {

// A system log that keeps nothing.
class NullLog final : public SystemLog
{
public:
    void write(const QString &) override {}
};

} // namespace cvtamber
