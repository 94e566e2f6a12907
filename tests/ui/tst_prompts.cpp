// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecordingScreens.h"

#include "support/ManualRunLoop.h"
#include "support/RecordingPresenter.h"
#include "ui/Answers.h"
#include "ui/Texts.h"

#include <QTranslator>
#include <QtTest>

#include <map>

using namespace cvtamber;

namespace {

class Catalogue final : public QTranslator
{
public:
    std::map<QByteArray, QString> texts;

    bool isEmpty() const override { return texts.empty(); }
    QString translate(const char *, const char *key, const char *, int) const override
    {
        const auto found = texts.find(key);
        return found == texts.end() ? QString() : found->second;
    }
};

struct Bench
{
    Bench()
    {
        presenter.showRoot(navigation);
        navigation->pushViewController(screen, false);
        loop.advance(std::chrono::nanoseconds{0});
    }

    AlertView question()
    {
        AlertView alert;
        alert.buttons = {QStringLiteral("Cancel"), QStringLiteral("OK")};
        alert.textField = AlertTextField{QStringLiteral("Folder"), true, true};
        alert.didDismiss = [this](const AlertView &, int button, const QString &text) {
            answers.append(QString::number(button) + QLatin1Char(' ') + text);
        };
        return alert;
    }

    ManualRunLoop loop;
    RecordingPresenter presenter{loop};
    LifeLog log;
    std::shared_ptr<NavigationController> navigation = NavigationController::withRoot(
        presenter, std::make_shared<PlainScreen>(presenter, log, QStringLiteral("R")));
    std::shared_ptr<PlainScreen> screen = std::make_shared<PlainScreen>(presenter, log, QStringLiteral("A"));
    QStringList answers;
};

} // namespace

class TestPrompts : public QObject
{
    Q_OBJECT

private slots:
    void answerComesOnce();
    void answerForAScreenThatHasGone_data();
    void answerForAScreenThatHasGone();
    void answerKeepsItsScreen();
    void sheetMayAskAgain();
    void textsOfTheCatalogue_data();
    void textsOfTheCatalogue();
};

void TestPrompts::answerComesOnce()
{
    Bench bench;
    bench.screen->showAlert(bench.question());
    const auto shown = *bench.presenter.alert();
    QVERIFY(!bench.presenter.answerAlert(2));
    QVERIFY(!bench.presenter.answerAlert(QStringLiteral("Yes")));
    QVERIFY(bench.presenter.answerAlert(QStringLiteral("OK"), QStringLiteral("Letters")));
    // A view that reports the button a second time, from its own copy.
    shown.didDismiss(shown, 1, QString());
    QCOMPARE(bench.answers, QStringList{QStringLiteral("1 Letters")});
    QVERIFY(!bench.presenter.alert());
    QVERIFY(!bench.presenter.answerAlert(0));
}

void TestPrompts::answerForAScreenThatHasGone_data()
{
    QTest::addColumn<bool>("isKept");
    QTest::addColumn<bool>("isPopped");
    QTest::addColumn<int>("answers");
    QTest::newRow("still there") << true << false << 1;
    QTest::newRow("popped, but somebody holds it") << true << true << 0;
    QTest::newRow("destroyed") << false << true << 0;
}

void TestPrompts::answerForAScreenThatHasGone()
{
    QFETCH(bool, isKept);
    QFETCH(bool, isPopped);
    QFETCH(int, answers);
    Bench bench;
    bench.screen->showAlert(bench.question());
    if (isPopped)
        bench.navigation->popViewController(false);
    bench.loop.advance(std::chrono::nanoseconds{0});
    if (!isKept)
        bench.screen.reset();
    QVERIFY(bench.presenter.answerAlert(1));
    QCOMPARE(bench.answers.size(), answers);
}

void TestPrompts::answerKeepsItsScreen()
{
    Bench bench;
    std::weak_ptr<ViewController> weak = bench.screen;
    auto alert = bench.question();
    bool wasAlive = false;
    alert.didDismiss = [&](const AlertView &, int, const QString &) {
        bench.navigation->popViewController(false);
        bench.loop.advance(std::chrono::nanoseconds{0});
        bench.screen.reset();
        wasAlive = !weak.expired();
    };
    bench.screen->showAlert(alert);
    QVERIFY(bench.presenter.answerAlert(0));
    QVERIFY(wasAlive);
    QVERIFY(weak.expired());
}

void TestPrompts::sheetMayAskAgain()
{
    Bench bench;
    ActionSheet sheet;
    sheet.buttons = {QStringLiteral("Delete"), QStringLiteral("Cancel")};
    sheet.cancelButtonIndex = 1;
    int answered = 0;
    sheet.didDismiss = [&](const ActionSheet &asked, int button) {
        QVERIFY(!bench.presenter.sheet());
        if (button == 0) {
            auto again = asked;
            again.tag = 2;
            again.didDismiss = [&](const ActionSheet &confirmed, int) { answered = confirmed.tag; };
            bench.screen->showActionSheet(again);
        }
    };
    bench.screen->showActionSheet(sheet);
    QCOMPARE(bench.presenter.sheet()->anchor.screen, bench.screen.get());
    QVERIFY(bench.presenter.answerSheet(QStringLiteral("Delete")));
    QVERIFY(bench.presenter.cancelSheet());
    QCOMPARE(answered, 2);
    QCOMPARE(bench.presenter.sheetCount(), size_t{0});
}

void TestPrompts::textsOfTheCatalogue_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *text, const char *argument, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(argument)
                            << QString::fromUtf8(expected);
    };
    row("filled in", "Delete \"%@\"?", "Letter", "Delete \"Letter\"?");
    row("the argument is text", "%@ and no more", "%@ %1 \\1", "%@ %1 \\1 and no more");
    row("other signs stay", "100% of %1: %@", "it", "100% of %1: it");
    row("no place for it", "Delete?", "Letter", "Delete?");
    row("missing shows the key", "", "Letter", "2.4");
}

void TestPrompts::textsOfTheCatalogue()
{
    QFETCH(QString, text);
    QFETCH(QString, argument);
    QFETCH(QString, expected);
    Catalogue catalogue;
    catalogue.texts["Other"] = QStringLiteral("other");
    if (!text.isEmpty())
        catalogue.texts["2.4"] = text;
    QVERIFY(QCoreApplication::installTranslator(&catalogue));
    QCOMPARE(localizedFormat("2.4", argument), expected);
    QCOMPARE(localized("2.4"), text.isEmpty() ? QStringLiteral("2.4") : text);
    QCoreApplication::removeTranslator(&catalogue);
}

QTEST_GUILESS_MAIN(TestPrompts)
#include "tst_prompts.moc"
