// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/DeviceStateFile.h"
#include "simulator/FirmwareModel.h"

#include <QTemporaryDir>
#include <QTest>

using namespace cvtamber;

namespace {

const QByteArray Trailer("{PC\xFD}");

// A firmware and what it has said.
struct Bench
{
    explicit Bench(const DeviceProfile &profile = {})
        : firmware(profile)
    {
        firmware.setOutput([this](const QByteArray &, const QByteArray &bytes) { said += bytes; });
    }

    QByteArray ask(const QByteArray &bytes)
    {
        said.clear();
        firmware.receive(bytes);
        return said;
    }
    int field(int number) { return ask("{PCR}").split(',').at(number).trimmed().toInt(); }

    FirmwareModel firmware;
    QByteArray said;
};

DeviceProfile profileWith(const QList<SimulatedFile> &files)
{
    DeviceProfile profile;
    profile.files = files;
    return profile;
}

} // namespace

class tst_firmware : public QObject
{
    Q_OBJECT

private slots:
    void answers_data()
    {
        QTest::addColumn<int>("linkCode");
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("link") << 17 << QByteArray("PC S2 ON") << QByteArray("{PC\x11}");
        QTest::newRow("link, code 0") << 0 << QByteArray("PC USB ON") << QByteArray("{PC\0}", 5);
        QTest::newRow("link, type 2") << 46 << QByteArray("PC S2 ON") << QByteArray("{PC.}");
        QTest::newRow("version, type 1") << 17 << QByteArray("VER") << QByteArray("2.1D0041");
        QTest::newRow("version, type 3") << 34 << QByteArray("VER") << QByteArray("2.1D00487654321P");
        QTest::newRow("extended version") << 17 << QByteArray("VER1") << QByteArray("2.1D00487654321P5");
        QTest::newRow("state") << 17 << QByteArray("PCR")
                               << QByteArray(
                                      "3, 0, 0, 0, 0, 0, 0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1,"
                                      " 0, 0, 1, 0, 2, 0, 0, 0");
        QTest::newRow("files") << 17 << QByteArray("DIR") << QByteArray("A.TXT 3\r\nB.TXT 0\r\n");
        QTest::newRow("free") << 17 << QByteArray("FREE") << QByteArray("987\r\n");
        QTest::newRow("fetch") << 17 << QByteArray("PR A.TXT") << QByteArray("a{c" + Trailer);
        QTest::newRow("fetch of an empty file") << 17 << QByteArray("PR B.TXT") << Trailer;
        QTest::newRow("fetch of no file") << 17 << QByteArray("PR a.txt") << Trailer;
        for (const char *silent :
             {"PC S2 OFF", "NW",        "NW OFF", "USB HS S", "USB HS H", "USB OFF",  "USB ON", "S2 ON",
              "S1 OFF",    "EM OFF",    "EM ON",  "ADV",      "BUSB",     "BS2",      "FE",     "END",
              "FM END",    "DEL A.TXT", "FGR 1",  "BGR 2",    "DFLN OZ",  "DFLN USA", "BOARD",  "CHAT",
              "BEGIN X",   "FM X",      "FLASH",  "NOSUCH",   "PR",       ""})
            QTest::newRow(silent) << 17 << QByteArray(silent) << QByteArray();
    }
    // Every command, in both brace forms and in pieces of every size.
    void answers()
    {
        QFETCH(int, linkCode);
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, answer);
        DeviceProfile profile = profileWith({{"A.TXT", "a{c"}, {"B.TXT", ""}});
        profile.storageLimit = 1000;
        profile.linkCode = linkCode;
        profile.serial = "87654321";
        profile.firmware = "2.1D004";
        profile.languageSwitch = 5;
        profile.language = 10;
        profile.stateFields = {{0, 3}, {26, 2}};
        for (const QByteArray &wrapped :
             {QByteArray('{' + command + '}'), QByteArray("{{" + command + "}}")}) {
            for (qsizetype size = 1; size <= wrapped.size(); ++size) {
                Bench bench(profile);
                for (qsizetype at = 0; at < wrapped.size(); at += size)
                    bench.firmware.receive(wrapped.mid(at, size));
                QCOMPARE(bench.said, answer);
                QCOMPARE(bench.firmware.receivedCommands(), QList<QByteArray>{command});
                QCOMPARE(bench.firmware.embosserPage(), QByteArray());
            }
        }
    }

    void linkReplyForms()
    {
        DeviceProfile profile;
        profile.linkReply = LinkReplyForm::Lower;
        QCOMPARE(Bench(profile).ask("{{PC S2 ON}}"), QByteArray("{pc\x11}"));
        profile.linkReply = LinkReplyForm::Doubled;
        QCOMPARE(Bench(profile).ask("{{PC S2 ON}}"), QByteArray("{{PC\x11}}"));
    }

    void textOrCommand_data()
    {
        QTest::addColumn<QByteArray>("sent");
        QTest::addColumn<QByteArray>("page");
        QTest::newRow("text around a command") << QByteArray("a{NW}b") << QByteArray("ab");
        QTest::newRow("open brace before a command") << QByteArray("a{b{NW}c") << QByteArray("a{bc");
        QTest::newRow("three braces") << QByteArray("{{{NW}}c") << QByteArray("{c");
        QTest::newRow("one closing brace short") << QByteArray("{{NW}c") << QByteArray("c");
        QTest::newRow("closing brace alone") << QByteArray("a}b") << QByteArray("a}b");
        QTest::newRow("line end inside braces") << QByteArray("{NW\n}") << QByteArray("{NW\n}");
        QTest::newRow("unknown command") << QByteArray("a{HELLO}b") << QByteArray("ab");
        QTest::newRow("never closed")
            << QByteArray('{' + QByteArray(5000, 'x')) << QByteArray('{' + QByteArray(5000, 'x'));
    }
    void textOrCommand()
    {
        QFETCH(QByteArray, sent);
        QFETCH(QByteArray, page);
        Bench bench;
        for (const char byte : sent)
            bench.firmware.receive(QByteArrayView(&byte, 1));
        QCOMPARE(bench.firmware.embosserPage(), page);
    }

    void stores_data()
    {
        QTest::addColumn<QByteArray>("sent");
        QTest::addColumn<QByteArray>("listing");
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("plain") << QByteArray("{BEGIN N}Hello{END}") << QByteArray("OLD 3\r\nN 5\r\n")
                               << QByteArray("Hello");
        QTest::newRow("braces in the body") << QByteArray("{{BEGIN N}}a{b}{c{{END}}")
                                            << QByteArray("OLD 3\r\nN 6\r\n") << QByteArray("a{b}{c");
        QTest::newRow("every byte but a brace survives")
            << QByteArray("{BEGIN N}\0\x02\x81\xff\r\n{END}", 20) << QByteArray("OLD 3\r\nN 6\r\n")
            << QByteArray("\0\x02\x81\xff\r\n", 6);
        QTest::newRow("forward translation")
            << QByteArray("{ADV}{FGR 2}{FM N}Hi{FM END}{ADV}") << QByteArray("OLD 3\r\nN 23\r\n")
            << QByteArray("<braille 2>Hi</braille>");
        QTest::newRow("no translation without advanced mode")
            << QByteArray("{FM N}Hi{FM END}") << QByteArray("OLD 3\r\nN 2\r\n") << QByteArray("Hi");
        QTest::newRow("a command in the body is obeyed")
            << QByteArray("{BEGIN N}a{DEL OLD}b{END}") << QByteArray("N 2\r\n") << QByteArray("ab");
        QTest::newRow("same name") << QByteArray("{BEGIN N}1{END}{BEGIN N}22{END}")
                                   << QByteArray("OLD 3\r\nN 2\r\n") << QByteArray("22");
        QTest::newRow("an end too many")
            << QByteArray("{BEGIN N}1{END}{END}2") << QByteArray("OLD 3\r\nN 1\r\n") << QByteArray("1");
        QTest::newRow("never ended, next begins") << QByteArray("{BEGIN N}1{BEGIN M}2{END}{DEL M}")
                                                  << QByteArray("OLD 3\r\nN 1\r\n") << QByteArray("1");
    }
    void stores()
    {
        QFETCH(QByteArray, sent);
        QFETCH(QByteArray, listing);
        QFETCH(QByteArray, stored);
        Bench bench(profileWith({{"OLD", "old"}}));
        QCOMPARE(bench.ask(sent), QByteArray());
        QCOMPARE(bench.ask("{DIR}"), listing);
        QCOMPARE(bench.ask("{PR N}"), QByteArray(stored + Trailer));
    }

    void deletesTheFirstOfTwo()
    {
        Bench bench(profileWith({{"A", "1"}, {"B", "2"}, {"A", "33"}}));
        QCOMPARE(bench.ask("{DEL A}{DEL NONE}{DIR}"), QByteArray("B 1\r\nA 2\r\n"));
    }

    void brailleSizes_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QByteArray>("size");
        QTest::newRow("braille") << int(SizeStyle::Braille) << QByteArray("#AJCEFGHIBD");
        QTest::newRow("French") << int(SizeStyle::FrenchBraille) << QByteArray(",*#%:$]\\[<?");
    }
    void brailleSizes()
    {
        QFETCH(int, style);
        QFETCH(QByteArray, size);
        QCOMPARE(DeviceStorage::sizeText(1035678924, SizeStyle(style)), size);
    }

    void backTranslation_data()
    {
        QTest::addColumn<QByteArray>("modes");
        QTest::addColumn<QByteArray>("plain");
        QTest::addColumn<QByteArray>("braille");
        const QByteArray marked("<braille 1>Hi</braille>");
        QTest::newRow("none") << QByteArray() << QByteArray("Hi") << marked;
        QTest::newRow("S2") << QByteArray("{PC S2 ON}{ADV}{S2 ON}{BS2}") << QByteArray("<print 1>Hi</print>")
                            << QByteArray("Hi");
        QTest::newRow("off again") << QByteArray("{ADV}{BS2}{BS2}") << QByteArray("Hi") << marked;
        QTest::newRow("not in advanced mode") << QByteArray("{BS2}") << QByteArray("Hi") << marked;
        QTest::newRow("other port") << QByteArray("{ADV}{BUSB}") << QByteArray("Hi") << marked;
        QTest::newRow("USB, grade 2") << QByteArray("{PC USB ON}{BGR 2}{ADV}{USB ON}{BUSB}")
                                      << QByteArray("<print 2>Hi</print>") << QByteArray("Hi");
    }
    void backTranslation()
    {
        QFETCH(QByteArray, modes);
        QFETCH(QByteArray, plain);
        QFETCH(QByteArray, braille);
        Bench bench(profileWith({{"P", "Hi"}, {"B", "<braille 1>Hi</braille>"}}));
        bench.ask(modes);
        QCOMPARE(bench.ask("{PR P}"), QByteArray(plain + Trailer));
        QCOMPARE(bench.ask("{PR B}"), QByteArray(braille + Trailer));
    }

    void stateRecordIsLive_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<int>("field");
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("after");
        QTest::newRow("BS2") << QByteArray("{BS2}") << 13 << 0 << 1;
        QTest::newRow("BUSB") << QByteArray("{BUSB}") << 19 << 0 << 1;
        QTest::newRow("embosser") << QByteArray("{EM OFF}") << 21 << 1 << 0;
        QTest::newRow("embosser on") << QByteArray("{EM OFF}{EM ON}") << 21 << 1 << 1;
        QTest::newRow("FE") << QByteArray("{FE}") << 23 << 0 << 1;
        QTest::newRow("FE twice") << QByteArray("{FE}{FE}") << 23 << 0 << 0;
        QTest::newRow("backward grade") << QByteArray("{BGR 2}") << 24 << 1 << 2;
        QTest::newRow("forward grade") << QByteArray("{FGR 2}") << 26 << 1 << 2;
        QTest::newRow("no grade") << QByteArray("{FGR two}") << 26 << 1 << 1;
        QTest::newRow("advanced") << QByteArray("{ADV}") << 28 << 0 << 1;
    }
    void stateRecordIsLive()
    {
        QFETCH(QByteArray, command);
        QFETCH(int, field);
        QFETCH(int, before);
        QFETCH(int, after);
        Bench bench;
        QCOMPARE(bench.field(field), before);
        bench.ask(command);
        QCOMPARE(bench.field(field), after);
    }

    void embosses()
    {
        Bench bench;
        bench.ask("one {ADV}{FE}two {{NW}}three{FE}{ADV} four{EM OFF}lost{EM ON}.");
        QCOMPARE(bench.firmware.embosserPage(), QByteArray("one <braille 1>two three</braille> four."));
        QCOMPARE(bench.firmware.droppedBytes(), 4);
    }

    void chatAndBoard()
    {
        Bench bench;
        QCOMPARE(bench.ask("{CHAT}Hel"), QByteArray());
        QCOMPARE(bench.ask("lo\rnext"), QByteArray("Hello\r"));
        QCOMPARE(bench.ask("{CHAT}x"), QByteArray());
        QCOMPARE(bench.firmware.embosserPage(), QByteArray("x"));
        QCOMPARE(bench.ask("{BOARD}a\b{b} }"), QByteArray("a\b{b} }"));
        bench.firmware.linkClosed();
        QCOMPARE(bench.firmware.activity(), FirmwareModel::Activity::Editing);
        QCOMPARE(bench.ask("{CHAT}" + QByteArray(10000, 'x')).size(), 2 * 4096);
    }

    void linkEndKeepsWhatCame()
    {
        Bench bench;
        bench.ask("{ADV}{BEGIN HALF}first hal{E");
        bench.firmware.linkClosed();
        QCOMPARE(bench.ask("ND}{PR HALF}"), QByteArray("first hal" + Trailer));
        QCOMPARE(bench.firmware.embosserPage(), QByteArray("ND}"));
        QCOMPARE(bench.field(28), 1);
    }

    void sound()
    {
        Bench bench;
        QCOMPARE(bench.ask("{{FLASH}}{234567}9"), QByteArray());
        QCOMPARE(bench.ask("abcd}"), QByteArray("\x02"));
        bench.ask(QByteArray("s\0{u", 4));
        bench.ask("nd{NW}page");
        QCOMPARE(bench.firmware.soundHeader(), QByteArray("{234567}9abcd}"));
        QCOMPARE(bench.firmware.soundData(), QByteArray("s\0{und", 6));
        QCOMPARE(bench.firmware.embosserPage(), QByteArray("page"));
    }

    void memoryIsBounded()
    {
        DeviceProfile profile = profileWith({{"A", "12345"}});
        profile.storageLimit = 10;
        Bench bench(profile);
        bench.ask("{BEGIN B}123456{END}{BEGIN LONGNAME}x{END}" + QByteArray(100, 'p'));
        QCOMPARE(bench.ask("{DIR}"), QByteArray("A 5\r\nB 3\r\n"));
        QCOMPARE(bench.firmware.embosserPage().size(), 10);
        QCOMPARE(bench.firmware.droppedBytes(), 3 + 1 + 90);
        for (int i = 0; i < 5000; ++i)
            bench.ask("{NW}");
        QCOMPARE(bench.firmware.commandCount("NW"), 5000);
        QCOMPARE(bench.firmware.receivedCommands().size(), 4096);
    }

    void stateFile_data()
    {
        QTest::addColumn<QByteArray>("damaged");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("no JSON") << QByteArray("\xff\0{", 3);
        QTest::newRow("other version") << QByteArray("{\"version\": 2}");
        QTest::newRow("bad base64") << QByteArray(
            "{\"version\":1,\"backwardGrade\":1,\"forwardGrade\":1,"
            "\"embosserPage\":\"\",\"files\":[{\"name\":\"?\",\"bytes\":\"\"}]}");
    }
    void stateFile()
    {
        QFETCH(QByteArray, damaged);
        QTemporaryDir folder;
        const DeviceStateFile file(folder.filePath(QStringLiteral("deeper")), "../x/y z");
        QVERIFY(!file.load().state);
        const SavedDeviceState state{{{"A", QByteArray("\0\xff", 2)}, {"A", ""}}, 1, 2, "page"};
        QCOMPARE(file.save(state), QString());
        QVERIFY(file.path().startsWith(folder.path() + QStringLiteral("/deeper/device-")));
        const auto loaded = file.load();
        QVERIFY(loaded.state);
        QCOMPARE(loaded.state->files, state.files);
        QCOMPARE(loaded.state->forwardGrade, 2);
        QCOMPARE(loaded.state->embosserPage, QByteArray("page"));

        QFile raw(file.path());
        QVERIFY(raw.open(QIODevice::WriteOnly) && raw.write(damaged) == damaged.size());
        raw.close();
        QVERIFY(!file.load().error.isEmpty());
        QVERIFY(QFile::exists(file.path() + QStringLiteral(".damaged")));
        QVERIFY(file.load().error.isEmpty() && !file.load().state);
    }
};

QTEST_APPLESS_MAIN(tst_firmware)
#include "tst_firmware.moc"
