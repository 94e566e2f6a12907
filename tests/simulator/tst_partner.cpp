// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/ChatPartner.h"
#include "support/ManualRunLoop.h"

#include <QTest>

using namespace cvtamber;
using namespace std::chrono_literals;

using Activity = FirmwareModel::Activity;

namespace {

struct Bench
{
    explicit Bench(const DeviceProfile &profile)
        : partner(loop, profile, [this](const QByteArray &bytes) { typed += bytes; })
    {}
    QByteArray after(std::chrono::milliseconds time)
    {
        typed.clear();
        loop.advance(time);
        return typed;
    }

    ManualRunLoop loop;
    QByteArray typed;
    ChatPartner partner;
};

DeviceProfile script()
{
    DeviceProfile profile;
    profile.language = 15;
    profile.chat = {{{}, {"welcome\r\n"}, 2s},
                    {QStringLiteral("hello"), {"a\r\n", "b\r\n"}, 100ms},
                    {QStringLiteral("ni^ *ma*?"), {"c\r\n"}, 100ms}};
    profile.board = {{QStringLiteral("dog"), {"cat "}, 100ms}};
    return profile;
}

} // namespace

class tst_partner : public QObject
{
    Q_OBJECT

private slots:
    void answers_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("any case, any line end") << QByteArray("HELLO\n") << QByteArray("a\r\nb\r\n");
        QTest::newRow("two lines") << QByteArray("hello\r\nhello\r") << QByteArray("a\r\nb\r\na\r\nb\r\n");
        QTest::newRow("closing zero") << QByteArray("hello \0\r\n", 9) << QByteArray("a\r\nb\r\n");
        QTest::newRow("no line end yet") << QByteArray("hello") << QByteArray();
        QTest::newRow("more than asked for") << QByteArray("hello you\r\n") << QByteArray();
        QTest::newRow("any text") << QByteArray("ni^ hao ma. Da ma?\r\n") << QByteArray("c\r\n");
        QTest::newRow("parts do not overlap") << QByteArray("ni^ m?\r\n") << QByteArray();
        QTest::newRow("end is missing") << QByteArray("ni^ hao ma\r\n") << QByteArray();
        QTest::newRow("nothing said") << QByteArray("\r\n\r\n") << QByteArray();
        QTest::newRow("endless line") << QByteArray(100000, 'x') << QByteArray();
    }
    void answers()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, answer);
        Bench bench(script());
        bench.partner.activityChanged(Activity::Chat);
        QCOMPARE(bench.after(1999ms), QByteArray());
        QCOMPARE(bench.after(1ms), QByteArray("welcome\r\n"));
        QVERIFY(bench.partner.hear(line));
        QCOMPARE(bench.after(99ms), QByteArray());
        QCOMPARE(bench.after(10s), answer);
    }

    // Word by word; what is still to be typed goes with the mode.
    void board()
    {
        Bench bench(script());
        QVERIFY(!bench.partner.hear("dog "));
        bench.partner.activityChanged(Activity::Board);
        QVERIFY(bench.partner.hear("do") && bench.partner.hear("g hello \r\ndog\r\n"));
        QCOMPARE(bench.after(1s), QByteArray("cat cat "));
        bench.partner.hear("dog d");
        bench.partner.activityChanged(Activity::Editing);
        QCOMPARE(bench.after(1s), QByteArray());
        bench.partner.activityChanged(Activity::Board);
        bench.partner.hear("og ");
        QCOMPARE(bench.after(1s), QByteArray());
    }

    void forgetsWhatItCannotType()
    {
        Bench bench(script());
        bench.partner.activityChanged(Activity::Board);
        for (int i = 0; i < 1000; ++i)
            bench.partner.hear("dog ");
        QCOMPARE(bench.after(1h).size(), qsizetype{4 * ChatPartner::MostToType});
    }

    void withoutScriptTheFirmwareAnswers()
    {
        Bench bench({});
        bench.partner.activityChanged(Activity::Chat);
        QVERIFY(!bench.partner.hear("hello\r\n"));
    }
};

QTEST_APPLESS_MAIN(tst_partner)
#include "tst_partner.moc"
