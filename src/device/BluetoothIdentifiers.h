// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothUuid.h"

#include <QList>

namespace cvtamber {

// The device's identifiers on the air.
namespace BluetoothIdentifiers {

// The device service: what the manager scans for, and where the data characteristic is.
inline BluetoothUuid deviceService()
{
    return BluetoothUuid(QStringLiteral("1e45e5bb-96e5-4e33-b85c-bdb98386a703"));
}
// Carries bytes both ways: written with response, notified by the device.
inline BluetoothUuid dataCharacteristic()
{
    return BluetoothUuid(QStringLiteral("534945e7-bf79-427b-944a-31b9e444665d"));
}
// UTF-8 text: serial number, comma, device name.
inline BluetoothUuid infoCharacteristic()
{
    return BluetoothUuid(QStringLiteral("fa3e6100-2f2e-11e3-aa6e-0800200c9a66"));
}
// The same text; some devices have it in the generic access service.
inline BluetoothUuid secondInfoCharacteristic()
{
    return BluetoothUuid(QStringLiteral("4e8b39af-c291-4d43-ad56-0164a75e890f"));
}
inline BluetoothUuid genericAccessService()
{
    return BluetoothUuid(QStringLiteral("0x1800"));
}
// The services by which the device object's own scan looks, when no device was chosen.
inline QList<BluetoothUuid> ownScanServices()
{
    return {BluetoothUuid(QStringLiteral("1800")), BluetoothUuid(QStringLiteral("180D")),
            BluetoothUuid(QStringLiteral("0bd51666-e7cb-469b-8e4d-2742f1ba77cc"))};
}
// The advertised name that this scan takes.
inline QString ownScanName()
{
    return QStringLiteral("Bluegiga CR device");
}

} // namespace BluetoothIdentifiers

} // namespace cvtamber
