// SPDX-License-Identifier: GPL-3.0-or-later
// What a person does on the users screen: opening, picking, the menus, and the dialog.
#include "UsersBench.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;
using List = MUsersViewController::List;
using Mode = MUsersViewController::Mode;
using Kind = BarButtonItem::Kind;

namespace {

class PickRecorder final : public MUsersViewControllerDelegate
{
public:
    void usersViewControllerUserPicked(MUsersViewController &,
                                       const std::shared_ptr<TamberUser> &user) override
    {
        picked.append(user ? user->firstName() : u"nobody"_s);
    }

    QStringList picked;
};

} // namespace

class tst_usersactions : public QObject
{
    Q_OBJECT

private slots:
    void opensTheDocuments();
    void opensTheDocumentsBesideTheList();
    void picks_data();
    void picks();
    void menu_data();
    void menu();
    void menuFollowsItsUser();
    void menuOfAUserWhoHasLeft_data();
    void menuOfAUserWhoHasLeft();
    void aUserWhoCannotBeArchivedStays();
    void deletion_data();
    void deletion();
    void addsAUser();
    void renamesAUser();
    void dialogMovesOrDeletes_data();
    void dialogMovesOrDeletes();
};

void tst_usersactions::opensTheDocuments()
{
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    const auto screen = bench.show();
    screen->rowClicked(0, 0);
    bench.settle();
    const auto browser = bench.presenter.frontAs<TamberContainerViewController>();
    QVERIFY(browser);
    QCOMPARE(browser->container(), bench.user(u"Ann"_s));
    QCOMPARE(browser->delegate().get(), static_cast<TamberContainerViewControllerDelegate *>(screen.get()));
    QCOMPARE(MGlobals::currentActiveUser(), bench.user(u"Ann"_s));
    bench.navigation->backClicked();
    bench.settle();
    QVERIFY(!MGlobals::currentActiveUser());
}

void tst_usersactions::opensTheDocumentsBesideTheList()
{
    UsersBench bench;
    for (const QString &names : {u"Ann/Lee/"_s, u"Ben/Moe/"_s})
        bench.putUser(names);
    const auto screen = bench.show();
    bench.navigation->setHasColumns(true);
    const auto isOpen = [&] { return UsersBench::shown(*screen, TableModel::OpenRole); };
    const auto choose = [&](int row) {
        screen->rowClicked(0, row);
        bench.settle();
        return bench.navigation->detail();
    };
    QCOMPARE(isOpen(), (QStringList{u"false"_s, u"false"_s}));
    const auto browser = choose(0);
    QCOMPARE(isOpen(), (QStringList{u"true"_s, u"false"_s}));
    QCOMPARE(choose(0), browser);
    QVERIFY(choose(1) != browser);
    QCOMPARE(bench.navigation->depth(), 2);
    QCOMPARE(isOpen(), (QStringList{u"false"_s, u"true"_s}));
    QCOMPARE(MGlobals::currentActiveUser(), bench.user(u"Ben"_s));
    bench.registry()->deleteUser(bench.user(u"Ben"_s));
    bench.settle();
    QCOMPARE(bench.navigation->depth(), 1);
    QCOMPARE(isOpen(), QStringList{u"false"_s});
    QVERIFY(!MGlobals::currentActiveUser());
}

void tst_usersactions::picks_data()
{
    columns<Mode>("mode");
    row("a user", Mode::Pick);
    row("a user, then a folder", Mode::PickThenFolder);
}

void tst_usersactions::picks()
{
    QFETCH(Mode, mode);
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    bench.openStore();
    const auto screen = std::make_shared<MUsersViewController>(bench.context, bench.registry());
    const auto delegate = std::make_shared<PickRecorder>();
    screen->setMode(mode);
    screen->setDelegate(delegate);
    bench.showScreen(screen);
    screen->rowClicked(0, 0);
    UsersBench::click(*screen, Kind::Cancel);
    QCOMPARE(delegate->picked, (QStringList{u"Ann"_s, u"nobody"_s}));
    QCOMPARE(bench.navigation->depth(), 1);
}

