// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleBench.h"

#include "chat/BubbleTable/BubbleText.h"
#include "chat/BubbleTable/UIBubbleHeaderTableViewCell.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace cvtamber;
using namespace Qt::StringLiterals;

class tst_bubblerows : public QObject
{
    Q_OBJECT

private slots:
    void textsAreMeasuredOnceWhenSeen();
    void figures_data();
    void figures();
    void otherRowsAndSizes();
    void typingIndicatorIsTheLastSection();
    void scrollingNamesTheRow();
    void keysFindMessages();
    void names();
    void titles_data();
    void titles();
    void oddTexts_data();
    void oddTexts();
    void longTextsAreCutForTheEyeAlone();
};

void tst_bubblerows::textsAreMeasuredOnceWhenSeen()
{
    const auto bench = BubbleBench::create();
    for (int i = 0; i < 1000; ++i)
        bench->bubbles.push_back(bubbleAt(i));
    bench->table.reloadData();
    QCOMPARE(bench->measurer->count, 0);
    const auto look = [&] {
        for (int row = 1; row <= 10; ++row) {
            for (int role = BubbleModel::KindRole; role <= BubbleModel::AvatarFrameRole; ++role)
                bench->value(row, role);
        }
        return std::exchange(bench->measurer->count, 0);
    };
    QCOMPARE(look(), 10);
    bench->bubbles.push_back(bubbleAt(1000));
    bench->table.reloadData();
    QCOMPARE(look(), 0);
    // The width of the window says nothing about a text as long as there is room for it.
    bench->table.setAppearance({1, false, 700});
    QCOMPARE(look(), 0);
    bench->table.setAppearance({1.5, false, 700});
    QCOMPARE(look(), 10);
    bench->table.setAppearance({1.5, true, 700});
    QCOMPARE(look(), 10);
    bench->table.setTextMeasurer(bench->measurer);
    QCOMPARE(look(), 0);
    const auto other = std::make_shared<FixedWidthMeasurer>();
    bench->table.setTextMeasurer(other);
    look();
    QCOMPARE(other->count, 10);
}

void tst_bubblerows::figures_data()
{
    QTest::addColumn<bool>("mine");
    QTest::addColumn<bool>("avatars");
    QTest::addColumn<QSizeF>("view");
    QTest::addColumn<double>("height");
    QTest::addColumn<QRectF>("bubble");
    QTest::addColumn<QRectF>("custom");
    QTest::addColumn<QRectF>("avatar");
    const QSizeF line(100, 20);
    const QSizeF high(100, 60);
    QTest::newRow("mine") << true << false << line << 36.0 << QRectF(193, 0, 127, 36)
                          << QRectF(203, 5, 100, 20) << QRectF();
    QTest::newRow("someone's") << false << false << line << 36.0 << QRectF(0, 0, 125, 36)
                               << QRectF(15, 5, 100, 20) << QRectF();
    QTest::newRow("mine, avatar") << true << true << line << 52.0 << QRectF(139, 16, 127, 36)
                                  << QRectF(149, 21, 100, 20) << QRectF(268, 2, 50, 50);
    QTest::newRow("someone's, avatar") << false << true << line << 52.0 << QRectF(54, 16, 125, 36)
                                       << QRectF(69, 21, 100, 20) << QRectF(2, 2, 50, 50);
    QTest::newRow("high, avatar") << false << true << high << 76.0 << QRectF(54, 0, 125, 76)
                                  << QRectF(69, 5, 100, 60) << QRectF(2, 26, 50, 50);
}

void tst_bubblerows::figures()
{
    QFETCH(bool, mine);
    QFETCH(bool, avatars);
    QFETCH(QSizeF, view);
    QFETCH(double, height);
    const auto data = bubbleAt(0, u"x"_s, mine ? NSBubbleType::Mine : NSBubbleType::SomeoneElse);
    const UIBubbleTableViewCell cell(*data, view, 320, avatars);
    QCOMPARE(cell.height(), height);
    QTEST(cell.bubble(), "bubble");
    QTEST(cell.customView(), "custom");
    QTEST(cell.avatar(), "avatar");
    QCOMPARE(cell.leftCap(), mine ? 15 : 21);
    QCOMPARE(cell.topCap(), 14);
    QCOMPARE(cell.bubbleImage(), mine ? u"bubbleMine.png"_s : u"bubbleSomeone.png"_s);
    QCOMPARE(cell.avatarImage(), avatars ? u"missingAvatar.png"_s : QString());
}

