// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/TabStack.h"

#include "qml/ViewRegistry.h"

#include <QQmlEngine>

#include <algorithm>

namespace cvtamber {

TabStack::TabStack(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemIsFocusScope);
}

void TabStack::setController(TabBarController *controller)
{
    if (_controller == controller) {
        return;
    }
    _controller = controller;
    connect(controller, &TabBarController::selectedIndexChanged, this, &TabStack::follow);
    connect(controller, &TabBarController::tabsChanged, this, &TabStack::follow);
    emit controllerChanged();
}

void TabStack::componentComplete()
{
    QQuickItem::componentComplete();
    follow();
}

void TabStack::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    for (const Tab &tab : _tabs) {
        if (tab.view) {
            tab.view->setSize(newGeometry.size());
        }
    }
}

void TabStack::follow()
{
    if (!_controller || !isComponentComplete()) {
        return;
    }
    const auto selected = _controller->selectedViewController();
    QQuickItem *view = selected ? viewOf(*selected) : nullptr;
    if (view == _current) {
        return;
    }
    const bool hadFocus = _current && _current->hasActiveFocus();
    if (_current) {
        _current->setVisible(false);
    }
    _current = view;
    if (view != nullptr) {
        view->setVisible(true);
        view->setFocus(true);
        if (hadFocus) {
            QMetaObject::invokeMethod(view, "takeFocus");
        }
    }
    emit currentViewChanged();
}

QQuickItem *TabStack::viewOf(ViewController &controller)
{
    const auto known = std::find_if(_tabs.begin(), _tabs.end(), [&](const Tab &tab) {
        return tab.controller == &controller && tab.view;
    });
    if (known != _tabs.end()) {
        return known->view;
    }
    QQmlEngine *engine = qmlEngine(this);
    QQuickItem *view = engine != nullptr ? ViewRegistry::of(*engine).createView(controller, *this) : nullptr;
    if (view != nullptr) {
        view->setSize(size());
        _tabs.push_back({&controller, view});
    }
    return view;
}

} // namespace cvtamber
