// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothUuid.h"

#include <QBluetoothDeviceInfo>
#include <QList>
#include <QSet>

namespace cvtamber {

// Stable for a device: its address, or the platform's identifier where addresses are hidden.
QString identifierOf(const QBluetoothDeviceInfo &device);
// Null when the name is only the address, which a daemon shows for want of a name.
QString advertisedNameOf(const QBluetoothDeviceInfo &device);

BluetoothUuid fromQt(const QBluetoothUuid &uuid);
QBluetoothUuid toQt(const BluetoothUuid &uuid);

// Decides which of a scan's reports tell of a device that is really there and wanted.
class AdvertisementFilter
{
public:
    // An empty list wants all devices.
    AdvertisementFilter(const QList<BluetoothUuid> &services, bool allowDuplicates);

    bool takes(const QBluetoothDeviceInfo &device);

private:
    QList<QBluetoothUuid> _services;
    bool _allowDuplicates;
    QSet<QString> _taken;
};

} // namespace cvtamber
