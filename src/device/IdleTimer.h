// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

namespace cvtamber {

// The platform's dimming of the screen when nobody touches it.
class IdleTimer : public InterfaceBase
{
public:
    // True: the screen may dim again. Called more often than needed; setting the same value twice is
    // harmless.
    virtual void setEnabled(bool enabled) = 0;
};

} // namespace cvtamber
