// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothPeripheral.h"

namespace cvtamber {

// One device that a scan found.
class CVBTPeripheral
{
public:
    CVBTPeripheral(BluetoothPeripheralPtr peripheral, const QString &serialNumber, const QString &airName)
        : _peripheral(std::move(peripheral))
        , _serialNumber(serialNumber)
        , _airName(airName)
    {}

    BluetoothPeripheralPtr peripheral() const { return _peripheral; }
    // Null when the device has no readable information.
    QString serialNumber() const { return _serialNumber; }
    // Null when the device has no readable information or tells no name.
    QString airName() const { return _airName; }

private:
    BluetoothPeripheralPtr _peripheral;
    QString _serialNumber;
    QString _airName;
};
using CVBTPeripheralPtr = std::shared_ptr<CVBTPeripheral>;

} // namespace cvtamber
