// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/ObjectTree.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;
using InterfaceValues = QMap<QString, QVariantMap>;
using ManagedObjects = QMap<QDBusObjectPath, InterfaceValues>;

const QString ObjectManager = u"org.freedesktop.DBus.ObjectManager"_s;
const QString Properties = u"org.freedesktop.DBus.Properties"_s;
const QString Introspectable = u"org.freedesktop.DBus.Introspectable"_s;
const QString Peer = u"org.freedesktop.DBus.Peer"_s;
const QString Root = u"/"_s;

InterfaceValues valuesOf(const BusObject &object)
{
    InterfaceValues values;
    for (const BusInterface &interface : object.interfaces())
        values.insert(interface.name, interface.values());
    return values;
}

QString standardXml(bool isRoot)
{
    QString xml = u"<interface name=\"org.freedesktop.DBus.Introspectable\">"
                  "<method name=\"Introspect\"><arg type=\"s\" direction=\"out\"/></method></interface>\n"
                  "<interface name=\"org.freedesktop.DBus.Properties\">"
                  "<method name=\"Get\"><arg type=\"s\" direction=\"in\"/><arg type=\"s\" direction=\"in\"/>"
                  "<arg type=\"v\" direction=\"out\"/></method>"
                  "<method name=\"Set\"><arg type=\"s\" direction=\"in\"/><arg type=\"s\" direction=\"in\"/>"
                  "<arg type=\"v\" direction=\"in\"/></method>"
                  "<method name=\"GetAll\"><arg type=\"s\" direction=\"in\"/>"
                  "<arg type=\"a{sv}\" direction=\"out\"/></method>"
                  "<signal name=\"PropertiesChanged\"><arg type=\"s\"/><arg type=\"a{sv}\"/>"
                  "<arg type=\"as\"/></signal></interface>\n"_s;
    if (isRoot)
        xml += u"<interface name=\"org.freedesktop.DBus.ObjectManager\">"
               "<method name=\"GetManagedObjects\"><arg type=\"a{oa{sa{sv}}}\" direction=\"out\"/></method>"
               "<signal name=\"InterfacesAdded\"><arg type=\"o\"/><arg type=\"a{sa{sv}}\"/></signal>"
               "<signal name=\"InterfacesRemoved\"><arg type=\"o\"/><arg type=\"as\"/></signal>"
               "</interface>\n"_s;
    return xml;
}

BusError unknownMethod(const BusCall &call)
{
    return BusErrors::standard(
        u"UnknownMethod"_s,
        u"Method \"%1\" with signature \"%2\" on interface \"%3\" doesn't exist"_s.arg(
            call.message().member(), call.message().signature(), call.message().interface()));
}

} // namespace

ObjectTree::ObjectTree(SystemLog &log, const BusCall::Send &send)
    : _log(log)
    , _send(send)
{
    qDBusRegisterMetaType<InterfaceValues>();
    qDBusRegisterMetaType<ManagedObjects>();
}

ObjectTree::~ObjectTree() = default;

void ObjectTree::add(const BusObject &object)
{
    if (!_objects.emplace(object.path(), &object).second)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(Root, ObjectManager, u"InterfacesAdded"_s);
    signal << QVariant::fromValue(QDBusObjectPath(object.path())) << QVariant::fromValue(valuesOf(object));
    _send(signal);
}

void ObjectTree::remove(const BusObject &object)
{
    if (_objects.erase(object.path()) == 0)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(Root, ObjectManager, u"InterfacesRemoved"_s);
    signal << QVariant::fromValue(QDBusObjectPath(object.path())) << QStringList(valuesOf(object).keys());
    _send(signal);
}

bool ObjectTree::contains(const BusObject &object) const
{
    return _objects.contains(object.path());
}

void ObjectTree::tellChanged(const BusObject &object, const QString &interface, const QStringList &properties)
{
    const BusInterface *declared = object.findInterface(interface);
    if (!declared || !contains(object))
        return;
    QVariantMap present;
    QStringList gone;
    for (const QString &name : properties) {
        const QVariant value = declared->findProperty(name)->read();
        if (value.isValid())
            present.insert(name, value);
        else
            gone.append(name);
        if (value.typeId() == QMetaType::Bool)
            _log.debug(u"%1 tells %2 %3"_s.arg(object.path(), name, value.toString()));
    }
    QDBusMessage signal = QDBusMessage::createSignal(object.path(), Properties, u"PropertiesChanged"_s);
    signal << interface << present << gone;
    _send(signal);
}

