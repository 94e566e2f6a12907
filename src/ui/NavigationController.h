// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ViewController.h"

#include <vector>

namespace cvtamber {

// A stack of screens of which the top one is shown. It forwards its own life to the top screen.
//
// In a wide window the view shows it in two columns: the root stays beside what is above it, and appeared. One stack all the same;
// what the root opens then takes the place of what stands beside it.
//
// While it is not seen (made but not presented yet, in another tab, covered) its stack changes at once and without an
// animation; otherwise a change waits for the transitions before it.
class NavigationController : public cvtamber::ViewController
{
    Q_OBJECT
    Q_PROPERTY(cvtamber::ViewController *topViewController READ topPointer NOTIFY stackChanged)
    Q_PROPERTY(int depth READ depth NOTIFY stackChanged)
    Q_PROPERTY(cvtamber::ViewController *rootViewController READ rootPointer NOTIFY stackChanged)
    Q_PROPERTY(bool hasColumns READ hasColumns NOTIFY columnsChanged)

public:
    explicit NavigationController(Presenter &presenter);
    static std::shared_ptr<NavigationController> withRoot(Presenter &presenter, const Controller &root);

    const std::vector<Controller> &viewControllers() const { return _controllers; }
    Controller topViewController() const { return _controllers.empty() ? nullptr : _controllers.back(); }
    ViewController *topPointer() const { return topViewController().get(); }
    ViewController *rootPointer() const
    {
        return _controllers.empty() ? nullptr : _controllers.front().get();
    }
    int depth() const { return static_cast<int>(_controllers.size()); }
    // What the root has opened; null while nothing is above it.
    Controller detail() const { return depth() < 2 ? nullptr : _controllers[1]; }
    // What the root opens: pushed, or in two columns in the place of all that stands beside the root. Nothing but what is above it
    // goes where it is beside the root already.
    void showDetail(const Controller &controller);
    bool hasColumns() const { return _hasColumns; }
    // From the view, in its turn: the root appears beside what is above it, or disappears.
    void setHasColumns(bool hasColumns);
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
    void columnsChanged();
    // The person has asked for what is at the top already.
    void topAskedFor();

private:
    using Done = TransitionQueue::Done;

    // Runs the change now or in its turn.
    void change(std::function<void(const Done &done)> work);
    void startPush(const Controller &controller, bool animated, const Done &done);
    void startPop(bool animated, const Done &done);
    void startReplacement(const Controller &controller, const Done &done);
    void changeColumns(bool hasColumns);
    void tellRootOfDetail() const;
    void attach(const Controller &controller);
    static void detach(ViewController &controller);
    // Between the root and the top.
    void removeBetween();
    void forward(void (ViewController::*step)());
    // The root, while it stays where it is whatever is above it.
    bool isBeside(const Controller &controller) const;

    std::vector<Controller> _controllers;
    bool _hasColumns = false;
    bool _wantsColumns = false;
    // Changes of this stack that wait in the queue.
    int _waitingChanges = 0;
};

} // namespace cvtamber
