// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecordingScreens.h"

#include "support/ManualRunLoop.h"
#include "support/RecordingPresenter.h"

#include <QtTest>

#include <map>

using namespace cvtamber;
using namespace std::chrono_literals;

namespace {

// Two tabs: "N", a navigation with the screen "R" at its root, and the screen "S"; "A" to "D" wait to be shown.
struct Bench
{
    explicit Bench(bool isTablet = false)
    {
        presenter.setTablet(isTablet);
        for (const auto *name : {"R", "S", "A", "B", "C", "D"}) {
            const auto key = QLatin1String(name);
            screens.emplace(key, std::make_shared<PlainScreen>(presenter, log, key));
        }
        navigation = NavigationController::withRoot(presenter, at("R"));
        tabs = std::make_shared<TabBarController>(presenter);
        tabs->setTabs({{navigation, {}}, {at("S"), {}}});
        presenter.showRoot(tabs);
    }

    const std::shared_ptr<PlainScreen> &at(const char *name) const { return screens.at(QLatin1String(name)); }
    const std::shared_ptr<PlainScreen> &at(const QString &name) const { return screens.at(name); }

    ViewController::Completion completion()
    {
        return [this] { log.lines.append(QStringLiteral("completed")); };
    }

    // One word of a script: what somebody asks for, "end" of an animation, or a turn of the "loop".
    bool run(const QString &word)
    {
        const auto parts = word.split(QLatin1Char(':'));
        const auto &verb = parts.first();
        if (verb == QLatin1String("present") || verb == QLatin1String("sheet"))
            present(parts.at(1), parts.at(2), verb == QLatin1String("sheet"));
        else if (verb == QLatin1String("dismiss"))
            at(parts.at(1))->dismissViewController(true, completion());
        else if (verb == QLatin1String("push"))
            navigation->pushViewController(at(parts.at(1)), true);
        else if (verb == QLatin1String("pop"))
            navigation->popViewController(true);
        else if (verb == QLatin1String("tab"))
            tabs->selectTab(parts.at(1).toInt());
        else if (verb == QLatin1String("loop"))
            loop.advance(0ns);
        else if (verb == QLatin1String("end"))
            return endAnimation();
        else
            return false;
        return true;
    }

    void present(const QString &asker, const QString &name, bool isSheet)
    {
        at(name)->setModalPresentationStyle(isSheet ? PresentationStyle::FormSheet
                                                    : PresentationStyle::FullScreen);
        at(asker)->presentViewController(at(name), true, completion());
    }

    bool endAnimation()
    {
        log.lines.append(QStringLiteral("|"));
        return presenter.finishAnimation();
    }

    ManualRunLoop loop;
    RecordingPresenter presenter{loop, RecordingPresenter::Animations::EndByHand};
    LifeLog log;
    std::map<QString, std::shared_ptr<PlainScreen>> screens;
    std::shared_ptr<NavigationController> navigation;
    std::shared_ptr<TabBarController> tabs;
};

} // namespace

class TestViewController : public QObject
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
    void coveredPresenterIsInUse();
    void knowsWhoPresentsWhom();
    void whoHasGone();
    void actionsWhileScreensChange();
    void goneScreensAreFreed();
    void modalOutlivesItsAsker();
    void secondEndOfAnAnimationIsIgnored();
    void endAfterThePresenter();
    void barButtons();
    void actionMayFreeItsScreen();
    void editButton();
    void tabTitles();
};

void TestViewController::rootAppears()
{
    Bench bench;
    QCOMPARE(bench.log.taken(), QStringLiteral("R.load R.willAppear R.didAppear"));
    QCOMPARE(bench.presenter.front(), bench.at("R"));
    QVERIFY(!bench.at("S")->isViewLoaded());
}

void TestViewController::lifeCycle_data()
{
    QTest::addColumn<bool>("isTablet");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, bool isTablet, const char *before, const char *script,
                        const char *expected) {
        QTest::newRow(name) << isTablet << QString::fromLatin1(before) << QString::fromLatin1(script)
                            << QString::fromLatin1(expected);
    };
    constexpr auto phone = false;
    constexpr auto tablet = true;
    const auto *const covered = "A.load R.willDisappear A.willAppear | A.didAppear R.didDisappear completed";
    const auto *const uncovered = "A.willDisappear R.willAppear | R.didAppear A.didDisappear completed";

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

    row("presents already", phone, "present:R:A end", "present:R:B loop", "");
    row("its container presents already", tablet, "sheet:R:A end push:D end", "present:D:B loop", "");
    row("is not shown", phone, "", "present:S:A loop", "");
    row("presents twice at once", phone, "", "present:R:A present:R:B end loop", covered);
    row("stands elsewhere already", phone, "present:R:A end", "present:A:R loop", "");
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