bool ObjectTree::handleMessage(const QDBusMessage &message, const QDBusConnection &)
{
    // The bus library answers pings itself.
    if (message.interface() == Peer)
        return false;
    const BusCall call(message, _send);
    _log.debug(
        u"%1 calls %2 %3.%4"_s.arg(message.service(), message.path(), message.interface(), message.member()));
    if (_denied) {
        call.fail(BusErrors::standard(u"AccessDenied"_s, u"Rejected send message to org.bluez"_s));
        return true;
    }
    if (_clientSeen)
        _clientSeen(message.service());
    const auto found = _objects.find(message.path());
    const BusObject *object = found == _objects.end() ? nullptr : found->second;
    if (message.interface() == ObjectManager || message.interface() == Introspectable)
        callStandard(object, call);
    else if (!object)
        call.fail(BusErrors::standard(u"UnknownObject"_s, u"No such object path '%1'"_s.arg(message.path())));
    else if (message.interface() == Properties)
        callProperties(*object, call);
    else
        callObject(*object, call);
    return true;
}

void ObjectTree::callObject(const BusObject &object, const BusCall &call) const
{
    for (const BusInterface &interface : object.interfaces()) {
        // A call may leave the interface out.
        if (!call.message().interface().isEmpty() && call.message().interface() != interface.name)
            continue;
        const BusMethod *method = interface.findMethod(call.message().member());
        if (method && method->in == call.message().signature()) {
            method->handler(call);
            return;
        }
    }
    call.fail(unknownMethod(call));
}

void ObjectTree::callStandard(const BusObject *object, const BusCall &call) const
{
    const QString path = call.message().path();
    const bool isPlace = object || path == Root || !childrenOf(path).isEmpty();
    if (call.message().member() == u"Introspect" && isPlace)
        call.reply(
            QString(u"<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
                    "\"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n<node>\n"_s +
                    introspect(path) + u"</node>\n"_s));
    else if (call.message().member() == u"GetManagedObjects" && path == Root)
        call.reply(managedObjects());
    else
        call.fail(unknownMethod(call));
}

void ObjectTree::callProperties(const BusObject &object, const BusCall &call) const
{
    const QString member = call.message().member();
    const QString signature = call.message().signature();
    const BusInterface *interface = object.findInterface(call.argument<QString>(0));
    if (!interface) {
        call.fail(BusErrors::standard(u"InvalidArgs"_s, u"No such interface"_s));
    } else if (member == u"GetAll" && signature == u"s") {
        call.reply(interface->values());
    } else if ((member == u"Get" && signature == u"ss") || (member == u"Set" && signature == u"ssv")) {
        const BusProperty *property = interface->findProperty(call.argument<QString>(1));
        const QVariant value = property ? property->read() : QVariant();
        if (!value.isValid())
            call.fail(BusErrors::standard(u"InvalidArgs"_s, u"No such property"_s));
        else if (member == u"Set")
            setProperty(*property, call);
        else
            call.reply(QVariant::fromValue(QDBusVariant(value)));
    } else {
        call.fail(unknownMethod(call));
    }
}

void ObjectTree::setProperty(const BusProperty &property, const BusCall &call) const
{
    const QVariant value = call.argument<QDBusVariant>(2).variant();
    const char *signature = QDBusMetaType::typeToSignature(value.metaType());
    if (!property.write) {
        call.fail(BusErrors::standard(u"PropertyReadOnly"_s, u"Property is read only"_s));
    } else if (property.signature != QLatin1StringView(signature)) {
        call.fail(BusErrors::invalidArguments(u"Invalid arguments in method call"_s));
    } else {
        const auto error = property.write(value);
        if (error)
            call.fail(*error);
        else
            call.reply();
    }
}

QVariant ObjectTree::managedObjects() const
{
    ManagedObjects managed;
    for (const auto &[path, object] : _objects)
        managed.insert(QDBusObjectPath(path), valuesOf(*object));
    return QVariant::fromValue(managed);
}

QStringList ObjectTree::childrenOf(const QString &path) const
{
    const QString prefix = path == Root ? path : path + u'/';
    QStringList children;
    for (const auto &[known, object] : _objects) {
        if (!known.startsWith(prefix) || known == path)
            continue;
        const QString child = known.mid(prefix.size()).section(u'/', 0, 0);
        if (!children.contains(child))
            children.append(child);
    }
    return children;
}

QString ObjectTree::introspect(const QString &path) const
{
    QString xml = standardXml(path == Root);
    const auto found = _objects.find(path);
    if (found != _objects.end()) {
        for (const BusInterface &interface : found->second->interfaces())
            xml += interface.xml();
    }
    for (const QString &child : childrenOf(path))
        xml += u"<node name=\""_s + child + u"\"/>\n"_s;
    return xml;
}

} // namespace cvtamber