void tst_bubblerows::otherRowsAndSizes()
{
    const auto bench = BubbleBench::create();
    bench->bubbles = {
        NSBubbleData::dataWithText(QString(100, u'x'), second(0), NSBubbleType::Mine),
        NSBubbleData::dataWithImage({u"a.png"_s, {440, 100}}, second(1), NSBubbleType::SomeoneElse),
        NSBubbleData::dataWithImage({u"qrc:/b"_s, {10, std::numeric_limits<double>::quiet_NaN()}}, second(2),
                                    NSBubbleType::Mine)};
    bench->table.setTypingBubble(NSBubbleTypingType::Mine);
    bench->table.reloadData();
    const auto heights = [&] {
        return QList{bench->table.heightForRow({0, 0}), bench->table.heightForRow({0, 1}),
                     bench->table.heightForRow({0, 2}), bench->table.heightForRow({0, 3}),
                     bench->table.heightForRow({1, 0})};
    };
    // 25 of 8.5 units in 220; pictures no wider than a text.
    QCOMPARE(heights(), (QList<double>{28, 4 * 17 * 1.2 + 16, 66, 16, 39}));
    QCOMPARE(bench->value(2, BubbleModel::PictureRole).toString(), u"qrc:/images/a.png"_s);
    QCOMPARE(bench->value(3, BubbleModel::PictureRole).toString(), u"qrc:/b"_s);
    bench->table.setShowAvatars(true);
    bench->table.reloadData();
    QCOMPARE(heights(), (QList<double>{28, 4 * 17 * 1.2 + 16, 66, 52, 52}));
    // Doubled up to the size of the title, 35 in 500; the dates follow.
    bench->table.setAppearance({1, true, 820, 28});
    QCOMPARE(heights(), (QList<double>{28, 3 * 28 * 1.2 + 16, 116, 52, 52}));
    QCOMPARE(bench->table.fontSize(), 28);
    QCOMPARE(bench->table.headerFontSize(), 20);
    bench->table.setAppearance({1, true, 820, 40});
    QCOMPARE(bench->table.fontSize(), 34);
    // No wider than the table: 28 in 398.
    bench->table.setAppearance({1, true, 500, 28});
    QCOMPARE(heights()[1], 4 * 28 * 1.2 + 16);
    // Larger text has more room as far as there is any, and higher headers.
    bench->table.setAppearance({2, false, 390});
    QCOMPARE(heights()[0], 56);
    QCOMPARE(bench->table.fontSize(), 34);
    QCOMPARE(bench->value(1, BubbleModel::ViewRole).toRectF().width(), 16 * 17); // beside an avatar
    QCOMPARE(bench->table.heightForRow({5, 0}), 0);
}

void tst_bubblerows::typingIndicatorIsTheLastSection()
{
    const auto bench = BubbleBench::create();
    bench->table.reloadData();
    QCOMPARE(bench->table.numberOfSections(), 0);
    bench->table.setTypingBubble(NSBubbleTypingType::SomeoneElse);
    bench->table.reloadData();
    QCOMPARE(bench->table.numberOfSections(), 1);
    QCOMPARE(bench->table.numberOfRows(0), 1);
    QCOMPARE(bench->value(0, BubbleModel::KindRole).toInt(), int(BubbleModel::Typing));
    QCOMPARE(bench->value(0, BubbleModel::BubbleRole).toRectF(), QRectF(0, 4, 73, 31));
    QCOMPARE(bench->value(0, BubbleModel::ImageRole).toString(), u"typingSomeone.png"_s);
    bench->table.setTypingBubble(NSBubbleTypingType::Mine);
    bench->bubbles.push_back(bubbleAt(0));
    bench->table.reloadData();
    QCOMPARE(bench->table.numberOfSections(), 2);
    QCOMPARE(bench->table.numberOfRows(0), 2);
    QCOMPARE(bench->table.numberOfRows(1), 1);
    QCOMPARE(bench->value(2, BubbleModel::BubbleRole).toRectF(), QRectF(320 - 73, 4, 73, 31));
    QCOMPARE(bench->value(2, BubbleModel::ImageRole).toString(), u"typingMine.png"_s);
}

