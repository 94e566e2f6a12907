// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/FreedesktopApplicationAdaptor.h"

#include "platform/desktop/DesktopApplication.h"
#include "platform/desktop/FileUris.h"

namespace cvtamber {

namespace {

QString activationToken(const QVariantMap &platformData)
{
    const QString token = platformData.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString() : token;
}

} // namespace

FreedesktopApplicationAdaptor::FreedesktopApplicationAdaptor(DesktopApplication &application)
    : QDBusAbstractAdaptor(&application)
    , _application(application)
{}

void FreedesktopApplicationAdaptor::Activate(const QVariantMap &platformData)
{
    _application.perform([token = activationToken(platformData)](const auto &handlers) {
        if (handlers.activate)
            handlers.activate(token);
    });
}

void FreedesktopApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &platformData)
{
    _application.perform([token = activationToken(platformData), uris](const auto &handlers) {
        // First: a program that was started for these files is to know it.
        const auto [paths, others] = pathsOfUris(uris);
        if (handlers.open)
            handlers.open(paths, others);
        if (handlers.activate)
            handlers.activate(token);
    });
}

void FreedesktopApplicationAdaptor::ActivateAction(const QString &name, const QVariantList &,
                                                   const QVariantMap &)
{
    _application.perform([name](const auto &handlers) {
        if (handlers.action)
            handlers.action(name);
    });
}

} // namespace cvtamber
