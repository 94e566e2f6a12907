// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "simulator/SimulatedDevice.h"

namespace cvtamber {

// The link to a device as its services on the bus use it.
class GattLink : public InterfaceBase
{
public:
    virtual SimulatedDevice &peer() = 0;
    // Linked, and the services are known.
    virtual bool isResolved() const = 0;
    // Calls unless the link ends before: without a delay at once, from inside.
    virtual void after(std::chrono::nanoseconds delay, const RunLoop::Callback &callback) = 0;
    // The same, never from inside, so that the call may end the link.
    virtual void later(std::chrono::nanoseconds delay, const RunLoop::Callback &callback) = 0;
};

} // namespace cvtamber
