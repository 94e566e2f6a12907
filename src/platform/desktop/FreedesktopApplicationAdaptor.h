// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

namespace cvtamber {

class DesktopApplication;

// The interface through which desktops start, open files with and call actions of a program.
// Owner: the application, as its child.
class FreedesktopApplicationAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit FreedesktopApplicationAdaptor(DesktopApplication &application);

public slots:
    // NOLINTBEGIN(readability-identifier-naming): the names are the interface's.
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameter, const QVariantMap &platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    DesktopApplication &_application;
};

} // namespace cvtamber
