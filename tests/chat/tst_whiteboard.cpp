// SPDX-License-Identifier: GPL-3.0-or-later
#include "../device_ui/ConnectedBench.h"
#include "chat/ChatViewController.h"
#include "support/Rows.h"
#include "ui/NavigationController.h"

#include <QSignalSpy>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int english = 2;

// The whiteboard of a connected device that keeps what it hears to itself.
struct BoardBench : ConnectedBench
{
    explicit BoardBench(int language = english, bool isTablet = true)
        : ConnectedBench({}, isTablet, language)
        , home(std::make_shared<ViewController>(presenter))
        , navigation(NavigationController::withRoot(presenter, home))
    {
        ChatViewController::forgetTextView();
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
        board = std::make_shared<ChatViewController>(context);
        navigation->pushViewController(board, true);
        advance(1s);
        presenter.clearTexts();
    }
    void leave()
    {
        board.reset();
        navigation->backClicked();
        advance(1s);
    }
    // What the device has heard since the last call, when it has come through.
    QByteArray type(const QString &text)
    {
        for (const QChar c : text)
            page().insertText(c);
        advance(2s);
        return std::exchange(heard, {});
    }
    // A word at the device, and the time until the next one.
    void comes(const QByteArray &bytes, std::chrono::milliseconds pause = 100ms)
    {
        simulated().type(bytes);
        advance(pause);
    }
    UIMyTextView &page() const { return *ChatViewController::textView(); }
    int boardCommands() const { return simulated().firmware().commandCount("BOARD"); }
    bool isBoard() const { return simulated().firmware().activity() == FirmwareModel::Activity::Board; }
    bool isNoticed(const QString &part) const { return presenter.notices().filter(part).size() == 1; }

    QByteArray heard;
    std::shared_ptr<ViewController> home;
    std::shared_ptr<NavigationController> navigation;
    std::shared_ptr<ChatViewController> board;
};

} // namespace

class tst_Whiteboard : public QObject
{
    Q_OBJECT

private slots:
    void sendsWords()
    {
        BoardBench bench;
        QCOMPARE(bench.type(u"hello world"_s), "hello ");
        QCOMPARE(bench.type(u"\n"_s), "world\r\n");
        QVERIFY(bench.presenter.notices().isEmpty());
        // Hanzi go out as they are, for which this device has no codes.
        QCOMPARE(bench.type(u"\u4E2D\u6587 \u4E2D "_s), "?? ? ");
        QCOMPARE(bench.presenter.notices().size(), 1);
        QCOMPARE(bench.rig.log.count(u"[info] <hidden>"_s), 4);
        QVERIFY(bench.presenter.announcements().isEmpty());
    }

    // The device would obey it: it stays unsent until the brace has gone, which is told once.
    void braces()
    {
        BoardBench bench;
        QCOMPARE(bench.type(u"{{DIR}} a b "_s), "");
        QVERIFY(bench.isNoticed(u"{ or }"_s) && bench.page().fixedTextEnd() == 0);
        bench.page().setSelectedRange({0, 7});
        QCOMPARE(bench.type(u"x"_s), "");
        bench.page().setSelectedRange({99, 0});
        QCOMPARE(bench.type(u"c "_s), "x a b c ");
        bench.type(u"} "_s);
        QCOMPARE(bench.presenter.notices().size(), 2);
    }

    void fixedTextIsTold()
    {
        BoardBench bench;
        bench.type(u"ab c"_s);
        for (const int caret : {1, 0}) {
            bench.page().setSelectedRange({caret, 0});
            bench.type(u"xy "_s);
            bench.page().deleteForward();
            QVERIFY(bench.isNoticed(u"fixed"_s));
            bench.presenter.clearTexts();
        }
        QCOMPARE(bench.page().text(), u"ab c"_s);
    }

    void onePage()
    {
        BoardBench bench;
        QVERIFY(bench.isBoard() && bench.boardCommands() == 1);
        bench.type(u"sent unsent"_s);
        bench.leave();
        QVERIFY(!bench.isBoard() && bench.boardCommands() == 2);
        // Neither what comes nor what is typed by a late hand reaches anybody.
        bench.comes("late");
        QCOMPARE(bench.type(u" x"_s) + bench.simulated().firmware().embosserPage(), "");
        bench.open();
        QVERIFY(bench.isBoard() && bench.boardCommands() == 3);
        QCOMPARE(bench.page().text(), u"sent unsent x"_s);
        QCOMPARE(bench.type(u" "_s), "unsent x ");
        bench.leave();
        QCOMPARE(bench.boardCommands(), 4);
    }

