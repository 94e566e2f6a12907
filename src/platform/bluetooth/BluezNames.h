// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusObjectPath>
#include <QMap>
#include <QString>
#include <QVariantMap>

namespace cvtamber {

// What the daemon's GetManagedObjects answers: the properties of each object, by interface.
using Interfaces = QMap<QString, QVariantMap>;
using ManagedObjects = QMap<QDBusObjectPath, Interfaces>;

inline QString bluezDaemon()
{
    return QStringLiteral("org.bluez");
}

inline QString objectManagerInterface()
{
    return QStringLiteral("org.freedesktop.DBus.ObjectManager");
}

} // namespace cvtamber
