// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/NotifyDescriptor.h"

#include <QDBusObjectPath>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;

// Client characteristic configuration: the first bit of two bytes says that notifications are on.
const QString ConfigurationUuid = u"00002902-0000-1000-8000-00805f9b34fb"_s;
constexpr qsizetype ConfigurationSize = 2;

} // namespace

NotifyDescriptor::NotifyDescriptor(BluezContext &context, GattLink &link, const QString &path,
                                   const QString &characteristicPath,
                                   const std::function<bool()> &isNotifying)
    : BusObject(path)
    , _context(context)
{
    const auto value = [isNotifying] {
        QByteArray bytes(ConfigurationSize, '\0');
        bytes[0] = isNotifying() ? '\1' : '\0';
        return bytes;
    };
    BusInterface &descriptor = addInterface(u"org.bluez.GattDescriptor1"_s);
    descriptor.property(u"UUID"_s, u"s"_s, [] { return ConfigurationUuid; });
    descriptor.property(u"Characteristic"_s, u"o"_s, [characteristicPath] {
        return QVariant::fromValue(QDBusObjectPath(characteristicPath));
    });
    descriptor.property(u"Value"_s, u"ay"_s, value);
    descriptor.method(u"ReadValue"_s, u"a{sv}"_s, u"ay"_s, [&link, value](const BusCall &call) {
        if (!link.isResolved()) {
            call.fail(BusErrors::notConnected());
            return;
        }
        link.after(link.peer().profile().delays.read, [call, value] { call.reply(value()); });
    });
    descriptor.method(u"WriteValue"_s, u"aya{sv}"_s, {}, [](const BusCall &call) {
        call.fail(BusErrors::notPermitted(u"Write not permitted"_s));
    });
    _context.tree.add(*this);
}

NotifyDescriptor::~NotifyDescriptor()
{
    _context.tree.remove(*this);
}

} // namespace cvtamber
