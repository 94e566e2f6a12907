// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "qml/QuestionQueue.h"
#include "ui/DesktopLook.h"
#include "ui/Presenter.h"

#include <QObject>
#include <QPointer>
#include <QRect>

#include <memory>
#include <optional>
#include <vector>

class QQmlEngine;
class QQuickItem;
class QQuickWindow;

namespace cvtamber {

class NavigationController;

// Draws the screens with Qt Quick: one window with the root, the modal screens above it, questions above those, and a
// line for notices.
//
// The views ask for nothing but what screens offer. The focus follows: a new screen takes it, and it returns to where
// it was when what covered a screen has gone. Thread: main thread. Owner: made at start-up, outlives the screens.
class QmlPresenter final : public QObject, public Presenter
{
    Q_OBJECT

public:
    // The loop outlives the presenter. The views of the first picture begin to be loaded, beside what the caller does
    // until the window is needed.
    explicit QmlPresenter(RunLoop &runLoop);
    ~QmlPresenter() override;

    // Made when it is first needed, and shown by the caller. Null only when the views cannot be loaded; that is told on
    // the log.
    QQuickWindow *window();
    struct WindowPlace
    {
        // Of the window without its frame.
        QRect rect;
        bool isMaximized = false;
    };
    // For the window that is made later: where it was left. One that was left nowhere, with an empty place, opens with
    // 1100 x 760 units where the screen has room for them, else it takes the whole screen.
    void setStartPlace(const WindowPlace &place) { _startPlace = place; }

    // What a person asks of the program on whatever screen; one without a function does nothing.
    struct Commands
    {
        // F1, over the uppermost screen.
        std::function<void(ViewController &top)> showKeys;
        // Ctrl+O.
        std::function<void()> openFiles;
        // Dropped on the window, as URIs; none where what was dropped is no file.
        std::function<void(const QStringList &uris)> takeDropped;
    };
    void setCommands(const Commands &commands) { _commands = commands; }

    // What the theme follows, where no variable of the environment goes before it.
    void setDesktopLook(const DesktopLook &look);

    bool isTablet() const override;
    void present(const Controller &controller, PresentationStyle style, TransitionStyle transition,
                 bool animated, Finished finished) override;
    void dismiss(const Controller &controller, bool animated, Finished finished) override;
    void push(NavigationController &navigation, const Controller &controller, bool animated,
              Finished finished) override;
    void pop(NavigationController &navigation, const Controller &controller, bool animated,
             Finished finished) override;
    void showAlert(const AlertView &alert) override;
    void showActionSheet(const ActionSheet &sheet) override;
    bool isAsking() const override { return !_questions->isIdle(); }
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showNotice(const QString &text) override;
    void announce(const QString &text) override;

protected:
    void drawRoot(const Controller &root) override;

private slots:
    void askForKeys();
    void askForFiles();
    void takeDropped(const QString &uris);
    void modalOpened();
    void modalClosed();

private:
    void makeWindow();
    void watchReadText();
    void placeWindow(const WindowPlace &place);

    struct Modal
    {
        Controller controller;
        QPointer<QObject> view;
        bool isFormSheet = false;
    };

    QObject *makeQuestion(const QuestionQueue::Question &question);
    QObject *makeAlert(const AlertView &alert);
    QObject *makeSheet(const ActionSheet &sheet);
    QQuickItem *ownerOf(const Anchor &anchor) const;
    QQuickItem *room() const;
    QObject *topView() const;
    void setTransition(Finished finished);
    void endTransition();
    void coverViews();
    void giveFocus();
    void tellFocus();

    RunLoop &_runLoop;
    std::unique_ptr<QQmlEngine> _engine;
    bool _hasMadeWindow = false;
    QPointer<QQuickWindow> _window;
    std::optional<WindowPlace> _startPlace;
    Controller _root;
    std::vector<Modal> _modals;
    // Those that a dismissal takes away.
    std::vector<Modal> _leaving;
    std::unique_ptr<QuestionQueue> _questions;
    Finished _finished;
    Commands _commands;
    DelayedCall _noticeEnd;
    DelayedCall _newsEnd;
    DelayedCall _focusTold;
    qsizetype _announced = 0;
};

} // namespace cvtamber
