// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "qml/ItemAccessible.h"

namespace cvtamber {

// What a screen reader is told of a ListView.
//
// Qt gives the rows in the order in which they were made: after scrolling, or where a section's heading is made after
// its first row, that is not the order in which they stand. Here they are told from top to bottom; all else is as in
// Qt's own. It is for lists that have a role and a property `spokenName`, their name; others keep what Qt gives them.
// Thread: main thread. Owner: Qt, which makes one for each list and drops it with the list.
class ListAccessible final : public ItemAccessible
{
public:
    // For the lists of all windows that are made from now on.
    static void install();

    explicit ListAccessible(QQuickItem *list);

    QAccessibleInterface *child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::Role role() const override { return QAccessible::List; }

private:
    QList<QAccessibleInterface *> children() const;
};

} // namespace cvtamber
