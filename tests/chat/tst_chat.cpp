// SPDX-License-Identifier: GPL-3.0-or-later
#include "../device_ui/ConnectedBench.h"
#include "chat/Chat2ViewController.h"
#include "chat/ChatViewController.h"
#include "device_ui/CVDeviceTableViewController.h"
#include "support/Rows.h"
#include "ui/NavigationController.h"

#include <QSignalSpy>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The chat, opened from the device screen of a connected device that keeps what it hears to itself.
struct ChatBench : ConnectedBench
{
    explicit ChatBench(int language = 2)
        : ConnectedBench({}, true, language)
        , deviceScreen(std::make_shared<CVDeviceTableViewController>(context))
        , navigation(NavigationController::withRoot(presenter, deviceScreen))
    {
        Chat2ViewController::forgetConversation();
        simulated().firmware().setLiveText([this](const QByteArray &bytes) {
            heard += bytes;
            return true;
        });
        presenter.showRoot(navigation);
        advance(1s);
        open();
    }
    void open()
    {
        // A hand that is too quick opens one.
        for (int i = 0; i < 2; ++i)
            deviceScreen->controlClicked(0, 1, CVDeviceTableViewController::ChatButton, false);
        advance(1s);
        chat = presenter.frontAs<Chat2ViewController>();
        if (!chat)
            qFatal("No chat was opened");
        QObject::connect(&chat->chatBubbleTableView(), &UIBubbleTableView::scrollRequested,
                         [this](int index) { scrolledTo = index; });
    }
    void leave()
    {
        navigation->backClicked();
        advance(1s);
    }
    void send(const QString &text)
    {
        chat->chatTextTyped(text);
        chat->okButtonClicked();
        advance(1s);
    }
    // The texts of one side, or of both.
    static QStringList bubbles(std::optional<NSBubbleType> type = {})
    {
        QStringList texts;
        for (const NSBubblePtr &bubble : *Chat2ViewController::conversation()) {
            if (!type || bubble->type() == *type)
                texts.append(bubble->view().text);
        }
        return texts;
    }
    int chatCommands() const { return simulated().firmware().commandCount("CHAT"); }
    bool isChatting() const { return simulated().firmware().activity() == FirmwareModel::Activity::Chat; }

    QByteArray heard;
    int scrolledTo = -1;
    std::shared_ptr<CVDeviceTableViewController> deviceScreen;
    std::shared_ptr<NavigationController> navigation;
    std::shared_ptr<Chat2ViewController> chat;
};

} // namespace

class tst_Chat : public QObject
{
    Q_OBJECT

private slots:
    void sends_data()
    {
        columns<int, QString, QByteArray, QStringList>("language", "typed", "sent", "bubbles");
        row("plain", 2, u"hello"_s, QByteArray("hello\r\n"), QStringList{u"hello"_s});
        row("nothing", 2, u""_s, QByteArray("\r\n"), QStringList{u""_s});
        row("in the device's codes", 2, u"caf\u00e9"_s, QByteArray("caf\x82\r\n"),
            QStringList{u"caf\u00e9"_s});
        row("Hanzi, English device", 2, u"\u4e2d"_s, QByteArray("?\r\n"), QStringList{u"\u4e2d"_s});
        row("Hanzi", 15, u"\u4e2d\u6587"_s, QByteArray("zhong$ wen\0\r\n", 13),
            QStringList{u"\u4e2d\u6587"_s, u"zh\u014dng w\u00e9n"_s});
        row("full stop", 15, u"\u4e2d\u6587\u3002"_s, QByteArray("zhong$ wen%.\0\r\n", 15),
            QStringList{u"\u4e2d\u6587\u3002"_s, u"zh\u014dng w\u00e9n."_s});
        row("full width", 15, u"\uff21\uff22"_s, QByteArray("AB\0\r\n", 5),
            QStringList{u"\uff21\uff22"_s, u"AB"_s});
        row("after a letter", 15, u"a\u4e2d"_s, QByteArray("a zhong\0\r\n", 10),
            QStringList{u"a\u4e2d"_s, u"a zh\u014dng"_s});
        row("nothing, Chinese", 15, u""_s, QByteArray("\0\r\n", 3), QStringList{u""_s, u""_s});
    }
    void sends()
    {
        QFETCH(int, language);
        QFETCH(QString, typed);
        ChatBench bench(language);
        bench.send(typed);
        QTEST(bench.heard, "sent");
        QTEST(bench.bubbles(NSBubbleType::Mine), "bubbles");
        QCOMPARE(bench.bubbles().size(), bench.bubbles(NSBubbleType::Mine).size());
        QCOMPARE(bench.chat->chatText(), QString());
        // Below the header.
        QCOMPARE(bench.scrolledTo, static_cast<int>(bench.bubbles().size()));
        QVERIFY(bench.presenter.announcements().isEmpty());
    }

