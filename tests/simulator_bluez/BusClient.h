// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace cvtamber {

using InterfaceValues = QMap<QString, QVariantMap>;
using ManagedObjects = QMap<QDBusObjectPath, InterfaceValues>;

// A client of the daemon with a connection of its own, which keeps the signals that it hears.
class BusClient : public QObject
{
    Q_OBJECT
public:
    explicit BusClient(const QString &address);
    ~BusClient() override;

    QDBusMessage call(const QString &path, const QString &method, const QVariantList &arguments = {});
    // Does not wait: the answer goes to `answered`.
    void send(const QString &path, const QString &method, const QVariantList &arguments,
              const std::function<void(const QDBusMessage &)> &answered);
    QVariant property(const QString &path, const QString &interface, const QString &name);
    QDBusMessage setProperty(const QString &path, const QString &interface, const QString &name,
                             const QVariant &value);
    ManagedObjects objects();
    // The objects with this interface, for which the property has this value.
    QStringList paths(const QString &interface, const QString &property = {}, const QVariant &value = {});
    // The values that a property was told to have, oldest first; invalid for "gone".
    QVariantList told(const QString &path, const QString &property) const;
    void forgetSignals() { _signals.clear(); }
    bool isNameOwned();

private slots:
    void hear(const QDBusMessage &message) { _signals.append(message); }

private:
    QString _name;
    QDBusConnection _connection;
    QList<QDBusMessage> _signals;
};

} // namespace cvtamber
