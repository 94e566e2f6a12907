// SPDX-License-Identifier: GPL-3.0-or-later
#include "TableBench.h"

#include <map>
#include <random>

using namespace cvtamber;

namespace {

// Changes that are told wrongly on purpose.
void dropWarnings(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!text.contains(QLatin1String("does not fit its rows")))
        fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

class TestTableChanges : public QObject
{
    Q_OBJECT

private slots:
    void manyRowsInANewOrder();
    void randomChanges_data();
    void randomChanges();
};

void TestTableChanges::manyRowsInANewOrder()
{
    TableBench bench(QStringLiteral("xy  z"));
    for (int row = 0; row < 200; ++row)
        bench.table->sections[1].append(QStringLiteral("row %1").arg(row));
    bench.table->reloadData();
    bench.clear();
    const QPersistentModelIndex before = bench.table->model().index(1);
    const QPersistentModelIndex watched = bench.table->model().index(2 + 7);
    const QPersistentModelIndex behind = bench.table->model().index(2 + 200);
    auto &rows = bench.table->sections[1];
    std::reverse(rows.begin(), rows.end());
    rows.insert(50, QStringLiteral("new"));
    bench.table->insertRow({1, 50});
    QCOMPARE(bench.mirror.signalsSeen, (QStringList{QStringLiteral("layout"), QStringLiteral("insert 52-52"),
                                                    QStringLiteral("data 2-202")}));
    QCOMPARE(bench.mirror.rowsBeforeData, bench.words());
    QCOMPARE(watched.data().toString(), QStringLiteral("row 7"));
    QCOMPARE(watched.row(), 2 + 193);
    QCOMPARE(before.data().toString(), QStringLiteral("y"));
    QCOMPARE(behind.data().toString(), QStringLiteral("z"));
}

void TestTableChanges::randomChanges_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 12; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

namespace {

// Changes the lists of a table at random, and tells it rightly, wrongly or as a whole.
class RandomChanges
{
public:
    RandomChanges(ListTable &table, unsigned seed)
        : _table(table)
        , _random(seed)
    {}

    // Whether rows may have become others in place.
    bool next()
    {
        const auto section = below(_table.numberOfSections() + 1);
        switch (section == _table.numberOfSections() ? 7 : below(9)) {
        case 0:
        case 1:
            insertRow(section);
            return false;
        case 2:
            deleteRow(section);
            return false;
        case 3:
            shuffle(section);
            insertRow(section);
            return false;
        case 4:
            shuffle(section);
            deleteRow(section);
            return false;
        case 5:
            return replaceRow(section);
        case 6:
            _table.sections.erase(_table.sections.begin() + section);
            _table.deleteSection(section);
            return false;
        case 7:
            _table.sections.insert(_table.sections.begin() + section, words(below(5)));
            _table.insertSection(section);
            return false;
        default:
            mixUp();
            return false;
        }
    }

private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(_random); }
    QStringList &at(int section) { return _table.sections[static_cast<size_t>(section)]; }
    QString word() { return QString::number(++_lastWord); }
    QStringList words(int count)
    {
        QStringList list;
        for (int row = 0; row < count; ++row)
            list.append(word());
        return list;
    }

    void insertRow(int section)
    {
        const auto row = below(static_cast<int>(at(section).size()) + 1);
        at(section).insert(row, word());
        _table.insertRow({section, row});
    }

    void deleteRow(int section)
    {
        if (at(section).isEmpty())
            return;
        const auto row = below(static_cast<int>(at(section).size()));
        at(section).removeAt(row);
        _table.deleteRow({section, row});
    }

    bool replaceRow(int section)
    {
        if (at(section).isEmpty())
            return false;
        const auto row = below(static_cast<int>(at(section).size()));
        at(section)[row] = word();
        _table.reloadRow({section, row});
        return true;
    }

    void shuffle(int section) { std::shuffle(at(section).begin(), at(section).end(), _random); }

    void mixUp()
    {
        for (int section = 0; section < _table.numberOfSections(); ++section) {
            shuffle(section);
            at(section).remove(0, below(static_cast<int>(at(section).size()) + 1));
            at(section) += words(below(6));
        }
        if (below(3) == 0)
            _table.insertRow({0, below(5)});
        else
            _table.reloadData();
    }

    ListTable &_table;
    std::mt19937 _random;
    int _lastWord = 0;
};

} // namespace

void TestTableChanges::randomChanges()
{
    QFETCH(unsigned, seed);
    qInstallMessageHandler(dropWarnings);
    const auto handler = qScopeGuard([] { qInstallMessageHandler(nullptr); });
    TableBench bench(QStringLiteral("abc de"));
    RandomChanges changes(*bench.table, seed);
    for (int step = 0; step < 100; ++step) {
        std::map<QString, QPersistentModelIndex> kept;
        for (int row = 0; row < bench.table->model().rowCount(); ++row)
            kept.emplace(bench.at(row, TableModel::TextRole).toString(), bench.table->model().index(row));
        bench.clear();
        const auto isReplaced = changes.next();
        const auto words = bench.words();
        QCOMPARE(bench.mirror.rows, words);
        QCOMPARE(bench.table->model().rowCount(), static_cast<int>(words.size()));
        // The steps alone lead there: no row has to be read anew to be right.
        if (!isReplaced)
            QCOMPARE(bench.mirror.rowsBeforeData, words);
        QVERIFY(!bench.mirror.signalsSeen.contains(QStringLiteral("reset")));
        for (const auto &[text, index] : kept) {
            if (index.isValid() && !isReplaced)
                QCOMPARE(index.data().toString(), text);
        }
    }
}

QTEST_GUILESS_MAIN(TestTableChanges)
#include "tst_tablechanges.moc"
