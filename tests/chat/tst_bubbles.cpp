// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleBench.h"

#include "chat/text/BubbleSections.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace cvtamber;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// "[0 1][2]": the numbers of the bubbles of each section.
QString shown(const BubbleSections &sections)
{
    QString text;
    for (int section = 0; section < sections.sectionCount(); ++section) {
        QStringList numbers;
        for (const auto number : sections.section(section))
            numbers.append(QString::number(number));
        text += u'[' + numbers.join(u' ') + u']';
    }
    return text;
}

} // namespace

class tst_bubbles : public QObject
{
    Q_OBJECT

private slots:
    void grouping_data();
    void grouping();
    void datesFarApartAreNeighboursOfNobody();
    void rowsAndPlacesAgree();
    void growthIsToldAsInsertions();
    void anyGrowthEndsAsMadeAtOnce();
    void anythingElseIsAReset_data();
    void anythingElseIsAReset();
};

void tst_bubbles::grouping_data()
{
    QTest::addColumn<QList<int>>("seconds");
    QTest::addColumn<int>("snap");
    QTest::addColumn<QString>("sections");
    QTest::newRow("none") << QList<int>() << 60 << QString();
    QTest::newRow("one") << QList{5} << 60 << u"[0]"_s;
    QTest::newRow("a gap") << QList{0, 59, 120} << 60 << u"[0 1][2]"_s;
    QTest::newRow("just the interval") << QList{0, 60, 121} << 60 << u"[0 1][2]"_s;
    QTest::newRow("a chain") << QList{0, 50, 100, 150} << 60 << u"[0 1 2 3]"_s;
    QTest::newRow("out of order") << QList{200, 0, 100, 30} << 60 << u"[1 3][2][0]"_s;
    QTest::newRow("one date keeps the order") << QList{7, 7, 0, 7} << 60 << u"[2 0 1 3]"_s;
    QTest::newRow("no interval") << QList{0, 0, 1} << 0 << u"[0 1][2]"_s;
    QTest::newRow("a negative interval parts all") << QList{0, 0} << -1 << u"[0][1]"_s;
    QTest::newRow("before 1970") << QList{-500, -490} << 60 << u"[0 1]"_s;
}

void tst_bubbles::grouping()
{
    QFETCH(QList<int>, seconds);
    QFETCH(int, snap);
    QFETCH(QString, sections);
    std::vector<BubbleSections::Date> dates;
    for (const auto date : seconds)
        dates.emplace_back(std::chrono::seconds(date));
    BubbleSections atOnce{std::chrono::seconds(snap)};
    atOnce.add(dates);
    QCOMPARE(shown(atOnce), sections);
    BubbleSections grown{std::chrono::seconds(snap)};
    for (const auto date : dates)
        grown.add(std::span(&date, 1));
    QCOMPARE(shown(grown), sections);
    QCOMPARE(grown.rows(), atOnce.rows());
}

void tst_bubbles::datesFarApartAreNeighboursOfNobody()
{
    using Date = BubbleSections::Date;
    BubbleSections sections{60s};
    const std::vector<Date> dates{Date::min(), Date(0), Date::max()};
    QVERIFY(sections.add(dates));
    QCOMPARE(shown(sections), u"[0][1][2]"_s);
}

void tst_bubbles::rowsAndPlacesAgree()
{
    BubbleSections sections{1s};
    std::vector<BubbleSections::Date> dates(100);
    for (int i = 0; i < 100; ++i)
        dates[static_cast<size_t>(i)] = std::chrono::seconds(i * i % 37);
    sections.add(dates);
    int index = 0;
    for (int section = 0; section < sections.sectionCount(); ++section) {
        for (int row = 0; row < sections.rowsOf(section); ++row, ++index) {
            QCOMPARE(sections.placeOf(index), (BubbleSections::Place{section, row}));
            QCOMPARE(sections.indexOf({section, row}), index);
            QCOMPARE(BubbleSections::isHeader(sections.rows()[static_cast<size_t>(index)]), row == 0);
        }
        QCOMPARE(sections.indexOf({section, sections.rowsOf(section)}), -1);
    }
    QCOMPARE(index, static_cast<int>(sections.rows().size()));
    QCOMPARE(sections.placeOf(index), (BubbleSections::Place{-1, -1}));
    QCOMPARE(sections.placeOf(-1), (BubbleSections::Place{-1, -1}));
    QCOMPARE(sections.indexOf({sections.sectionCount(), 0}), -1);
}

