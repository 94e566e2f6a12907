// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/BusObject.h"

#include <algorithm>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;

template<typename List> auto findNamed(const List &list, const QString &name) -> decltype(list.data())
{
    const auto found =
        std::find_if(list.begin(), list.end(), [&name](const auto &entry) { return entry.name == name; });
    return found == list.end() ? nullptr : &*found;
}

// The whole types of a signature one by one: "sa{sv}" is "s" and "a{sv}".
QStringList wholeTypes(const QString &signature)
{
    QStringList types;
    QString type;
    int depth = 0;
    for (const QChar character : signature) {
        type += character;
        depth += QStringView(u"({").contains(character) ? 1 : QStringView(u")}").contains(character) ? -1 : 0;
        if (depth == 0 && character != u'a') {
            types.append(type);
            type.clear();
        }
    }
    return types;
}

QString argumentsXml(const QString &signature, const QString &direction)
{
    QString xml;
    for (const QString &type : wholeTypes(signature))
        xml += u"<arg type=\""_s + type + u"\" direction=\""_s + direction + u"\"/>"_s;
    return xml;
}

} // namespace

const BusMethod *BusInterface::findMethod(const QString &methodName) const
{
    return findNamed(methods, methodName);
}

const BusProperty *BusInterface::findProperty(const QString &propertyName) const
{
    return findNamed(properties, propertyName);
}

QVariantMap BusInterface::values() const
{
    QVariantMap map;
    for (const BusProperty &property : properties) {
        const QVariant value = property.read();
        if (value.isValid())
            map.insert(property.name, value);
    }
    return map;
}

QString BusInterface::xml() const
{
    QString xml = u"<interface name=\""_s + name + u"\">"_s;
    for (const BusMethod &method : methods)
        xml += u"<method name=\""_s + method.name + u"\">"_s + argumentsXml(method.in, u"in"_s) +
               argumentsXml(method.out, u"out"_s) + u"</method>"_s;
    for (const BusProperty &property : properties)
        xml += u"<property name=\""_s + property.name + u"\" type=\""_s + property.signature +
               u"\" access=\""_s + (property.write ? u"readwrite"_s : u"read"_s) + u"\"/>"_s;
    return xml + u"</interface>\n"_s;
}

const BusInterface *BusObject::findInterface(const QString &name) const
{
    return findNamed(_interfaces, name);
}

BusInterface &BusObject::addInterface(const QString &name)
{
    _interfaces.push_back({name, {}, {}});
    return _interfaces.back();
}

} // namespace cvtamber
