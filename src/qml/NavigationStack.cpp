// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/NavigationStack.h"

#include "qml/ViewRegistry.h"

#include <QEasingCurve>
#include <QQmlEngine>

#include <algorithm>
#include <utility>

namespace cvtamber {
namespace {

// How far the lower page moves to the left under the one that covers it, of its width.
constexpr double coveredSlide = -0.25;

void setSlide(QQuickItem *page, double slide)
{
    if (page != nullptr) {
        page->setProperty("slide", slide);
    }
}

} // namespace

NavigationStack::NavigationStack(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemIsFocusScope);
    setClip(true);
    _animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&_animation, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        setSlide(_upper, value.toDouble());
        setSlide(_lower, coveredSlide * (1 - value.toDouble()));
    });
    connect(&_animation, &QVariantAnimation::finished, this, [this] { endSlide(); });
}

NavigationStack::~NavigationStack() = default;

void NavigationStack::setController(NavigationController *controller)
{
    if (_controller == controller) {
        return;
    }
    _controller = controller;
    // Queued: push() and pop() come first and take the change themselves.
    connect(
        controller, &NavigationController::stackChanged, this, [this] { follow(); }, Qt::QueuedConnection);
    emit controllerChanged();
}

void NavigationStack::setModal(bool modal)
{
    if (_modal == modal)
        return;
    _modal = modal;
    for (const Page &page : _pages) {
        if (page.item)
            page.item->setProperty("modal", modal);
    }
    emit modalChanged();
}

void NavigationStack::componentComplete()
{
    QQuickItem::componentComplete();
    follow();
}

void NavigationStack::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    for (const Page &page : _pages) {
        if (page.item) {
            page.item->setSize(newGeometry.size());
        }
    }
}

void NavigationStack::push(ViewController &controller, bool animated, Finished finished)
{
    endSlide();
    QQuickItem *lower = topPage();
    if (_pages.empty() || _pages.back().controller != &controller) {
        _pages.push_back(makePage(controller));
        emit topPageChanged();
    }
    slide(topPage(), lower, true, animated, std::move(finished));
}

void NavigationStack::pop(ViewController &controller, bool animated, Finished finished)
{
    endSlide();
    const auto place = std::find_if(_pages.begin(), _pages.end(),
                                    [&](const Page &page) { return page.controller == &controller; });
    if (place == _pages.end() || place == _pages.begin()) {
        finished();
        return;
    }
    const Page gone = *place;
    const std::vector<Page> above(place + 1, _pages.end());
    _pages.erase(place, _pages.end());
    for (const Page &page : above) {
        remove(page);
    }
    emit topPageChanged();
    slide(gone.item, topPage(), false, animated, [gone, finished = std::move(finished)] {
        remove(gone);
        finished();
    });
}

NavigationStack::Page NavigationStack::makePage(ViewController &controller)
{
    Page page;
    page.controller = &controller;
    if (QQmlEngine *engine = qmlEngine(this)) {
        const QVariantMap properties{
            {QStringLiteral("navigation"), QVariant::fromValue<QObject *>(_controller)},
            {QStringLiteral("isRoot"), _pages.empty()},
            {QStringLiteral("modal"), _modal},
        };
        page.item = ViewRegistry::of(*engine).createItem(QStringLiteral("NavigationPage"), controller,
                                                         properties, *this);
    }
    if (page.item) {
        page.item->setSize(size());
    }
    return page;
}

void NavigationStack::follow()
{
    if (!_controller || !isComponentComplete() || _atEnd) {
        return;
    }
    const auto &wanted = _controller->viewControllers();
    size_t same = 0;
    while (same < wanted.size() && same < _pages.size() && _pages[same].controller == wanted[same].get()) {
        ++same;
    }
    if (same == wanted.size() && same == _pages.size()) {
        return;
    }
    for (size_t i = same; i < _pages.size(); ++i) {
        remove(_pages[i]);
    }
    _pages.resize(same);
    for (size_t i = same; i < wanted.size(); ++i) {
        _pages.push_back(makePage(*wanted[i]));
    }
    showTopOnly();
    emit topPageChanged();
}

void NavigationStack::showTopOnly()
{
    for (const Page &page : _pages) {
        if (page.item) {
            const bool isTop = page.item == topPage();
            page.item->setVisible(isTop);
            page.item->setFocus(isTop);
            setSlide(page.item, 0);
        }
    }
}

void NavigationStack::slide(QQuickItem *upper, QQuickItem *lower, bool forward, bool animated, Finished atEnd)
{
    _atEnd = std::move(atEnd);
    _upper = upper;
    _lower = lower;
    if (lower != nullptr) {
        lower->setVisible(true);
    }
    if (!animated || _duration == 0) {
        endSlide();
        return;
    }
    _animation.setDuration(_duration);
    _animation.setStartValue(forward ? 1.0 : 0.0);
    _animation.setEndValue(forward ? 0.0 : 1.0);
    _animation.start();
}

void NavigationStack::endSlide()
{
    if (!_atEnd) {
        return;
    }
    const Finished atEnd = std::exchange(_atEnd, nullptr);
    _animation.stop();
    showTopOnly();
    atEnd();
    QMetaObject::invokeMethod(
        this, [this] { follow(); }, Qt::QueuedConnection);
}

void NavigationStack::remove(const Page &page)
{
    if (page.item) {
        page.item->setVisible(false);
        page.item->deleteLater();
    }
}

} // namespace cvtamber