void tst_bubblerows::scrollingNamesTheRow()
{
    const auto bench = BubbleBench::create();
    bench->bubbles = {bubbleAt(0), bubbleAt(500), bubbleAt(501)};
    bench->table.reloadData();
    QCOMPARE(bench->table.bubbleSection().size(), 2U);
    QCOMPARE(bench->table.bubbleSection()[1], (std::vector{bench->bubbles[1], bench->bubbles[2]}));
    QSignalSpy asked(&bench->table, &UIBubbleTableView::scrollRequested);
    bench->table.scrollToRow({1, 2}, UIBubbleTableView::ScrollPosition::Bottom, true);
    bench->table.scrollToRow({1, 3}, UIBubbleTableView::ScrollPosition::Bottom, true);
    bench->table.scrollToRow({-1, -1}, UIBubbleTableView::ScrollPosition::Bottom, true);
    bench->table.scrollToRow({2, 0}, UIBubbleTableView::ScrollPosition::Bottom, true);
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0], (QVariantList{4, true, true}));
    QVERIFY(!bench->table.lastVisibleRow());
    bench->table.setLastVisibleIndex(3);
    QCOMPARE(bench->table.lastVisibleRow(), (IndexPath{1, 1}));
    // More than there are: the view has not followed yet.
    bench->table.setLastVisibleIndex(9);
    QVERIFY(!bench->table.lastVisibleRow());
}

void tst_bubblerows::keysFindMessages()
{
    const auto bench = BubbleBench::create();
    bench->bubbles = {bubbleAt(0), bubbleAt(500), bubbleAt(501)};
    bench->table.setTypingBubble(NSBubbleTypingType::SomeoneElse);
    bench->table.reloadData(); // header, 0, header, 1, 2, typing
    const auto &table = bench->table;
    QCOMPARE(table.bubbleIndexFrom(0, true), 1);
    QCOMPARE(table.bubbleIndexFrom(2, false), 1);
    QCOMPARE(table.bubbleIndexFrom(0, false), -1);
    QCOMPARE(table.bubbleIndexFrom(5, true), -1);
    QCOMPARE(table.bubbleIndexFrom(5, false), 4);
    QCOMPARE(table.bubbleIndexFrom(99, true), -1);
    const double row = bench->table.heightForRow({0, 1});
    QCOMPARE(table.bubbleIndexAfterPage(1, true, row * 2 + 28), 3);
    QCOMPARE(table.bubbleIndexAfterPage(1, true, 1), 3);
    QCOMPARE(table.bubbleIndexAfterPage(1, true, 1000), 4);
    QCOMPARE(table.bubbleIndexAfterPage(4, false, 1000), 1);
    QCOMPARE(table.bubbleIndexAfterPage(4, true, 1000), 4);
    QCOMPARE(BubbleBench::create()->table.bubbleIndexAfterPage(0, true, 100), -1);
    QCOMPARE(table.textAt(1), u"text"_s);
    QCOMPARE(table.textAt(0), QString());
    QCOMPARE(table.textAt(5), QString());
}

