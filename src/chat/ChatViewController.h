// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "chat/GradeButtons.h"
#include "chat/LiveMode.h"
#include "chat/text/UIMyTextView.h"
#include "device/CVDeviceDelegates.h"
#include "ui/ViewController.h"

#include <chrono>

namespace cvtamber {

struct AppContext;

// The whiteboard: one page that the person and the device write on together, see UIMyTextView.
//
// While the screen is seen the device is in whiteboard mode and the screen its data delegate. Before, afterwards and
// without a link, when the device would emboss the words or not get them, the page holds back what is typed: it stays
// unsent and editable, and goes with the first space or line end after the mode is on. What the device would take for a
// command is held back until it has been changed. The device's text is told to screen readers by lines, by words where a
// line takes long, and the rest of it after a pause.
// Thread: main thread. Owner: the navigation that it is pushed on. The page lives on without it.
class ChatViewController final : public cvtamber::ViewController,
                                 public CVDataDelegate,
                                 public UIMyTextViewDelegate
{
    Q_OBJECT
    Q_PROPERTY(cvtamber::UIMyTextView *page READ page CONSTANT)
    // Of the system font.
    Q_PROPERTY(int fontScale READ fontScale CONSTANT)
    // Why nothing is sent; empty while it is.
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusTextChanged)
    // From the top of the view to the on-screen keyboard; 0 without one: the page is as high as the view.
    Q_PROPERTY(double pageHeight READ pageHeight NOTIFY pageHeightChanged)

public:
    // The context outlives the screen.
    explicit ChatViewController(AppContext &context);
    ~ChatViewController() override;

    // The one page of the program's run, made when it is first asked for.
    static const std::shared_ptr<UIMyTextView> &textView();
    // The next page is a new one: the end of a run, for tests that are several.
    static void forgetTextView();
    // While the device's text is put in.
    static bool isInsertingCorvaneText();

    UIMyTextView *page() const { return _textView.get(); }
    int fontScale() const;
    QString statusText() const;
    double pageHeight() const { return _pageHeight; }

    void grade1Clicked() { _gradeButtons.grade1Clicked(); }
    void grade2Clicked() { _gradeButtons.grade2Clicked(); }

    // The on-screen keyboard, through the view: where its top edge is, in units from the view's top.
    Q_INVOKABLE void keyboardWasShown(double top);
    Q_INVOKABLE void keyboardWillBeHidden();

    void CV_newDataReceived(const QString &text) override;
    void newTextReady(const QString &text) override;
    bool maySend(const QString &text) override;
    void textIsFixed() override;
    void pageIsFull() override;

signals:
    void statusTextChanged();
    void pageHeightChanged();

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;
    void viewWillDisappear() override;
    void viewDidDisappear() override;

private:
    void linkChanged();
    void setPageHeight(double height);
    void speakLater(const QString &text);
    void waitForRest();
    void speak(qsizetype length);

    AppContext &_context;
    const std::shared_ptr<UIMyTextView> _textView;
    GradeButtons _gradeButtons;
    LiveMode _mode;
    bool _isRegisteredForKeyboard = false;
    double _pageHeight = 0;
    // Until something has been sent.
    bool _hasToldObeyed = false;
    // Device text that no screen reader has been given yet.
    QString _unspoken;
    DelayedCall _rest;
    std::chrono::nanoseconds _heardAt{-1};
    std::chrono::nanoseconds _spokenAt{-1};
};

} // namespace cvtamber
