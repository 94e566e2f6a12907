// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ActionSheet.h"
#include "ui/AlertView.h"
#include "ui/TransitionQueue.h"

#include <functional>
#include <memory>

namespace cvtamber {

class NavigationController;
class ViewController;

enum class PresentationStyle {
    FullScreen,
    // A card in the middle of a tablet's or desktop's window; on a phone it covers everything.
    FormSheet,
};

enum class TransitionStyle { CoverVertical, FlipHorizontal, CrossDissolve };

// What draws the screens. It is told what happens and says when its animation has finished; what a screen is and
// does it does not know.
//
// Each `finished` is called once, from the loop and never from inside the call. The screens ask for one transition at
// a time: the next call comes after the `finished` of the one before. Thread: main thread. Owner: made at start-up,
// outlives the screens.
class Presenter
{
public:
    using Finished = std::function<void()>;
    using Controller = std::shared_ptr<ViewController>;

    // The loop outlives the presenter.
    explicit Presenter(RunLoop &runLoop);
    Presenter(const Presenter &) = delete;
    Presenter &operator=(const Presenter &) = delete;
    virtual ~Presenter();

    // Short side of the window of 600 units or more.
    virtual bool isTablet() const = 0;

    // Once, at start-up: draws the root and runs its life up to viewDidAppear.
    void showRoot(const Controller &root);

    // `controller` goes above everything. Its life-cycle calls are made by the screens themselves, also below.
    virtual void present(const Controller &controller, PresentationStyle style, TransitionStyle transition,
                         bool animated, Finished finished) = 0;
    // `controller` goes with all that stands above it.
    virtual void dismiss(const Controller &controller, bool animated, Finished finished) = 0;
    // Asked only while `navigation` is seen. A navigation that is not changes its stack at once, and says so with
    // stackChanged alone.
    virtual void push(NavigationController &navigation, const Controller &controller, bool animated,
                      Finished finished) = 0;
    virtual void pop(NavigationController &navigation, const Controller &controller, bool animated,
                     Finished finished) = 0;

    // Answered once through didDismiss, also when the screen that asked has gone. Screens ask through
    // ViewController::showAlert and showActionSheet.
    virtual void showAlert(const AlertView &alert) = 0;
    virtual void showActionSheet(const ActionSheet &sheet) = 0;
    // A question is shown or waits to be shown.
    virtual bool isAsking() const = 0;

    // A line that does not take the focus, is announced to screen readers and goes by itself.
    virtual void showNotice(const QString &text) = 0;
    // For screen readers alone.
    virtual void announce(const QString &text) = 0;

    // What the screens have asked for and is not finished, in order.
    TransitionQueue &transitions() { return _transitions; }

protected:
    // Part of showRoot: after the root's viewWillAppear, before its viewDidAppear.
    virtual void drawRoot(const Controller &root) = 0;

private:
    TransitionQueue _transitions;
};

} // namespace cvtamber