void tst_usersactions::menu_data()
{
    columns<List, bool, QStringList, Anchor::Kind>("list", "isTablet", "buttons", "anchor");
    row("active, phone", List::Active, false, QStringList{u"Delete"_s, u"2.5"_s, u"2.6"_s, u"Cancel"_s},
        Anchor::Kind::TabBar);
    row("archived, tablet", List::Archived, true, QStringList{u"Delete"_s, u"2.5"_s, u"2.7"_s, u"Cancel"_s},
        Anchor::Kind::Row);
}

void tst_usersactions::menu()
{
    QFETCH(List, list);
    QFETCH(bool, isTablet);
    UsersBench bench;
    bench.presenter.setTablet(isTablet);
    bench.putUser(u"Ann/Lee/"_s, list);
    bench.putUser(u"Zoe/Wolf/"_s, list);
    const auto screen = bench.show(list);
    UsersBench::click(*screen, Kind::Edit);
    screen->rowClicked(0, 1);
    const ActionSheet *const sheet = bench.presenter.sheet();
    QVERIFY(sheet);
    QTEST(sheet->buttons, "buttons");
    QTEST(sheet->anchor.kind, "anchor");
    QCOMPARE(sheet->anchor.row, isTablet ? 1 : 0);
    QCOMPARE(sheet->destructiveButtonIndex, 0);
    QCOMPARE(sheet->cancelButtonIndex, 3);
    bench.presenter.cancelSheet();
    bench.settle();
    QCOMPARE(UsersBench::shown(*screen), (QStringList{u"Ann Lee"_s, u"Zoe Wolf"_s}));
    QVERIFY(!bench.presenter.alert());
    QVERIFY(!screen->presentedViewController());
}

void tst_usersactions::menuFollowsItsUser()
{
    UsersBench bench;
    bench.putUser(u"Max/Moor/"_s);
    const auto screen = bench.show();
    screen->setEditing(true);
    screen->rowClicked(0, 0);
    bench.registry()->addUserWithFirstName(u"Ann"_s, u"Lee"_s, {});
    bench.presenter.answerSheet(u"Delete"_s);
    QCOMPARE(bench.presenter.alert()->message, u"2.4 Max Moor"_s);
    bench.registry()->addUserWithFirstName(u"Bob"_s, u"Berg"_s, {});
    bench.presenter.answerAlert(u"Delete"_s);
    QCOMPARE(UsersBench::shown(*screen), (QStringList{u"Bob Berg"_s, u"Ann Lee"_s}));
}

void tst_usersactions::menuOfAUserWhoHasLeft_data()
{
    columns<QString>("entry");
    row("delete", u"Delete"_s);
    row("edit", u"2.5"_s);
    row("move", u"2.6"_s);
}

void tst_usersactions::menuOfAUserWhoHasLeft()
{
    QFETCH(QString, entry);
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    bench.putUser(u"Max/Moor/"_s);
    const auto screen = bench.show();
    screen->setEditing(true);
    screen->rowClicked(0, 0);
    bench.registry()->deleteUser(bench.user(u"Ann"_s));
    bench.presenter.answerSheet(entry);
    bench.settle();
    QVERIFY(!bench.presenter.alert());
    QVERIFY(!screen->presentedViewController());
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Max Moor"_s});
    QVERIFY(bench.registry(List::Archived)->users().empty());
}

void tst_usersactions::aUserWhoCannotBeArchivedStays()
{
    UsersBench bench;
    const QString directory = bench.putUser(u"Ann/Lee/"_s);
    const auto screen = bench.show();
    bench.rig.put(QString(directory).replace(u"Active"_s, u"Archived"_s), "in the way");
    bench.choose(u"Ann Lee"_s, u"2.6"_s);
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Ann Lee"_s});
    QCOMPARE(bench.rig.told->count(StoreProblem::What::Move), 1);
}

void tst_usersactions::deletion_data()
{
    columns<int, QStringList>("button", "left");
    row("cancel", 0, QStringList{u"Mrs L"_s, u"Max Moor"_s});
    row("delete", 1, QStringList{u"Max Moor"_s});
}