void tst_bubbles::growthIsToldAsInsertions()
{
    const auto bench = BubbleBench::create();
    const QAbstractItemModelTester tester(&bench->table.model(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy inserted(&bench->table.model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&bench->table.model(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(&bench->table.model(), &QAbstractItemModel::modelReset);
    const auto add = [&](qint64 seconds) {
        inserted.clear();
        removed.clear();
        bench->bubbles.push_back(bubbleAt(seconds));
        bench->table.reloadData();
        QString told;
        for (const auto &signal : removed)
            told += u"-%1 "_s.arg(signal[1].toInt());
        for (const auto &signal : inserted)
            told += u"+%1-%2 "_s.arg(signal[1].toInt()).arg(signal[2].toInt());
        return told.trimmed();
    };
    QCOMPARE(add(0), u"+0-1"_s);
    QCOMPARE(add(100), u"+2-2"_s);
    QCOMPARE(add(1000), u"+3-4"_s);
    bench->table.reloadData();
    bench->table.setTypingBubble(NSBubbleTypingType::SomeoneElse);
    bench->table.reloadData();
    // Before the indicator.
    QCOMPARE(add(1010), u"+5-5"_s);
    // Earlier than others, within a section.
    QCOMPARE(add(50), u"+2-2"_s);
    // Joins two sections: the second header goes.
    QCOMPARE(add(1200), u"+7-8"_s);
    QCOMPARE(add(1105), u"-7 +7-7"_s);
    QCOMPARE(reset.size(), 0);
    QCOMPARE(bench->table.numberOfSections(), 3);
}

void tst_bubbles::anyGrowthEndsAsMadeAtOnce()
{
    QRandomGenerator random(7);
    for (int run = 0; run < 60; ++run) {
        const auto grown = BubbleBench::create();
        const QAbstractItemModelTester tester(&grown->table.model(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        // A copy that only hears the signals.
        QList<int> followed;
        QObject::connect(
            &grown->table.model(), &QAbstractItemModel::rowsInserted, this,
            [&](const QModelIndex &, int first, int last) { followed.insert(first, last - first + 1, 0); });
        QObject::connect(
            &grown->table.model(), &QAbstractItemModel::rowsRemoved, this,
            [&](const QModelIndex &, int first, int last) { followed.remove(first, last - first + 1); });
        QObject::connect(&grown->table.model(), &QAbstractItemModel::modelReset, this,
                         [&] { followed = QList<int>(grown->table.model().rowCount(), 0); });
        const auto span = 1 + random.bounded(20'000);
        for (int step = 0; step < 12; ++step) {
            for (auto more = random.bounded(run % 10 == 0 ? 150 : 6); more > 0; --more)
                grown->bubbles.push_back(
                    bubbleAt(random.bounded(span), QString::number(grown->bubbles.size())));
            if (run % 2 == 0)
                grown->table.takeNewBubbles();
            grown->table.setTypingBubble(static_cast<NSBubbleTypingType>(random.bounded(3)));
            grown->table.reloadData();
            const auto atOnce = BubbleBench::create();
            atOnce->bubbles = grown->bubbles;
            atOnce->table.setTypingBubble(grown->table.typingBubble());
            atOnce->table.reloadData();
            QCOMPARE(grown->spoken(), atOnce->spoken());
            QCOMPARE(followed.size(), grown->table.model().rowCount());
        }
    }
}

void tst_bubbles::anythingElseIsAReset_data()
{
    QTest::addColumn<int>("change");
    QTest::addColumn<int>("rows");
    QTest::newRow("one fewer") << 0 << 3;
    QTest::newRow("another first one, and more") << 1 << 5;
    QTest::newRow("another interval") << 2 << 6;
    QTest::newRow("none left") << 3 << 0;
    QTest::newRow("no source") << 4 << 0;
}

void tst_bubbles::anythingElseIsAReset()
{
    QFETCH(int, change);
    QFETCH(int, rows);
    auto bench = BubbleBench::create();
    UIBubbleTableView table;
    table.setBubbleDataSource(std::weak_ptr<UIBubbleTableViewDataSource>(bench));
    bench->bubbles = {bubbleAt(0), bubbleAt(10), bubbleAt(20)};
    table.reloadData();
    QSignalSpy reset(&table.model(), &QAbstractItemModel::modelReset);
    if (change == 0)
        bench->bubbles.pop_back();
    else if (change == 1)
        bench->bubbles = {bubbleAt(1), bench->bubbles[1], bench->bubbles[2], bubbleAt(30)};
    else if (change == 2)
        table.setSnapInterval(5s);
    else if (change == 3)
        bench->bubbles.clear();
    else
        bench.reset();
    table.reloadData();
    QCOMPARE(reset.size(), 1);
    QCOMPARE(table.model().rowCount(), rows);
}

QTEST_GUILESS_MAIN(tst_bubbles)
#include "tst_bubbles.moc"