    // What the device would obey as a command stays in the field, and why is told each time.
    void braces_data()
    {
        columns<int, QString>("language", "typed");
        row("command", 2, u"{{DIR}}"_s);
        row("closing", 2, u"a}"_s);
        row("full width", 15, u"\uff5bDIR"_s);
        row("line end", 2, u"{a\n"_s);
    }
    void braces()
    {
        QFETCH(int, language);
        QFETCH(QString, typed);
        ChatBench bench(language);
        bench.presenter.clearTexts();
        bench.send(typed);
        bench.send(typed);
        QCOMPARE(bench.heard, QByteArray());
        QCOMPARE(bench.chat->chatText(), typed);
        QVERIFY(bench.bubbles().isEmpty());
        QVERIFY(bench.presenter.notices().size() >= 2 &&
                bench.presenter.notices().constLast().contains(u"{ or }"_s));
    }

    void receives_data()
    {
        columns<int, QStringList, QStringList>("language", "deliveries", "bubbles");
        row("one line", 2, QStringList{u"hello\r\n"_s}, QStringList{u"hello"_s});
        row("one line a delivery", 2, QStringList{u"x\r\ny\r\n"_s}, QStringList{u"x"_s});
        row("the next delivery", 2, QStringList{u"x\r\ny\r\n"_s, u"z"_s}, QStringList{u"x"_s, u"y"_s});
        row("in pieces", 2, QStringList{u"he"_s, u"llo\r"_s, u"\n"_s}, QStringList{u"hello"_s});
        row("other line ends", 2, QStringList{u"a\rb\nc\n\r"_s, u"\n"_s}, QStringList{u"a\rb\nc\n"_s});
        row("empty lines", 2, QStringList{u"\r\n"_s, u"\r\n"_s}, QStringList{u""_s, u""_s});
        row("missing", 2, QStringList{u"a"_s, QString(), u"\r\n"_s}, QStringList{u"a"_s});
        row("tone symbols, English", 2, QStringList{u"ni^\r\n"_s}, QStringList{u"ni^"_s});
        row("tone symbols", 15, QStringList{u"ni^ hao^\r\n"_s}, QStringList{u"n\u01d0 h\u01ceo"_s});
        row("no vowel before", 15, QStringList{u"^xma\r\n"_s}, QStringList{u""_s});
        row("zero", 2, QStringList{QString(u"a\0b\r\n"_s)}, QStringList{QString(u"a\0b"_s)});
        row("odd characters", 2, QStringList{u"\u202ea\xd83d\xde00\xd800\u0301\r\n"_s},
            QStringList{u"\u202ea\xd83d\xde00\xd800\u0301"_s});
    }
    void receives()
    {
        QFETCH(int, language);
        QFETCH(QStringList, deliveries);
        QFETCH(QStringList, bubbles);
        ChatBench bench(language);
        for (const QString &delivery : deliveries)
            bench.chat->CV_newDataReceived(delivery);
        QCOMPARE(bench.bubbles(NSBubbleType::SomeoneElse), bubbles);
        QCOMPARE(bench.bubbles(), bubbles);
        QCOMPARE(bench.scrolledTo, static_cast<int>(bubbles.size()));
        QStringList spoken;
        for (QString text : bubbles)
            spoken.append(u"Device: "_s +
                          text.replace(u'\0', u' ').replace(u'\r', u' ').replace(u'\n', u' '));
        QCOMPARE(bench.presenter.announcements(), spoken);
        QCOMPARE(bench.rig.log.count(u"[info] -(void)CV_newDataReceived:(NSString *)string"_s),
                 deliveries.size());
    }

