// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenBench.h"

#include <QtTest>

using namespace cvtamber;

class TestLifeCycle : public QObject
{
    Q_OBJECT

private slots:
    void rootAppears();
    void lifeCycle_data();
    void lifeCycle();
    void containersAreToldBeforeTheirScreens();
    void requestsFromHooksWaitTheirTurn_data();
    void requestsFromHooksWaitTheirTurn();
    void presenterHasAppearedBeforeTheCompletion();
};

void TestLifeCycle::rootAppears()
{
    ScreenBench bench;
    QCOMPARE(bench.log.taken(), QStringLiteral("R.load R.willAppear R.didAppear"));
    QCOMPARE(bench.presenter.front(), bench.at("R"));
    QVERIFY(!bench.at("S")->isViewLoaded());
}

namespace {

constexpr auto phone = false;
constexpr auto tablet = true;
constexpr auto covered = "A.load R.willDisappear A.willAppear | A.didAppear R.didDisappear completed";
constexpr auto uncovered = "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed";

void row(const char *name, bool isTablet, const char *before, const char *script, const char *expected)
{
    QTest::newRow(name) << isTablet << QString::fromLatin1(before) << QString::fromLatin1(script)
                        << QString::fromLatin1(expected);
}

void addPresentations()
{
    row("full screen", phone, "", "present:R:A end", covered);
    row("full screen on a tablet", tablet, "", "present:R:A end", covered);
    row("form sheet on a phone covers", phone, "", "sheet:R:A end", covered);
    row("form sheet on a tablet does not", tablet, "", "sheet:R:A end",
        "A.load A.willAppear | A.didAppear completed");
    row("dismissed by its presenter", phone, "present:R:A end", "dismiss:R end", uncovered);
    row("dismissed by itself", phone, "present:R:A end", "dismiss:A end", uncovered);
    row("form sheet dismissed on a tablet", tablet, "sheet:R:A end", "dismiss:R end",
        "A.willDisappear | A.didDisappear completed");
    row("from the middle of a chain", phone, "present:R:A end present:A:B end present:B:C end",
        "dismiss:A end", "C.willDisappear A.willAppear | A.didAppear C.didDisappear completed");
    row("a whole chain of form sheets", tablet, "sheet:R:A end sheet:A:B end", "dismiss:R end",
        "B.willDisappear A.willDisappear | B.didDisappear A.didDisappear completed");
    row("full screen over a form sheet", tablet, "sheet:R:A end", "present:A:B end",
        "B.load A.willDisappear R.willDisappear B.willAppear | B.didAppear A.didDisappear R.didDisappear "
        "completed");
    row("form sheet comes back with what it stands on", tablet, "sheet:R:A end present:A:B end",
        "dismiss:A end",
        "B.willDisappear A.willAppear R.willAppear | A.didAppear R.didAppear B.didDisappear completed");
    row("chain goes from under a full screen", tablet, "sheet:R:A end present:A:B end", "dismiss:R end",
        "B.willDisappear R.willAppear | R.didAppear B.didDisappear completed");
}

void addRefusedAndWaiting()
{
    row("presents already", phone, "present:R:A end", "present:R:B loop", "");
    row("its container presents already", tablet, "sheet:R:A end push:D end", "present:D:B loop", "");
    row("is not shown", phone, "", "present:S:A loop", "");
    row("presents twice at once", phone, "", "present:R:A present:R:B end loop", covered);
    row("stands elsewhere already", phone, "present:R:A end", "present:A:R loop", "");
    row("what was refused is not dismissed", phone, "", "present:R:A present:R:B dismiss:R end end",
        "A.load R.willDisappear A.willAppear | A.didAppear R.didDisappear completed "
        "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed");
    row("nor after an earlier dismissal", phone, "present:R:A end dismiss:R end",
        "present:R:A present:R:B dismiss:R end end",
        "R.willDisappear A.willAppear | A.didAppear R.didDisappear completed "
        "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed");
    row("nothing to dismiss", phone, "", "dismiss:R loop", "completed");
    row("nothing to dismiss, not at once", phone, "", "dismiss:R", "");
    row("dismisses twice", phone, "present:R:A end present:A:B end", "dismiss:A dismiss:A end loop",
        "B.willDisappear A.willAppear | A.didAppear B.didDisappear completed completed");
    row("dismisses and presents at once", phone, "present:R:A end", "dismiss:R present:R:B end end",
        "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed "
        "B.load R.willDisappear B.willAppear | B.didAppear R.didDisappear completed");
    row("dismisses and presents the same", phone, "present:R:A end", "dismiss:R present:R:A end end",
        "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed "
        "R.willDisappear A.willAppear | A.didAppear R.didDisappear completed");
    row("dismisses what waits to be presented", phone, "present:R:A end",
        "dismiss:R present:R:B dismiss:R end end end",
        "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed "
        "B.load R.willDisappear B.willAppear | B.didAppear R.didDisappear completed "
        "B.willDisappear R.willAppear | R.didAppear B.didDisappear completed");
    row("presents and dismisses at once", phone, "", "present:R:A dismiss:R end end",
        "A.load R.willDisappear A.willAppear | A.didAppear R.didDisappear completed "
        "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed");
}

void addNavigation()
{
    row("push", phone, "", "push:D end", "R.willDisappear D.load D.willAppear | R.didDisappear D.didAppear");
    row("pop", phone, "push:D end", "pop end", "D.willDisappear R.willAppear | D.didDisappear R.didAppear");
    row("the root stays", phone, "", "pop pop loop", "");
    row("the same twice", phone, "push:D end", "push:D loop", "");
    row("push and pop at once", phone, "", "push:D pop end end",
        "R.willDisappear D.load D.willAppear | R.didDisappear D.didAppear "
        "D.willDisappear R.willAppear | D.didDisappear R.didAppear");
    row("push while a dismissal runs", phone, "present:R:A end", "dismiss:R push:D end end",
        "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed "
        "R.willDisappear D.load D.willAppear | R.didDisappear D.didAppear");
    row("push in another tab", phone, "tab:1", "push:D tab:0",
        "S.willDisappear D.load D.willAppear S.didDisappear D.didAppear");
    row("push under what covers", phone, "present:R:A end", "push:D dismiss:A end",
        "A.willDisappear D.load D.willAppear | D.didAppear A.didDisappear completed");
}

// The root stays appeared beside what is above it.
void addColumns()
{
    const char *const both = "columns:on show:D end";
    row("shown beside", phone, "columns:on", "show:D end", "D.load D.willAppear | D.didAppear R.detail");
    row("popped beside", phone, both, "pop end", "D.willDisappear | D.didDisappear R.detail");
    row("in the place of what stands beside", phone, "columns:on show:D end push:C end", "show:B end pop end",
        "C.willDisappear B.load B.willAppear | C.didDisappear B.didAppear R.detail "
        "B.willDisappear | B.didDisappear R.detail");
    row("back to what stands beside", phone, "columns:on show:D end push:C end push:B end",
        "show:D end show:D", "B.willDisappear D.willAppear | B.didDisappear D.didAppear R.detail");
    row("shown in one column", phone, "", "show:D end",
        "R.willDisappear D.load D.willAppear | R.didDisappear D.didAppear");
    row("wide", phone, "push:D end push:C end", "columns:on", "R.willAppear R.didAppear");
    row("narrow", phone, both, "columns:off", "R.willDisappear R.didDisappear");
    row("narrow and wide with nothing beside", phone, "columns:on", "columns:off columns:on", "");
    row("wide during a push", phone, "", "push:D columns:on end",
        "R.willDisappear D.load D.willAppear | R.didDisappear D.didAppear R.willAppear R.didAppear");
    row("narrow during a push beside", phone, "columns:on", "show:D columns:off end",
        "D.load D.willAppear | D.didAppear R.detail R.willDisappear R.didDisappear");
    row("there and back while it waits", phone, "columns:on", "show:D columns:off columns:on end",
        "D.load D.willAppear | D.didAppear R.detail");
    row("both covered", phone, both, "present:D:A end dismiss:A end",
        "A.load R.willDisappear D.willDisappear A.willAppear | A.didAppear R.didDisappear D.didDisappear "
        "completed "
        "A.willDisappear R.willAppear D.willAppear | R.didAppear D.didAppear A.didDisappear completed");
    row("narrow while covered", phone, "columns:on show:D end present:D:A end", "columns:off dismiss:A end",
        "A.willDisappear D.willAppear | D.didAppear A.didDisappear completed");
    row("both in a tab that is left", phone, both, "tab:1 show:B tab:0",
        "R.willDisappear D.willDisappear S.load S.willAppear R.didDisappear D.didDisappear S.didAppear "
        "S.willDisappear R.willAppear B.load B.willAppear S.didDisappear R.didAppear B.didAppear");
}

void addTabs()
{
    row("pushes in order in a tab that is left", phone, "present:R:A end",
        "dismiss:A push:D tab:1 push:C end tab:0",
        "A.willDisappear R.willAppear R.willDisappear S.load S.willAppear R.didDisappear "
        "| S.didAppear A.didDisappear completed S.willDisappear C.load C.willAppear S.didDisappear "
        "C.didAppear");
    row("tab", phone, "", "tab:1", "R.willDisappear S.load S.willAppear R.didDisappear S.didAppear");
    row("no such tab", phone, "", "tab:2 tab:-1 tab:0", "");
    row("tab while covered", phone, "present:R:A end", "tab:1 dismiss:A end",
        "A.willDisappear S.load S.willAppear | S.didAppear A.didDisappear completed");
    row("tab during a push", phone, "", "push:D tab:1 end",
        "R.willDisappear D.load D.willAppear D.willDisappear S.load S.willAppear D.didDisappear S.didAppear "
        "| R.didDisappear");
    row("tab during a presentation", phone, "", "present:R:A tab:1 end dismiss:A end",
        "A.load R.willDisappear A.willAppear R.didDisappear | A.didAppear completed "
        "A.willDisappear S.load S.willAppear | S.didAppear A.didDisappear completed");
}

} // namespace

