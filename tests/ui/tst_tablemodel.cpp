// SPDX-License-Identifier: GPL-3.0-or-later
#include "TableBench.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const std::vector<QStringList> LongTable{
    {u"Anna"_s, u"Bo"_s, u"ann"_s, u"Zoë Łódź"_s},
    {u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"one"_s, u"two"_s}};

QStringList shownWords(const TableViewController &table)
{
    QStringList words;
    for (int row = 0; row < table.modelPointer()->rowCount(); ++row)
        words.append(table.modelPointer()->index(row, 0).data(TableModel::TextRole).toString());
    return words;
}

} // namespace

class TestTableModel : public QObject
{
    Q_OBJECT

private slots:
    void nothingBeforeTheViewHasLoaded();
    void firedSignals_data();
    void firedSignals();
    void rolesOfPlace();
    void editingChangesOnlyWhatCanBeDeleted();
    void aRowCostsOneCell();
    void insertionIntoManyRows();
    void rowAsksOfAShorterTable();
    void aPressIsOnTheShownRow();
    void actions();
    void filtered_data();
    void filtered();
    void aPressIsOnTheFilteredRow();
    void animationIsKnownWhenARowIsTold();
};

void TestTableModel::nothingBeforeTheViewHasLoaded()
{
    ManualRunLoop loop;
    RecordingPresenter presenter(loop);
    ListTable table(presenter);
    QAbstractItemModelTester tester(&table.model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    table.setLetters(QStringLiteral("ab"));
    table.insertRow({0, 1});
    table.reloadData();
    QCOMPARE(table.askedIdentities, 0);
    QCOMPARE(table.model().rowCount(), 0);
    table.loadViewIfNeeded();
    QCOMPARE(table.model().rowCount(), 2);
}

void TestTableModel::firedSignals_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("isWarned");
    const auto row = [](const char *name, const char *before, const char *after, const char *change,
                        const char *expected, bool isWarned = false) {
        QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(after)
                            << QString::fromLatin1(change) << QString::fromLatin1(expected) << isWarned;
    };
    row("row inserted", "ab cd", "ab cxd", "+1.1", "insert 3-3, places 2-4");
    row("row inserted at the end", "ab", "abx", "+0.2", "insert 2-2, places 0-2");
    row("first row", "", "x", "+0.0", "insert 0-0, places 0-0");
    row("row inserted before one known by its place", "a0", "ax0", "+0.1", "insert 1-1, places 0-2");
    row("inserted into a list that was sorted anew", "cab", "abcx", "+0.3", "move 0>3, insert 3-3, data 0-3");
    row("inserted elsewhere than told", "abc", "xabc", "+0.2", "insert 0-0, data 0-3");
    row("row deleted", "abc", "ac", "-0.1", "remove 1-1, places 0-1");
    row("last row deleted", "a", "", "-0.0", "remove 0-0");
    row("deleted from a list that was sorted anew", "cab", "ab", "-0.2", "remove 0-0, data 0-1");
    row("row reloaded", "abc", "abc", "~0.1", "data 1-1");
    row("placeholder becomes a row", "0", "a", "~0.0", "data 0-0");
    row("row becomes a placeholder", "a", "0", "~0.0", "data 0-0");
    row("reloaded row has moved", "abc", "bca", "~0.0", "move 0>3, data 0-2");
    row("section inserted", "ab c", "xy ab c", "+0", "insert 0-1, places 0-4");
    row("section inserted last", "ab", "ab c", "+1", "insert 2-2, places 2-2");
    row("section deleted", "xy ab c", "ab c", "-0", "remove 0-1, places 0-2");
    row("empty section inserted", "ab", "ab ", "+1", "");
    row("section emptied", "ab cd", " cd", "=", "remove 0-1, data 0-1");

    row("nothing changed", "abc", "abc", "=", "data 0-2");
    row("reloaded with new rows", "acf", "abcdef", "=", "insert 1-1, insert 3-4, data 0-5");
    row("reloaded with fewer", "abcdef", "acf", "=", "remove 3-4, remove 1-1, data 0-2");
    row("reloaded in a new order", "abcd", "dabc", "=", "move 3>0, data 0-3");
    row("all others", "ab", "xy", "=", "remove 0-1, insert 0-1, data 0-1");
    row("section came in front", "000000000 0", "00 000000000 0", "=", "insert 0-1, data 0-11");
    row("section went", "00 000000000 0", "000000000 0", "=", "remove 0-1, data 0-9");
    row("to nothing", "ab c", "", "=", "remove 2-2, remove 0-1");

    row("two came, one told", "ab", "axyb", "+0.1", "insert 1-2, data 0-3", true);
    row("told again", "ab", "ab", "+0.1", "data 0-1", true);
    row("another section changed as well", "ab c", "axb cd", "+0.1", "insert 1-1, insert 4-4, data 0-4",
        true);
    row("outside", "ab", "abx", "+3.0", "insert 2-2, data 0-2", true);
    row("row outside", "ab", "abx", "+0.7", "insert 2-2, data 0-2", true);
    row("deletion that did not happen", "ab", "ab", "-0.1", "data 0-1", true);
    row("section deletion told twice", "ab c", "ab c", "-0", "data 0-2", true);
    row("section of another size", "ab", "xy abc", "+0", "remove 0-1, insert 0-1, insert 2-4, data 0-4",
        true);
    row("reload of no row", "ab", "ab", "~0.2", "data 0-1", true);
}

