// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/ViewRegistry.h"

#include "ui/ViewController.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QUrl>

#include <array>

namespace cvtamber {
namespace {

struct ViewOfClass
{
    const char *className;
    const char *component;
};

constexpr std::array views = {
    ViewOfClass{"cvtamber::TabBarController", "TabsView"},
    ViewOfClass{"cvtamber::NavigationController", "NavigationView"},
    ViewOfClass{"cvtamber::TableViewController", "TableScreen"},
    ViewOfClass{"cvtamber::CVConnectViewController", "ConnectScreen"},
    ViewOfClass{"cvtamber::CVTransferViewController", "TransferScreen"},
    ViewOfClass{"cvtamber::MTextEditViewController", "EditorScreen"},
    ViewOfClass{"cvtamber::MEditUserDialog", "UserDialogScreen"},
    ViewOfClass{"cvtamber::ChatViewController", "WhiteboardScreen"},
    ViewOfClass{"cvtamber::Chat2ViewController", "ChatScreen"},
};

QUrl urlOf(const QString &component)
{
    return QUrl(QStringLiteral("qrc:/qt-project.org/imports/CVTamber/%1.qml").arg(component));
}

} // namespace

ViewRegistry::ViewRegistry(QQmlEngine &engine)
    : QObject(&engine)
    , _engine(engine)
{}

ViewRegistry &ViewRegistry::of(QQmlEngine &engine)
{
    if (auto *registry = engine.findChild<ViewRegistry *>({}, Qt::FindDirectChildrenOnly)) {
        return *registry;
    }
    return *new ViewRegistry(engine);
}

void ViewRegistry::load(const QStringList &components)
{
    for (const QString &name : components)
        _components.insert(
            name, std::make_shared<QQmlComponent>(&_engine, urlOf(name), QQmlComponent::Asynchronous));
}

QQuickItem *ViewRegistry::createView(ViewController &controller, QQuickItem &parent)
{
    return createItem(componentFor(controller), controller, {}, parent);
}

QQuickItem *ViewRegistry::createItem(const QString &component, ViewController &controller,
                                     QVariantMap properties, QQuickItem &parent)
{
    // A screen belongs to those who share it, never to the script engine.
    QQmlEngine::setObjectOwnership(&controller, QQmlEngine::CppOwnership);
    properties.insert(QStringLiteral("controller"), QVariant::fromValue<QObject *>(&controller));
    // With its size from the start: it would be laid out for none first.
    properties.insert(QStringLiteral("width"), parent.width());
    properties.insert(QStringLiteral("height"), parent.height());
    auto *item = qobject_cast<QQuickItem *>(createObject(component, properties, &parent));
    if (item == nullptr) {
        return nullptr;
    }
    connect(item, &QObject::destroyed, item, [keep = controller.shared_from_this()] {});
    item->setParentItem(&parent);
    return item;
}

QObject *ViewRegistry::createObject(const QString &name, const QVariantMap &properties, QObject *parent)
{
    QQmlComponent &wanted = component(name);
    QObject *object = wanted.isReady() ? wanted.createWithInitialProperties(properties) : nullptr;
    if (object == nullptr) {
        qWarning("No view %s: %s", qUtf8Printable(name), qUtf8Printable(wanted.errorString()));
        return nullptr;
    }
    QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    object->setParent(parent);
    return object;
}

QString ViewRegistry::componentFor(const ViewController &controller) const
{
    for (const QMetaObject *type = controller.metaObject(); type != nullptr; type = type->superClass()) {
        for (const ViewOfClass &view : views) {
            if (qstrcmp(type->className(), view.className) == 0) {
                return QString::fromLatin1(view.component);
            }
        }
    }
    return QStringLiteral("BlankScreen");
}

QQmlComponent &ViewRegistry::component(const QString &name)
{
    std::shared_ptr<QQmlComponent> &known = _components[name];
    if (!known || known->isLoading())
        known = std::make_shared<QQmlComponent>(&_engine, urlOf(name), QQmlComponent::PreferSynchronous);
    return *known;
}

} // namespace cvtamber
