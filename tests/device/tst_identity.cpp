// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DeviceRig.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A state record of as many pieces, all on.
QByteArray pcrOf(qsizetype pieces)
{
    return QList<QByteArray>(pieces, "1").join(", ");
}

} // namespace

// What the device tells about itself: the state record, the version replies, and what follows from them.
class tst_Identity : public QObject
{
    Q_OBJECT

private slots:
    void recordFieldsAreLeadingNumbers_data()
    {
        columns<QByteArray, int>("piece", "value");
        row("number", "12"_ba, 12);
        row("number and brace", "7}"_ba, 7);
        row("white space in front", " \t5"_ba, 5);
        row("negative", "-3x"_ba, -3);
        row("plus", "+4"_ba, 4);
        row("text", "x9"_ba, 0);
        row("empty", QByteArray(), 0);
        row("sign alone", "-"_ba, 0);
        row("leading zeros", "007"_ba, 7);
        row("not ASCII", "6\xff"_ba, 6);
    }

    void recordFieldsAreLeadingNumbers()
    {
        QFETCH(QByteArray, piece);
        QFETCH(int, value);
        DeviceRig rig;
        rig.linkWithCode(1);
        rig.reply(DeviceRig::pcrReply({{0, piece}, {26, piece}, {29, piece}}) + ", 5, 6");
        const auto record = rig.device->cvDeviceStateData();
        QCOMPARE(record[0], value);
        QCOMPARE(rig.device->forwardGrade(), value);
        QCOMPARE(record[29], value);
        QCOMPARE(record[1], 0);
    }

    void flagsCompareText_data()
    {
        columns<QByteArray, QByteArray, bool, bool>("embosser", "advanced", "embosserOn", "advancedOn");
        row("off, on", "0"_ba, "1"_ba, false, true);
        row("on, off", "1"_ba, "0"_ba, true, false);
        row("two zeros count as on", "00"_ba, "00"_ba, true, true);
        row("so does nothing", QByteArray(), QByteArray(), true, true);
        row("both off", "0"_ba, "0"_ba, false, false);
    }

    void flagsCompareText()
    {
        QFETCH(QByteArray, embosser);
        QFETCH(QByteArray, advanced);
        DeviceRig rig;
        QVERIFY(rig.device->embosserOn());
        QVERIFY(!rig.device->advancedModeOn());
        rig.linkWithCode(1);
        rig.reply(DeviceRig::pcrReply({{21, embosser}, {28, advanced}}));
        QTEST(rig.device->embosserOn(), "embosserOn");
        QTEST(rig.device->advancedModeOn(), "advancedOn");
        QCOMPARE(rig.device->cvDeviceStateData()[28], advanced.toInt());
    }

    void recordNeedsThirtyPieces_data()
    {
        columns<QByteArray, bool>("reply", "accepted");
        row("silence", QByteArray(), false);
        row("29", pcrOf(29), false);
        row("30", pcrOf(30), true);
        row("31", pcrOf(31), true);
        row("commas without spaces", pcrOf(30).replace(", ", ","), false);
        row("garbage", QByteArray("\xff\x00\x80{{}}", 7), false);
    }

    void recordNeedsThirtyPieces()
    {
        QFETCH(QByteArray, reply);
        QFETCH(bool, accepted);
        DeviceRig rig;
        rig.linkWithCode(1);
        rig.drain();
        rig.journal.clear();
        rig.idleTimer.enabled = false;
        rig.reply(reply);
        QCOMPARE(rig.device->cvDeviceStateData()[5], accepted ? 1 : 0);
        QCOMPARE(rig.device->advancedModeOn(), accepted);
        QCOMPARE(rig.drain(), QByteArray(accepted ? "{VER1}" : ""));
        QCOMPARE(rig.told->take(), accepted ? QStringList() : QStringList{u"state 0"_s});
        QCOMPARE(rig.idleTimer.enabled, !accepted);
        QCOMPARE(rig.journal, QStringList()); // the link stays up
    }

    void versionReplyIsReadByPosition_data()
    {
        columns<int, int>("code", "length");
        for (const int code : {1, 34}) {
            for (const int length : {1, 3, 4, 6, 7, 14, 15, 16, 17, 18, 2000})
                QTest::addRow("%s, %d characters", code == 1 ? "VER1" : "VER", length) << code << length;
        }
    }

    void versionReplyIsReadByPosition()
    {
        QFETCH(int, code);
        QFETCH(int, length);
        DeviceRig rig;
        rig.linkWithCode(code);
        if (code == 1)
            rig.reply(DeviceRig::pcrReply({{8, "6"}}));
        rig.drain();
        rig.reply(QByteArray("1.2D345SN123456F5"_ba + QByteArray(2000, '\x82')).first(length));
        QCOMPARE(rig.device->cvFirmwareVersion(), length >= 7 ? u"1.2D345"_s : QString());
        QCOMPARE(rig.device->cvLanguageSet(), length >= 7 ? u'D' : u'\0');
        QCOMPARE(rig.device->cvSerialNumber(), length >= 15 ? u"SN123456"_s : QString());
        QCOMPARE(rig.device->cvModel(), length >= 16 ? 3 : 0);
        const auto switchRead = code == 1 && length >= 17;
        QCOMPARE(rig.device->cvLanguage(), switchRead ? 10 : (code == 1 ? 6 : 0));
        QCOMPARE(rig.device->cvKeyboardLanguage(), code == 1 ? 6 : 0);
        QCOMPARE(rig.drain(), QByteArray(code == 1 ? "{NW}{DIR}" : ""));
        rig.loop.advance(2s);
        QCOMPARE(rig.told->take(), QStringList{u"state 1"_s});
    }