void TestTableModel::firedSignals()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, change);
    QFETCH(QString, expected);
    QFETCH(bool, isWarned);
    TableBench bench(before);
    QSignalSpy told(bench.table.get(), &TableViewController::contentChanged);
    bench.table->setLetters(after);
    if (isWarned)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("does not fit its rows")));

    const auto verb = change.at(0);
    const auto numbers = change.mid(1).split(QLatin1Char('.'));
    const IndexPath path{numbers.first().toInt(), numbers.last().toInt()};
    const auto isSection = numbers.size() == 1;
    if (verb == QLatin1Char('='))
        bench.table->reloadData();
    else if (verb == QLatin1Char('~'))
        bench.table->reloadRow(path);
    else if (verb == QLatin1Char('+'))
        isSection ? bench.table->insertSection(path.section) : bench.table->insertRow(path);
    else
        isSection ? bench.table->deleteSection(path.section) : bench.table->deleteRow(path);

    QCOMPARE(bench.mirror.signalsSeen.join(QStringLiteral(", ")), expected);
    QCOMPARE(bench.mirror.rows, bench.words());
    QCOMPARE(told.count(), 1);
}

void TestTableModel::rolesOfPlace()
{
    TableBench bench(QStringLiteral("ab c"));
    QCOMPARE(bench.at(1, TableModel::SectionRole).toInt(), 0);
    QCOMPARE(bench.at(1, TableModel::RowRole).toInt(), 1);
    QCOMPARE(bench.at(1, TableModel::CountRole).toInt(), 2);
    QCOMPARE(bench.at(2, TableModel::SectionRole).toInt(), 1);
    QCOMPARE(bench.at(2, TableModel::RowRole).toInt(), 0);
    QCOMPARE(bench.at(2, TableModel::HeaderRole).toString(), QStringLiteral("1"));
    QCOMPARE(bench.table->model().pathOf(3), (IndexPath{-1, -1}));
    QCOMPARE(bench.table->model().pathOf(2), (IndexPath{1, 0}));
    QCOMPARE(bench.at(2, Qt::DecorationRole), QVariant());
    QCOMPARE(bench.table->model().roleNames().size(), TableModel::PlaceRole - TableModel::StyleRole + 1);
}

void TestTableModel::editingChangesOnlyWhatCanBeDeleted()
{
    TableBench bench;
    bench.table->sections = {{QStringLiteral("a"), QStringLiteral("fixed")}};
    bench.table->reloadData();
    QSignalSpy data(&bench.table->model(), &TableModel::dataChanged);
    QVERIFY(!bench.at(0, TableModel::DeletableRole).toBool());
    bench.table->setEditing(true);
    bench.table->setEditing(true);
    QVERIFY(bench.at(0, TableModel::DeletableRole).toBool());
    QVERIFY(!bench.at(1, TableModel::DeletableRole).toBool());
    QCOMPARE(data.count(), 1);
    QCOMPARE(data.first().at(2).value<QList<int>>(), QList<int>{TableModel::DeletableRole});
}

