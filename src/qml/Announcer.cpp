// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/Announcer.h"

#include <QAccessible>

namespace cvtamber {

Announcer::Announcer(QQuickItem *parent)
    : QQuickItem(parent)
{}

void Announcer::announce(const QString &text)
{
    _text = text;
    emit textChanged();
    QAccessibleEvent event(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

void Announcer::clear()
{
    if (_text.isEmpty())
        return;
    _text.clear();
    emit textChanged();
}

} // namespace cvtamber
