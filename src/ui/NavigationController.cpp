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

void NavigationController::showDetail(const Controller &controller)
{
    if (!controller)
        return;
    change([this, controller](const Done &done) {
        if (controller == topViewController()) {
            emit topAskedFor();
            done();
        } else if (controller == detail()) {
            while (depth() > 3) {
                detach(*_controllers[2]);
                _controllers.erase(_controllers.begin() + 2);
            }
            startPop(false, done);
        } else if (_hasColumns && depth() > 1) {
            startReplacement(controller, done);
        } else {
            startPush(controller, true, done);
        }
    });
}

void NavigationController::setHasColumns(bool hasColumns)
{
    if (std::exchange(_wantsColumns, hasColumns) == hasColumns)
        return;
    change([this](const Done &done) {
        if (_hasColumns != _wantsColumns)
            changeColumns(_wantsColumns);
        done();
    });
}

void NavigationController::changeColumns(bool hasColumns)
{
    _hasColumns = hasColumns;
    const auto root = depth() > 1 && isVisible() ? _controllers.front() : nullptr;
    const bool appears = root && hasColumns && isSeen();
    if (appears)
        root->beginAppearing();
    if (root && !hasColumns)
        root->beginDisappearing();
    emit columnsChanged();
    // One that is still appearing goes on with this controller.
    if (root && _appearance == Appearance::Shown)
        root->endAppearing();
    if (root && !hasColumns)
        root->endDisappearing();
}

bool NavigationController::isBeside(const Controller &controller) const
{
    return _hasColumns && !_controllers.empty() && controller == _controllers.front();
}

// What is further up is no concern of the root.
void NavigationController::tellRootOfDetail() const
{
    if (_hasColumns && depth() <= 2 && _controllers.front()->_appearance == Appearance::Shown)
        _controllers.front()->detailDidChange();
}

void NavigationController::attach(const Controller &controller)
{
    controller->_parent = weak_from_this();
    controller->_navigation = std::static_pointer_cast<NavigationController>(shared_from_this());
    controller->_hasGone = false;
    _controllers.push_back(controller);
}

void NavigationController::detach(ViewController &controller)
{
    controller._hasGone = true;
    controller._parent.reset();
    controller._navigation.reset();
}

void NavigationController::removeBetween()
{
    while (depth() > 2) {
        detach(*_controllers[1]);
        _controllers.erase(_controllers.begin() + 1);
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
    // The root stays where something comes beside it.
    const auto top = topViewController();
    const auto old = isBeside(top) ? nullptr : top;
    attach(controller);
    if (!isVisible()) {
        emit stackChanged();
        done();
        return;
    }
    if (old)
        old->beginDisappearing();
    controller->beginAppearing();
    emit stackChanged();
    presenter().push(*this, controller, animated, [this, self = shared_from_this(), old, controller, done] {
        if (old)
            old->endDisappearing();
        controller->endAppearing();
        tellRootOfDetail();
        done();
    });
}

void NavigationController::startReplacement(const Controller &controller, const Done &done)
{
    if (controller->parent() || controller->isVisible()) {
        done();
        return;
    }
    removeBetween();
    const auto old = std::exchange(_controllers.back(), nullptr);
    _controllers.pop_back();
    old->_hasGone = true;
    attach(controller);
    if (!isVisible()) {
        detach(*old);
        emit stackChanged();
        done();
        return;
    }
    old->beginDisappearing();
    controller->beginAppearing();
    emit stackChanged();
    presenter().push(*this, controller, false, [this, self = shared_from_this(), old, controller, done] {
        old->endDisappearing();
        detach(*old);
        controller->endAppearing();
        tellRootOfDetail();
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
        detach(*old);
        emit stackChanged();
        done();
        return;
    }
    const auto next = topViewController();
    old->beginDisappearing();
    next->beginAppearing();
    emit stackChanged();
    presenter().pop(*this, old, animated, [this, self = shared_from_this(), old, next, done] {
        old->endDisappearing();
        detach(*old);
        next->endAppearing();
        tellRootOfDetail();
        done();
    });
}

// The steps of a life that do not concern a screen do nothing to it.

void NavigationController::beginAppearing()
{
    ViewController::beginAppearing();
    const auto root = _controllers.empty() ? nullptr : _controllers.front();
    if (root && _hasColumns)
        root->beginAppearing();
    if (const auto top = topViewController())
        top->beginAppearing();
}

void NavigationController::endAppearing()
{
    ViewController::endAppearing();
    forward(&ViewController::endAppearing);
}

void NavigationController::beginDisappearing()
{
    ViewController::beginDisappearing();
    forward(&ViewController::beginDisappearing);
}

void NavigationController::endDisappearing()
{
    ViewController::endDisappearing();
    forward(&ViewController::endDisappearing);
}

void NavigationController::forward(void (ViewController::*step)())
{
    // A step may change the stack.
    const auto top = topViewController();
    const auto root = _hasColumns && top ? _controllers.front() : nullptr;
    if (root)
        (root.get()->*step)();
    if (top && top != root)
        (top.get()->*step)();
}

} // namespace cvtamber
