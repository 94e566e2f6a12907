// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/ScreenHost.h"

#include "qml/ViewRegistry.h"

#include <QQmlEngine>

namespace cvtamber {

ScreenHost::ScreenHost(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemIsFocusScope);
}

void ScreenHost::setController(ViewController *controller)
{
    if (_controller == controller) {
        return;
    }
    _controller = controller;
    if (isComponentComplete()) {
        makeView();
    }
    emit controllerChanged();
}

void ScreenHost::componentComplete()
{
    QQuickItem::componentComplete();
    makeView();
}

void ScreenHost::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (_view) {
        _view->setSize(newGeometry.size());
    }
}

void ScreenHost::makeView()
{
    if (_view) {
        _view->setVisible(false);
        _view->deleteLater();
    }
    _view = nullptr;
    if (_controller) {
        if (QQmlEngine *engine = qmlEngine(this)) {
            _view = ViewRegistry::of(*engine).createView(*_controller, *this);
        }
    }
    if (_view) {
        _view->setSize(size());
        _view->setFocus(true);
    }
    emit viewChanged();
}

} // namespace cvtamber