    void deviceText()
    {
        BoardBench bench;
        bench.type(u"xy"_s);
        bool isInserting = false;
        connect(&bench.page(), &UIMyTextView::textChanged, bench.board.get(),
                [&] { isInserting = ChatViewController::isInsertingCorvaneText(); });
        bench.comes("ab\r");
        bench.comes("\nc");
        QVERIFY(isInserting && !ChatViewController::isInsertingCorvaneText());
        QCOMPARE(bench.page().text(), u"ab\ncxy"_s);
        QVERIFY(bench.page().fixedTextEnd() == 4 && bench.page().selectedRange().start == 6);
        QCOMPARE(bench.rig.log.count(u"[info] CV_newDataReceived"_s), 2);
        QCOMPARE(bench.type(u" "_s), "xy ");
    }

    // Lines at once, the rest after a rest, nothing twice, and not all of what pours in.
    void speaks()
    {
        BoardBench bench;
        bench.comes("one wo");
        bench.comes("rd");
        QVERIFY(bench.presenter.announcements().isEmpty());
        bench.comes("s\r\nhal");
        QCOMPARE(bench.presenter.announcements(), QStringList{u"one words"_s});
        bench.comes("f", 2s);
        QCOMPARE(bench.presenter.announcements(), (QStringList{u"one words"_s, u"half"_s}));
        bench.comes("\r\n", 5s);
        QCOMPARE(bench.presenter.announcements().size(), 2);
        // A line that does not end is told by words.
        bench.presenter.clearTexts();
        for (int i = 0; i < 40; ++i)
            bench.comes(i % 5 == 4 ? "s " : "word");
        bench.advance(5s);
        const QStringList told = bench.presenter.announcements();
        QVERIFY(told.size() >= 3 && told.size() <= 5);
        QCOMPARE(told.join(u' '), u"wordwordwordwords "_s.repeated(8).trimmed());
        bench.presenter.clearTexts();
        for (int i = 0; i < 500; ++i)
            bench.board->CV_newDataReceived(u"line\r\n"_s);
        bench.advance(5s);
        QVERIFY(bench.presenter.announcements().size() <= 2);
        bench.comes("gone");
        bench.leave();
        bench.advance(5s);
        QVERIFY(!bench.presenter.announcements().contains(u"gone"_s));
    }

    void tooMuch()
    {
        BoardBench bench;
        for (int i = 0; i < 3; ++i)
            bench.board->CV_newDataReceived(QString(UIMyTextView::MaximalLength / 2, QChar(u'a' + i)));
        QCOMPARE(bench.page().text().size(), UIMyTextView::MaximalLength);
        QVERIFY(bench.page().text().endsWith(u'b') && bench.isNoticed(u"full"_s));
        QCOMPARE(bench.rig.log.count(u"[***ERROR***] The whiteboard"_s), 1);
    }

    void away_data()
    {
        columns<bool, bool>("withError", "isLeft");
        row("lost", true, false);
        row("ended", false, false);
        row("left meanwhile", true, true);
    }
    // What is typed while the device is away stays unsent, and goes when it is back.
    void away()
    {
        QFETCH(bool, withError);
        QFETCH(bool, isLeft);
        BoardBench bench;
        bench.type(u"ab "_s);
        bench.dropLink(withError);
        const QString status = bench.board->statusText();
        QVERIFY(!status.isEmpty() && bench.presenter.announcements() == QStringList{status});
        QVERIFY(!bench.isNoticed(u"reached"_s));
        QCOMPARE(bench.type(u"c d\n"_s), "");
        QCOMPARE(bench.page().fixedTextEnd(), 3);
        if (isLeft)
            bench.leave();
        bench.connectDevice();
        if (isLeft)
            bench.navigation->pushViewController(
                bench.board = std::make_shared<ChatViewController>(bench.context), true);
        bench.advance(1s);
        QVERIFY(bench.isBoard() && bench.board->statusText().isEmpty() && bench.isNoticed(u"next space"_s));
        QCOMPARE(bench.type(u"e "_s), "c d\r\ne ");
        bench.leave();
        QVERIFY(!bench.isBoard());
    }