    void modelLetterSelectsTheModel_data()
    {
        columns<char, int>("letter", "model");
        row("W", 'W', 1);
        row("P", 'P', 2);
        row("F", 'F', 3);
        row("L", 'L', 4);
        row("another leaves it", 'X', 7);
        row("lower case too", 'w', 7);
    }

    void modelLetterSelectsTheModel()
    {
        QFETCH(char, letter);
        DeviceRig rig;
        rig.device->setCvModel(7);
        rig.identify(DeviceRig::pcrReply(), "1.2A345SN123456"_ba + letter + '1');
        QTEST(rig.device->cvModel(), "model");
    }

    void chainOfTypeOne()
    {
        DeviceRig rig;
        rig.linkWithCode(1);
        rig.drain();
        rig.reply(DeviceRig::pcrReply({{8, "8"}, {0, "4"}, {24, "1"}, {26, "2"}}));
        QCOMPARE(rig.drain(), "{VER1}");
        rig.reply("3.1C207SN000001L5");
        QCOMPARE(rig.drain(), "{NW}{DIR}");
        QCOMPARE(rig.told->take(), QStringList());
        rig.reply("A.TXT 1");
        QCOMPARE(rig.told->take(), QStringList{u"state 1"_s});
        QVERIFY(rig.observer.events.contains(u"connected"_s));
        QCOMPARE(rig.device->cvLanguage(), 19);
        QCOMPARE(rig.device->cvKeyboardLanguage(), 8);
        QCOMPARE(rig.device->cvBrailleCode(), 0); // field 0 of 4 with set "C"
        QCOMPARE(rig.device->backwardGrade(), 1);
        QCOMPARE(rig.device->forwardGrade(), 2);
        rig.device->refreshFilesWithCompletionHandler({});
        rig.loop.advance(2s);
        QCOMPARE(rig.told->take(), QStringList()); // state 1 only ends the sequence
    }

    void chainOfTypeThree()
    {
        DeviceRig rig;
        rig.linkWithCode(34);
        QCOMPARE(rig.drain(), "{VER}");
        rig.reply("2.0B111SN777777W");
        QCOMPARE(rig.told->take(), QStringList{u"state 1"_s});
        QCOMPARE(rig.drain(), "");
        QCOMPARE(rig.device->stringEncoding(), StringEncoding::Ascii);
        QCOMPARE(rig.device->cvModel(), 1);
        rig.device->sendWaitCommand(2);
        rig.reply("2.0B111SN888888P");
        QCOMPARE(rig.device->cvSerialNumber(), u"SN888888"_s); // this reply always replaces it
        QCOMPARE(rig.told->take(), QStringList());
    }

    void silentExtendedVersionFallsBack_data()
    {
        columns<QByteArray, int>("version", "model");
        row("0", "1.2A3450"_ba, 1);
        row("1", "1.2A3451"_ba, 2);
        row("2", "1.2A3452"_ba, 3);
        row("3", "1.2A3453 and more"_ba, 4);
        row("another", "1.2A3459"_ba, 0);
        row("short", "1.2A345"_ba, 0);
    }

    void silentExtendedVersionFallsBack()
    {
        QFETCH(QByteArray, version);
        DeviceRig rig;
        rig.linkWithCode(1);
        rig.reply(DeviceRig::pcrReply({{8, "5"}}));
        rig.drain();
        rig.loop.advance(2s);
        QCOMPARE(rig.drain(), "{VER}");
        QCOMPARE(rig.told->take(), QStringList());
        rig.reply(version);
        QTEST(rig.device->cvModel(), "model");
        QCOMPARE(rig.device->cvFirmwareVersion(), u"1.2A345"_s);
        QVERIFY(rig.device->cvSerialNumber().isNull());
        QCOMPARE(rig.device->cvLanguage(), 5);
        QCOMPARE(rig.drain(), "{NW}{DIR}");
        rig.loop.advance(2s);
        QCOMPARE(rig.told->take(), QStringList{u"state 1"_s});
    }

    void silentVersionEndsTheSequence_data()
    {
        QTest::addColumn<int>("code");
        row("type 1", 1);
        row("type 3", 44);
    }

    void silentVersionEndsTheSequence()
    {
        QFETCH(int, code);
        DeviceRig rig;
        rig.linkWithCode(code);
        if (code == 1)
            rig.reply(DeviceRig::pcrReply());
        rig.idleTimer.enabled = false;
        rig.journal.clear();
        rig.loop.advance(4s);
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
        QVERIFY(rig.idleTimer.enabled);
        QVERIFY(rig.device->isConnectedAsCVComm());
        QCOMPARE(rig.journal, QStringList());
    }

