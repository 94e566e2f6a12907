// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RecordingPresenter.h"

#include "ui/NavigationController.h"
#include "ui/TabBarController.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

RecordingPresenter::RecordingPresenter(RunLoop &runLoop, Animations animations)
    : Presenter(runLoop)
    , _runLoop(runLoop)
    , _animations(animations)
{}

RecordingPresenter::~RecordingPresenter()
{
    _runLoop.cancel(_nextEnd);
}

RecordingPresenter::Controller RecordingPresenter::front() const
{
    auto screen = _modals.empty() ? _root : _modals.back();
    for (;;) {
        Controller inner;
        if (const auto *tabs = qobject_cast<const TabBarController *>(screen.get()))
            inner = tabs->selectedViewController();
        else if (const auto *navigation = qobject_cast<const NavigationController *>(screen.get()))
            inner = navigation->topViewController();
        if (!inner)
            return screen;
        screen = inner;
    }
}

bool RecordingPresenter::finishAnimation()
{
    if (_running.empty())
        return false;
    const auto finished = std::move(_running.front());
    _running.pop_front();
    finished();
    return true;
}

bool RecordingPresenter::answerAlert(int button, const std::optional<QString> &text)
{
    if (_alerts.empty() || button < 0 || button >= _alerts.back().buttons.size())
        return false;
    endAlert(button, text);
    return true;
}

bool RecordingPresenter::cancelAlert(const std::optional<QString> &text)
{
    if (!alert() || !alert()->closesWithoutButton)
        return alert() && answerAlert(alert()->cancelButtonIndex, text);
    endAlert(AlertView::NoButton, text);
    return true;
}

void RecordingPresenter::endAlert(int button, const std::optional<QString> &text)
{
    const auto answered = std::move(_alerts.back());
    _alerts.pop_back();
    const auto shown = answered.textField ? answered.textField->text : QString();
    if (answered.didDismiss)
        answered.didDismiss(answered, button, text.value_or(shown));
}

bool RecordingPresenter::answerAlert(const QString &button, const std::optional<QString> &text)
{
    return alert() && answerAlert(static_cast<int>(alert()->buttons.indexOf(button)), text);
}

bool RecordingPresenter::answerSheet(int button)
{
    if (_sheets.empty() || button < 0 || button >= _sheets.back().buttons.size())
        return false;
    const auto answered = std::move(_sheets.back());
    _sheets.pop_back();
    if (answered.didDismiss)
        answered.didDismiss(answered, button);
    return true;
}

bool RecordingPresenter::answerSheet(const QString &button)
{
    return sheet() && answerSheet(static_cast<int>(sheet()->buttons.indexOf(button)));
}

void RecordingPresenter::clearTexts()
{
    _notices.clear();
    _announcements.clear();
}

void RecordingPresenter::drawRoot(const Controller &root)
{
    _root = root;
    _events.push_back({Event::Kind::Root, root.get(), false});
}

void RecordingPresenter::present(const Controller &controller, PresentationStyle, TransitionStyle,
                                 bool animated, Finished finished)
{
    _modals.push_back(controller);
    _events.push_back({Event::Kind::Present, controller.get(), animated});
    animate(std::move(finished));
}

void RecordingPresenter::dismiss(const Controller &controller, bool animated, Finished finished)
{
    _modals.erase(std::find(_modals.begin(), _modals.end(), controller), _modals.end());
    _events.push_back({Event::Kind::Dismiss, controller.get(), animated});
    animate(std::move(finished));
}

void RecordingPresenter::push(NavigationController &, const Controller &controller, bool animated,
                              Finished finished)
{
    _events.push_back({Event::Kind::Push, controller.get(), animated});
    animate(std::move(finished));
}

void RecordingPresenter::pop(NavigationController &, const Controller &controller, bool animated,
                             Finished finished)
{
    _events.push_back({Event::Kind::Pop, controller.get(), animated});
    animate(std::move(finished));
}

void RecordingPresenter::animate(Finished finished)
{
    _running.push_back(std::move(finished));
    if (_animations == Animations::EndFromLoop && _nextEnd == RunLoop::CallId::None)
        scheduleEnd();
}

void RecordingPresenter::scheduleEnd()
{
    _nextEnd = _runLoop.performAfter(std::chrono::nanoseconds{0}, [this] {
        _nextEnd = RunLoop::CallId::None;
        finishAnimation();
        if (!_running.empty() && _nextEnd == RunLoop::CallId::None)
            scheduleEnd();
    });
}

} // namespace cvtamber
