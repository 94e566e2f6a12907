// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/DesktopLook.h"

#include <QDBusConnection>
#include <QMap>
#include <QObject>
#include <QVariantMap>

class QDBusPendingCallWatcher;
class QDBusVariant;

namespace cvtamber {

// Reads from the desktop portal how programs are to look, and hears when a person changes it.
//
// The keys that all desktops share go first (org.freedesktop.appearance); where one is missing, GNOME's own older key
// stands in for it. The one question starts the portal where it is installed and not running yet: else the program would look
// right only after another one has needed the portal. The answer comes through the event loop, so nothing waits for it.
// Without a bus or a portal nothing is ever told.
// Thread: main thread. Owner: whoever passes it on to the presenter.
class PortalAppearance final : public QObject
{
    Q_OBJECT

public:
    explicit PortalAppearance(const QDBusConnection &bus, QObject *parent = nullptr);

signals:
    void changed(const cvtamber::DesktopLook &look);

private slots:
    void change(const QString &space, const QString &key, const QDBusVariant &value);

private:
    void read();
    void take(QDBusPendingCallWatcher *watcher);
    void tell();
    DesktopLook lookOfValues() const;

    QDBusConnection _bus;
    // By namespace and key.
    QMap<QString, QVariantMap> _values;
    DesktopLook _look;
};

} // namespace cvtamber