void TestViewController::lifeCycle()
{
    QFETCH(bool, isTablet);
    QFETCH(QString, before);
    QFETCH(QString, script);
    QFETCH(QString, expected);
    Bench bench(isTablet);
    for (const auto &word : before.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        QVERIFY2(bench.run(word), qPrintable(word));
    bench.log.taken();

    for (const auto &word : script.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        QVERIFY2(bench.run(word), qPrintable(word));
    QCOMPARE(bench.log.taken(), expected);
    QCOMPARE(bench.loop.pendingCalls() > 0, script == QLatin1String("dismiss:R") && expected.isEmpty());
}

void TestViewController::containersAreToldBeforeTheirScreens()
{
    Bench bench;
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

void TestViewController::requestsFromHooksWaitTheirTurn_data()
{
    QTest::addColumn<QString>("hookedLine");
    for (const auto *line : {"A.willDisappear", "R.willAppear", "R.didAppear", "A.didDisappear"})
        QTest::newRow(line) << QString::fromLatin1(line);
}

void TestViewController::requestsFromHooksWaitTheirTurn()
{
    QFETCH(QString, hookedLine);
    Bench bench;
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

void TestViewController::presenterHasAppearedBeforeTheCompletion()
{
    Bench bench;
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

void TestViewController::coveredPresenterIsInUse()
{
    Bench bench;
    QVERIFY(bench.at("R")->isInUse());
    QVERIFY(!bench.at("S")->isInUse());
    bench.run(QStringLiteral("present:R:A"));
    bench.endAnimation();
    QVERIFY(bench.at("R")->isInUse());
    QVERIFY(!bench.at("S")->isInUse());
    bench.run(QStringLiteral("present:A:B"));
    bench.endAnimation();
    QVERIFY(bench.at("R")->isInUse());
    bench.run(QStringLiteral("dismiss:R"));
    bench.endAnimation();
    QVERIFY(bench.at("R")->isInUse());
    QVERIFY(!bench.at("A")->isInUse());
    QVERIFY(!bench.at("B")->isInUse());
    bench.run(QStringLiteral("tab:1"));
    QVERIFY(!bench.at("R")->isInUse());
}

void TestViewController::knowsWhoPresentsWhom()
{
    Bench bench;
    const auto &asker = bench.at("R");
    bench.run(QStringLiteral("present:R:A"));
    QCOMPARE(asker->presentedViewController(), bench.at("A"));
    QCOMPARE(bench.tabs->presentedViewController(), bench.at("A"));
    QCOMPARE(bench.at("S")->presentedViewController(), nullptr);
    bench.endAnimation();
    bench.run(QStringLiteral("dismiss:R"));
    QCOMPARE(asker->presentedViewController(), bench.at("A"));
    bench.run(QStringLiteral("present:R:B"));
    QCOMPARE(asker->presentedViewController(), bench.at("B"));
    bench.endAnimation();
    bench.endAnimation();
    QCOMPARE(bench.presenter.modals(), std::vector<RecordingPresenter::Controller>{bench.at("B")});
    QCOMPARE(bench.at("B")->presentingViewController(), asker);
    QCOMPARE(bench.at("A")->presentingViewController(), nullptr);
    QCOMPARE(asker->navigationController(), bench.navigation);
}

void TestViewController::whoHasGone()
{
    Bench bench;
    bench.run(QStringLiteral("push:D"));
    bench.endAnimation();
    QVERIFY(!bench.at("D")->hasGone());
    bench.run(QStringLiteral("pop"));
    QVERIFY(bench.at("D")->hasGone());
    bench.endAnimation();
    QVERIFY(bench.at("D")->hasGone());
    bench.run(QStringLiteral("push:D"));
    QVERIFY(!bench.at("D")->hasGone());
    bench.endAnimation();

    const auto dialog = NavigationController::withRoot(bench.presenter, bench.at("A"));
    bench.at("D")->presentViewController(dialog, true);
    bench.endAnimation();
    bench.run(QStringLiteral("present:A:B"));
    bench.endAnimation();
    QVERIFY(!bench.at("A")->hasGone());
    bench.run(QStringLiteral("dismiss:D"));
    QVERIFY(bench.at("A")->hasGone());
    QVERIFY(bench.at("B")->hasGone());
    QVERIFY(!bench.at("D")->hasGone());
}

void TestViewController::actionsWhileScreensChange()
{
    Bench bench;
    const auto &root = bench.at("R");
    QVERIFY(root->takesActions());
    QVERIFY(!bench.at("S")->takesActions());
    bench.run(QStringLiteral("push:D"));
    QVERIFY(!root->takesActions());
    QVERIFY(bench.at("D")->takesActions());
    // Twice fast on the back button leads back once.
    bench.navigation->pushViewController(bench.at("C"), true);
    bench.endAnimation();
    bench.endAnimation();
    bench.navigation->backClicked();
    bench.endAnimation();
    bench.navigation->backClicked();
    bench.navigation->backClicked();
    bench.endAnimation();
    QCOMPARE(bench.presenter.front(), root);
    QCOMPARE(bench.presenter.events().size(), size_t{5});

    bench.presenter.setTablet(true);
    bench.run(QStringLiteral("sheet:R:A"));
    QVERIFY(!root->takesActions());
    QVERIFY(bench.at("A")->takesActions());
    bench.endAnimation();
    bench.run(QStringLiteral("dismiss:R"));
    QVERIFY(!bench.at("A")->takesActions());
    bench.run(QStringLiteral("push:D"));
    bench.endAnimation();
    bench.endAnimation();
    QVERIFY(bench.at("D")->takesActions());
}

void TestViewController::goneScreensAreFreed()
{
    Bench bench;
    bench.run(QStringLiteral("push:D"));
    bench.endAnimation();
    bench.run(QStringLiteral("present:D:A"));
    bench.endAnimation();
    bench.run(QStringLiteral("present:A:B"));
    bench.endAnimation();
    std::vector<std::weak_ptr<ViewController>> gone{bench.at("A"), bench.at("B"), bench.at("D")};
    for (const auto *name : {"A", "B", "D"})
        bench.screens.erase(QLatin1String(name));
    bench.tabs->dismissViewController(true);
    bench.run(QStringLiteral("pop"));
    QVERIFY(!gone[1].expired());
    bench.endAnimation();
    QVERIFY(gone[0].expired());
    QVERIFY(gone[1].expired());
    bench.endAnimation();
    QVERIFY(gone[2].expired());
}

void TestViewController::modalOutlivesItsAsker()
{
    Bench bench(true);
    bench.run(QStringLiteral("push:D"));
    bench.endAnimation();
    bench.run(QStringLiteral("sheet:D:A"));
    bench.endAnimation();
    bench.run(QStringLiteral("pop"));
    bench.endAnimation();
    std::weak_ptr<ViewController> asker = bench.at("D");
    bench.screens.erase(QStringLiteral("D"));
    QVERIFY(asker.expired());
    QCOMPARE(bench.presenter.front(), bench.at("A"));
    bench.log.taken();
    bench.run(QStringLiteral("dismiss:A"));
    bench.endAnimation();
    QCOMPARE(bench.log.taken(), QStringLiteral("A.willDisappear | A.didDisappear completed"));
    QCOMPARE(bench.presenter.front(), bench.at("R"));
}

namespace {

// Hands out what it was given instead of calling it.
class LeakingPresenter final : public Presenter
{
public:
    using Presenter::Presenter;

    bool isTablet() const override { return false; }
    void present(const Controller &, PresentationStyle, TransitionStyle, bool, Finished finished) override
    {
        _finished.push_back(std::move(finished));
    }
    void dismiss(const Controller &, bool, Finished finished) override
    {
        _finished.push_back(std::move(finished));
    }
    void push(NavigationController &, const Controller &, bool, Finished finished) override
    {
        _finished.push_back(std::move(finished));
    }
    void pop(NavigationController &, const Controller &, bool, Finished finished) override
    {
        _finished.push_back(std::move(finished));
    }
    void showAlert(const AlertView &) override {}
    void showActionSheet(const ActionSheet &) override {}
    void showNotice(const QString &) override {}
    void announce(const QString &) override {}

    const std::vector<Finished> &finished() const { return _finished; }

protected:
    void drawRoot(const Controller &) override {}

private:
    std::vector<Finished> _finished;
};

} // namespace

void TestViewController::secondEndOfAnAnimationIsIgnored()
{
    ManualRunLoop loop;
    LeakingPresenter presenter(loop);
    LifeLog log;
    const auto root = std::make_shared<PlainScreen>(presenter, log, QStringLiteral("R"));
    const auto first = std::make_shared<PlainScreen>(presenter, log, QStringLiteral("A"));
    presenter.showRoot(root);
    int completions = 0;
    root->presentViewController(first, true, [&] { ++completions; });
    root->dismissViewController(true, [&] { ++completions; });
    presenter.finished().at(0)();
    QCOMPARE(completions, 1);
    // The dismissal runs now and must not be ended by the presentation's second end.
    presenter.finished().at(0)();
    QCOMPARE(completions, 1);
    QVERIFY(presenter.transitions().isRunning());
    presenter.finished().at(1)();
    QCOMPARE(completions, 2);
    QVERIFY(!presenter.transitions().isRunning());
}

void TestViewController::endAfterThePresenter()
{
    ManualRunLoop loop;
    LifeLog log;
    auto presenter = std::make_unique<LeakingPresenter>(loop);
    auto root = std::make_shared<PlainScreen>(*presenter, log, QStringLiteral("R"));
    presenter->showRoot(root);
    root->presentViewController(std::make_shared<PlainScreen>(*presenter, log, QStringLiteral("A")), true);
    const auto late = presenter->finished();
    root->dismissViewController(true);
    presenter.reset();
    log.taken();
    late.at(0)();
    QCOMPARE(log.taken(), QStringLiteral("A.didAppear R.didDisappear"));
    QCOMPARE(loop.pendingCalls(), size_t{0});
}

void TestViewController::barButtons()
{
    Bench bench;
    const auto &screen = bench.at("R");
    int clicks = 0;
    BarButtonItem add;
    add.kind = BarButtonItem::Kind::Add;
    add.action = [&] { ++clicks; };
    BarButtonItem save;
    save.kind = BarButtonItem::Kind::Save;
    save.isEnabled = false;
    save.action = [&] { clicks += 100; };
    screen->setRightItems({add, save});
    screen->setLeftItems({BarButtonItem()});

    QSignalSpy changes(screen.get(), &ViewController::itemsChanged);
    for (const auto index : {-1, 0, 1, 2})
        screen->rightItemClicked(index);
    screen->leftItemClicked(0);
    QCOMPARE(clicks, 1);
    screen->setItemEnabled(BarButtonItem::Kind::Save, true);
    screen->setItemEnabled(BarButtonItem::Kind::Save, true);
    screen->setItemEnabled(BarButtonItem::Kind::Refresh, true);
    QCOMPARE(changes.count(), 1);
    screen->rightItemClicked(1);
    QCOMPARE(clicks, 101);
    bench.run(QStringLiteral("tab:1"));
    screen->rightItemClicked(1);
    QCOMPARE(clicks, 101);
}

void TestViewController::actionMayFreeItsScreen()
{
    ManualRunLoop loop;
    RecordingPresenter presenter(loop);
    LifeLog log;
    auto screen = std::make_shared<PlainScreen>(presenter, log, QStringLiteral("R"));
    screen->beginAppearing();
    QSignalSpy destroyed(screen.get(), &QObject::destroyed);
    BarButtonItem done;
    done.action = [&, captured = QStringLiteral("the action's own")] {
        screen->setLeftItems({});
        screen.reset();
        QCOMPARE(destroyed.count(), 0);
        log.lines.append(captured);
    };
    screen->setLeftItems({done});
    screen->leftItemClicked(0);
    QCOMPARE(log.lines.last(), QStringLiteral("the action's own"));
    QCOMPARE(destroyed.count(), 1);
}

void TestViewController::editButton()
{
    Bench bench;
    const auto &screen = bench.at("R");
    screen->setRightItems({BarButtonItem(), screen->editButtonItem()});
    QCOMPARE(screen->rightItems().at(1).title, QStringLiteral("Edit"));
    QSignalSpy editing(screen.get(), &ViewController::editingChanged);
    QSignalSpy items(screen.get(), &ViewController::itemsChanged);
    screen->rightItemClicked(1);
    QVERIFY(screen->isEditing());
    QCOMPARE(screen->rightItems().at(1).title, QStringLiteral("Done"));
    QCOMPARE(screen->rightItems().at(1).kind, BarButtonItem::Kind::Edit);
    screen->setEditing(true);
    QCOMPARE(editing.count(), 1);
    QCOMPARE(items.count(), 1);
    // Set again while editing, it says what it does now.
    auto item = screen->rightItems().at(1);
    item.title = QStringLiteral("Edit");
    screen->setRightItems({item});
    screen->rightItemClicked(0);
    QVERIFY(!screen->isEditing());
    QCOMPARE(screen->rightItems().at(0).title, QStringLiteral("Edit"));
}

void TestViewController::tabTitles()
{
    Bench bench;
    QSignalSpy changes(bench.tabs.get(), &TabBarController::tabsChanged);
    bench.at("R")->setTitle(QStringLiteral("Users"));
    QCOMPARE(bench.tabs->tabTitle(0), QStringLiteral("Users"));
    bench.navigation->setTitle(QStringLiteral("People"));
    QCOMPARE(bench.tabs->tabTitle(0), QStringLiteral("People"));
    QCOMPARE(changes.count(), 2);
    QCOMPARE(bench.tabs->tabTitle(2), QString());
    QCOMPARE(bench.tabs->tabImage(-1), QString());
}

QTEST_GUILESS_MAIN(TestViewController)
#include "tst_viewcontroller.moc"
