// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/DesktopApplication.h"

#include "platform/desktop/FileUris.h"
#include "platform/desktop/FreedesktopApplicationAdaptor.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include <chrono>
#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// A running one that is busy drawing answers well within that.
constexpr std::chrono::milliseconds AnswerLimit{10'000};

QString objectPath(const QString &identifier)
{
    QString path = u'/' + identifier;
    return path.replace(u'.', u'/').replace(u'-', u'_');
}

// What lets the running one take the focus; the tokens are for this start alone.
QVariantMap platformData()
{
    QVariantMap data;
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    const QString startupId = qEnvironmentVariable("DESKTOP_STARTUP_ID");
    if (!token.isEmpty())
        data.insert(u"activation-token"_s, token);
    if (!startupId.isEmpty())
        data.insert(u"desktop-startup-id"_s, startupId);
    return data;
}

} // namespace

DesktopApplication::DesktopApplication(const QDBusConnection &bus, const QString &identifier, QObject *parent)
    : QObject(parent)
    , _bus(bus)
    , _identifier(identifier)
{
    new FreedesktopApplicationAdaptor(*this);
}

DesktopApplication::~DesktopApplication()
{
    if (!_ownsName)
        return;
    _bus.unregisterService(_identifier);
    _bus.unregisterObject(objectPath(_identifier));
}

DesktopApplication::Start DesktopApplication::start(const QStringList &paths)
{
    if (!_bus.isConnected())
        return Start::NoBus;
    // Before the name: from then on calls may come.
    if (!_bus.registerObject(objectPath(_identifier), this, QDBusConnection::ExportAdaptors))
        return Start::NoBus;
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        _bus.interface()->registerService(_identifier, QDBusConnectionInterface::DontQueueService,
                                          QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        _ownsName = true;
        return Start::First;
    }
    _bus.unregisterObject(objectPath(_identifier));
    return reply.isValid() ? handOver(paths) : Start::NoBus;
}

DesktopApplication::Start DesktopApplication::handOver(const QStringList &paths)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(_identifier, objectPath(_identifier), u"org.freedesktop.Application"_s,
                                       paths.isEmpty() ? u"Activate"_s : u"Open"_s);
    if (!paths.isEmpty()) {
        QStringList uris;
        for (const QString &path : paths)
            uris.append(fileUriOfPath(path));
        message << uris;
    }
    message << platformData();
    message.setAutoStartService(false);
    const QDBusMessage reply = _bus.call(message, QDBus::Block, static_cast<int>(AnswerLimit.count()));
    return reply.type() == QDBusMessage::ReplyMessage ? Start::HandedOver : Start::NotAnswered;
}

void DesktopApplication::setHandlers(Handlers handlers)
{
    _handlers = std::move(handlers);
    _hasHandlers = true;
    const auto early = std::exchange(_early, {});
    for (const auto &request : early)
        request(_handlers);
}

void DesktopApplication::perform(std::function<void(const Handlers &)> request)
{
    if (_hasHandlers)
        request(_handlers);
    else
        _early.append(std::move(request));
}

} // namespace cvtamber
