// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/BubbleTable/UIBubbleTableView.h"
#include "chat/ChatLineTable.h"
#include "chat/GradeButtons.h"
#include "chat/LiveMode.h"
#include "chat/ReceivedLines.h"
#include "device/CVDeviceDelegates.h"
#include "ui/ViewController.h"

#include <QRectF>

#include <memory>
#include <vector>

namespace cvtamber {

struct AppContext;

// What stands under the chat's table where somebody asks for it: a field in a view.
struct ChatFooterView
{
    QRectF frame;
    QRectF textFieldFrame;
};

// Lines of text between the person at this screen and the person at the device, as a conversation of bubbles.
//
// While the screen is seen the device is in chat mode (LiveMode). A line that is typed while the device is away, or that
// it would take for a command, stays in the field. With a Chinese device what is typed goes out as pinyin with tone
// symbols, with a second bubble that shows its reading, and what comes gets its tone marks. The conversation is one
// for the run of the program, and so are the line in the field and the half of a line that has come.
// The device keeps the screen as its data delegate when it has been left, so lines that come late are kept too.
// Thread: main thread. Owner: shared, see ViewController.
class Chat2ViewController final : public cvtamber::ViewController,
                                  public CVDataDelegate,
                                  public UIBubbleTableViewDataSource
{
    Q_OBJECT
    Q_PROPERTY(QString chatText READ chatText NOTIFY chatTextChanged)
    Q_PROPERTY(cvtamber::UIBubbleTableView *chatBubbleTableView READ bubbleTablePointer CONSTANT)
    // Why nothing is sent; empty while it is.
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusTextChanged)
    // By how much a keyboard on the screen shortens the container of the bubbles.
    Q_PROPERTY(double keyboardInset READ keyboardInset NOTIFY keyboardInsetChanged)

public:
    using Conversation = std::vector<NSBubblePtr>;

    // The context outlives it.
    explicit Chat2ViewController(AppContext &context);
    ~Chat2ViewController() override;

    // Null until a screen has been loaded; never emptied.
    static const std::shared_ptr<Conversation> &conversation();
    // The next screen begins a new one: the end of a run, for tests that are several.
    static void forgetConversation();

    UIBubbleTableView &chatBubbleTableView() const { return *_chatBubbleTableView; }
    UIBubbleTableView *bubbleTablePointer() const { return _chatBubbleTableView.get(); }
    ChatLineTable &chatTableView() { return _chatTableView; }
    const std::shared_ptr<ChatFooterView> &chatFooterView();
    double keyboardInset() const { return _keyboardInset; }
    static const QString &chatText();
    QString statusText() const;

    // What a person does, through the view. Until the screen has appeared text stays in the field.
    // The field's text is another; a paste may end it with a line end.
    Q_INVOKABLE void chatTextTyped(const QString &text);
    Q_INVOKABLE void okButtonClicked();
    // False: the field keeps the focus.
    Q_INVOKABLE bool textFieldShouldReturn();
    // The heights of the keyboard and of what is below this screen, such as the tabs.
    Q_INVOKABLE void keyboardWasShown(double keyboardHeight, double tabBarHeight);
    Q_INVOKABLE void keyboardWillBeHidden();
    void grade1Clicked() { _gradeButtons.grade1Clicked(); }
    void grade2Clicked() { _gradeButtons.grade2Clicked(); }
    void scrollToLast();

    void CV_newDataReceived(const QString &text) override;
    int rowsForBubbleTable(const UIBubbleTableView &table) override;
    NSBubblePtr bubbleTableViewDataForRow(const UIBubbleTableView &table, int row) override;

signals:
    void chatTextChanged();
    void statusTextChanged();
    void keyboardInsetChanged();

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;
    void viewDidDisappear() override;

private:
    void linkChanged();
    void setKeyboardInset(double inset);
    bool isChinese() const;
    // Whether the line reaches the device as text, when it is sent now; tells it where it does not.
    bool canSend(const QString &line) const;
    void textChanged();
    void clearField();
    void addBubble(const QString &text, NSBubbleType type);
    void showConversation();
    void tellDropped();

    AppContext &_context;
    GradeButtons _gradeButtons;
    LiveMode _liveMode;
    std::unique_ptr<UIBubbleTableView> _chatBubbleTableView;
    ChatLineTable _chatTableView;
    std::shared_ptr<ChatFooterView> _chatFooterView;
    double _keyboardInset = 0;
    std::optional<IndexPath> _lastVisibleRow;
    // Between viewDidAppear and viewDidDisappear.
    bool _isObserving = false;
};

} // namespace cvtamber
