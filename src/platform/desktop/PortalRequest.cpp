// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QUuid>

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

QString PortalRequest::service()
{
    return u"org.freedesktop.portal.Desktop"_s;
}

PortalRequest::PortalRequest(const QDBusConnection &bus, Answer answer, QObject *parent)
    : QObject(parent)
    , _bus(bus)
    , _answer(std::move(answer))
{
    auto *const watcher =
        new QDBusServiceWatcher(service(), bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { finish(Outcome::Failed, {}); });
}

void PortalRequest::start(const QDBusConnection &bus, const Call &call, Answer answer, QObject *parent)
{
    auto *const request = new PortalRequest(bus, std::move(answer), parent);
    request->send(call);
}

void PortalRequest::send(const Call &call)
{
    if (!_bus.isConnected()) {
        QMetaObject::invokeMethod(
            this, [this] { finish(Outcome::Failed, {}); }, Qt::QueuedConnection);
        return;
    }
    const QString token = u"cvtamber"_s % QUuid::createUuid().toString(QUuid::Id128);
    QString sender = _bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    // The answer may come before the reply to the call does.
    listenAt(u"/org/freedesktop/portal/desktop/request/"_s % sender % u'/' % token);
    QVariantMap options = call.options;
    options.insert(u"handle_token"_s, token);
    QDBusMessage message =
        QDBusMessage::createMethodCall(service(), u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal."_s % call.interface, call.method);
    message.setArguments(call.arguments + QVariantList{options});
    auto *const watcher = new QDBusPendingCallWatcher(_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, &PortalRequest::accepted);
}

void PortalRequest::listenAt(const QString &handle)
{
    _handle = handle;
    _bus.connect(service(), handle, u"org.freedesktop.portal.Request"_s, u"Response"_s, this,
                 SLOT(respond(uint, QVariantMap)));
}

void PortalRequest::accepted(QDBusPendingCallWatcher *watcher)
{
    const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
    watcher->deleteLater();
    if (reply.isError())
        finish(Outcome::Failed, {});
    else if (reply.value().path() != _handle)
        listenAt(reply.value().path());
}

void PortalRequest::respond(uint response, const QVariantMap &results)
{
    finish(response == 0 ? Outcome::Done : response == 1 ? Outcome::Cancelled : Outcome::Failed, results);
}

void PortalRequest::finish(Outcome outcome, const QVariantMap &results)
{
    if (const Answer answer = std::exchange(_answer, {})) {
        deleteLater();
        answer(outcome, results);
    }
}

} // namespace cvtamber
