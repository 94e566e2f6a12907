// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"
#include "ui/Presenter.h"
#include "ui/ViewController.h"

#include <QStringList>

#include <deque>
#include <optional>
#include <vector>

namespace cvtamber {

// A presenter without a window: keeps what is shown, and plays the person who answers.
//
// Animations end from the run loop at once (advance(0)), or one by one when the test says so. Alerts and sheets lie on
// each other, the newest in front. Thread: main thread. Owner: the test; outlives the screens.
class RecordingPresenter final : public Presenter
{
public:
    enum class Animations { EndFromLoop, EndByHand };

    // What was asked for, with the screen that it was about: to compare with, for it may be gone by now.
    struct Event
    {
        enum class Kind { Root, Present, Dismiss, Push, Pop };

        Kind kind = Kind::Root;
        const ViewController *controller = nullptr;
        bool animated = false;

        bool operator==(const Event &) const = default;
    };

    explicit RecordingPresenter(RunLoop &runLoop, Animations animations = Animations::EndFromLoop);
    ~RecordingPresenter() override;

    bool isTablet() const override { return _isTablet; }
    void setTablet(bool isTablet) { _isTablet = isTablet; }

    const Controller &root() const { return _root; }
    // The lowest first.
    const std::vector<Controller> &modals() const { return _modals; }
    Controller topModal() const { return _modals.empty() ? nullptr : _modals.back(); }
    // What a person looks at: the uppermost screen, through its tabs and navigation.
    Controller front() const;
    // The same as a certain class; null when another is in front.
    template<typename Screen> std::shared_ptr<Screen> frontAs() const
    {
        return std::dynamic_pointer_cast<Screen>(front());
    }
    const std::vector<Event> &events() const { return _events; }
    void clearEvents() { _events.clear(); }

    // For EndByHand: the oldest animation ends now; false when none runs.
    bool finishAnimation();
    bool isAnimating() const { return !_running.empty(); }

    // In front, or null. The pointer holds until the next answer or question.
    const AlertView *alert() const { return _alerts.empty() ? nullptr : &_alerts.back(); }
    const ActionSheet *sheet() const { return _sheets.empty() ? nullptr : &_sheets.back(); }
    size_t alertCount() const { return _alerts.size(); }
    size_t sheetCount() const { return _sheets.size(); }
    // Answers the one in front and takes it away; false when there is none or it has no such button. Without a
    // text the field stays as it was asked.
    bool answerAlert(int button, const std::optional<QString> &text = {});
    bool answerAlert(const QString &button, const std::optional<QString> &text = {});
    bool answerSheet(int button);
    bool answerSheet(const QString &button);
    // Escape; false when there is no cancel button.
    bool cancelAlert(const std::optional<QString> &text = {});
    bool cancelSheet() { return sheet() && answerSheet(sheet()->cancelButtonIndex); }

    const QStringList &notices() const { return _notices; }
    const QStringList &announcements() const { return _announcements; }
    void clearTexts();

    void present(const Controller &controller, PresentationStyle style, TransitionStyle transition,
                 bool animated, Finished finished) override;
    void dismiss(const Controller &controller, bool animated, Finished finished) override;
    void push(NavigationController &navigation, const Controller &controller, bool animated,
              Finished finished) override;
    void pop(NavigationController &navigation, const Controller &controller, bool animated,
             Finished finished) override;
    void showAlert(const AlertView &alert) override { _alerts.push_back(alert); }
    void showActionSheet(const ActionSheet &sheet) override { _sheets.push_back(sheet); }
    bool isAsking() const override { return !_alerts.empty() || !_sheets.empty(); }
    void showNotice(const QString &text) override { _notices.append(text); }
    void announce(const QString &text) override { _announcements.append(text); }

protected:
    void drawRoot(const Controller &root) override;

private:
    void endAlert(int button, const std::optional<QString> &text);
    void animate(Finished finished);
    void scheduleEnd();

    RunLoop &_runLoop;
    Animations _animations;
    bool _isTablet = false;
    Controller _root;
    std::vector<Controller> _modals;
    std::vector<Event> _events;
    std::deque<Finished> _running;
    RunLoop::CallId _nextEnd = RunLoop::CallId::None;
    std::vector<AlertView> _alerts;
    std::vector<ActionSheet> _sheets;
    QStringList _notices;
    QStringList _announcements;
};

} // namespace cvtamber
