// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/BusCall.h"

#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

namespace cvtamber {

// A method that clients can call; signatures are those of D-Bus.
struct BusMethod
{
    using Handler = std::function<void(const BusCall &)>;

    QString name;
    QString in;
    QString out;
    Handler handler; // answers the call now or later
};

// A property. What is read may be invalid: then the property is not there at the moment.
struct BusProperty
{
    using Read = std::function<QVariant()>;
    // Null when it was set.
    using Write = std::function<std::optional<BusError>(const QVariant &)>;

    QString name;
    QString signature;
    Read read;
    Write write; // empty: read only
};

struct BusInterface
{
    QString name;
    std::vector<BusMethod> methods;
    std::vector<BusProperty> properties;

    void method(const QString &methodName, const QString &in, const QString &out,
                const BusMethod::Handler &handler)
    {
        methods.push_back({methodName, in, out, handler});
    }
    void property(const QString &propertyName, const QString &signature, const BusProperty::Read &read,
                  const BusProperty::Write &write = {})
    {
        properties.push_back({propertyName, signature, read, write});
    }
    // Null when there is none.
    const BusMethod *findMethod(const QString &methodName) const;
    const BusProperty *findProperty(const QString &propertyName) const;
    // The properties that are there now.
    QVariantMap values() const;
    // As introspection tells it.
    QString xml() const;
};

// An object on the bus: a path and interfaces, which derived classes declare when they are made. The
// ObjectTree shows it to clients. Main thread.
class BusObject
{
public:
    explicit BusObject(const QString &path)
        : _path(path)
    {}
    BusObject(const BusObject &) = delete;
    BusObject &operator=(const BusObject &) = delete;
    virtual ~BusObject() = default;

    const QString &path() const { return _path; }
    const std::vector<BusInterface> &interfaces() const { return _interfaces; }
    // Null when there is none.
    const BusInterface *findInterface(const QString &name) const;

protected:
    // The reference holds until the next interface is added.
    BusInterface &addInterface(const QString &name);
    // The first interface that was added.
    BusInterface &ownInterface() { return _interfaces.front(); }

private:
    QString _path;
    std::vector<BusInterface> _interfaces;
};

} // namespace cvtamber
