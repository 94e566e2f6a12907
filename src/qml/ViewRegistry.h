// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>
#include <QQmlComponent>
#include <QStringList>
#include <QVariantMap>

#include <memory>

class QQmlEngine;
class QQuickItem;

namespace cvtamber {

class ViewController;

// Which view draws which screen: the component is chosen by the screen's class, else by the nearest of its base
// classes that has one. Components are loaded when they are first needed.
//
// Thread: main thread. Owner: the engine, as a child.
class ViewRegistry final : public QObject
{
    Q_OBJECT

public:
    explicit ViewRegistry(QQmlEngine &engine);
    // The one of that engine.
    static ViewRegistry &of(QQmlEngine &engine);

    // Starts to load these components on the engine's own thread; whoever needs one before it is loaded waits for it.
    void load(const QStringList &components);

    // The view of a screen; it keeps the screen alive until the view is gone. Null, with a warning, on a fault.
    QQuickItem *createView(ViewController &controller, QQuickItem &parent);
    // A named component, the same way: "NavigationPage" with the screen and what else it requires.
    QQuickItem *createItem(const QString &component, ViewController &controller, QVariantMap properties,
                           QQuickItem &parent);
    // Anything else of the module; the caller owns it.
    QObject *createObject(const QString &component, const QVariantMap &properties, QObject *parent);

private:
    QString componentFor(const ViewController &controller) const;
    QQmlComponent &component(const QString &name);

    QQmlEngine &_engine;
    QHash<QString, std::shared_ptr<QQmlComponent>> _components;
};

} // namespace cvtamber
