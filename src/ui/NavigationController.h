// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ViewController.h"

#include <vector>

namespace cvtamber {

// A stack of screens of which the top one is shown. It forwards its own life to the top screen.
//
// While it is not seen (made but not presented yet, in another tab, covered) its stack changes at once and without an
// animation; otherwise a change waits for the transitions before it.
class NavigationController : public cvtamber::ViewController
{
    Q_OBJECT
    Q_PROPERTY(cvtamber::ViewController *topViewController READ topPointer NOTIFY stackChanged)
    Q_PROPERTY(int depth READ depth NOTIFY stackChanged)

public:
    explicit NavigationController(Presenter &presenter);
    static std::shared_ptr<NavigationController> withRoot(Presenter &presenter, const Controller &root);

    const std::vector<Controller> &viewControllers() const { return _controllers; }
    Controller topViewController() const { return _controllers.empty() ? nullptr : _controllers.back(); }
    ViewController *topPointer() const { return topViewController().get(); }
    int depth() const { return static_cast<int>(_controllers.size()); }
    void pushViewController(const Controller &controller, bool animated);
    // The root stays.
    void popViewController(bool animated);
    // Every screen but the root goes; those between are not seen again.
    void popToRootViewController(bool animated);
    // What a person does: the back button, the gesture, Escape. Nothing on the root.
    Q_INVOKABLE void backClicked();

    void beginAppearing() override;
    void endAppearing() override;
    void beginDisappearing() override;
    void endDisappearing() override;

signals:
    // Also when nothing is animated.
    void stackChanged();

private:
    using Done = TransitionQueue::Done;

    // Runs the change now or in its turn.
    void change(std::function<void(const Done &done)> work);
    void startPush(const Controller &controller, bool animated, const Done &done);
    void startPop(bool animated, const Done &done);
    void removeBetween();

    std::vector<Controller> _controllers;
    // Changes of this stack that wait in the queue.
    int _waitingChanges = 0;
};

} // namespace cvtamber