void tst_bubblerows::names()
{
    const auto bench = BubbleBench::create();
    const QDateTime morning(QDate(2014, 1, 5), QTime(10, 32));
    bench->bubbles = {NSBubbleData::dataWithText(u"hello"_s, morning, NSBubbleType::Mine),
                      NSBubbleData::dataWithText(u"%@\0\xd800"_s, morning, NSBubbleType::SomeoneElse),
                      NSBubbleData::dataWithImage({u"a.png"_s, {9, 9}}, morning, NSBubbleType::Mine)};
    QLocale::setDefault(QLocale(QLocale::German));
    bench->table.reloadData();
    // Without a catalogue a text is its key.
    QCOMPARE(bench->spoken(), (QStringList{u"5. Jan. 2014, 10:32"_s, u"You: hello, 10:32"_s,
                                           u"Device: %@\ufffd\ufffd, 10:32"_s, u"You: Picture, 10:32"_s}));
    QLocale::setDefault(QLocale::c());
}

void tst_bubblerows::titles_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("date");
    QTest::newRow("en_US") << u"en_US"_s << u"Jan 5, 2014, "_s;
    QTest::newRow("en_GB") << u"en_GB"_s << u"5 Jan 2014, "_s;
    QTest::newRow("fr_FR") << u"fr_FR"_s << u"5 janv. 2014, "_s;
    QTest::newRow("zh_CN") << u"zh_CN"_s << u"2014年1月5日, "_s;
    QTest::newRow("C") << u"C"_s << u"5 Jan 2014, "_s;
    QTest::newRow("hu_HU") << u"hu_HU"_s << u"2014. jan. 5., "_s;
}

void tst_bubblerows::titles()
{
    QFETCH(QString, locale);
    QFETCH(QString, date);
    const QLocale there(locale);
    const auto title =
        UIBubbleHeaderTableViewCell::title(QDateTime(QDate(2014, 1, 5), QTime(10, 32, 59)), there);
    QVERIFY2(title.startsWith(date), qUtf8Printable(title));
    QVERIFY2(title.contains(u"10:32"_s) && !title.contains(u"59"_s), qUtf8Printable(title));
}

void tst_bubblerows::oddTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("drawn");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("line ends") << u"a\r\nb\rc\nd\u2028e\u2029"_s << u"a\nb\nc\nd\ne\n"_s;
    QTest::newRow("NUL") << u"a\0b"_s << u"a\ufffdb"_s;
    QTest::newRow("controls") << u"\x1b[1m\x7f\u0085\t"_s << u"\ufffd[1m\ufffd\ufffd\t"_s;
    QTest::newRow("lone surrogates") << QString(QChar(0xdc00)) + QChar(0xd83d) << u"\ufffd\ufffd"_s;
    QTest::newRow("emoji") << u"\U0001f600"_s << u"\U0001f600"_s;
    QTest::newRow("marks and directions") << u"e\u0301\u202e\u05d0"_s << u"e\u0301\u202e\u05d0"_s;
}

void tst_bubblerows::oddTexts()
{
    QFETCH(QString, text);
    QTEST(drawableText(text), "drawn");
    for (qsizetype most = 1; most <= text.size(); ++most) {
        const auto cut = drawableText(text, most);
        QVERIFY(cut.size() <= most);
        QVERIFY(cut.isEmpty() || !cut.back().isHighSurrogate());
    }
}

void tst_bubblerows::longTextsAreCutForTheEyeAlone()
{
    const auto bench = BubbleBench::create();
    const QString word(100'000, u'w');
    bench->bubbles = {bubbleAt(0, word), bubbleAt(1, u"e"_s + QString(100'000, QChar(0x301)))};
    bench->table.reloadData();
    const auto drawn = bench->value(1, BubbleModel::TitleRole).toString();
    QVERIFY(drawn.endsWith(u"w…"_s));
    // 25 units in each of the 490 lines that fit.
    QCOMPARE(drawn.size(), 490 * 25 - 4 + 1);
    QVERIFY(bench->table.heightForRow({0, 1}) <= 9999 + 16);
    QVERIFY(bench->value(1, BubbleModel::SpokenRole).toString().contains(word));
    QCOMPARE(bench->table.textAt(1), word);
    QVERIFY(bench->value(2, BubbleModel::TitleRole).toString().endsWith(u'…'));
}

QTEST_GUILESS_MAIN(tst_bubblerows)
#include "tst_bubblerows.moc"