void TestTableModel::aRowCostsOneCell()
{
    TableBench bench(QStringLiteral("ab"));
    bench.table->askedCells = 0; // The mirror has read the last row.
    const auto roles = bench.table->model().roleNames();
    for (auto role = roles.keyBegin(); role != roles.keyEnd(); ++role)
        QVERIFY(bench.at(0, *role).isValid());
    QCOMPARE(bench.table->askedCells, 1);
    bench.table->sections[0][1] = QStringLiteral("b");
    bench.table->reloadRow({0, 1});
    bench.table->sections[0][1] = QStringLiteral("c");
    bench.table->reloadRow({0, 1});
    QCOMPARE(bench.at(1, TableModel::TextRole).toString(), QStringLiteral("c"));
}

void TestTableModel::insertionIntoManyRows()
{
    ManualRunLoop loop;
    RecordingPresenter presenter(loop);
    ListTable table(presenter);
    table.setLetters(QString());
    for (int row = 0; row < 10'000; ++row)
        table.sections[0].append(QString::number(row));
    table.loadViewIfNeeded();
    table.askedIdentities = 0;
    table.sections[0].insert(5'000, QStringLiteral("new"));
    table.insertRow({0, 5'000});
    QCOMPARE(table.model().rowCount(), 10'001);
    QCOMPARE(table.askedIdentities, 10'001);
    QCOMPARE(table.askedCells, 0);
}

void TestTableModel::rowAsksOfAShorterTable()
{
    TableBench bench(QStringLiteral("ab cd"));
    bench.table->sections = {{QStringLiteral("a")}};
    for (int row = 0; row < 4; ++row)
        QCOMPARE(bench.at(row, TableModel::TextRole).toString(), row == 0 ? QStringLiteral("a") : QString());
    QCOMPARE(bench.at(3, TableModel::HeaderRole).toString(), QString());
    QCOMPARE(bench.at(3, TableModel::DeletableRole).toBool(), false);
    bench.table->rowClicked(1, 1);
    QCOMPARE(bench.table->actions, QStringList());
    QCOMPARE(bench.mirror.rows, bench.words());
}

void TestTableModel::aPressIsOnTheShownRow()
{
    TableBench bench(QStringLiteral("ab"));
    auto &table = *bench.table;
    table.sections = {{QStringLiteral("n"), QStringLiteral("a"), QStringLiteral("b")}};
    table.deleteClicked(0, 0);
    QCOMPARE(table.actions, QStringList());
    QCOMPARE(bench.mirror.rows, bench.words());
    table.rowClicked(0, 1);
    QCOMPARE(table.actions, QStringList(QStringLiteral("select a")));
}

void TestTableModel::actions()
{
    TableBench bench;
    auto &table = *bench.table;
    table.sections = {{QStringLiteral("plain"), QStringLiteral("waiting"), QStringLiteral("disabled")},
                      {QStringLiteral("detailed"), QStringLiteral("switched"), QStringLiteral("fixed")}};
    table.reloadData();
    const auto touchAll = [&table] {
        for (int section = -1; section <= 2; ++section) {
            for (int row = -1; row <= 3; ++row) {
                table.rowClicked(section, row);
                table.accessoryClicked(section, row);
                table.deleteClicked(section, row);
                for (int control = 0; control <= 4; ++control)
                    table.controlClicked(section, row, control, true);
            }
        }
        table.footerButtonClicked();
        return std::exchange(table.actions, {}).join(QStringLiteral(", "));
    };
    QCOMPARE(touchAll(), QStringLiteral("select plain, select detailed, detail detailed, select switched, "
                                        "control 1 1, select fixed"));
    table.selectable = false;
    table.footer = QStringLiteral("Cancel");
    QCOMPARE(touchAll(), QStringLiteral("detail detailed, control 1 1, footer"));
    table.setEditing(true);
    QCOMPARE(touchAll(), QStringLiteral("delete plain, delete waiting, delete disabled, detail detailed, "
                                        "delete detailed, delete switched, control 1 1, footer"));
    table.selectable = true;
    table.beginDisappearing();
    QCOMPARE(touchAll(), QString());
}

// A person types `typed` over a long table, which then changes to `now`.
void TestTableModel::filtered_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("said");
    QTest::newRow("case") << "ANN"
                          << "Anna, ann"
                          << "2 of 12 left";
    QTest::newRow("accents and strokes") << "zoe lod" << u"Zoë Łódź"_s << "1 of 12 left";
    QTest::newRow("accents are typed") << u"ánn "_s << "Anna, ann"
                                       << "2 of 12 left";
    QTest::newRow("in both sections") << "o" << u"Bo, Zoë Łódź, one, two"_s << "4 of 12 left";
    QTest::newRow("none") << "xyz"
                          << ""
                          << "0 of 12 left";
}

void TestTableModel::filtered()
{
    QFETCH(QString, typed);
    TableBench bench(QStringLiteral("ab"));
    bench.table->setFilter(typed);
    QVERIFY(!bench.table->isFilterable() && bench.table->filter().isEmpty());
    bench.table->sections = LongTable;
    bench.table->reloadData();
    bench.table->setFilter(typed);
    QTEST(shownWords(*bench.table).join(u", "_s), "left");
    QTEST(bench.presenter.announcements().constLast(), "said");
    bench.table->setFilter({});
    QCOMPARE(shownWords(*bench.table), bench.words());
}

// Whatever changes under the filter: what a row names is what is done to.
void TestTableModel::aPressIsOnTheFilteredRow()
{
    TableBench bench;
    auto &table = *bench.table;
    table.sections = LongTable;
    table.reloadData();
    table.setEditing(true);
    table.setFilter(u"o"_s);
    QAbstractItemModel &shown = *table.modelPointer();
    QAbstractItemModelTester tester(&shown, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto deleteShown = [&](int row) {
        const QModelIndex index = shown.index(row, 0);
        table.deleteClicked(index.data(TableModel::SectionRole).toInt(),
                            index.data(TableModel::RowRole).toInt());
        return std::exchange(table.actions, {}).join(u", "_s);
    };
    QCOMPARE(deleteShown(1), u"delete Zoë Łódź"_s);
    QCOMPARE(deleteShown(3), u"delete two"_s);
    QCOMPARE(shown.index(3, 0).data(TableModel::PlaceRole).toInt(), 1);
    QCOMPARE(shown.index(3, 0).data(TableModel::CountRole).toInt(), 2);
    // One that is filtered away is not there for anybody.
    table.deleteClicked(0, 0);
    QCOMPARE(table.actions, QStringList());
    // A row comes in front, one goes, one is called otherwise, and the order changes.
    table.sections[0].prepend(u"Otto"_s);
    table.insertRow({0, 0});
    table.sections[1].removeAt(6);
    table.deleteRow({1, 6});
    table.sections[1][0] = u"odd"_s;
    table.reloadRow({1, 0});
    QCOMPARE(shownWords(table), (QStringList{u"Otto"_s, u"Bo"_s, u"Zoë Łódź"_s, u"odd"_s, u"two"_s}));
    QCOMPARE(deleteShown(4), u"delete two"_s);
    std::reverse(table.sections[1].begin(), table.sections[1].end());
    table.reloadData();
    QCOMPARE(deleteShown(3), u"delete two"_s);
    QCOMPARE(deleteShown(4), u"delete odd"_s);
    // The table has another thing in its place by now, and has not told it.
    table.sections[0].removeFirst();
    QCOMPARE(deleteShown(1), QString());
    QCOMPARE(shownWords(table), (QStringList{u"Bo"_s, u"Zoë Łódź"_s, u"two"_s, u"odd"_s}));
    QCOMPARE(deleteShown(1), u"delete Zoë Łódź"_s);
}

void TestTableModel::animationIsKnownWhenARowIsTold()
{
    TableBench bench(QStringLiteral("ab"));
    RowAnimation shown = RowAnimation::None;
    connect(&bench.table->model(), &TableModel::rowsAboutToBeRemoved, this,
            [&] { shown = bench.table->rowAnimation(); });
    bench.table->setLetters(QStringLiteral("a"));
    bench.table->deleteRow({0, 1}, RowAnimation::Top);
    QCOMPARE(shown, RowAnimation::Top);
    bench.table->setLetters(QString());
    bench.table->reloadData();
    QCOMPARE(shown, RowAnimation::None);
}

QTEST_GUILESS_MAIN(TestTableModel)
#include "tst_tablemodel.moc"