void tst_usersactions::deletion()
{
    QFETCH(int, button);
    QFETCH(QStringList, left);
    UsersBench bench;
    const QString directory = bench.putUser(u"Ann/Lee/Mrs L"_s);
    bench.putUser(u"Max/Moor/"_s);
    const auto screen = bench.show();
    screen->deleteClicked(0, 0);
    const AlertView *const alert = bench.presenter.alert();
    QVERIFY(alert);
    QCOMPARE(alert->tag, 100);
    QCOMPARE(alert->title, u"2.3"_s);
    QCOMPARE(alert->message, u"2.4 Ann Lee  (Mrs L)"_s);
    QCOMPARE(alert->buttons, (QStringList{u"Cancel"_s, u"Delete"_s}));
    QCOMPARE(alert->cancelButtonIndex, 0);
    bench.presenter.answerAlert(button);
    bench.settle();
    QCOMPARE(UsersBench::shown(*screen), left);
    QCOMPARE(bench.rig.has(directory), left.size() == 2);
}

void tst_usersactions::addsAUser()
{
    UsersBench bench;
    const auto screen = bench.show();
    screen->rowClicked(0, 0);
    bench.settle();
    const auto dialog = bench.presenter.frontAs<MEditUserDialog>();
    QVERIFY(dialog);
    QVERIFY(!dialog->user());
    dialog->firstNameTyped(u"Ann"_s);
    UsersBench::click(*dialog, Kind::Save);
    QCOMPARE(bench.registry()->users().size(), size_t{0});
    bench.settle();
    QCOMPARE(bench.presenter.front(), std::static_pointer_cast<ViewController>(screen));
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Ann"_s});
    QVERIFY(UsersBench::click(*screen, Kind::Add));
    bench.settle();
    UsersBench::click(*bench.presenter.front(), Kind::Cancel);
    bench.settle();
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Ann"_s});
}

void tst_usersactions::renamesAUser()
{
    UsersBench bench;
    const QString directory = bench.putUser(u"Ann/Lee/"_s);
    bench.putUser(u"Max/Moor/"_s);
    const auto screen = bench.show();
    screen->accessoryClicked(0, 0);
    bench.settle();
    const auto dialog = bench.presenter.frontAs<MEditUserDialog>();
    QVERIFY(dialog);
    dialog->lastNameTyped(u"Young"_s);
    UsersBench::click(*dialog, Kind::Save);
    bench.settle();
    QCOMPARE(UsersBench::shown(*screen), (QStringList{u"Max Moor"_s, u"Ann Young"_s}));
    QCOMPARE(bench.rig.bytes(directory + u"/user.txt"_s), QByteArray("Ann\nYoung\n\n"));
}

void tst_usersactions::dialogMovesOrDeletes_data()
{
    columns<List, bool, QString>("list", "moves", "directory");
    row("archive", List::Active, true, u"ArchivedUsers/"_s);
    row("restore", List::Archived, true, u"ActiveUsers/"_s);
    row("delete", List::Active, false, QString());
}

void tst_usersactions::dialogMovesOrDeletes()
{
    QFETCH(List, list);
    QFETCH(bool, moves);
    QFETCH(QString, directory);
    UsersBench bench;
    const QString before = bench.putUser(u"Ann/Lee/"_s, list);
    bench.putUser(u"Max/Moor/"_s, list);
    const auto screen = bench.show(list);
    bench.choose(u"Ann Lee"_s, u"2.5"_s);
    const auto dialog = bench.presenter.frontAs<MEditUserDialog>();
    QVERIFY(dialog);
    if (moves) {
        dialog->moveClicked();
    } else {
        dialog->deleteClicked();
        bench.presenter.answerAlert(1);
    }
    bench.settle();
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Max Moor"_s});
    QVERIFY(!bench.rig.has(before));
    QCOMPARE(directory.isEmpty() || bench.rig.has(directory + before.section(u'/', 1)), true);
}

QTEST_GUILESS_MAIN(tst_usersactions)
#include "tst_usersactions.moc"
