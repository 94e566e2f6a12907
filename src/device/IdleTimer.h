// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cvtamber {

// The platform's dimming of the screen when nobody touches it.
class IdleTimer
{
public:
    IdleTimer() = default;
    IdleTimer(const IdleTimer &) = delete;
    IdleTimer &operator=(const IdleTimer &) = delete;
    virtual ~IdleTimer() = default;

    // True: the screen may dim again. Called more often than needed; setting the same value twice is
    // harmless.
    virtual void setEnabled(bool enabled) = 0;
};

} // namespace cvtamber