    void conversationStays()
    {
        ChatBench bench;
        QCOMPARE(bench.chatCommands(), 1);
        QVERIFY(bench.isChatting());
        QCOMPARE(bench.chat->title(), u"Chat"_s);
        QVERIFY(bench.chat->chatTableView().isHidden());
        QVERIFY(bench.chat->chatBubbleTableView().snapInterval() == 60s);
        bench.send(u"one"_s);
        bench.chat->chatTextTyped(u"half typed"_s);
        bench.simulated().type("tw");
        bench.advance(1s);
        bench.leave();
        QCOMPARE(bench.navigation->depth(), 1);
        QCOMPARE(bench.chatCommands(), 2);
        QVERIFY(!bench.isChatting());
        // What comes late is kept, and nobody is told of a screen that he does not see.
        bench.presenter.clearTexts();
        bench.simulated().type("o\r\nth");
        bench.advance(1s);
        QVERIFY(bench.presenter.announcements().isEmpty());
        bench.scrolledTo = -1;
        bench.open();
        QCOMPARE(bench.bubbles(), (QStringList{u"one"_s, u"two"_s}));
        QCOMPARE(bench.chat->chatBubbleTableView().numberOfRows(0), 3);
        QCOMPARE(bench.chat->chatText(), u"half typed"_s);
        QCOMPARE(bench.chatCommands(), 3);
        bench.simulated().type("ree\r\n");
        bench.advance(1s);
        QCOMPARE(bench.presenter.announcements(), QStringList{u"Device: three"_s});
        QCOMPARE(bench.rig.log.count(u"[info] Chat clicked"_s), 2);
    }

    void opensTheWhiteboard()
    {
        ChatBench bench;
        bench.leave();
        bench.deviceScreen->controlClicked(0, 0, CVDeviceTableViewController::WhiteboardButton, false);
        bench.advance(1s);
        const auto board = bench.presenter.frontAs<ChatViewController>();
        QVERIFY(board);
        QCOMPARE(board->title(), u"Whiteboard"_s);
    }

    // An empty conversation is not scrolled.
    void scrollsWhereThereIsSomething()
    {
        ChatBench bench;
        bench.chat->scrollToLast();
        QCOMPARE(bench.scrolledTo, -1);
        QCOMPARE(bench.chat->chatBubbleTableView().numberOfSections(), 0);
    }

    void returnSends()
    {
        ChatBench bench;
        bench.chat->chatTextTyped(u"hello"_s);
        QVERIFY(!bench.chat->textFieldShouldReturn());
        bench.advance(1s);
        QCOMPARE(bench.heard, QByteArray("hello\r\n"));
        QCOMPARE(bench.rig.log.count(u"[info] -(BOOL)textFieldShouldReturn:(UITextField *)textField"_s), 1);
    }

    // Before the screen has appeared, or when it has gone, the device would emboss the text.
    void sendsOnlyWhileItIsSeen()
    {
        ChatBench bench;
        bench.leave();
        bench.send(u"hello"_s);
        QCOMPARE(bench.heard + bench.simulated().firmware().embosserPage(), QByteArray());
        QCOMPARE(bench.chat->chatText(), u"hello"_s);
    }

    void grades_data()
    {
        columns<int, qsizetype>("language", "buttons");
        row("Australian", 1, qsizetype{2});
        row("American", 3, qsizetype{2});
        row("Chinese", 15, qsizetype{0});
    }
    void grades()
    {
        QFETCH(int, language);
        ChatBench bench(language);
        QTEST(bench.chat->rightItems().size(), "buttons");
        if (bench.chat->rightItems().isEmpty())
            return;
        QVERIFY(bench.chat->rightItems()[0].isEnabled && !bench.chat->rightItems()[1].isEnabled);
        bench.chat->rightItemClicked(0);
        bench.advance(1s);
        QVERIFY(!bench.chat->rightItems()[0].isEnabled && bench.chat->rightItems()[1].isEnabled);
        QCOMPARE(bench.device.forwardGrade() + bench.device.backwardGrade(), 4);
    }

