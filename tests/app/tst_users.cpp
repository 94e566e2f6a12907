// SPDX-License-Identifier: GPL-3.0-or-later
// The users screen: its rows, what becomes of them when the registry changes, and what its menus do.
#include "UsersBench.h"
#include "app/UserTexts.h"
#include "support/Rows.h"

#include <QSignalSpy>

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

class tst_users : public QObject
{
    Q_OBJECT

private slots:
    void descriptions_data();
    void descriptions();
    void rows_data();
    void rows();
    void titlesAndButtons_data();
    void titlesAndButtons();
    void firstUserTakesThePlaceholdersRow();
    void lastUserLeavesThePlaceholder();
    void insertionMovesNoOtherRow();
    void insertionAfterAChangeOfNames();
    void usersOfAnotherRegistryStayOut();
    void usersAppearWhileHidden();
    void waitsForTheCloud_data();
    void waitsForTheCloud();
    void changedRecord();
    void anotherRegistry();
    void withoutAStore();

    void opensTheDocuments();
    void picks_data();
    void picks();
    void menu_data();
    void menu();
    void menuFollowsItsUser();
    void menuOfAUserWhoHasLeft_data();
    void menuOfAUserWhoHasLeft();
    void deletion_data();
    void deletion();
    void addsAUser();
    void renamesAUser();
    void dialogMovesOrDeletes_data();
    void dialogMovesOrDeletes();
};

void tst_users::descriptions_data()
{
    columns<QString, QString>("names", "description");
    row("all", u"Ann/Lee/Mrs L"_s, u"Ann Lee  (Mrs L)"_s);
    row("first and display", u"Ann//Mrs L"_s, u"Ann  (Mrs L)"_s);
    row("last and display", u"/Lee/Mrs L"_s, u"Lee  (Mrs L)"_s);
    row("display", u"//Mrs L"_s, u" (Mrs L)"_s);
    row("first and last", u"Ann/Lee/"_s, u"Ann Lee"_s);
    row("last", u"/Lee/"_s, u"Lee"_s);
    row("none", u"//"_s, QString());
}

void tst_users::descriptions()
{
    QFETCH(QString, names);
    QFETCH(QString, description);
    UsersBench bench;
    bench.putUser(names);
    bench.openStore();
    QCOMPARE(userFullDescription(*bench.registry()->users().front()), description);
}

void tst_users::rows_data()
{
    columns<QStringList, QStringList, QStringList>("users", "texts", "details");
    row("last names first", QStringList{u"Ann/Lee/"_s, u"Zoe/Bell/"_s},
        QStringList{u"Zoe Bell"_s, u"Ann Lee"_s}, QStringList{QString(), QString()});
    row("first names within", QStringList{u"Zoe/Lee/"_s, u"Ann/Lee/"_s},
        QStringList{u"Ann Lee"_s, u"Zoe Lee"_s}, QStringList{QString(), QString()});
    row("by character, not by alphabet", QStringList{u"Ann/lee/"_s, u"Ann/Zorn/"_s},
        QStringList{u"Ann Zorn"_s, u"Ann lee"_s}, QStringList{QString(), QString()});
    row("display name does not sort", QStringList{u"Ann/Lee/A"_s, u"Zoe/Bell/Z"_s},
        QStringList{u"Z"_s, u"A"_s}, QStringList{u"Zoe Bell"_s, u"Ann Lee"_s});
    row("one name", QStringList{u"Ann//A"_s, u"/Lee/L"_s, u"//D"_s}, QStringList{u"D"_s, u"A"_s, u"L"_s},
        QStringList{QString(), u"Ann"_s, u"Lee"_s});
    row("no name", QStringList{u"//"_s}, QStringList{u"No name"_s}, QStringList{QString()});
}

void tst_users::rows()
{
    QFETCH(QStringList, users);
    QFETCH(QStringList, texts);
    QFETCH(QStringList, details);
    UsersBench bench;
    for (const QString &user : users)
        bench.putUser(user);
    const auto screen = bench.show();
    QCOMPARE(UsersBench::shown(*screen), texts);
    QCOMPARE(UsersBench::shown(*screen, TableModel::DetailRole), details);
}

void tst_users::titlesAndButtons_data()
{
    columns<List, Mode, QString, QList<Kind>, QList<Kind>, TableCell::Accessory>(
        "list", "mode", "title", "left", "right", "accessory");
    row("active", List::Active, Mode::Browse, u"2.8"_s, QList<Kind>{}, QList{Kind::Add, Kind::Edit},
        TableCell::Accessory::DetailDisclosure);
    row("archived", List::Archived, Mode::Browse, u"2.9"_s, QList<Kind>{}, QList{Kind::Edit},
        TableCell::Accessory::DetailDisclosure);
    row("pick", List::Active, Mode::Pick, u"2.8"_s, QList{Kind::Cancel}, QList<Kind>{},
        TableCell::Accessory::None);
    row("pick, then a folder", List::Active, Mode::PickThenFolder, u"2.8"_s, QList{Kind::Cancel},
        QList<Kind>{}, TableCell::Accessory::Disclosure);
}

