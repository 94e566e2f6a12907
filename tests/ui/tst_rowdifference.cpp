// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/RowDifference.h"

#include <QtTest>

#include <algorithm>

using namespace cvtamber;

namespace {

// One letter a row; "0" is a row that is known by its place.
RowIdentities rowsOf(const QString &letters)
{
    RowIdentities rows;
    for (const auto letter : letters)
        rows.push_back(letter == QLatin1Char('0') ? 0 : letter.unicode());
    return rows;
}

QString numbers(const std::vector<int> &places)
{
    QStringList list;
    for (const auto place : places)
        list.append(QString::number(place));
    return list.join(QLatin1Char(' '));
}

} // namespace

class TestRowDifference : public QObject
{
    Q_OBJECT

private slots:
    void places_data();
    void places();
    void sections_data();
    void sections();
    void staying_data();
    void staying();
};

void TestRowDifference::places_data()
{
    QTest::addColumn<QString>("old");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *old, const char *now, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(old) << QString::fromLatin1(now)
                            << QString::fromLatin1(expected);
    };
    row("nothing", "", "", "");
    row("from nothing", "", "ab", "");
    row("to nothing", "ab", "", "-1 -1");
    row("the same", "abc", "abc", "0 1 2");
    row("inserted", "abc", "axbc", "0 2 3");
    row("deleted", "abc", "ac", "0 -1 1");
    row("reordered", "abcd", "cadb", "1 3 0 2");
    row("all others", "abc", "xyz", "-1 -1 -1");
    row("reordered, one gone, one new", "abcd", "dxab", "2 3 -1 0");
    row("by place, more", "00", "000", "0 1");
    row("by place, fewer", "000", "00", "0 1 -1");
    row("last one by place", "ab0", "abc0", "0 1 3");
    row("placeholder replaced", "0", "a", "-1");
    row("by place among others", "0a0b", "b0a0", "1 2 3 0");
    row("the same thing twice", "aba", "aab", "0 2 1");
    row("twice, then once", "abab", "ba", "1 0 -1 -1");
}

void TestRowDifference::places()
{
    QFETCH(QString, old);
    QFETCH(QString, now);
    QFETCH(QString, expected);
    QCOMPARE(numbers(placesOf(rowsOf(old), rowsOf(now))), expected);
}

void TestRowDifference::sections_data()
{
    QTest::addColumn<QString>("old");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *old, const char *now, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(old) << QString::fromLatin1(now)
                            << QString::fromLatin1(expected);
    };
    row("one before", "000000000 0", "00 000000000 0", "1 2");
    row("the first one gone", "00 000000000 0", "000000000 0", "-1 0 1");
    row("one changed", "ab cd", "ab cde", "0 1");
    row("both changed", "ab cd", "abx cdx", "0 1");
    row("one shrinks, one goes", "000000000 0", "0 0", "0 1");
    row("all go", "ab cd", "", "-1 -1");
    row("one changed, one added behind", "ab", "abx cd", "0");
    row("one added between", "ab cd", "ab xy cd", "0 2");
}

void TestRowDifference::sections()
{
    QFETCH(QString, old);
    QFETCH(QString, now);
    QFETCH(QString, expected);
    const auto sectionsOf = [](const QString &text) {
        std::vector<RowIdentities> sections;
        for (const auto &letters : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            sections.push_back(rowsOf(letters));
        return sections;
    };
    QCOMPARE(numbers(sectionPlaces(sectionsOf(old), sectionsOf(now))), expected);
}

void TestRowDifference::staying_data()
{
    QTest::addColumn<std::vector<int>>("places");
    QTest::addColumn<int>("moving");
    QTest::newRow("nothing") << std::vector<int>{} << 0;
    QTest::newRow("ascending") << std::vector<int>{1, 4, 9} << 0;
    QTest::newRow("first to the end") << std::vector<int>{3, 0, 1, 2} << 1;
    QTest::newRow("last to the start") << std::vector<int>{1, 2, 3, 0} << 1;
    QTest::newRow("two swapped") << std::vector<int>{0, 3, 2, 1, 4} << 2;
    QTest::newRow("descending") << std::vector<int>{4, 3, 2, 1, 0} << 4;
}

void TestRowDifference::staying()
{
    QFETCH(std::vector<int>, places);
    QFETCH(int, moving);
    const auto isStaying = stayingRows(places);
    QCOMPARE(isStaying.size(), places.size());
    QCOMPARE(static_cast<int>(std::count(isStaying.begin(), isStaying.end(), false)), moving);
    int last = -1;
    for (size_t row = 0; row < places.size(); ++row) {
        if (!isStaying[row])
            continue;
        QVERIFY(places[row] > last);
        last = places[row];
    }
}

QTEST_GUILESS_MAIN(TestRowDifference)
#include "tst_rowdifference.moc"
