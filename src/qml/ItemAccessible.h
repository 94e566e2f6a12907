// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleObject>

class QQuickItem;

namespace cvtamber {

// What a screen reader is told of any item: where it stands and whether it is seen and has the focus.
// Thread: main thread. Owner: Qt, which makes one for each item and drops it with the item.
class ItemAccessible : public QAccessibleObject
{
public:
    explicit ItemAccessible(QQuickItem *item);

    QWindow *window() const override;
    QRect rect() const override;
    QAccessibleInterface *parent() const override;
    QAccessible::State state() const override;

protected:
    QQuickItem *item() const;
};

} // namespace cvtamber
