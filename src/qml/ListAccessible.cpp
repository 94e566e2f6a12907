// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/ListAccessible.h"

#include <QQuickItem>

#include <algorithm>

namespace cvtamber {

namespace {

constexpr char SpokenName[] = "spokenName";

QAccessibleInterface *listInterface(const QString &className, QObject *object)
{
    auto *item = className == QLatin1String("QQuickListView") ? qobject_cast<QQuickItem *>(object) : nullptr;
    return item != nullptr && item->metaObject()->indexOfProperty(SpokenName) >= 0 ? new ListAccessible(item)
                                                                                   : nullptr;
}

// Those that screen readers know, below an item that they do not.
void collect(const QQuickItem &item, QList<QQuickItem *> &found)
{
    const QList<QQuickItem *> children = item.childItems();
    for (QQuickItem *child : children) {
        if (QAccessible::queryAccessibleInterface(child) != nullptr)
            found.append(child);
        else
            collect(*child, found);
    }
}

} // namespace

void ListAccessible::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(listInterface);
        return true;
    }();
    Q_UNUSED(isInstalled);
}

ListAccessible::ListAccessible(QQuickItem *list)
    : ItemAccessible(list)
{}

QList<QAccessibleInterface *> ListAccessible::children() const
{
    QList<QQuickItem *> items;
    // Its scroll bar stands beside the content.
    if (const auto *content = item()->property("contentItem").value<QQuickItem *>())
        collect(*content, items);
    std::stable_sort(items.begin(), items.end(), [this](const QQuickItem *left, const QQuickItem *right) {
        return left->mapToItem(item(), QPointF()).y() < right->mapToItem(item(), QPointF()).y();
    });
    QList<QAccessibleInterface *> told;
    for (QQuickItem *item : std::as_const(items))
        told.append(QAccessible::queryAccessibleInterface(item));
    return told;
}

QAccessibleInterface *ListAccessible::child(int index) const
{
    return children().value(index);
}

int ListAccessible::childCount() const
{
    return static_cast<int>(children().size());
}

int ListAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    return static_cast<int>(children().indexOf(child));
}

QAccessibleInterface *ListAccessible::childAt(int x, int y) const
{
    const auto all = children();
    const auto under = std::find_if(all.begin(), all.end(), [x, y](const QAccessibleInterface *child) {
        return !child->state().invisible && child->rect().contains(x, y);
    });
    return under == all.end() ? nullptr : *under;
}

QAccessibleInterface *ListAccessible::focusChild() const
{
    const auto all = children();
    const auto focused = std::find_if(
        all.begin(), all.end(), [](const QAccessibleInterface *child) { return child->state().focused; });
    return focused == all.end() ? nullptr : *focused;
}

QString ListAccessible::text(QAccessible::Text kind) const
{
    return kind != QAccessible::Name ? QString() : item()->property(SpokenName).toString();
}

} // namespace cvtamber
