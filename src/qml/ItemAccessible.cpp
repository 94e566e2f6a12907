// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/ItemAccessible.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace cvtamber {

ItemAccessible::ItemAccessible(QQuickItem *item)
    : QAccessibleObject(item)
{}

QQuickItem *ItemAccessible::item() const
{
    return static_cast<QQuickItem *>(object());
}

QWindow *ItemAccessible::window() const
{
    return item()->window();
}

QRect ItemAccessible::rect() const
{
    const QQuickWindow *window = item()->window();
    if (window == nullptr)
        return {};
    const QRectF all(0, 0, item()->width(), item()->height());
    const QRect inWindow = item()->mapRectToScene(all).toRect();
    return inWindow.translated(window->mapToGlobal(QPoint()));
}

QAccessibleInterface *ItemAccessible::parent() const
{
    QQuickWindow *window = item()->window();
    if (window == nullptr)
        return nullptr;
    for (QQuickItem *above = item()->parentItem(); above != nullptr && above != window->contentItem();
         above = above->parentItem()) {
        if (QAccessibleInterface *known = QAccessible::queryAccessibleInterface(above))
            return known;
    }
    return QAccessible::queryAccessibleInterface(window);
}

QAccessible::State ItemAccessible::state() const
{
    QAccessible::State state;
    const QQuickWindow *window = item()->window();
    state.invisible = window == nullptr || !window->isVisible() || !item()->isVisible();
    state.focusable = item()->activeFocusOnTab();
    state.focused = item()->hasActiveFocus();
    return state;
}

} // namespace cvtamber
