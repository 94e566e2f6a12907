// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/PortalAppearance.h"

#include "platform/desktop/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QMetaType>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

const QString Path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString Interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString Shared = QStringLiteral("org.freedesktop.appearance");
const QString Gnome = QStringLiteral("org.gnome.desktop.interface");
const QString GnomeAccess = QStringLiteral("org.gnome.desktop.a11y.interface");
constexpr uint PrefersDark = 1;
constexpr uint PrefersLight = 2;

// Portals put a variant into a variant.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

PortalAppearance::PortalAppearance(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , _bus(bus)
{
    if (!_bus.isConnected())
        return;
    // Without it the bus takes the slot and never calls it.
    qRegisterMetaType<QDBusVariant>();
    // First, so that no change falls between the answer and the listening.
    _bus.connect(PortalRequest::service(), Path, Interface, u"SettingChanged"_s, this,
                 SLOT(change(QString, QString, QDBusVariant)));
    read();
}

void PortalAppearance::read()
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(PortalRequest::service(), Path, Interface, u"ReadAll"_s);
    message << QStringList{Shared, Gnome, GnomeAccess};
    auto *const watcher = new QDBusPendingCallWatcher(_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, &PortalAppearance::take);
}

void PortalAppearance::take(QDBusPendingCallWatcher *watcher)
{
    const QDBusMessage reply = watcher->reply();
    watcher->deleteLater();
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != u"a{sa{sv}}")
        return;
    _values = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    tell();
}

void PortalAppearance::change(const QString &space, const QString &key, const QDBusVariant &value)
{
    if (space != Shared && space != Gnome && space != GnomeAccess)
        return;
    _values[space].insert(key, value.variant());
    tell();
}

void PortalAppearance::tell()
{
    const DesktopLook look = lookOfValues();
    if (look == _look)
        return;
    _look = look;
    emit changed(_look);
}

DesktopLook PortalAppearance::lookOfValues() const
{
    const auto value = [this](const QString &space, const QString &key) {
        return unwrapped(_values.value(space).value(key));
    };
    DesktopLook look;
    const uint scheme = value(Shared, u"color-scheme"_s).toUInt();
    if (scheme == PrefersDark || scheme == PrefersLight)
        look.dark = scheme == PrefersDark;
    const QVariant contrast = value(Shared, u"contrast"_s);
    look.highContrast =
        contrast.isValid() ? contrast.toUInt() == 1 : value(GnomeAccess, u"high-contrast"_s).toBool();
    const QVariant motion = value(Shared, u"reduced-motion"_s);
    const QVariant animations = value(Gnome, u"enable-animations"_s);
    look.reducedMotion =
        motion.isValid() ? motion.toUInt() == 1 : animations.isValid() && !animations.toBool();
    return look;
}

} // namespace cvtamber
