// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/NavigationController.h"

#include <utility>

namespace cvtamber {

NavigationController::NavigationController(Presenter &presenter)
    : ViewController(presenter)
{}

std::shared_ptr<NavigationController> NavigationController::withRoot(Presenter &presenter,
                                                                     const Controller &root)
{
    auto navigation = std::make_shared<NavigationController>(presenter);
    navigation->pushViewController(root, false);
    return navigation;
}

void NavigationController::pushViewController(const Controller &controller, bool animated)
{
    if (!controller)
        return;
    change([this, controller, animated](const Done &done) { startPush(controller, animated, done); });
}

void NavigationController::popViewController(bool animated)
{
    change([this, animated](const Done &done) { startPop(animated, done); });
}

void NavigationController::popToRootViewController(bool animated)
{
    change([this, animated](const Done &done) {
        removeBetween();
        startPop(animated, done);
    });
}

// Between the root and the top.
void NavigationController::removeBetween()
{
    while (depth() > 2) {
        const auto between = _controllers[1];
        _controllers.erase(_controllers.begin() + 1);
        between->_hasGone = true;
        between->_parent.reset();
        between->_navigation.reset();
    }
}

void NavigationController::backClicked()
{
    if (depth() < 2)
        return;
    // The action may wait, and the screen at the top may be kept by others for longer than its navigation.
    topViewController()->perform([weak = weak_from_this()] {
        if (const auto self = std::static_pointer_cast<NavigationController>(weak.lock()))
            self->popViewController(true);
    });
}

void NavigationController::change(std::function<void(const Done &done)> work)
{
    if (!isVisible() && _waitingChanges == 0) {
        work([] {});
        return;
    }
    ++_waitingChanges;
    auto transition = [weak = weak_from_this(), this, work = std::move(work)](const Done &done) {
        const auto self = weak.lock();
        if (!self) {
            done();
            return;
        }
        --_waitingChanges;
        work(done);
    };
    presenter().transitions().add(std::move(transition));
}

void NavigationController::startPush(const Controller &controller, bool animated, const Done &done)
{
    if (controller->parent() || controller->isVisible()) {
        done();
        return;
    }
    const auto old = topViewController();
    controller->_parent = weak_from_this();
    controller->_navigation = std::static_pointer_cast<NavigationController>(shared_from_this());
    controller->_hasGone = false;
    _controllers.push_back(controller);
    if (!isVisible()) {
        emit stackChanged();
        done();
        return;
    }
    if (old)
        old->beginDisappearing();
    controller->beginAppearing();
    emit stackChanged();
    presenter().push(*this, controller, animated, [old, controller, done] {
        if (old)
            old->endDisappearing();
        controller->endAppearing();
        done();
    });
}

void NavigationController::startPop(bool animated, const Done &done)
{
    if (depth() < 2) {
        done();
        return;
    }
    const auto old = std::exchange(_controllers.back(), nullptr);
    _controllers.pop_back();
    old->_hasGone = true;
    if (!isVisible()) {
        old->_parent.reset();
        old->_navigation.reset();
        emit stackChanged();
        done();
        return;
    }
    const auto next = topViewController();
    old->beginDisappearing();
    next->beginAppearing();
    emit stackChanged();
    presenter().pop(*this, old, animated, [old, next, done] {
        old->endDisappearing();
        old->_parent.reset();
        old->_navigation.reset();
        next->endAppearing();
        done();
    });
}

void NavigationController::beginAppearing()
{
    ViewController::beginAppearing();
    if (const auto top = topViewController())
        top->beginAppearing();
}

void NavigationController::endAppearing()
{
    ViewController::endAppearing();
    if (const auto top = topViewController())
        top->endAppearing();
}

void NavigationController::beginDisappearing()
{
    ViewController::beginDisappearing();
    if (const auto top = topViewController())
        top->beginDisappearing();
}

void NavigationController::endDisappearing()
{
    ViewController::endDisappearing();
    if (const auto top = topViewController())
        top->endDisappearing();
}

} // namespace cvtamber