    void serialNumberOfTheFirstVersionStays()
    {
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(), "1.2A345SN111111W1");
        rig.device->sendWaitCommand(3);
        rig.reply("1.2B999SN222222P1");
        QCOMPARE(rig.device->cvSerialNumber(), u"SN111111"_s);
        QCOMPARE(rig.device->cvFirmwareVersion(), u"1.2B999"_s);
        QCOMPARE(rig.device->cvModel(), 2);
    }

    void languageChoosesTheReplyEncoding_data()
    {
        // byte 0xE6 in it
        columns<QByteArray, StringEncoding, QString>("language", "encoding", "name");
        row("Arabic", "23"_ba, StringEncoding::WindowsCP1256, u"\u0648"_s);
        row("Polish", "17"_ba, StringEncoding::WindowsCP1250, u"\u0107"_s);
        row("Greek too is Western here", "14"_ba, StringEncoding::WindowsCP1252, u"\u00e6"_s);
        row("German", "8"_ba, StringEncoding::WindowsCP1252, u"\u00e6"_s);
        row("unknown", "99"_ba, StringEncoding::WindowsCP1252, u"\u00e6"_s);
    }

    void languageChoosesTheReplyEncoding()
    {
        QFETCH(QByteArray, language);
        DeviceRig rig;
        QCOMPARE(rig.device->stringEncoding(), StringEncoding::Ascii);
        rig.identify(DeviceRig::pcrReply({{8, language}}), DeviceRig::defaultVersion(), "\xe6 1");
        QTEST(rig.device->stringEncoding(), "encoding");
        QTEST(rig.device->getFileName(0), "name");
    }

    void valuesOutliveTheLink()
    {
        DeviceRig rig;
        QVERIFY(rig.device->cvFirmwareVersion().isNull());
        QCOMPARE(rig.device->cvLanguageSet(), u'\0');
        rig.identify(DeviceRig::pcrReply({{8, "8"}, {26, "2"}}), "1.2D345SN123456W5");
        QCOMPARE(rig.device->cvLanguage(), 10);
        rig.device->disconnectAsCVComm();
        QCOMPARE(rig.device->cvLanguage(), 0);
        QCOMPARE(rig.device->cvKeyboardLanguage(), 0);
        QCOMPARE(rig.device->cvInterfaceLanguage(), 0);
        QCOMPARE(rig.device->cvModel(), 1);
        QCOMPARE(rig.device->forwardGrade(), 2);
        QCOMPARE(rig.device->cvFirmwareVersion(), u"1.2D345"_s);
        QCOMPARE(rig.device->cvSerialNumber(), u"SN123456"_s);
        QCOMPARE(rig.device->cvDeviceStateData()[8], 8);
        // What another device's answers might not replace goes when it is chosen.
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        QCOMPARE(rig.device->cvSerialNumber(), u"SN123456"_s);
        rig.device->connectAsCVCommWithPeripheral(
            std::make_shared<FakePeripheral>(u"B"_s, u"Corvane"_s, rig.journal));
        QVERIFY(rig.device->cvSerialNumber().isNull());
    }

    void switchSelectsTheLanguage_data()
    {
        // set letter, switch
        columns<QByteArray, int>("tail", "language");
        row("any set, 0", "Z0"_ba, 1);
        row("A 1", "A1"_ba, 2);
        row("D 5", "D5"_ba, 10);
        row("B 8", "B8"_ba, 27);
        row("A 8", "A8"_ba, 0);
        row("unknown set", "Z3"_ba, 0);
        row("not a digit", "A~"_ba, 0);
        row("below the digits", "A!"_ba, 0);
        row("one below the digits is not read", "A/"_ba, 9); // 255: the record's number counts
    }

    void switchSelectsTheLanguage()
    {
        QFETCH(QByteArray, tail);
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply({{8, "9"}}),
                     "1.2"_ba + tail.first(1) + "345SN123456W" + tail.last(1));
        QTEST(rig.device->cvLanguage(), "language");
    }

    void gradesAreSentWhenConnected()
    {
        DeviceRig rig;
        rig.device->setForwardGrade(1);
        QCOMPARE(rig.device->forwardGrade(), 1);
        rig.identify();
        rig.device->setForwardGrade(2);
        rig.device->setBackwardGrade(1);
        QCOMPARE(rig.drain(), "{FGR 2}{BGR 1}");
        QCOMPARE(rig.device->cvDeviceStateData()[26], 2);
        QCOMPARE(rig.device->cvDeviceStateData()[24], 1);
        QCOMPARE(rig.device->pendingCommand(), 0);
        rig.device->setIsConnectedAsCVComm(false);
        rig.device->setForwardGrade(1);
        QCOMPARE(rig.drain(), "");
    }
};

QTEST_GUILESS_MAIN(tst_Identity)
#include "tst_identity.moc"