void tst_users::titlesAndButtons()
{
    QFETCH(List, list);
    QFETCH(Mode, mode);
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s, list);
    bench.openStore();
    const auto screen = std::make_shared<MUsersViewController>(bench.context, bench.registry(list));
    screen->setMode(mode);
    bench.showScreen(screen);
    const auto kinds = [](const QList<BarButtonItem> &items) {
        QList<Kind> shown;
        for (const BarButtonItem &item : items)
            shown.append(item.kind);
        return shown;
    };
    QTEST(screen->title(), "title");
    QTEST(kinds(screen->leftItems()), "left");
    QTEST(kinds(screen->rightItems()), "right");
    const TableCell cell = screen->cellForRow({0, 0});
    QTEST(cell.accessory, "accessory");
    QCOMPARE(cell.accessoryName.isEmpty(), mode != Mode::Browse);
}

void tst_users::firstUserTakesThePlaceholdersRow()
{
    UsersBench bench;
    const auto screen = bench.show();
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"2.2"_s});
    QCOMPARE(screen->editingStyle({0, 0}), TableViewController::EditingStyle::None);
    const QSignalSpy inserted(&screen->model(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy changed(&screen->model(), &QAbstractItemModel::dataChanged);
    bench.registry()->addUserWithFirstName(u"Ann"_s, u"Lee"_s, {});
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Ann Lee"_s});
    QCOMPARE(screen->editingStyle({0, 0}), TableViewController::EditingStyle::Delete);
    QCOMPARE(inserted.count(), 0);
    QVERIFY(changed.count() > 0);
}

void tst_users::lastUserLeavesThePlaceholder()
{
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s, List::Archived);
    const auto screen = bench.show(List::Archived);
    bench.registry(List::Archived)->deleteUser(bench.user(u"Ann"_s, List::Archived));
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"2.10"_s});
    QVERIFY(!screen->cellForRow({0, 0}).canHighlight);
}

void tst_users::insertionMovesNoOtherRow()
{
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    bench.putUser(u"Zoe/Wolf/"_s);
    const auto screen = bench.show();
    const QSignalSpy inserted(&screen->model(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy reset(&screen->model(), &QAbstractItemModel::modelReset);
    const QPersistentModelIndex zoe = screen->model().index(1);
    bench.registry()->addUserWithFirstName(u"Max"_s, u"Moor"_s, {});
    QCOMPARE(UsersBench::shown(*screen), (QStringList{u"Ann Lee"_s, u"Max Moor"_s, u"Zoe Wolf"_s}));
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted.first().at(1).toInt(), 1);
    QCOMPARE(reset.count(), 0);
    QCOMPARE(zoe.row(), 2);
}

void tst_users::insertionAfterAChangeOfNames()
{
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    bench.putUser(u"Zoe/Wolf/"_s);
    const auto screen = bench.show();
    const QPersistentModelIndex ann = screen->model().index(0);
    // Nobody tells that names have changed.
    bench.user(u"Ann"_s)->setLastName(u"Young"_s);
    bench.registry()->addUserWithFirstName(u"Max"_s, u"Moor"_s, {});
    QCOMPARE(UsersBench::shown(*screen), (QStringList{u"Max Moor"_s, u"Zoe Wolf"_s, u"Ann Young"_s}));
    QCOMPARE(ann.row(), 2);
}

void tst_users::usersOfAnotherRegistryStayOut()
{
    UsersBench bench;
    const auto screen = bench.show();
    bench.registry(List::Archived)->addUserWithFirstName(u"Ann"_s, u"Lee"_s, {});
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"2.2"_s});
}

void tst_users::usersAppearWhileHidden()
{
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    bench.openStore();
    const auto archived =
        std::make_shared<MUsersViewController>(bench.context, bench.registry(List::Archived), List::Archived);
    bench.show();
    bench.choose(u"Ann Lee"_s, u"2.6"_s);
    QCOMPARE(UsersBench::shown(*bench.screen), QStringList{u"2.2"_s});
    bench.showScreen(archived);
    QCOMPARE(UsersBench::shown(*archived), QStringList{u"Ann Lee"_s});
}

void tst_users::waitsForTheCloud_data()
{
    columns<List, QString, bool>("list", "placeholder", "canHighlight");
    row("active", List::Active, u"2.2"_s, true);
    row("archived", List::Archived, u"2.10"_s, false);
}

