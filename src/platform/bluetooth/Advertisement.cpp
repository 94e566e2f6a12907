// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/Advertisement.h"

#include <QBluetoothAddress>

#include <algorithm>

namespace cvtamber {

QString identifierOf(const QBluetoothDeviceInfo &device)
{
    if (!device.address().isNull())
        return device.address().toString();
    return device.deviceUuid().toString(QUuid::WithoutBraces);
}

QString advertisedNameOf(const QBluetoothDeviceInfo &device)
{
    const QString name = device.name();
    QString asAddress = name;
    asAddress.replace(u'-', u':');
    const bool isAddress = asAddress.compare(device.address().toString(), Qt::CaseInsensitive) == 0;
    return name.isEmpty() || isAddress ? QString() : name;
}

BluetoothUuid fromQt(const QBluetoothUuid &uuid)
{
    return BluetoothUuid(uuid.toString(QUuid::WithoutBraces));
}

QBluetoothUuid toQt(const BluetoothUuid &uuid)
{
    return QBluetoothUuid(uuid.toQUuid());
}

AdvertisementFilter::AdvertisementFilter(const QList<BluetoothUuid> &services, bool allowDuplicates)
    : _allowDuplicates(allowDuplicates)
{
    for (const BluetoothUuid &service : services)
        _services.append(toQt(service));
}

bool AdvertisementFilter::takes(const QBluetoothDeviceInfo &device)
{
    // No signal strength: the daemon remembers the device, nothing was heard of it.
    if (device.rssi() == 0)
        return false;
    const auto offered = device.serviceUuids();
    const bool isWanted = _services.isEmpty() ||
                          std::any_of(offered.begin(), offered.end(), [this](const QBluetoothUuid &uuid) {
                              return _services.contains(uuid);
                          });
    if (!isWanted)
        return false;
    const QString identifier = identifierOf(device);
    if (!_allowDuplicates && _taken.contains(identifier))
        return false;
    _taken.insert(identifier);
    return true;
}

} // namespace cvtamber
