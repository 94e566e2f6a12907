// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ViewController.h"

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace cvtamber {

// The place where a screen's view stands: makes the view that belongs to the screen and keeps it as large as itself.
//
// Thread: main thread. Owner: the view around it.
class ScreenHost : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(cvtamber::ViewController *controller READ controller WRITE setController NOTIFY
                   controllerChanged FINAL)
    // Null until there is a screen.
    Q_PROPERTY(QQuickItem *view READ view NOTIFY viewChanged FINAL)

public:
    explicit ScreenHost(QQuickItem *parent = nullptr);

    ViewController *controller() const { return _controller; }
    void setController(ViewController *controller);
    QQuickItem *view() const { return _view; }

signals:
    void controllerChanged();
    void viewChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void makeView();

    QPointer<ViewController> _controller;
    QPointer<QQuickItem> _view;
};

} // namespace cvtamber
