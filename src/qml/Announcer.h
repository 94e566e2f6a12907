// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace cvtamber {

// Says words to screen readers without moving the focus: an item that is always there, named by the words, and
// told to readers as if it had just been shown; the same words are spoken again.
//
// The view gives it the role of a notification. Thread: main thread. Owner: the window's content.
class Announcer : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)

public:
    explicit Announcer(QQuickItem *parent = nullptr);

    const QString &text() const { return _text; }
    void announce(const QString &text);
    // Nothing to be heard any more; said to nobody.
    void clear();

signals:
    void textChanged();

private:
    QString _text;
};

} // namespace cvtamber
