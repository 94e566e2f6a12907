// SPDX-License-Identifier: GPL-3.0-or-later
// The picker of a user or folder: its steps, its one answer, and what it leaves behind.
#include "UsersBench.h"
#include "app/TamberPickUserOrFolderViewController.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;
using List = MUsersViewController::List;
using Picker = TamberPickUserOrFolderViewController;
using Kind = BarButtonItem::Kind;

namespace {

class PickRecorder final : public TamberPickUserOrFolderViewControllerDelegate
{
public:
    void tamberPickUserOrFolderViewControllerUserPicked(Picker &,
                                                        const std::shared_ptr<TamberUser> &user) override
    {
        picked.append(u"user "_s % (user ? user->firstName() : u"none"_s));
    }
    void
    tamberPickUserOrFolderViewControllerFolderPicked(Picker &,
                                                     const std::shared_ptr<TamberDataFolder> &folder) override
    {
        picked.append(u"folder "_s % (folder ? folder->name() : u"none"_s));
    }

    QStringList picked;
};

// Ann with a folder, in the list that a tablet still shows under the picker.
class PickerBench : public UsersBench
{
public:
    PickerBench()
    {
        presenter.setTablet(true);
        rig.put(putUser(u"Ann/Lee/"_s) + u"/20000000-0000-0000-0000-000000000000/folder.dat"_s, "Letters\n");
        show();
    }
    ~PickerBench()
    {
        if (screen->presentedViewController())
            dismiss();
    }
    void present(Picker::Mode mode)
    {
        const auto made = std::make_shared<Picker>(context);
        made->setMode(mode);
        made->setPickDelegate(recorder);
        made->setActionButtonTitle(u"Here"_s);
        made->setModalPresentationStyle(PresentationStyle::FormSheet);
        picker = made;
        screen->presentViewController(made, true);
        settle();
    }
    void dismiss()
    {
        screen->dismissViewController(true);
        settle();
    }
    // Of the screen in front.
    void clickRow(int section, int row)
    {
        presenter.frontAs<TableViewController>()->rowClicked(section, row);
        settle();
    }

    std::shared_ptr<PickRecorder> recorder = std::make_shared<PickRecorder>();
    std::weak_ptr<Picker> picker;
};

} // namespace

class tst_picker : public QObject
{
    Q_OBJECT

private slots:
    void picksAUser();
    void picksAPlace_data();
    void picksAPlace();
    void cancelsTheFirstStep_data();
    void cancelsTheFirstStep();
    void goesBackToAnotherUser();
    void goesWhenDismissedWithoutAnAnswer_data();
    void goesWhenDismissedWithoutAnAnswer();
    void listBelowHearsOfItsRegistry();
    void withoutAStore();
};

void tst_picker::picksAUser()
{
    PickerBench bench;
    bench.present(Picker::Mode::PickUser);
    QCOMPARE(bench.presenter.frontAs<MUsersViewController>()->mode(), MUsersViewController::Mode::Pick);
    bench.clickRow(0, 0);
    bench.clickRow(0, 0);
    QCOMPARE(bench.recorder->picked, QStringList{u"user Ann"_s});
    QVERIFY(!bench.picker.expired());
    bench.dismiss();
    QVERIFY(bench.picker.expired());
}

void tst_picker::picksAPlace_data()
{
    columns<QString, QString>("hit", "picked");
    row("folder", u"folder"_s, u"folder Letters"_s);
    row("user level", u"button"_s, u"user Ann"_s);
    row("cancel", u"cancel"_s, u"folder none"_s);
}

