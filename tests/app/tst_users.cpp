// SPDX-License-Identifier: GPL-3.0-or-later
// The users screen: its rows, and what becomes of them when the registry changes.
#include "UsersBench.h"
#include "app/UserTexts.h"
#include "support/Rows.h"

#include <QSignalSpy>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using List = MUsersViewController::List;
using Mode = MUsersViewController::Mode;
using Kind = BarButtonItem::Kind;

class tst_users : public QObject
{
    Q_OBJECT

private slots:
    void descriptions_data();
    void descriptions();
    void rows_data();
    void rows();
    void usersOfOneNameAreSpokenApart();
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

void tst_users::usersOfOneNameAreSpokenApart()
{
    UsersBench bench;
    bench.rig.put(bench.putUser(u"Ann/Lee/"_s) + u"/Letter.tamber"_s, "L");
    bench.putUser(u"Ben/Okoro/"_s);
    const auto screen = bench.show();
    QCOMPARE(UsersBench::shown(*screen, TableModel::AccessibleNameRole), (QStringList{{}, {}}));
    bench.registry()->addUserWithFirstName(u"Anna"_s, u"Leeds"_s, u"Ann Lee"_s);
    bench.settle();
    QCOMPARE(UsersBench::shown(*screen, TableModel::AccessibleNameRole),
             (QStringList{u"Ann Lee, 1 document"_s, u"Ann Lee, Anna Leeds, 0 documents"_s, {}}));
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

QTEST_GUILESS_MAIN(tst_users)
#include "tst_users.moc"
