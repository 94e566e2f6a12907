// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/text/UIMyTextView.h"

#include <QPointer>
#include <QQuickItem>
#include <QTextCharFormat>
#include <QTextCursor>

class QInputMethodEvent;
class QKeyEvent;
class QMimeData;
class QMouseEvent;

namespace cvtamber {

// Joins a text area to a page: what a person does in the area is asked of the page, and the area shows what the page says.
//
// Keys, input methods and the mouse's middle button are taken before the area sees them, so it changes nothing by
// itself; moving, selecting and composing are left to it. Whatever else should reach the area's document is taken back.
// The document has the page's length, unit by unit: what it could not hold as it is stands there as a sign of one unit, and
// copying gives the page's own text. Unsent text is underlined.
// Thread: main thread. Owner: the view; area and page are set once and may go before it.
class PageEditor : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *area READ area WRITE setArea NOTIFY areaChanged FINAL)
    Q_PROPERTY(cvtamber::UIMyTextView *page READ page WRITE setPage NOTIFY pageChanged FINAL)

public:
    explicit PageEditor(QObject *parent = nullptr);

    QQuickItem *area() const { return _area; }
    void setArea(QQuickItem *area);
    UIMyTextView *page() const { return _page; }
    void setPage(UIMyTextView *page);

    // Text let fall on the area, at a place of it.
    Q_INVOKABLE void dropText(const QString &text, double x, double y);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void areaChanged();
    void pageChanged();

private slots:
    void takeSelection();

private:
    // Whether the area must not see it any more.
    bool takeKey(const QKeyEvent &event);
    bool takeDeletion(const QKeyEvent &event);
    bool takeClipboardKey(const QKeyEvent &event);
    bool takeInputMethod(const QInputMethodEvent &event);
    bool takeMouseRelease(const QMouseEvent &event);

    void join();
    void deleteTo(QTextCursor::MoveOperation operation);
    void copy() const;
    void pasteAt(qsizetype position, const QString &text);
    qsizetype positionAt(double x, double y) const;
    void showChange(qsizetype position, qsizetype removed, const QString &inserted);
    void showFixed(qsizetype before);
    void showSelection();
    void checkChange(int position, int added);
    void showAll();
    void insertShown(QTextCursor &cursor, qsizetype position, QStringView text) const;
    QTextCursor cursorFor(UIMyTextView::Range range) const;

    QPointer<QQuickItem> _area;
    QPointer<UIMyTextView> _page;
    QPointer<QTextDocument> _document;
    QTextCharFormat _fixedFormat;
    QTextCharFormat _unsentFormat;
    // The document and its selection are being brought to the page's.
    bool _isFollowing = false;
    bool _isOutOfStep = false;
    bool _isForwarding = false;
};

} // namespace cvtamber