void tst_picker::picksAPlace()
{
    QFETCH(QString, hit);
    QFETCH(QString, picked);
    PickerBench bench;
    bench.present(Picker::Mode::PickUserThenFolder);
    QCOMPARE(bench.presenter.frontAs<MUsersViewController>()->mode(),
             MUsersViewController::Mode::PickThenFolder);
    bench.clickRow(0, 0);
    const auto browser = bench.presenter.frontAs<TamberContainerViewController>();
    QVERIFY(browser);
    QCOMPARE(browser->mode(), TamberContainerViewController::Mode::PickFolder);
    QCOMPARE(browser->actionButtonTitle(), u"Here"_s);
    QCOMPARE(bench.recorder->picked, QStringList());
    if (hit == u"folder"_s)
        bench.clickRow(0, 0);
    else if (hit == u"button"_s)
        browser->controlClicked(1, 0, browser->cellForRow({1, 0}).controls.value(0).id, false);
    else
        UsersBench::click(*browser, Kind::Cancel);
    UsersBench::click(*browser, Kind::Cancel);
    QCOMPARE(bench.recorder->picked, QStringList{picked});
    bench.dismiss();
    QVERIFY(bench.picker.expired());
}

void tst_picker::cancelsTheFirstStep_data()
{
    columns<Picker::Mode>("mode");
    row("user", Picker::Mode::PickUser);
    row("user, then folder", Picker::Mode::PickUserThenFolder);
}

void tst_picker::cancelsTheFirstStep()
{
    QFETCH(Picker::Mode, mode);
    PickerBench bench;
    bench.present(mode);
    UsersBench::click(*bench.presenter.front(), Kind::Cancel);
    QCOMPARE(bench.recorder->picked, QStringList{u"user none"_s});
}

void tst_picker::goesBackToAnotherUser()
{
    PickerBench bench;
    bench.registry()->addUserWithFirstName(u"Zoe"_s, u"Wolf"_s, {});
    bench.present(Picker::Mode::PickUserThenFolder);
    bench.clickRow(0, 0);
    bench.picker.lock()->backClicked();
    bench.settle();
    bench.clickRow(0, 1);
    const auto browser = bench.presenter.frontAs<TamberContainerViewController>();
    QVERIFY(browser);
    QCOMPARE(browser->container(), bench.user(u"Zoe"_s));
}

void tst_picker::goesWhenDismissedWithoutAnAnswer_data()
{
    columns<int>("steps");
    row("at the users", 0);
    row("at the folders", 1);
}

void tst_picker::goesWhenDismissedWithoutAnAnswer()
{
    QFETCH(int, steps);
    PickerBench bench;
    bench.present(Picker::Mode::PickUserThenFolder);
    if (steps == 1)
        bench.clickRow(0, 0);
    bench.dismiss();
    QVERIFY(bench.picker.expired());
    QCOMPARE(bench.recorder->picked, QStringList());
}

void tst_picker::listBelowHearsOfItsRegistry()
{
    PickerBench bench;
    bench.registry()->addUserWithFirstName(u"Zoe"_s, u"Wolf"_s, {});
    bench.registry()->addUserWithFirstName(u"Max"_s, u"Moor"_s, {});
    bench.present(Picker::Mode::PickUser);
    const auto list = bench.presenter.frontAs<MUsersViewController>();
    bench.registry()->deleteUser(bench.user(u"Max"_s));
    bench.settle();
    const QStringList left{u"Ann Lee"_s, u"Zoe Wolf"_s};
    QCOMPARE(UsersBench::shown(*list), left);
    QCOMPARE(UsersBench::shown(*bench.screen), left);
    UsersBench::click(*list, Kind::Cancel);
    bench.dismiss();
    bench.registry()->deleteUser(bench.user(u"Zoe"_s));
    QCOMPARE(UsersBench::shown(*bench.screen), QStringList{u"Ann Lee"_s});
}

void tst_picker::withoutAStore()
{
    PickerBench bench;
    MGlobals::setTamberStorage(nullptr);
    bench.present(Picker::Mode::PickUser);
    const auto list = bench.presenter.frontAs<MUsersViewController>();
    QVERIFY(list);
    QVERIFY(!list->emptyText().isEmpty());
    UsersBench::click(*list, Kind::Cancel);
    QCOMPARE(bench.recorder->picked, QStringList{u"user none"_s});
}

QTEST_GUILESS_MAIN(tst_picker)
#include "tst_picker.moc"