void TestLifeCycle::lifeCycle_data()
{
    QTest::addColumn<bool>("isTablet");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");
    addPresentations();
    addRefusedAndWaiting();
    addNavigation();
    addColumns();
    addTabs();
}

void TestLifeCycle::lifeCycle()
{
    QFETCH(bool, isTablet);
    QFETCH(QString, before);
    QFETCH(QString, script);
    QFETCH(QString, expected);
    ScreenBench bench(isTablet);
    for (const auto &word : before.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        QVERIFY2(bench.run(word), qPrintable(word));
    bench.log.taken();

    for (const auto &word : script.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        QVERIFY2(bench.run(word), qPrintable(word));
    QCOMPARE(bench.log.taken(), expected);
    QCOMPARE(bench.loop.pendingCalls() > 0, script == QLatin1String("dismiss:R") && expected.isEmpty());
}

void TestLifeCycle::containersAreToldBeforeTheirScreens()
{
    ScreenBench bench;
    const auto dialog = std::make_shared<RecordingScreen<NavigationController>>(bench.presenter, bench.log,
                                                                                QStringLiteral("M"));
    dialog->pushViewController(bench.at("A"), false);
    bench.log.taken();
    bench.at("R")->presentViewController(dialog, true);
    QCOMPARE(bench.log.taken(), QStringLiteral("M.load R.willDisappear M.willAppear A.load A.willAppear"));
    bench.presenter.finishAnimation();
    QCOMPARE(bench.log.taken(), QStringLiteral("M.didAppear A.didAppear R.didDisappear"));
    QCOMPARE(bench.at("A")->presentingViewController(), bench.at("R"));
    QCOMPARE(bench.presenter.front(), bench.at("A"));

    // A screen inside takes its container with it.
    bench.at("A")->dismissViewController(true);
    bench.presenter.finishAnimation();
    QCOMPARE(bench.presenter.front(), bench.at("R"));
    QCOMPARE(bench.at("A")->presentingViewController(), nullptr);
}

void TestLifeCycle::requestsFromHooksWaitTheirTurn_data()
{
    QTest::addColumn<QString>("hookedLine");
    for (const auto *line : {"A.willDisappear", "R.willAppear", "R.didAppear", "A.didDisappear"})
        QTest::newRow(line) << QString::fromLatin1(line);
}

void TestLifeCycle::requestsFromHooksWaitTheirTurn()
{
    QFETCH(QString, hookedLine);
    ScreenBench bench;
    bench.run(QStringLiteral("present:R:A"));
    bench.endAnimation();
    bench.log.taken();
    bench.log.hookedLine = hookedLine;
    bench.log.hook = [&] { bench.run(QStringLiteral("present:R:B")); };
    bench.run(QStringLiteral("dismiss:R"));
    bench.endAnimation();
    QCOMPARE(bench.log.taken(),
             QStringLiteral("A.willDisappear R.willAppear | R.didAppear A.didDisappear completed "
                            "B.load R.willDisappear B.willAppear"));
}

void TestLifeCycle::presenterHasAppearedBeforeTheCompletion()
{
    ScreenBench bench;
    bench.run(QStringLiteral("present:R:A"));
    bench.endAnimation();
    bench.log.taken();
    QStringList atCompletion;
    bench.at("R")->dismissViewController(true, [&] {
        atCompletion = bench.log.lines;
        QCOMPARE(bench.at("R")->presentedViewController(), nullptr);
        bench.run(QStringLiteral("present:R:C"));
    });
    bench.presenter.finishAnimation();
    QVERIFY(atCompletion.contains(QStringLiteral("R.didAppear")));
    QCOMPARE(bench.presenter.topModal(), bench.at("C"));
}

QTEST_GUILESS_MAIN(TestLifeCycle)
#include "tst_lifecycle.moc"
