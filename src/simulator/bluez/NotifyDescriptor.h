// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/BluezContext.h"
#include "simulator/bluez/GattLink.h"

namespace cvtamber {

// The descriptor by which notifications are switched on: it can be read, and clients that write it are told to
// use StartNotify. Owner: its characteristic.
class NotifyDescriptor final : public BusObject
{
public:
    NotifyDescriptor(BluezContext &context, GattLink &link, const QString &path,
                     const QString &characteristicPath, const std::function<bool()> &isNotifying);
    ~NotifyDescriptor() override;

private:
    BluezContext &_context;
};

} // namespace cvtamber
