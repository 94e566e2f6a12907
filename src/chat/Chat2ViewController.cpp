// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/Chat2ViewController.h"

#include "app/AppContext.h"
#include "base/SystemLog.h"
#include "chat/text/ChineseText.h"
#include "device/CVBTDevice.h"
#include "text/DeviceTables.h"
#include "ui/Texts.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

constexpr auto snapInterval = 60s;
constexpr QRectF footerFrame(0, 0, 100, 50);

// What stays when a chat screen is left.
struct Talk
{
    std::shared_ptr<Chat2ViewController::Conversation> conversation;
    QString typed;
    // The field's text at the last change that a person made, on any chat screen.
    QString previousText;
    ReceivedLines received;
    bool hasToldDropped = false;
};

Talk &theTalk()
{
    static Talk talk;
    return talk;
}

std::shared_ptr<Chat2ViewController::Conversation> &theConversation()
{
    return theTalk().conversation;
}

// Control characters are no words, and a zero would end what is spoken.
QString spoken(QString text)
{
    std::replace_if(
        text.begin(), text.end(),
        [](QChar character) { return character.category() == QChar::Other_Control; }, QLatin1Char(' '));
    return text;
}

} // namespace

Chat2ViewController::Chat2ViewController(AppContext &context)
    : ViewController(context.presenter)
    , _context(context)
    , _gradeButtons(*this, context.device)
    , _liveMode(context, QStringLiteral("CHAT"), [this] { linkChanged(); })
    , _chatBubbleTableView(std::make_unique<UIBubbleTableView>())
{}

Chat2ViewController::~Chat2ViewController() = default;

const std::shared_ptr<Chat2ViewController::Conversation> &Chat2ViewController::conversation()
{
    return theConversation();
}

void Chat2ViewController::forgetConversation()
{
    theTalk() = {};
}

const std::shared_ptr<ChatFooterView> &Chat2ViewController::chatFooterView()
{
    if (!_chatFooterView)
        _chatFooterView = std::make_shared<ChatFooterView>(ChatFooterView{footerFrame, footerFrame});
    return _chatFooterView;
}

// Life

void Chat2ViewController::viewDidLoad()
{
    _gradeButtons.addToBar();
    if (!theConversation())
        theConversation() = std::make_shared<Conversation>();
    _chatBubbleTableView->setSnapInterval(snapInterval);
    _chatTableView.setHidden(true);
    _chatBubbleTableView->setBubbleDataSource(
        std::static_pointer_cast<Chat2ViewController>(shared_from_this()));
    _chatBubbleTableView->reloadData();
}

void Chat2ViewController::viewWillAppear()
{
    _gradeButtons.updateEnabled();
}

void Chat2ViewController::viewDidAppear()
{
    _isObserving = true;
    _liveMode.appear();
    _context.device.setDataDelegate(std::static_pointer_cast<Chat2ViewController>(shared_from_this()));
    if (!theConversation()->empty())
        scrollToLast();
}

void Chat2ViewController::viewDidDisappear()
{
    _isObserving = false;
    _liveMode.disappear();
    setKeyboardInset(0);
}

void Chat2ViewController::linkChanged()
{
    _gradeButtons.updateEnabled();
    emit statusTextChanged();
}

QString Chat2ViewController::statusText() const
{
    return _liveMode.statusText();
}

// Sending

bool Chat2ViewController::isChinese() const
{
    return _context.device.cvLanguage() == DeviceLanguage::Chinese;
}

bool Chat2ViewController::canSend(const QString &line) const
{
    // Before the device is in chat mode it would emboss the text.
    if (!_isObserving || !takesActions())
        return false;
    const bool isConnected = !_liveMode.isAway();
    if (!isConnected)
        presenter().showNotice(statusText());
    const bool isObeyed = LiveMode::isObeyed(line);
    if (isConnected && isObeyed)
        _liveMode.tellObeyed();
    return isConnected && !isObeyed;
}

const QString &Chat2ViewController::chatText()
{
    return theTalk().typed;
}

void Chat2ViewController::clearField()
{
    theTalk().typed.clear();
    emit chatTextChanged();
}

