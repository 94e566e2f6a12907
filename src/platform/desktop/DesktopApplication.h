// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace cvtamber {

// The program on the session bus: there is one of it, and a second start hands over to the first and ends.
//
//   start() -> First         the name is ours; requests of the desktop and of later starts come through the handlers
//           -> HandedOver    the running one has taken everything
//           -> NotAnswered   one runs and does not answer: nothing was handed over
//           -> NoBus         no session bus, or it refuses the name: nobody knows of the others
// Speaks org.freedesktop.Application, so the desktop can start it by its name too. Thread: main thread. Owner:
// main(). start() waits for the answer of the running one; nothing else waits.
class DesktopApplication final : public QObject
{
    Q_OBJECT

public:
    enum class Start { First, HandedOver, NotAnswered, NoBus };

    struct Handlers
    {
        // To the front. The token lets the window take the focus; it may be empty.
        std::function<void(const QString &activationToken)> activate;
        // Absolute paths, and what was named beside them that is no file of this computer.
        std::function<void(const QStringList &paths, const QStringList &others)> open;
        // One of the desktop file's actions.
        std::function<void(const QString &name)> action;
    };

    // The identifier is the bus name, as "org.example.Program"; the object's path follows from it.
    DesktopApplication(const QDBusConnection &bus, const QString &identifier, QObject *parent = nullptr);
    ~DesktopApplication() override;

    // Absolute paths to hand over; none: the running one is asked to come to the front.
    Start start(const QStringList &paths);
    // What comes before there are handlers waits for them.
    void setHandlers(Handlers handlers);

private:
    friend class FreedesktopApplicationAdaptor;

    Start handOver(const QStringList &paths);
    void perform(std::function<void(const Handlers &)> request);

    QDBusConnection _bus;
    QString _identifier;
    bool _ownsName = false;
    bool _hasHandlers = false;
    Handlers _handlers;
    QList<std::function<void(const Handlers &)>> _early;
};

} // namespace cvtamber