    void lineEndPath_data()
    {
        columns<QStringList, QByteArray, QString>("typed", "sent", "left");
        row("a line", QStringList{u"a"_s, u"ab"_s, u"ab\n"_s}, QByteArray("ab\r\n"), u""_s);
        row("no end", QStringList{u"a\nb"_s}, QByteArray(), u"a\nb"_s);
        row("shorter than before", QStringList{u"abcd"_s, u"ab\n"_s}, QByteArray(), u"ab\n"_s);
        // What was seen before it was sent is longer than what comes.
        row("twice", QStringList{u"ab\n"_s, u"a\n"_s}, QByteArray("ab\r\n"), u"a\n"_s);
        row("several lines", QStringList{u"a\nb\n"_s}, QByteArray("a\nb\r\n"), u""_s);
    }
    void lineEndPath()
    {
        QFETCH(QStringList, typed);
        ChatBench bench;
        const auto lines = std::make_shared<ChatLineTable::Lines>();
        if (typed.size() == 3)
            bench.chat->chatTableView().setLines(lines);
        int inserted = -1;
        bench.chat->chatTableView().setRowInserted([&](int row) { inserted = row; });
        for (const QString &text : typed)
            bench.chat->chatTextTyped(text);
        bench.advance(1s);
        QTEST(bench.heard, "sent");
        QTEST(bench.chat->chatText(), "left");
        QVERIFY(bench.bubbles().isEmpty());
        QCOMPARE(bench.rig.log.count(u"[info] textChanged"_s), typed.size());
        // The screen makes no list of its own.
        QCOMPARE(inserted, typed.size() == 3 ? 0 : -1);
        if (inserted < 0)
            return;
        lines->push_back({u"x"_s, 7});
        const auto &table = bench.chat->chatTableView();
        QCOMPARE(table.numberOfRows(0), 2);
        QCOMPARE(table.cellForRow({0, 0}).text, u"ab\r\n"_s);
        QVERIFY((table.cellForRow({0, 0}).background == ChatLineColor{0.9, 0.95, 0.9, 1}));
        QVERIFY((table.cellForRow({0, 1}).background == ChatLineColor{0.9, 1, 0.9, 1}));
    }

    // The text seen last is the process's, not the screen's.
    void lineEndPathOfTheNextScreen()
    {
        ChatBench bench;
        bench.chat->chatTextTyped(u"abcd"_s);
        bench.leave();
        bench.open();
        bench.chat->chatTextTyped(u"ab\n"_s);
        bench.chat->chatTextTyped(u"abcd\n"_s);
        bench.advance(1s);
        QCOMPARE(bench.heard, QByteArray("abcd\r\n"));
    }

    void awayAndBack()
    {
        ChatBench bench;
        bench.dropLink();
        QVERIFY(bench.chat->statusText().endsWith(u"Trying to connect again."));
        bench.presenter.clearTexts();
        bench.send(u"hello"_s);
        bench.chat->chatTextTyped(u"hello\n"_s);
        QCOMPARE(bench.chat->chatText(), u"hello\n"_s);
        QVERIFY(bench.bubbles().isEmpty());
        QCOMPARE(bench.presenter.notices().count(bench.chat->statusText()), 2);
        bench.connectDevice();
        QVERIFY(bench.isChatting());
        QVERIFY(bench.chat->statusText().isEmpty());
        bench.send(u"hello"_s);
        QCOMPARE(bench.heard, QByteArray("hello\r\n"));
        QCOMPARE(bench.bubbles(), QStringList{u"hello"_s});
        // An asked-for end, while the link still stands.
        bench.device.disconnectAsCVComm();
        bench.send(u"late"_s);
        QCOMPARE(bench.chat->chatText(), u"late"_s);
        QCOMPARE(bench.heard, QByteArray("hello\r\n"));
        bench.leave();
        QVERIFY(!bench.isChatting());
    }

    // A listing takes what the device says in the first seconds, so chat waits for its end.
    void opensWhileTheDeviceIsBusy()
    {
        ChatBench bench;
        bench.leave();
        QString listing;
        bench.device.turn().list(
            [&](DeviceTurn::End end) { listing += end == DeviceTurn::End::Done ? u"done" : u"?"; });
        bench.open();
        QVERIFY(!bench.isChatting() && bench.chat->statusText().contains(u"busy"));
        const int files = bench.device.getFilesCount();
        bench.advance(5s);
        QVERIFY(bench.isChatting() && bench.chat->statusText().isEmpty());
        QCOMPARE(listing, u"done"_s);
        QCOMPARE(bench.device.getFilesCount(), files);
        // Left before its turn, the screen sends nothing.
        bench.leave();
        bench.device.turn().list([](DeviceTurn::End) {});
        bench.open();
        bench.leave();
        bench.advance(5s);
        QVERIFY(!bench.isChatting());
    }

