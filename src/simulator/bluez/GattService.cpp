// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/GattService.h"

#include <QDBusObjectPath>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;

// A characteristic takes the handles of its declaration, its value and its descriptor.
constexpr int HandlesOfCharacteristic = 3;

} // namespace

GattService::GattService(BluezContext &context, GattLink &link, const QString &devicePath, int &handle,
                         const OfferedService &offered)
    : BusObject(devicePath + u"/service%1"_s.arg(handle, 4, 16, QLatin1Char('0')))
    , _context(context)
{
    BusInterface &service = addInterface(u"org.bluez.GattService1"_s);
    service.property(u"UUID"_s, u"s"_s, [uuid = offered.uuid.toString()] { return uuid; });
    service.property(u"Device"_s, u"o"_s,
                     [devicePath] { return QVariant::fromValue(QDBusObjectPath(devicePath)); });
    service.property(u"Primary"_s, u"b"_s, [] { return true; });
    service.property(u"Includes"_s, u"ao"_s, [] { return QVariant::fromValue(QList<QDBusObjectPath>()); });
    _context.tree.add(*this);
    ++handle;
    for (const BluetoothUuid &uuid : offered.characteristics) {
        _characteristics.push_back(std::make_unique<GattCharacteristic>(context, link, path(), handle, uuid));
        handle += HandlesOfCharacteristic;
    }
}

GattService::~GattService()
{
    _characteristics.clear();
    _context.tree.remove(*this);
}

} // namespace cvtamber
