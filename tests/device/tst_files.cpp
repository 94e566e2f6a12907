// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DeviceRig.h"
#include "support/Rows.h"

#include <limits>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Fields = QList<std::pair<int, QByteArray>>;

// Files on the device: the listing, fetching, storing, embossing, deleting.
class tst_Files : public QObject
{
    Q_OBJECT

private slots:
    void listingLinesAreRead_data()
    {
        columns<QByteArray, QByteArray, QString, qint64>("language", "line", "name", "size");
        const auto add = [](const char *title, const QByteArray &line, qint64 size,
                            const QString &name = u"A"_s,
                            const QByteArray &language = "1") { row(title, language, line, name, size); };
        add("decimal", "A 120", 120);
        add("decimal and more", "A 12abc 77", 12);
        add("plus sign", "A +7", 7);
        add("spaces between tokens", "  A   12  x", 12);
        add("no size", "A", 0);
        add("space and no size", "A ", 0);
        add("large", "A 3000000000", 3000000000);
        add("braille", "A #BC", 23);
        add("braille, lower case", "A #bc", 23);
        add("braille zero digit", "A #AJ", 10);
        add("braille, number sign alone", "A #", 0);
        add("braille, bad digit", "A #K", 0);
        add("braille, bad first digit", "A #KA", 0);
        add("no number sign", "A BC", 0);
        add("French digits", "A ,1*", 21, u"A"_s, "4");
        add("French nine is ten", "A ,9", 10, u"A"_s, "4");
        add("French symbols", "A ,*<%?:$]\\[#", 1234567890, u"A"_s, "4");
        add("French zero", "A ,<0", 20, u"A"_s, "4");
        add("French decimal", "A 120", 120, u"A"_s, "4");
        add("French without comma", "A #BC", 0, u"A"_s, "4");
        add("French bad digit", "A ,1A", 0, u"A"_s, "4");
        add("comma elsewhere", "A ,1*", 0);
        add("control bytes in the name", "A\x1b[2J 5", 5, u"A\x1b[2J"_s);
        add("raw code page", "\xe9.TXT 5", 5, u"\u00e9.TXT"_s);
    }