    void tellsWhatMayNotHaveArrived()
    {
        ChatBench bench;
        bench.chat->chatTextTyped(QString(100, u'x'));
        bench.chat->okButtonClicked();
        bench.presenter.clearTexts();
        bench.dropLink();
        QCOMPARE(bench.presenter.notices().filter(u"may not have reached"_s).size(), 1);
    }

    void endlessLine()
    {
        ChatBench bench;
        for (int i = 0; i < 200000; ++i)
            bench.chat->CV_newDataReceived(QString(20, QChar(u'a' + i % 26)));
        QVERIFY(bench.bubbles().isEmpty());
        bench.chat->CV_newDataReceived(u"\r"_s);
        bench.chat->CV_newDataReceived(u"\nnext\r\n"_s);
        QCOMPARE(bench.bubbles().size(), 1);
        QCOMPARE(bench.bubbles()[0].size(), ReceivedLines::Limit);
        QVERIFY(bench.bubbles()[0].startsWith(u"aaaaaaaaaaaaaaaaaaaab"_s));
        QVERIFY(bench.presenter.announcements().constLast().size() < 2000);
        bench.chat->CV_newDataReceived(u"after\r\n"_s);
        QCOMPARE(bench.bubbles().mid(1), QStringList{u"after"_s});
        QCOMPARE(bench.presenter.notices().size(), 1);
        QCOMPARE(bench.rig.log.count(u"[***ERROR***]"_s), 1);
    }

    void moreLinesThanAreTaken()
    {
        ChatBench bench;
        const QString lines = u"one\r\ntwo\r\n"_s.repeated(500);
        for (int i = 0; i < 100; ++i)
            bench.chat->CV_newDataReceived(lines);
        QCOMPARE(bench.bubbles().size(), 100);
        for (int i = 0; i < 100000; ++i)
            bench.chat->CV_newDataReceived(u""_s);
        const QStringList bubbles = bench.bubbles();
        QCOMPARE(bubbles.size(), ReceivedLines::Limit / 5 + 100);
        // None has a hole, however it was cut; the one that was cut is the beginning of a line.
        QCOMPARE(bubbles.count(u"one"_s) + bubbles.count(u"two"_s) + bubbles.count(u"o"_s), bubbles.size());
        QCOMPARE(bench.presenter.notices().size(), 1);
        bench.chat->CV_newDataReceived(u"end\r\n"_s);
        QCOMPARE(bench.bubbles().constLast(), u"end"_s);
    }

    void longConversation()
    {
        ChatBench bench;
        for (int i = 0; i < 100000; ++i)
            Chat2ViewController::conversation()->push_back(NSBubbleData::dataWithText(
                QString::number(i), QDateTime::currentDateTime(), NSBubbleType::Mine));
        bench.chat->CV_newDataReceived(u"last\r\n"_s);
        QVERIFY(bench.scrolledTo >= 100001);
        bench.leave();
        bench.open();
        bench.send(u"more"_s);
        QCOMPARE(bench.bubbles().size(), 100002);
    }

    void keyboard()
    {
        ChatBench bench;
        const auto &chat = bench.chat;
        bench.send(u"one"_s);
        bench.send(u"two"_s);
        // No row is seen: nowhere to scroll to.
        bench.scrolledTo = -1;
        chat->keyboardWasShown(300, 50);
        QCOMPARE(chat->keyboardInset(), 250.0);
        chat->keyboardWillBeHidden();
        QCOMPARE(chat->keyboardInset(), 0.0);
        QCOMPARE(bench.scrolledTo, -1);
        chat->chatBubbleTableView().setLastVisibleIndex(1);
        chat->keyboardWasShown(300, 50);
        QCOMPARE(bench.scrolledTo, 1);
        bench.scrolledTo = -1;
        chat->keyboardWillBeHidden();
        QCOMPARE(bench.scrolledTo, 1);
        bench.leave();
        chat->keyboardWasShown(300, 50);
        QCOMPARE(chat->keyboardInset(), 0.0);
    }

    void footer()
    {
        ChatBench bench;
        const auto footer = bench.chat->chatFooterView();
        QCOMPARE(footer->frame, QRectF(0, 0, 100, 50));
        QCOMPARE(footer->textFieldFrame, footer->frame);
        QCOMPARE(bench.chat->chatFooterView(), footer);
    }
};

QTEST_GUILESS_MAIN(tst_Chat)
#include "tst_chat.moc"
