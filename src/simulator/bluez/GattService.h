// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/GattCharacteristic.h"

namespace cvtamber {

// A primary service on the bus with its characteristics. Owner: BluezDevice.
class GattService final : public BusObject
{
public:
    // Uses the handles from `handle` on, and moves it past them.
    GattService(BluezContext &context, GattLink &link, const QString &devicePath, int &handle,
                const OfferedService &offered);
    ~GattService() override;

    const std::vector<std::unique_ptr<GattCharacteristic>> &characteristics() const
    {
        return _characteristics;
    }

private:
    BluezContext &_context;
    std::vector<std::unique_ptr<GattCharacteristic>> _characteristics;
};

} // namespace cvtamber
