// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/NavigationController.h"

#include <QPointer>
#include <QQuickItem>
#include <QVariantAnimation>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

namespace cvtamber {

// The pages of a navigation, one above the other; only the top one is seen, those below keep their place and focus. Where the
// navigation has columns the root is seen too, at the left of the others.
//
//   at rest -> push() or pop() -> sliding -> the end: pages are those of the navigation, `finished`
//
// A page is a NavigationPage: the screen with the bar above it; its `slide` is 0 in place, 1 outside at the right, and
// less than 0 half covered at the left. Between transitions it follows the navigation's stackChanged.
// Thread: main thread. Owner: the view around it.
class NavigationStack : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(cvtamber::NavigationController *controller READ controller WRITE setController NOTIFY
                   controllerChanged FINAL REQUIRED)
    // In a sheet: the pages' titles are in their bars.
    Q_PROPERTY(bool modal READ isModal WRITE setModal NOTIFY modalChanged FINAL)
    // Milliseconds; 0 shows the end at once.
    Q_PROPERTY(int duration MEMBER _duration FINAL)
    Q_PROPERTY(QQuickItem *topPage READ topPage NOTIFY topPageChanged FINAL)
    // There is room for two columns: asked of the navigation, which says when it has them.
    Q_PROPERTY(bool wide READ isWide WRITE setWide NOTIFY wideChanged FINAL)
    // Of the root, in two columns.
    Q_PROPERTY(double rootWidth READ rootWidth WRITE setRootWidth NOTIFY rootWidthChanged FINAL)

public:
    using Finished = std::function<void()>;

    explicit NavigationStack(QQuickItem *parent = nullptr);
    ~NavigationStack() override;

    NavigationController *controller() const { return _controller; }
    void setController(NavigationController *controller);
    bool isModal() const { return _modal; }
    void setModal(bool modal);
    QQuickItem *topPage() const { return _pages.empty() ? nullptr : _pages.back().item.data(); }
    // The one that has the focus, or had it last; the top one while there is but one.
    Q_INVOKABLE QQuickItem *pageInUse() const;
    // The page of the screen; null where none is seen here.
    QQuickItem *pageOf(const ViewController *controller) const;
    // Of two pages that are seen the one that is not in use; null where there is none.
    Q_INVOKABLE QQuickItem *otherPage() const;
    bool isWide() const { return _isWide; }
    void setWide(bool isWide);
    double rootWidth() const { return _rootWidth; }
    void setRootWidth(double width);

    // `finished` runs when the animation has ended; inside the call when there is none.
    void push(ViewController &controller, bool animated, Finished finished);
    void pop(ViewController &controller, bool animated, Finished finished);

signals:
    void controllerChanged();
    void modalChanged();
    void topPageChanged();
    void wideChanged();
    void rootWidthChanged();
    // The focus is to go to the top page.
    void topAskedFor();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    struct Page
    {
        QPointer<ViewController> controller;
        QPointer<QQuickItem> item;
    };

    Page makePage(ViewController &controller);
    void follow();
    // Those that are seen, where they stand; the focus goes to the top one when what had it has gone.
    void showPages();
    void layOut();
    void askForColumns();
    bool hasColumns() const { return _controller && _controller->hasColumns(); }
    bool isSeen(const QQuickItem *page) const;
    bool dropUnwanted();
    void slide(QQuickItem *upper, QQuickItem *lower, bool forward, bool animated, Finished atEnd);
    void endSlide();
    static void remove(const Page &page);

    QPointer<NavigationController> _controller;
    std::vector<Page> _pages;
    bool _modal = false;
    bool _isWide = false;
    double _rootWidth = 0;
    int _duration = 0;
    QVariantAnimation _animation;
    QPointer<QQuickItem> _upper;
    QPointer<QQuickItem> _lower;
    Finished _atEnd;
    bool _takesFocus = false;
};

} // namespace cvtamber
