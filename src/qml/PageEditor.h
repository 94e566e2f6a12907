// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/text/UIMyTextView.h"
#include "qml/PageDocument.h"

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
// What the document could not hold as it is stands there as a sign of one unit, and copying gives the page's own text.
// Unsent text is underlined. The device's text is shown once a picture, however many pieces of it came, or when
// something else is done; without a window at once. What a change costs does not grow with the page, see PageDocument.
// Thread: main thread. Owner: the view; area and page are set once and may go before it.
class PageEditor : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *area READ area WRITE setArea NOTIFY areaChanged FINAL)
    Q_PROPERTY(cvtamber::UIMyTextView *page READ page WRITE setPage NOTIFY pageChanged FINAL)

public:
    explicit PageEditor(QQuickItem *parent = nullptr);

    QQuickItem *area() const { return _area; }
    void setArea(QQuickItem *area);
    UIMyTextView *page() const { return _page; }
    void setPage(UIMyTextView *page);

    // Text let fall on the area, at a place of it.
    Q_INVOKABLE void dropText(const QString &text, double x, double y);

    // Brings what has come of the device into the document.
    void showWaiting();
    // A part of the page in units that a screen reader can be given; it has the same length.
    QString readable(qsizetype start, qsizetype end) const;
    const PageDocument &shownPage() const { return _shown; }

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void updatePolish() override { showWaiting(); }

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
    qsizetype positionAt(double x, double y);
    void showChange(qsizetype position, qsizetype removed, const QString &inserted);
    bool isForNextPicture(qsizetype position, qsizetype removed, qsizetype inserted) const;
    void changeShown(qsizetype position, qsizetype removed, qsizetype inserted);
    void showFixed(qsizetype before);
    void showSelection();
    void checkChange(int position, int added);
    void showAll();
    QChar held(qsizetype position) const;
    void insertShown(UIMyTextView::Range range);
    qsizetype startOfLines() const;
    void moveLinesStart(qsizetype position, qsizetype removed, qsizetype inserted);
    UIMyTextView::Range areaSelection() const;

    QPointer<QQuickItem> _area;
    QPointer<UIMyTextView> _page;
    PageDocument _shown;
    // Device text of the page that the document has not yet.
    UIMyTextView::Range _waiting;
    // Line ends before it are shown as signs.
    qsizetype _linesStart = 0;
    // Line ends that the document has.
    qsizetype _lines = 0;
    // In the document.
    int _caret = 0;
    QTextCharFormat _fixedFormat;
    QTextCharFormat _unsentFormat;
    // The document and its selection are being brought to the page's.
    bool _isFollowing = false;
    bool _isOutOfStep = false;
    bool _isForwarding = false;
};

} // namespace cvtamber