void tst_users::waitsForTheCloud()
{
    QFETCH(List, list);
    UsersBench bench(StoreRig::Place::Cloud);
    const auto screen = bench.show(list);
    const auto styleOfRow = [&] { return screen->cellForRow({0, 0}).style; };
    QCOMPARE(styleOfRow(), TableCell::Style::Wait);
    bench.rig.cloud.gather();
    bench.settle();
    QCOMPARE(styleOfRow(), TableCell::Style::Centered);
    QTEST(UsersBench::shown(*screen).join(u'|'), "placeholder");
    QTEST(screen->model().data(screen->model().index(0), TableModel::HighlightRole).toBool(), "canHighlight");
}

void tst_users::changedRecord()
{
    UsersBench bench;
    const QString directory = bench.putUser(u"Ann/Lee/"_s);
    bench.putUser(u"Zoe/Wolf/"_s);
    const auto screen = bench.show();
    bench.rig.put(directory + u"/user.txt"_s, "Ann\nYoung\n\n");
    screen->dataChangedForUser(nullptr);
    QCOMPARE(UsersBench::shown(*screen), (QStringList{u"Ann Lee"_s, u"Zoe Wolf"_s}));
    screen->dataChangedForUser(bench.user(u"Ann"_s));
    QCOMPARE(UsersBench::shown(*screen), (QStringList{u"Zoe Wolf"_s, u"Ann Young"_s}));
}

void tst_users::anotherRegistry()
{
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    bench.putUser(u"Zoe/Wolf/"_s, List::Archived);
    const auto screen = bench.show();
    const auto old = bench.registry();
    screen->setTamberUsers(bench.registry(List::Archived));
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Zoe Wolf"_s});
    QCOMPARE(screen->title(), u"2.9"_s);
    QVERIFY(!old->delegate());
    QCOMPARE(bench.registry(List::Archived)->delegate().get(), screen.get());
    old->addUserWithFirstName(u"Max"_s, {}, {});
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Zoe Wolf"_s});
}

void tst_users::withoutAStore()
{
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    const auto screen =
        bench.showScreen(std::make_shared<MUsersViewController>(bench.context, nullptr, List::Active));
    QCOMPARE(screen->title(), u"2.8"_s);
    QCOMPARE(screen->model().rowCount(), 0);
    QVERIFY(!screen->emptyText().isEmpty());
    QVERIFY(!UsersBench::isEnabled(*screen, Kind::Add));
    screen->rowClicked(0, 0);
    QVERIFY(!screen->presentedViewController());
    bench.openStore();
    screen->setTamberUsers(bench.registry());
    QCOMPARE(UsersBench::shown(*screen), QStringList{u"Ann Lee"_s});
    QVERIFY(screen->emptyText().isEmpty());
    QVERIFY(UsersBench::isEnabled(*screen, Kind::Add));
}

void tst_users::opensTheDocuments()
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

void tst_users::picks_data()
{
    columns<Mode>("mode");
    row("a user", Mode::Pick);
    row("a user, then a folder", Mode::PickThenFolder);
}

void tst_users::picks()
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

void tst_users::menu_data()
{
    columns<List, bool, QStringList, Anchor::Kind>("list", "isTablet", "buttons", "anchor");
    row("active, phone", List::Active, false, QStringList{u"Delete"_s, u"2.5"_s, u"2.6"_s, u"Cancel"_s},
        Anchor::Kind::TabBar);
    row("archived, tablet", List::Archived, true, QStringList{u"Delete"_s, u"2.5"_s, u"2.7"_s, u"Cancel"_s},
        Anchor::Kind::Row);
}

void tst_users::menu()
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

void tst_users::menuFollowsItsUser()
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

void tst_users::menuOfAUserWhoHasLeft_data()
{
    columns<QString>("entry");
    row("delete", u"Delete"_s);
    row("edit", u"2.5"_s);
    row("move", u"2.6"_s);
}

void tst_users::menuOfAUserWhoHasLeft()
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

void tst_users::deletion_data()
{
    columns<int, QStringList>("button", "left");
    row("cancel", 0, QStringList{u"Mrs L"_s, u"Max Moor"_s});
    row("delete", 1, QStringList{u"Max Moor"_s});
}

void tst_users::deletion()
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

void tst_users::addsAUser()
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

void tst_users::renamesAUser()
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

void tst_users::dialogMovesOrDeletes_data()
{
    columns<List, bool, QString>("list", "moves", "directory");
    row("archive", List::Active, true, u"ArchivedUsers/"_s);
    row("restore", List::Archived, true, u"ActiveUsers/"_s);
    row("delete", List::Active, false, QString());
}

void tst_users::dialogMovesOrDeletes()
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

QTEST_GUILESS_MAIN(tst_users)
#include "tst_users.moc"
