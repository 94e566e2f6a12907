// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/BusError.h"

namespace cvtamber::BusErrors {

namespace {

BusError bluez(const QString &kind, const QString &text)
{
    return {QStringLiteral("org.bluez.Error.") + kind, text};
}

} // namespace

BusError failed(const QString &text)
{
    return bluez(QStringLiteral("Failed"), text);
}

BusError inProgress()
{
    return bluez(QStringLiteral("InProgress"), QStringLiteral("Operation already in progress"));
}

BusError notReady()
{
    return bluez(QStringLiteral("NotReady"), QStringLiteral("Resource Not Ready"));
}

BusError notConnected()
{
    return bluez(QStringLiteral("NotConnected"), QStringLiteral("Not Connected"));
}

BusError notSupported()
{
    return bluez(QStringLiteral("NotSupported"), QStringLiteral("Operation is not supported"));
}

BusError notPermitted(const QString &text)
{
    return bluez(QStringLiteral("NotPermitted"), text);
}

BusError doesNotExist()
{
    return bluez(QStringLiteral("DoesNotExist"), QStringLiteral("Does Not Exist"));
}

BusError alreadyExists()
{
    return bluez(QStringLiteral("AlreadyExists"), QStringLiteral("Already Exists"));
}

BusError invalidArguments(const QString &text)
{
    return bluez(QStringLiteral("InvalidArguments"), text);
}

BusError standard(const QString &kind, const QString &text)
{
    return {QStringLiteral("org.freedesktop.DBus.Error.") + kind, text};
}

} // namespace cvtamber::BusErrors