void Chat2ViewController::okButtonClicked()
{
    const QString text = theTalk().typed;
    const QString pinyin = isChinese() ? pinyinForText(text) : QString();
    const QString sent = isChinese() ? toneSymbolsForPinyin(pinyin) : text;
    if (!canSend(sent))
        return;
    _liveMode.sendString(sent + ReceivedLines::LineEnd);
    clearField();
    addBubble(text, NSBubbleType::Mine);
    if (isChinese())
        addBubble(pinyin, NSBubbleType::Mine);
    showConversation();
}

bool Chat2ViewController::textFieldShouldReturn()
{
    _context.log.info(QStringLiteral("-(BOOL)textFieldShouldReturn:(UITextField *)textField"));
    okButtonClicked();
    return false;
}

void Chat2ViewController::chatTextTyped(const QString &text)
{
    theTalk().typed = text;
    emit chatTextChanged();
    if (_isObserving)
        textChanged();
}

void Chat2ViewController::textChanged()
{
    _context.log.info(QStringLiteral("textChanged"));
    const QString text = theTalk().typed;
    const QString previous = std::exchange(theTalk().previousText, text);
    if (text.size() <= previous.size() || !text.endsWith(QLatin1Char('\n')) || !canSend(text))
        return;
    const QString line = text.chopped(1) + ReceivedLines::LineEnd;
    _liveMode.sendString(line);
    clearField();
    _chatTableView.append({line, 0});
}

// Receiving

void Chat2ViewController::CV_newDataReceived(const QString &text)
{
    _context.log.info(QStringLiteral("-(void)CV_newDataReceived:(NSString *)string"));
    if (text.isNull())
        return;
    Talk &talk = theTalk();
    if (talk.received.isEmpty())
        talk.hasToldDropped = false;
    if (!talk.received.append(text))
        tellDropped();
    // One line a delivery, deliberately: what else is complete waits for the next one.
    const auto received = talk.received.takeLine();
    if (!received)
        return;
    const QString line = isChinese() ? marksForToneSymbols(*received) : *received;
    addBubble(line, NSBubbleType::SomeoneElse);
    showConversation();
    if (isInUse())
        presenter().announce(localizedFormat("Device: %@", spoken(line.left(mostSpoken))));
}

// Once until all that was kept has been shown.
void Chat2ViewController::tellDropped()
{
    if (std::exchange(theTalk().hasToldDropped, true))
        return;
    _context.log.error(QStringLiteral("The device sends more text than is shown; the rest is dropped"));
    presenter().showNotice(localized("The device sends too much text at once. Some of it is lost."));
}

// The conversation

void Chat2ViewController::addBubble(const QString &text, NSBubbleType type)
{
    theConversation()->push_back(NSBubbleData::dataWithText(text, QDateTime::currentDateTime(), type));
}

void Chat2ViewController::showConversation()
{
    _chatBubbleTableView->takeNewBubbles();
    scrollToLast();
}

void Chat2ViewController::scrollToLast()
{
    const int section = _chatBubbleTableView->numberOfSections() - 1;
    const int row = _chatBubbleTableView->numberOfRows(section) - 1;
    _chatBubbleTableView->scrollToRow({section, row}, UIBubbleTableView::ScrollPosition::Bottom, true);
}

int Chat2ViewController::rowsForBubbleTable(const UIBubbleTableView &)
{
    return static_cast<int>(theConversation()->size());
}

NSBubblePtr Chat2ViewController::bubbleTableViewDataForRow(const UIBubbleTableView &, int row)
{
    return theConversation()->at(static_cast<size_t>(row));
}

// The keyboard on the screen

void Chat2ViewController::setKeyboardInset(double inset)
{
    _keyboardInset = inset;
    emit keyboardInsetChanged();
}

void Chat2ViewController::keyboardWasShown(double keyboardHeight, double tabBarHeight)
{
    if (!_isObserving)
        return;
    _lastVisibleRow = _chatBubbleTableView->lastVisibleRow();
    setKeyboardInset(keyboardHeight - tabBarHeight);
    // Without a row that was seen this scrolls nowhere.
    _chatBubbleTableView->scrollToRow(_lastVisibleRow.value_or(IndexPath{-1, -1}),
                                      UIBubbleTableView::ScrollPosition::Bottom, true);
}

void Chat2ViewController::keyboardWillBeHidden()
{
    if (!_isObserving)
        return;
    setKeyboardInset(0);
    if (_lastVisibleRow)
        _chatBubbleTableView->scrollToRow(*_lastVisibleRow, UIBubbleTableView::ScrollPosition::Bottom, true);
}

} // namespace cvtamber
