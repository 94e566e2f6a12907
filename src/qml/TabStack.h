// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TabBarController.h"

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace cvtamber {

// The screens of the tabs, one of them seen. Each view is made when its tab is first shown, and kept.
//
// Thread: main thread. Owner: the view around it.
class TabStack : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(cvtamber::TabBarController *controller READ controller WRITE setController NOTIFY
                   controllerChanged FINAL REQUIRED)
    Q_PROPERTY(QQuickItem *currentView READ currentView NOTIFY currentViewChanged FINAL)

public:
    explicit TabStack(QQuickItem *parent = nullptr);

    TabBarController *controller() const { return _controller; }
    void setController(TabBarController *controller);
    QQuickItem *currentView() const { return _current; }

signals:
    void controllerChanged();
    void currentViewChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    struct Tab
    {
        QPointer<ViewController> controller;
        QPointer<QQuickItem> view;
    };

    void follow();
    QQuickItem *viewOf(ViewController &controller);

    QPointer<TabBarController> _controller;
    std::vector<Tab> _tabs;
    QPointer<QQuickItem> _current;
};

} // namespace cvtamber
