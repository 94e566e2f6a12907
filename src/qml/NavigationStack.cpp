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
    connect(controller, &NavigationController::columnsChanged, this, [this] {
        endSlide();
        layOut();
        showPages();
    });
    connect(controller, &NavigationController::topAskedFor, this, &NavigationStack::topAskedFor);
    askForColumns();
    emit controllerChanged();
}

void NavigationStack::setWide(bool isWide)
{
    if (std::exchange(_isWide, isWide) == isWide)
        return;
    askForColumns();
    emit wideChanged();
}

void NavigationStack::askForColumns()
{
    const ViewController *root = _controller ? _controller->rootPointer() : nullptr;
    if (root != nullptr)
        _controller->setHasColumns(_isWide && !root->detailHint().isEmpty());
}

void NavigationStack::setRootWidth(double width)
{
    if (qFuzzyCompare(std::exchange(_rootWidth, width), width))
        return;
    layOut();
    emit rootWidthChanged();
}

// In two columns what is above the root covers the placeholder, and slides in under the root.
void NavigationStack::layOut()
{
    const bool isSplit = hasColumns();
    for (size_t i = 0; i < _pages.size(); ++i) {
        QQuickItem *page = _pages[i].item;
        if (page == nullptr)
            continue;
        const double left = isSplit && i > 0 ? _rootWidth : 0;
        page->setX(left);
        page->setSize({isSplit && i == 0 ? _rootWidth : width() - left, height()});
        page->setZ(isSplit && i == 0 ? 1 : 0);
        page->setProperty("index", static_cast<int>(i));
    }
}

bool NavigationStack::isSeen(const QQuickItem *page) const
{
    return page == topPage() || (hasColumns() && !_pages.empty() && page == _pages.front().item);
}

QQuickItem *NavigationStack::pageInUse() const
{
    for (const Page &page : _pages) {
        if (page.item && page.item->hasFocus() && isSeen(page.item))
            return page.item;
    }
    return topPage();
}

QQuickItem *NavigationStack::pageOf(const ViewController *controller) const
{
    const auto found = std::find_if(_pages.begin(), _pages.end(), [&](const Page &page) {
        return page.item && page.controller == controller && isSeen(page.item);
    });
    return found == _pages.end() ? nullptr : found->item.data();
}

QQuickItem *NavigationStack::otherPage() const
{
    if (!hasColumns() || _pages.size() < 2)
        return nullptr;
    QQuickItem *root = _pages.front().item;
    return pageInUse() == root ? topPage() : root;
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
    layOut();
}

void NavigationStack::push(ViewController &controller, bool animated, Finished finished)
{
    endSlide();
    QQuickItem *lower = topPage();
    if (_pages.empty() || _pages.back().controller != &controller) {
        _pages.push_back(makePage(controller));
        layOut();
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
            {QStringLiteral("index"), static_cast<int>(_pages.size())},
            {QStringLiteral("modal"), _modal},
        };
        page.item = ViewRegistry::of(*engine).createItem(QStringLiteral("NavigationPage"), controller,
                                                         properties, *this);
    }
    return page;
}

void NavigationStack::follow()
{
    if (!_controller || !isComponentComplete() || _atEnd) {
        return;
    }
    askForColumns();
    const auto &wanted = _controller->viewControllers();
    const bool hadGone = dropUnwanted();
    size_t same = 0;
    while (same < wanted.size() && same < _pages.size() && _pages[same].controller == wanted[same].get()) {
        ++same;
    }
    if (!hadGone && same == wanted.size() && same == _pages.size()) {
        return;
    }
    for (size_t i = same; i < _pages.size(); ++i) {
        remove(_pages[i]);
    }
    _pages.resize(same);
    for (size_t i = same; i < wanted.size(); ++i) {
        _pages.push_back(makePage(*wanted[i]));
    }
    layOut();
    showPages();
    emit topPageChanged();
}

// Of screens that are not in the navigation any more; whether there were any.
bool NavigationStack::dropUnwanted()
{
    const auto &wanted = _controller->viewControllers();
    return std::erase_if(_pages, [&](const Page &page) {
               const bool isWanted = std::any_of(wanted.begin(), wanted.end(), [&](const auto &one) {
                   return one.get() == page.controller;
               });
               if (!isWanted)
                   remove(page);
               return !isWanted;
           }) > 0;
}

void NavigationStack::showPages()
{
    for (const Page &page : _pages) {
        if (page.item) {
            page.item->setVisible(isSeen(page.item));
            setSlide(page.item, 0);
        }
    }
    const bool isFocusLost = std::none_of(_pages.begin(), _pages.end(), [&](const Page &page) {
        return page.item && page.item->hasFocus() && isSeen(page.item);
    });
    if (isFocusLost && topPage() != nullptr)
        topPage()->setFocus(true);
}

void NavigationStack::slide(QQuickItem *upper, QQuickItem *lower, bool forward, bool animated, Finished atEnd)
{
    _atEnd = std::move(atEnd);
    _upper = upper;
    // The root of two columns stays where it is.
    _lower = hasColumns() && lower == _pages.front().item ? nullptr : lower;
    _takesFocus = forward;
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
    showPages();
    if (_takesFocus && topPage() != nullptr)
        topPage()->setFocus(true);
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