    void opensWithoutALink()
    {
        BoardBench bench;
        bench.leave();
        bench.dropLink();
        const int commands = bench.boardCommands();
        bench.open();
        QVERIFY(!bench.board->statusText().isEmpty() && bench.type(u"a "_s).isEmpty());
        bench.leave();
        bench.connectDevice();
        QVERIFY(!bench.isBoard() && bench.boardCommands() == commands);
    }

    void troubles_data()
    {
        columns<Fault::Kind, QString>("kind", "notice");
        row("on its way", Fault::Kind::DropAtWrite, u"The connection to the Corvane was lost. What was"_s);
        row("fails", Fault::Kind::FailWrite, u"What was written last may not"_s);
        row("no answer", Fault::Kind::LoseConfirmation, u"does not answer"_s);
    }
    void troubles()
    {
        QFETCH(Fault::Kind, kind);
        QFETCH(QString, notice);
        BoardBench bench;
        Fault trouble = fault(kind);
        trouble.times = 1;
        bench.simulated().faults().add(trouble);
        bench.type(u"ab "_s);
        bench.advance(10s);
        QVERIFY(bench.isNoticed(notice));
        QCOMPARE(bench.page().fixedTextEnd(), 3);
    }

    void grades_data()
    {
        columns<int, bool>("language", "isShown");
        row("unknown", 0, false);
        row("Australian", 1, true);
        row("English", 2, true);
        row("American", 3, true);
        row("French", 4, false);
    }
    void grades()
    {
        QFETCH(int, language);
        QFETCH(bool, isShown);
        BoardBench bench(language);
        const auto enabled = [&] {
            QStringList titles;
            for (const BarButtonItem &item : bench.board->rightItems())
                titles += item.isEnabled ? item.title : u"-"_s;
            return titles;
        };
        const QStringList first{u"Grade 2"_s, u"-"_s};
        QCOMPARE(enabled(), isShown ? first : QStringList());
        bench.board->rightItemClicked(0);
        bench.advance(1s);
        QCOMPARE(enabled(), isShown ? QStringList({u"-"_s, u"Grade 1"_s}) : QStringList());
        QCOMPARE(bench.received().count("FGR 2") + bench.received().count("BGR 2"), isShown ? 2 : 0);
        QVERIFY(!isShown || (bench.device.forwardGrade() == 2 && bench.device.backwardGrade() == 2));
        bench.board->rightItemClicked(1);
        QCOMPARE(enabled(), isShown ? first : QStringList());
        // Another screen's choice.
        bench.device.setForwardGrade(2);
        bench.leave();
        bench.open();
        QVERIFY(!isShown || enabled() == QStringList({u"-"_s, u"Grade 1"_s}));
    }

    void keyboard()
    {
        for (const bool isTablet : {true, false}) {
            BoardBench bench(english, isTablet);
            QCOMPARE(bench.board->fontScale(), isTablet ? 2 : 1);
            const QSignalSpy changed(bench.board.get(), &ChatViewController::pageHeightChanged);
            bench.board->keyboardWasShown(300);
            bench.board->keyboardWasShown(300);
            QVERIFY(bench.board->pageHeight() == 300 && changed.count() == 1);
            bench.board->keyboardWillBeHidden();
            QCOMPARE(bench.board->pageHeight(), 0.0);
            const auto kept = bench.board;
            bench.leave();
            kept->keyboardWasShown(300);
            QCOMPARE(kept->pageHeight(), 0.0);
        }
    }

    // Nothing holds a screen that has gone, and one that follows keeps the page's words.
    void goes()
    {
        BoardBench bench;
        const std::weak_ptr<ChatViewController> first = bench.board;
        bench.leave();
        QVERIFY(first.expired() && !bench.page().delegate());
        const auto second = std::make_shared<ChatViewController>(bench.context);
        std::make_shared<ChatViewController>(bench.context);
        second->newTextReady(u"x"_s);
        QVERIFY(!bench.page().delegate());
    }
};

QTEST_GUILESS_MAIN(tst_Whiteboard)
#include "tst_whiteboard.moc"
