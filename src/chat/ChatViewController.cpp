// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/ChatViewController.h"

#include "app/AppContext.h"
#include "base/SystemLog.h"
#include "device/CVBTDevice.h"
#include "ui/Presenter.h"
#include "ui/Texts.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// How long nothing has come before half a word is spoken, and how far apart announcements are at least.
constexpr auto restTime = 1500ms;

std::shared_ptr<UIMyTextView> thePage;
bool insertsCorvaneText = false;

} // namespace

const std::shared_ptr<UIMyTextView> &ChatViewController::textView()
{
    if (!thePage)
        thePage = std::make_shared<UIMyTextView>();
    return thePage;
}

void ChatViewController::forgetTextView()
{
    thePage.reset();
}

bool ChatViewController::isInsertingCorvaneText()
{
    return insertsCorvaneText;
}

ChatViewController::ChatViewController(AppContext &context)
    : ViewController(context.presenter)
    , _context(context)
    , _textView(textView())
    , _gradeButtons(*this, context.device)
    , _mode(context, QStringLiteral("BOARD"), [this] { linkChanged(); })
    , _rest(context.runLoop)
{
    _textView->setDelegate(this);
    _textView->setHoldsBack(true);
}

ChatViewController::~ChatViewController()
{
    if (_textView->delegate() == this)
        _textView->setDelegate(nullptr);
}

int ChatViewController::fontScale() const
{
    return presenter().isTablet() ? 2 : 1;
}

QString ChatViewController::statusText() const
{
    return _mode.isAway() ? _mode.statusText() + u' ' + localized("What you write is not sent yet.")
                          : QString();
}

// Life

void ChatViewController::viewDidLoad()
{
    _gradeButtons.addToBar();
}

void ChatViewController::viewWillAppear()
{
    _gradeButtons.updateEnabled();
}

void ChatViewController::viewDidAppear()
{
    _mode.appear();
    _context.device.setDataDelegate(std::static_pointer_cast<ChatViewController>(shared_from_this()));
    _isRegisteredForKeyboard = true;
}

void ChatViewController::viewWillDisappear()
{
    _context.device.setDataDelegate(nullptr);
    _textView->setHoldsBack(true);
}

void ChatViewController::viewDidDisappear()
{
    _mode.disappear();
    _isRegisteredForKeyboard = false;
    setPageHeight(0);
    _rest.cancel();
    _unspoken.clear();
}

void ChatViewController::linkChanged()
{
    const bool heldBack = _textView->holdsBack();
    _textView->setHoldsBack(_mode.isAway());
    emit statusTextChanged();
    if (_mode.isAway()) {
        presenter().announce(statusText());
        return;
    }
    _gradeButtons.updateEnabled();
    const QStringView unsent = _textView->unsentText();
    if (heldBack && (unsent.contains(u' ') || unsent.contains(u'\n')))
        presenter().showNotice(localized("What was not sent yet goes with the next space or line end."));
}

// The on-screen keyboard

void ChatViewController::keyboardWasShown(double top)
{
    if (_isRegisteredForKeyboard)
        setPageHeight(top);
}

void ChatViewController::keyboardWillBeHidden()
{
    setPageHeight(0);
}

void ChatViewController::setPageHeight(double height)
{
    if (qFuzzyCompare(_pageHeight + 1, height + 1))
        return;
    _pageHeight = height;
    emit pageHeightChanged();
}

// Text

void ChatViewController::CV_newDataReceived(const QString &text)
{
    _context.log.info(QStringLiteral("CV_newDataReceived"));
    const QScopedValueRollback isInserting(insertsCorvaneText, true);
    QString inserted = text;
    inserted.remove(u'\r');
    _textView->insertCorvaneText(inserted);
    speakLater(inserted);
}

void ChatViewController::newTextReady(const QString &text)
{
    _context.log.info(SystemLog::masked(text));
    _mode.sendString(text);
}

bool ChatViewController::maySend(const QString &text)
{
    const bool isObeyed = LiveMode::isObeyed(text);
    if (isObeyed && !std::exchange(_hasToldObeyed, true))
        _mode.tellObeyed();
    if (!isObeyed)
        _hasToldObeyed = false;
    return !isObeyed;
}

void ChatViewController::textIsFixed()
{
    presenter().showNotice(localized("This part of the page is fixed. Write after it."));
}

void ChatViewController::pageIsFull()
{
    _context.log.error(QStringLiteral("The whiteboard's page is full; what comes now is dropped"));
    presenter().showNotice(localized("The whiteboard is full. What comes now is not kept."));
}

// Screen readers

void ChatViewController::speakLater(const QString &text)
{
    _unspoken += text.left(mostSpoken - _unspoken.size());
    _heardAt = _context.runLoop.now();
    if (_spokenAt < 0ns || _heardAt - _spokenAt >= restTime)
        speak(_unspoken.lastIndexOf(u'\n') + 1);
    if (!_rest.isActive())
        waitForRest();
}

// Words come one by one where nobody rests.
void ChatViewController::waitForRest()
{
    _rest.start(_heardAt + restTime - _context.runLoop.now(), [this] {
        const bool isResting = _context.runLoop.now() - _heardAt >= restTime;
        const qsizetype words = std::max(_unspoken.lastIndexOf(u' '), _unspoken.lastIndexOf(u'\n')) + 1;
        speak(isResting || _unspoken.size() == mostSpoken ? _unspoken.size() : words);
        if (!_unspoken.isEmpty())
            waitForRest();
    });
}

void ChatViewController::speak(qsizetype length)
{
    const QString words = _unspoken.left(length).trimmed();
    _unspoken.remove(0, length);
    if (words.isEmpty())
        return;
    _spokenAt = _context.runLoop.now();
    presenter().announce(words);
}

} // namespace cvtamber
