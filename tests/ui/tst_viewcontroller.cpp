// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenBench.h"

#include <QtTest>

using namespace cvtamber;

class TestViewController : public QObject
{
    Q_OBJECT

private slots:
    void coveredPresenterIsInUse();
    void knowsWhoPresentsWhom();
    void whatCannotBePresentedIsTold();
    void whoHasGone();
    void actionsWhileScreensChange();
    void goneScreensAreFreed();
    void modalOutlivesItsAsker();
    void secondEndOfAnAnimationIsIgnored();
    void secondEndOfAPushIsIgnored();
    void endAfterThePresenter();
    void barButtons();
    void actionMayFreeItsScreen();
    void editButton();
    void tabTitles();
};

void TestViewController::coveredPresenterIsInUse()
{
    ScreenBench bench;
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
    ScreenBench bench;
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

void TestViewController::whatCannotBePresentedIsTold()
{
    ScreenBench bench;
    const auto &asker = bench.at("R");
    int refused = 0;
    const auto refuse = [&refused] { ++refused; };
    bench.run(QStringLiteral("present:R:A"));
    // While it comes, and once it is there.
    for (int times = 1; times <= 2; ++times) {
        asker->presentViewController(bench.at("B"), true);
        asker->presentViewController(bench.at("B"), true, {}, refuse);
        QCOMPARE(bench.presenter.notices().size(), times);
        QCOMPARE(refused, times);
        bench.endAnimation();
    }
    // Another screen came before it in the queue.
    bench.run(QStringLiteral("dismiss:R"));
    bench.tabs->presentViewController(bench.at("A"), true);
    asker->presentViewController(bench.at("B"), true, {}, refuse);
    bench.endAnimation();
    bench.endAnimation();
    QCOMPARE(bench.presenter.front(), bench.at("A"));
    QCOMPARE(refused, 3);
}

void TestViewController::whoHasGone()
{
    ScreenBench bench;
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
    bench.endAnimation();
    bench.run(QStringLiteral("present:D:B"));
    QVERIFY(!bench.at("B")->hasGone());
}

void TestViewController::actionsWhileScreensChange()
{
    ScreenBench bench;
    const auto &root = bench.at("R");
    QVERIFY(root->takesActions());
    QVERIFY(!bench.at("S")->takesActions());
    bench.run(QStringLiteral("push:D"));
    QVERIFY(!root->takesActions());
    QVERIFY(bench.at("D")->takesActions());
    // Twice fast on the back button leads back once.
    bench.navigation->pushViewController(bench.at("C"), true);
    QVERIFY(!bench.at("D")->takesActions());
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
    int done = 0;
    root->perform([&] { ++done; });
    bench.run(QStringLiteral("dismiss:R"));
    QVERIFY(!bench.at("A")->takesActions());
    // The root is told while the sheet over it goes: the first thing asked of it is done when the sheet has gone.
    root->perform([&] { done += 10; });
    root->perform([&] { done += 100; });
    bench.at("A")->perform([&] { ++done; });
    QCOMPARE(done, 0);
    bench.run(QStringLiteral("push:D"));
    bench.endAnimation();
    bench.endAnimation();
    QVERIFY(bench.at("D")->takesActions());
    QCOMPARE(done, 0);
    bench.run(QStringLiteral("sheet:D:A"));
    bench.endAnimation();
    bench.run(QStringLiteral("dismiss:D"));
    bench.at("D")->perform([&] { done += 10; });
    bench.endAnimation();
    QCOMPARE(done, 10);
}

void TestViewController::goneScreensAreFreed()
{
    ScreenBench bench;
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
    ScreenBench bench(true);
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
    bool isAsking() const override { return false; }
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

    // Presented again, the screen does not mind the late end of its dismissal.
    root->presentViewController(first, true);
    presenter.finished().at(2)();
    presenter.finished().at(1)();
    QCOMPARE(root->presentedViewController(), first);
}

void TestViewController::secondEndOfAPushIsIgnored()
{
    ManualRunLoop loop;
    LeakingPresenter presenter(loop);
    LifeLog log;
    const auto navigation = NavigationController::withRoot(
        presenter, std::make_shared<PlainScreen>(presenter, log, QStringLiteral("R")));
    presenter.showRoot(navigation);
    navigation->pushViewController(std::make_shared<PlainScreen>(presenter, log, QStringLiteral("A")), true);
    navigation->pushViewController(std::make_shared<PlainScreen>(presenter, log, QStringLiteral("B")), true);
    presenter.finished().at(0)();
    presenter.finished().at(0)();
    QVERIFY(presenter.transitions().isRunning());
    QCOMPARE(log.lines.last(), QStringLiteral("B.willAppear"));
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
    ScreenBench bench;
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
    ScreenBench bench;
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
    ScreenBench bench;
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
