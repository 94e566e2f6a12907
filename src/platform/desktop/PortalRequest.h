// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <functional>

class QDBusMessage;
class QDBusPendingCallWatcher;

namespace cvtamber {

// One call to the desktop portal that a person answers in their own time.
//
// The answer comes once, from the loop, also when the portal goes away or there is no bus: then as Failed. Destroyed first, nothing is
// called. Thread: main thread. Owner: its parent; it deletes itself after the answer.
class PortalRequest final : public QObject
{
    Q_OBJECT

public:
    enum class Outcome { Done, Cancelled, Failed };
    using Answer = std::function<void(Outcome outcome, const QVariantMap &results)>;

    struct Call
    {
        // "Email" of "org.freedesktop.portal.Email".
        QString interface;
        QString method;
        // All arguments but the options, which come last.
        QVariantList arguments;
        QVariantMap options;
    };

    static QString service();
    static void start(const QDBusConnection &bus, const Call &call, Answer answer, QObject *parent);

private slots:
    void respond(uint response, const QVariantMap &results);

private:
    PortalRequest(const QDBusConnection &bus, Answer answer, QObject *parent);
    void send(const Call &call);
    void listenAt(const QString &handle);
    void accepted(QDBusPendingCallWatcher *watcher);
    void finish(Outcome outcome, const QVariantMap &results);

    QDBusConnection _bus;
    Answer _answer;
    QString _handle;
};

} // namespace cvtamber
