// SPDX-License-Identifier: GPL-3.0-or-later
#include "text/DeviceTables.h"

#include <QTest>

using namespace cvtamber;
using namespace Qt::StringLiterals;

class DeviceTablesTest : public QObject
{
    Q_OBJECT

private slots:
    void names();
    void languages_data();
    void languages();
    void brailleCodes_data();
    void brailleCodes();
    void models();
};

void DeviceTablesTest::names()
{
    QCOMPARE(languageName(0), u"Unknown");
    QCOMPARE(languageName(DeviceLanguage::French), u"French");
    QCOMPARE(languageName(DeviceLanguage::Greek), u"Greek");
    QCOMPARE(languageName(DeviceLanguage::Chinese), u"Chinese");
    QCOMPARE(languageName(DeviceLanguage::Polish), u"Polish");
    QCOMPARE(languageName(DeviceLanguage::Arabic), u"Arabic");
    QCOMPARE(languageName(27), u"Latvian");
    QCOMPARE(languageName(28), u"Unknown");
    QCOMPARE(languageName(-1), u"Unknown");
    QCOMPARE(brailleCodeName(8), u"BC_NORWEGIAN_8");
    QCOMPARE(brailleCodeName(14), u"BC_GERMAN_850_8");
    QCOMPARE(brailleCodeName(20), u"BC_LATVIAN");
    QCOMPARE(brailleCodeName(21), u"BC_UNKNOWN");
    QCOMPARE(brailleCodeName(-1), u"BC_UNKNOWN");
    QCOMPARE(modelName(2), u"Scribe Plus");
    QCOMPARE(modelName(4), u"Tutor System");
    for (const int unknown : {-1, 0, 5})
        QVERIFY(modelName(unknown).isEmpty());
}

void DeviceTablesTest::languages_data()
{
    QTest::addColumn<char16_t>("set");
    QTest::addColumn<unsigned>("dipSwitch");
    QTest::addColumn<QString>("name");
    const auto row = [](char16_t set, unsigned dipSwitch, const QString &name) {
        QTest::addRow("%c %u", static_cast<char>(set), dipSwitch) << set << dipSwitch << name;
    };
    row(u'A', 0, u"Australian"_s);
    row(u'A', 1, u"English"_s);
    row(u'?', 2, u"American"_s);
    row(u'A', 5, u"Italian"_s);
    row(u'A', 6, u"Unknown"_s);
    row(u'B', 3, u"Lithuanian"_s);
    row(u'B', 7, u"Polish"_s);
    row(u'B', 8, u"Latvian"_s);
    row(u'C', 7, u"Greek"_s);
    row(u'D', 5, u"Swedish"_s);
    row(u'E', 4, u"Korean"_s);
    row(u'E', 7, u"Chinese"_s);
    row(u'F', 3, u"Turkish"_s);
    row(u'G', 4, u"Arabic"_s);
    row(u'H', 3, u"Srilanka"_s);
    row(u'S', 6, u"French"_s);
    row(u'Z', 3, u"Unknown"_s);
    row(u'A', 8, u"Unknown"_s);
    row(u'B', 9, u"Unknown"_s);
    row(u'B', 255, u"Unknown"_s);
}

void DeviceTablesTest::languages()
{
    QFETCH(char16_t, set);
    QFETCH(unsigned, dipSwitch);
    QFETCH(QString, name);
    QCOMPARE(languageName(languageFromSetAndDipSwitch(set, dipSwitch)), name);
}

void DeviceTablesTest::brailleCodes_data()
{
    QTest::addColumn<int>("field");
    QTest::addColumn<QString>("inA");
    QTest::addColumn<QString>("inB");
    QTest::addColumn<QString>("inD");
    const auto same = [](int field, const QString &name) {
        QTest::addRow("%d", field) << field << name << name << name;
    };
    const auto unknown = u"BC_UNKNOWN"_s;
    same(-1, unknown);
    same(0, u"BC_ITALIAN"_s);
    same(1, u"BC_NABCC"_s);
    QTest::newRow("2") << 2 << u"BC_ENGLISH_UK"_s << u"BC_ENGLISH_UK"_s << u"BC_SWEDISH"_s;
    QTest::newRow("3") << 3 << u"BC_FRENCH"_s << u"BC_FRENCH"_s << u"BC_NORWEGIAN_6"_s;
    QTest::newRow("4") << 4 << unknown << u"BC_GERMAN_6"_s << u"BC_GERMAN_6"_s;
    QTest::newRow("5") << 5 << unknown << u"BC_GERMAN_DIN_8"_s << u"BC_NORWEGIAN_8"_s;
    QTest::newRow("6") << 6 << unknown << u"BC_GERMAN_437_8"_s << unknown;
    QTest::newRow("7") << 7 << unknown << u"BC_GERMAN_850_8"_s << unknown;
    same(8, unknown);
    same(10, u"BC_POLISH_8"_s);
    same(13, u"BC_POLISH_6"_s);
    same(15, u"BC_RUSSIAN_6"_s);
    QTest::newRow("16") << 16 << u"BC_ARABIC"_s << u"BC_LATVIAN"_s << u"BC_ARABIC"_s;
    same(17, unknown);
}

void DeviceTablesTest::brailleCodes()
{
    QFETCH(int, field);
    QFETCH(QString, inA);
    QFETCH(QString, inB);
    QFETCH(QString, inD);
    QCOMPARE(brailleCodeName(brailleCodeFromField(field, u'A')), inA);
    QCOMPARE(brailleCodeName(brailleCodeFromField(field, u'B')), inB);
    QCOMPARE(brailleCodeName(brailleCodeFromField(field, u'D')), inD);
}

void DeviceTablesTest::models()
{
    QCOMPARE(modelName(modelFromLetter(u'W')), u"Scribe");
    QCOMPARE(modelName(modelFromLetter(u'P')), u"Scribe Plus");
    QCOMPARE(modelName(modelFromLetter(u'F')), u"Expert");
    QCOMPARE(modelName(modelFromLetter(u'L')), u"Tutor System");
    QCOMPARE(modelFromLetter(u'X'), -1);
    QCOMPARE(modelFromLetter(u'w'), -1);
}

QTEST_APPLESS_MAIN(DeviceTablesTest)
#include "tst_devicetables.moc"