    void listingLinesAreRead()
    {
        QFETCH(QByteArray, language);
        QFETCH(QByteArray, line);
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply({{8, language}}), DeviceRig::defaultVersion(),
                     "FIRST 1\r\n" + line + "\r\n\r\n" + "LAST 2\n");
        QCOMPARE(rig.device->getFilesCount(), 3);
        QTEST(rig.device->getFileName(1), "name");
        QTEST(rig.device->getFileSize(1), "size");
        QCOMPARE(rig.device->getFileSize(2), 2);
    }

    void listingReplacesTheListAndRunsItsHandlerOnce()
    {
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(), DeviceRig::defaultVersion(), "A 1\r\nB 2\r\n");
        int first = 0;
        int second = 0;
        rig.device->refreshFilesWithCompletionHandler([&] { ++first; });
        rig.device->refreshFilesWithCompletionHandler([&] { ++second; });
        QCOMPARE(rig.drain(), "{DIR}{DIR}");
        QCOMPARE(rig.device->getFilesCount(), 2);
        rig.reply("");
        QCOMPARE(rig.device->getFilesCount(), 0);
        QCOMPARE(first, 0);
        QCOMPARE(second, 1);
        rig.device->sendWaitCommand(5);
        rig.reply("C 3");
        QCOMPARE(second, 1);
        QCOMPARE(rig.device->files().at(0).description(), u"name: C | size: 3"_s);
    }

    void listingMayBeAskedForInItsHandler()
    {
        DeviceRig rig;
        rig.identify();
        int again = 0;
        rig.device->refreshFilesWithCompletionHandler(
            [&] { rig.device->refreshFilesWithCompletionHandler([&] { ++again; }); });
        rig.reply("A 1");
        QCOMPARE(rig.device->pendingCommand(), 5);
        rig.reply("B 1");
        QCOMPARE(again, 1);
        QCOMPARE(rig.device->getFileName(0), u"B"_s);
    }

    void hugeListings_data()
    {
        columns<QByteArray, int>("line", "lines");
        row("many lines", "NAME.TXT 17\r\n"_ba, 20000);
        row("one line of a megabyte", QByteArray(1 << 20, 'x'), 1);
        row("a size of a megabyte", "A " + QByteArray(1 << 20, '9'), 1);
        row("a braille size of a megabyte", "A #" + QByteArray(1 << 20, 'I'), 1);
        row("empty lines", "\r\n\n"_ba, 0);
        row("lines of spaces", "  \r\n \n\t"_ba, 0);
    }

    void hugeListings()
    {
        QFETCH(QByteArray, line);
        QFETCH(int, lines);
        DeviceRig rig;
        rig.identify();
        rig.device->sendWaitCommand(5);
        rig.notifyInPieces(line.repeated(std::max(lines, 1)), 512);
        rig.loop.advance(2s);
        QCOMPARE(rig.device->getFilesCount(), lines);
    }

    void lookups()
    {
        DeviceRig rig;
        rig.device->setFiles({CVFileData(u"Letter"_s, 5), CVFileData(u"É"_s, 6), CVFileData(u"Letter"_s, 7)});
        QVERIFY(rig.device->fileExists(u"lETTER"_s));
        QVERIFY(rig.device->fileExists(u"é"_s));
        QVERIFY(!rig.device->fileExists(u"Lette"_s));
        QCOMPARE(rig.device->getSizeOfFileWithName(u"Letter"_s), 5);
        QCOMPARE(rig.device->getSizeOfFileWithName(u"letter"_s), -1);
        QCOMPARE(rig.device->getFilesCount(), 3);
        for (const int index : {-1, 3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
            QVERIFY(rig.device->getFileName(index).isNull());
            QCOMPARE(rig.device->getFileSize(index), -1);
        }
    }

    void deleteRemovesTheFirstExactName()
    {
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(), DeviceRig::defaultVersion(), "a 1\nA 2\nB 3\nA 4\n");
        rig.device->deleteFile(u"A"_s);
        QCOMPARE(rig.drain(), "{DEL A}");
        QCOMPARE(rig.device->pendingCommand(), 0);
        QList<qint64> sizes;
        for (int i = 0; i < rig.device->getFilesCount(); ++i)
            sizes.append(rig.device->getFileSize(i));
        QCOMPARE(sizes, (QList<qint64>{1, 3, 4}));
        rig.device->deleteFile(u"b"_s);
        QCOMPARE(rig.drain(), "{DEL b}");
        QCOMPARE(rig.device->getFilesCount(), 3);
    }

    void fetchTogglesModesThereAndBack_data()
    {
        columns<Fields, int, QByteArray, QByteArray>("fields", "mode", "there", "back");
        row("plain", Fields{}, 0, "{EM OFF}{S2 ON}{PR A}"_ba, "{EM ON}"_ba);
        row("back-translated", Fields{}, 1, "{EM OFF}{S2 ON}{ADV}{S2 ON}{BS2}{PR A}"_ba,
            "{BS2}{ADV}{EM ON}"_ba);
        row("advanced already", Fields{{28, "1"}}, 1, "{EM OFF}{S2 ON}{S2 ON}{BS2}{PR A}"_ba,
            "{BS2}{EM ON}"_ba);
        row("translating already", Fields{{13, "1"}}, 1, "{EM OFF}{S2 ON}{ADV}{PR A}"_ba, "{ADV}{EM ON}"_ba);
        row("translating on the other port", Fields{{19, "1"}}, 1,
            "{EM OFF}{S2 ON}{ADV}{S2 ON}{BS2}{PR A}"_ba, "{BS2}{ADV}{EM ON}"_ba);
        row("another mode", Fields{}, 2, "{EM OFF}{S2 ON}{ADV}{PR A}"_ba, "{ADV}{EM ON}"_ba);
        row("embosser off", Fields{{21, "0"}}, 0, "{EM OFF}{S2 ON}{PR A}"_ba, QByteArray());
    }

    void fetchTogglesModesThereAndBack()
    {
        QFETCH(Fields, fields);
        QFETCH(int, mode);
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(fields));
        rig.device->getFile(u"A"_s, mode);
        QTEST(rig.drain(), "there");
        QVERIFY(!rig.log.lines.join(u' ').contains(u"PR A"_s));
        QCOMPARE(rig.log.count(u"[debug] - (void) sendCommand:(NSString*)\"PR <hidden>\" ("_s), 1);
        rig.peripheral->notify("text{PC\xFD}");
        QTEST(rig.drain(), "back");
        rig.told->take();
        rig.device->getFile(u"A"_s, PlainTransfer);
        rig.drain();
        rig.peripheral->notify("{PC\xFD}");
        QCOMPARE(rig.drain(), QByteArray(rig.device->embosserOn() ? "{EM ON}" : "")); // the flags are cleared
    }

    void fetchTellsHowItEnded_data()
    {
        columns<QByteArray, QStringList>("bytes", "told");
        row("whole", "abc{PC\xFD}"_ba,
            QStringList{u"outcome silence=0 undefined=0 received=3 listed=9"_s, u"downloaded abc"_s});
        row("undefined byte", "\x80\xD2{PC\xFD}"_ba,
            QStringList{u"outcome silence=0 undefined=1 received=2 listed=9"_s,
                        u"downloaded \u0391\uFFFD"_s});
        row("no trailer", "abc"_ba,
            QStringList{u"outcome silence=1 undefined=0 received=3 listed=9"_s, u"downloaded abc"_s});
        row("nothing", QByteArray(),
            QStringList{u"outcome silence=1 undefined=0 received=0 listed=9"_s, u"downloaded "_s});
    }

    void fetchTellsHowItEnded()
    {
        QFETCH(QByteArray, bytes);
        DeviceRig rig;
        // The switch says Greek, the keyboard English: a fetched file is read in the language of the switch.
        rig.identify(DeviceRig::pcrReply({{8, "2"}}), "1.2C345SN123456W7", "A 9");
        rig.device->setCvDownloadDelegate(rig.told);
        rig.device->getFile(u"A"_s, PlainTransfer);
        rig.notifyInPieces(bytes);
        rig.loop.advance(26s);
        const auto events = rig.told->take();
        QTEST(events.mid(events.size() - 2), "told");
        QCOMPARE(events.filter(u"live"_s), QStringList());
        QCOMPARE(rig.drain(), "{EM OFF}{S2 ON}{PR A}{EM ON}");
    }

    void fetchProgressIsByListedSize_data()
    {
        // for two pieces of four bytes
        columns<QString, QStringList>("name", "told");
        row("listed", u"A"_s, QStringList{u"download 0.5"_s, u"download 1"_s});
        row("more than listed", u"B"_s, QStringList{u"download 1"_s, u"download 2"_s});
        row("not listed", u"a"_s, QStringList{u"download -4"_s, u"download -8"_s});
        row("listed as empty", u"E"_s, QStringList{u"download inf"_s, u"download inf"_s});
    }

    void fetchProgressIsByListedSize()
    {
        QFETCH(QString, name);
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(), DeviceRig::defaultVersion(), "A 8\nB 4\nE 0");
        rig.device->setCvDownloadDelegate(rig.told);
        rig.device->getFile(name, PlainTransfer);
        rig.peripheral->notify("abcd");
        rig.peripheral->notify("efgh");
        QTEST(rig.told->take(), "told");
    }

    void shownProgressIsAFraction_data()
    {
        columns<float, float>("fraction", "shown");
        row("half", 0.5F, 0.5F);
        row("negative", -4.0F, 0.0F);
        row("beyond", 2.0F, 1.0F);
        row("infinite", std::numeric_limits<float>::infinity(), 1.0F);
        row("not a number", std::numeric_limits<float>::quiet_NaN(), 0.0F);
    }

    void shownProgressIsAFraction()
    {
        QFETCH(float, fraction);
        QTEST(shownProgress(fraction), "shown");
    }

    void storeSendsInOrder_data()
    {
        columns<Fields, int, QByteArray>("fields", "mode", "sent");
        row("plain", Fields{}, 0, "{EM OFF}{S1 OFF}{BEGIN A}t\x82xt{END}{S1 OFF}{EM ON}"_ba);
        row("embosser off", Fields{{21, "0"}}, 0, "{EM OFF}{S1 OFF}{BEGIN A}t\x82xt{END}{S1 OFF}{EM ON}"_ba);
        row("translated", Fields{}, 2,
            QByteArray("{EM OFF}{S1 OFF}{ADV}{FM A}t\x82xt{FM END}{S1 OFF}{EM ON}{ADV}"));
        row("advanced already", Fields{{28, "1"}}, 2,
            "{EM OFF}{S1 OFF}{FM A}t\x82xt{FM END}{S1 OFF}{EM ON}"_ba);
        row("fetch mode", Fields{}, 1, "{EM OFF}{S1 OFF}{BEGIN A}t\x82xt{END}{S1 OFF}{EM ON}"_ba);
    }

    void storeSendsInOrder()
    {
        QFETCH(Fields, fields);
        QFETCH(int, mode);
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(fields), DeviceRig::defaultVersion(), "B 1");
        rig.device->sendFileWithName(u"A"_s, u"téxt"_s, mode);
        QTEST(rig.drain(), "sent");
        QCOMPARE(rig.device->pendingCommand(), 0);
        QCOMPARE(rig.device->getFilesCount(), 2);
        QCOMPARE(rig.device->getFileName(1), u"A"_s);
        QCOMPARE(rig.device->getFileSize(1), 4);
        QVERIFY(!rig.log.lines.join(u' ').contains(u"BEGIN A"_s) &&
                !rig.log.lines.join(u' ').contains(u"FM A"_s));
        rig.device->embossString(u"x"_s, PlainTransfer);
        QCOMPARE(rig.drain(), "x"); // no restore flag is left
    }

    void embossTogglesForwardTranslation_data()
    {
        columns<Fields, int, QByteArray>("fields", "mode", "sent");
        row("plain", Fields{}, 0, "text"_ba);
        row("translated", Fields{}, 2, "{ADV}{FE}text{FE}{ADV}"_ba);
        row("advanced already", Fields{{28, "1"}}, 2, "{FE}text{FE}"_ba);
        row("translating already", Fields{{23, "1"}}, 2, "{ADV}text{ADV}"_ba);
    }

    void embossTogglesForwardTranslation()
    {
        QFETCH(Fields, fields);
        QFETCH(int, mode);
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(fields));
        rig.device->embossString(u"text"_s, mode);
        QTEST(rig.drain(), "sent");
        QCOMPARE(rig.told->take(), (QStringList{u"uploaded"_s, u"upload 1"_s}));
    }

    void embossLeavesTheRestoreFlag()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->embossString(u"x"_s, ForwardTranslation);
        rig.drain();
        rig.device->embossString(u"y"_s, PlainTransfer);
        QCOMPARE(rig.drain(), "y{ADV}");
        rig.device->sendFileWithName(u"A"_s, u"z"_s, PlainTransfer);
        QVERIFY(rig.drain().endsWith("{EM ON}{ADV}"));
        rig.device->embossString(u"y"_s, PlainTransfer);
        QCOMPARE(rig.drain(), "y");
        rig.device->embossString(u"x"_s, ForwardTranslation);
        rig.device->getFile(u"A"_s, PlainTransfer);
        rig.drain();
        rig.peripheral->notify("{PC\xFD}");
        QCOMPARE(rig.drain(), "{ADV}{EM ON}");
        rig.device->embossString(u"y"_s, PlainTransfer);
        QCOMPARE(rig.drain(), "y");
    }

    void anAskedForEndSwitchesBack_data()
    {
        // What is done, how many of its writes are confirmed, and what leaves after the end was asked for.
        columns<char, Fields, int, QByteArray>("operation", "fields", "confirmed", "sent");
        const QByteArray end = "{NW OFF}{PC S2 OFF}";
        const QByteArray text(20, 'x');
        row("fetch, translated", 'f', Fields{}, 100, "{BS2}{ADV}{EM ON}" + end);
        row("fetch, embosser off", 'f', Fields{{21, "0"}, {28, "1"}, {13, "1"}}, 100, end);
        row("fetch, nothing written", 'f', Fields{}, 0, "{BS2}{ADV}{EM ON}" + end);
        // The name is so long that the command itself is still on its way.
        row("store, in its command", 's', Fields{}, 0, "AAAAAAAAAAAAAA}{FM END}{S1 OFF}{EM ON}{ADV}" + end);
        row("store, in its text", 's', Fields{}, 5, "{FM END}{S1 OFF}{EM ON}{ADV}" + end);
        row("store, later in it", 's', Fields{}, 9, "{FM END}{S1 OFF}{EM ON}{ADV}" + end);
        row("store, all written", 's', Fields{}, 1000, end);
        row("emboss", 'e', Fields{}, 5, "{FE}{ADV}" + end);
        row("nothing", 'n', Fields{}, 0, end);
        // Cancelled: the link stays.
        row("cancelled store, in its command", 'S', Fields{}, 0,
            "AAAAAAAAAAAAAA}{FM END}{S1 OFF}{EM ON}{ADV}"_ba);
        row("cancelled store, later in it", 'S', Fields{}, 9, "{FM END}{S1 OFF}{EM ON}{ADV}"_ba);
        row("cancelled store, all written", 'S', Fields{}, 1000, ""_ba);
        row("cancelled emboss", 'E', Fields{}, 5, "{FE}{ADV}"_ba);
        row("nothing to cancel", 'N', Fields{}, 0, ""_ba);
    }

    void anAskedForEndSwitchesBack()
    {
        QFETCH(char, operation);
        QFETCH(Fields, fields);
        QFETCH(int, confirmed);
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(fields));
        rig.device->setCvDownloadDelegate(rig.told);
        const QString name(30, u'A');
        if (operation == 'f')
            rig.device->getFile(u"A"_s, BackTranslation);
        else if (operation == 's' || operation == 'S')
            rig.device->sendFileWithName(name, QString(500, u'x'), ForwardTranslation);
        else if (operation == 'e' || operation == 'E')
            rig.device->embossString(QString(500, u'x'), ForwardTranslation);
        for (; confirmed > 0 && rig.peripheral->unconfirmed() > 0; --confirmed)
            rig.peripheral->confirmWrite();
        rig.sent();
        rig.told->take();
        const bool isUnderWay = rig.device->queuedBytes() > 0 || rig.device->pendingCommand() != 0;
        const bool cancels = isupper(operation);
        if (cancels)
            QCOMPARE(rig.device->cancelUpload(), isUnderWay);
        else
            rig.device->disconnectAsCVComm();
        QTEST(rig.drain(), "sent");
        const QStringList told = rig.told->take();
        QCOMPARE(told.contains(u"state 2"_s), !cancels);
        QCOMPARE(told.filter(u"failed"_s).size(), isUnderWay && !cancels ? 1 : 0);
        if (operation == 'S')
            QCOMPARE(rig.device->getSizeOfFileWithName(name), rig.peripheral->writes().join().count('x'));
        QVERIFY(!told.contains(u"uploaded"_s));
    }

    void aLossIsMendedOnTheSameDevice_data()
    {
        // What was under way, the record afterwards, the serial number then, and what is switched back.
        columns<char, Fields, QByteArray, QByteArray>("operation", "fields", "serial", "sent");
        const Fields all{{13, "1"}, {21, "0"}, {23, "1"}, {28, "1"}};
        const QByteArray same = "SN123456";
        row("fetch", 'f', all, same, "{BS2}{ADV}{EM ON}"_ba);
        row("fetch, another device", 'f', all, "SN999999"_ba, ""_ba);
        row("fetch, nothing is switched", 'f', Fields{}, same, ""_ba);
        row("fetch, the embosser alone", 'f', Fields{{21, "0"}}, same, "{EM ON}"_ba);
        row("store", 's', all, same, "{ADV}{EM ON}"_ba);
        row("emboss", 'e', all, same, "{FE}{ADV}"_ba);
        row("nothing of ours", 'n', all, same, ""_ba);
    }

    void aLossIsMendedOnTheSameDevice()
    {
        QFETCH(char, operation);
        QFETCH(Fields, fields);
        QFETCH(QByteArray, serial);
        QFETCH(QByteArray, sent);
        DeviceRig rig;
        rig.identify();
        if (operation == 'f')
            rig.device->getFile(u"A"_s, BackTranslation);
        else if (operation == 's')
            rig.device->sendFileWithName(u"A"_s, QString(500, u'x'), ForwardTranslation);
        else if (operation == 'e')
            rig.device->embossString(QString(500, u'x'), ForwardTranslation);
        if (rig.peripheral->unconfirmed() > 0)
            rig.peripheral->confirmWrite();
        rig.loseLink();
        if (serial != "SN123456")
            rig.peripheral = std::make_shared<FakePeripheral>(u"B"_s, u"Corvane"_s, rig.journal);
        const auto identify = [&] {
            rig.linkWithCode(1);
            rig.reply(DeviceRig::pcrReply(fields));
            rig.drain();
            const qsizetype before = rig.peripheral->writes().size();
            rig.reply("1.2A345" + serial + "W1");
            rig.drain();
            return rig.peripheral->writes().mid(before).join();
        };
        QCOMPARE(identify(), "{NW}" + sent + "{DIR}");
        rig.reply({});
        // Once is enough.
        rig.loseLink();
        QCOMPARE(identify(), "{NW}{DIR}"_ba);
    }

    void replacedCharactersAreTold()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->sendFileWithName(u"A"_s, u"a漢字\U0001F600b"_s, PlainTransfer);
        QCOMPARE(rig.told->take(), QStringList{u"replaced 3"_s});
        QVERIFY(rig.drain().contains("{BEGIN A}a???b{END}"));
        rig.told->take();
        qsizetype replaced = -1;
        rig.device->sendString(u"漢"_s, &replaced);
        QCOMPARE(replaced, 1);
        rig.device->embossString(u"plain"_s, PlainTransfer);
        rig.drain();
        QCOMPARE(rig.told->take(), (QStringList{u"uploaded"_s, u"upload 1"_s}));
    }

    void badRepliesLeaveAWorkingEngine_data()
    {
        columns<int, QByteArray>("number", "reply");
        QByteArray everyByte;
        for (int byte = 0; byte < 256; ++byte)
            everyByte.append(static_cast<char>(byte));
        const QList<std::pair<const char *, QByteArray>> replies{
            {"empty", ""},
            {"one byte", "{"},
            {"zero bytes", QByteArray(100, '\0')},
            {"every byte", everyByte},
            {"huge", QByteArray(1 << 18, '\xfe')},
            {"braces", QByteArray(5000, '}')},
            {"cut link reply", "{PC"},
            {"commas", ", "_ba.repeated(5000)},
            {"huge numbers", "99999999999999999999, "_ba.repeated(40)},
            {"negative size", "A -99999999999999999999\r\nB -1\r\n"},
        };
        const QList<std::pair<const char *, int>> commands{{"PC", 1},  {"VER", 2}, {"VER1", 3},
                                                           {"PCR", 4}, {"DIR", 5}, {"PR", 7}};
        for (const auto &[command, number] : commands) {
            for (const auto &[row, reply] : replies)
                QTest::addRow("%s: %s", command, row) << number << reply;
        }
    }

    void badRepliesLeaveAWorkingEngine()
    {
        QFETCH(int, number);
        QFETCH(QByteArray, reply);
        DeviceRig rig;
        rig.identify();
        rig.device->setCvDownloadDelegate(rig.told);
        if (number == 7)
            rig.device->getFile(u"A"_s, BackTranslation);
        else
            rig.device->sendWaitCommand(number);
        rig.notifyInPieces(reply, 512);
        rig.loop.advance(60s);
        QCOMPARE(rig.device->pendingCommand(), 0);
        rig.told->take();
        rig.drain();
        rig.device->sendWaitCommand(5);
        rig.reply("OK 1");
        QCOMPARE(rig.device->getFileName(0), u"OK"_s);
    }
};

QTEST_GUILESS_MAIN(tst_Files)
#include "tst_files.moc"
