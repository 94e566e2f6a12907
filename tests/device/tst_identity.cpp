// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DeviceRig.h"

#include <QTest>

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
    void recordFieldsAreLeadingNumbers_data();
    void recordFieldsAreLeadingNumbers();
    void flagsCompareText_data();
    void flagsCompareText();
    void recordNeedsThirtyPieces_data();
    void recordNeedsThirtyPieces();
    void versionReplyIsReadByPosition_data();
    void versionReplyIsReadByPosition();
    void modelLetterSelectsTheModel_data();
    void modelLetterSelectsTheModel();
    void chainOfTypeOne();
    void chainOfTypeThree();
    void silentExtendedVersionFallsBack_data();
    void silentExtendedVersionFallsBack();
    void silentVersionEndsTheSequence_data();
    void silentVersionEndsTheSequence();
    void serialNumberOfTheFirstVersionStays();
    void languageChoosesTheReplyEncoding_data();
    void languageChoosesTheReplyEncoding();
    void valuesOutliveTheLink();
    void switchSelectsTheLanguage_data();
    void switchSelectsTheLanguage();
    void gradesAreSentWhenConnected();
};

void tst_Identity::recordFieldsAreLeadingNumbers_data()
{
    QTest::addColumn<QByteArray>("piece");
    QTest::addColumn<int>("value");
    QTest::newRow("number") << QByteArray("12") << 12;
    QTest::newRow("number and brace") << QByteArray("7}") << 7;
    QTest::newRow("white space in front") << QByteArray(" \t5") << 5;
    QTest::newRow("negative") << QByteArray("-3x") << -3;
    QTest::newRow("plus") << QByteArray("+4") << 4;
    QTest::newRow("text") << QByteArray("x9") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("sign alone") << QByteArray("-") << 0;
    QTest::newRow("leading zeros") << QByteArray("007") << 7;
    QTest::newRow("not ASCII") << QByteArray("6\xff") << 6;
}

void tst_Identity::recordFieldsAreLeadingNumbers()
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

void tst_Identity::flagsCompareText_data()
{
    QTest::addColumn<QByteArray>("embosser");
    QTest::addColumn<QByteArray>("advanced");
    QTest::addColumn<bool>("embosserOn");
    QTest::addColumn<bool>("advancedOn");
    QTest::newRow("off, on") << QByteArray("0") << QByteArray("1") << false << true;
    QTest::newRow("on, off") << QByteArray("1") << QByteArray("0") << true << false;
    QTest::newRow("two zeros count as on") << QByteArray("00") << QByteArray("00") << true << true;
    QTest::newRow("so does nothing") << QByteArray() << QByteArray() << true << true;
    QTest::newRow("both off") << QByteArray("0") << QByteArray("0") << false << false;
}

void tst_Identity::flagsCompareText()
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

void tst_Identity::recordNeedsThirtyPieces_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("silence") << QByteArray() << false;
    QTest::newRow("29") << pcrOf(29) << false;
    QTest::newRow("30") << pcrOf(30) << true;
    QTest::newRow("31") << pcrOf(31) << true;
    QTest::newRow("commas without spaces") << pcrOf(30).replace(", ", ",") << false;
    QTest::newRow("garbage") << QByteArray("\xff\x00\x80{{}}", 7) << false;
}

void tst_Identity::recordNeedsThirtyPieces()
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

void tst_Identity::versionReplyIsReadByPosition_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("length");
    for (const int code : {1, 34}) {
        for (const int length : {1, 3, 4, 6, 7, 14, 15, 16, 17, 18, 2000})
            QTest::addRow("%s, %d characters", code == 1 ? "VER1" : "VER", length) << code << length;
    }
}

void tst_Identity::versionReplyIsReadByPosition()
{
    QFETCH(int, code);
    QFETCH(int, length);
    DeviceRig rig;
    rig.linkWithCode(code);
    if (code == 1)
        rig.reply(DeviceRig::pcrReply({{8, "6"}}));
    rig.drain();
    rig.reply(QByteArray(QByteArray("1.2D345SN123456F5") + QByteArray(2000, '\x82')).first(length));
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

void tst_Identity::modelLetterSelectsTheModel_data()
{
    QTest::addColumn<char>("letter");
    QTest::addColumn<int>("model");
    QTest::newRow("W") << 'W' << 1;
    QTest::newRow("P") << 'P' << 2;
    QTest::newRow("F") << 'F' << 3;
    QTest::newRow("L") << 'L' << 4;
    QTest::newRow("another leaves it") << 'X' << 7;
    QTest::newRow("lower case too") << 'w' << 7;
}

void tst_Identity::modelLetterSelectsTheModel()
{
    QFETCH(char, letter);
    DeviceRig rig;
    rig.device->setCvModel(7);
    rig.identify(DeviceRig::pcrReply(), QByteArray("1.2A345SN123456") + letter + '1');
    QTEST(rig.device->cvModel(), "model");
}

void tst_Identity::chainOfTypeOne()
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

void tst_Identity::chainOfTypeThree()
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

void tst_Identity::silentExtendedVersionFallsBack_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<int>("model");
    QTest::newRow("0") << QByteArray("1.2A3450") << 1;
    QTest::newRow("1") << QByteArray("1.2A3451") << 2;
    QTest::newRow("2") << QByteArray("1.2A3452") << 3;
    QTest::newRow("3") << QByteArray("1.2A3453 and more") << 4;
    QTest::newRow("another") << QByteArray("1.2A3459") << 0;
    QTest::newRow("short") << QByteArray("1.2A345") << 0;
}

void tst_Identity::silentExtendedVersionFallsBack()
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

void tst_Identity::silentVersionEndsTheSequence_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("type 1") << 1;
    QTest::newRow("type 3") << 44;
}

void tst_Identity::silentVersionEndsTheSequence()
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

void tst_Identity::serialNumberOfTheFirstVersionStays()
{
    DeviceRig rig;
    rig.identify(DeviceRig::pcrReply(), "1.2A345SN111111W1");
    rig.device->sendWaitCommand(3);
    rig.reply("1.2B999SN222222P1");
    QCOMPARE(rig.device->cvSerialNumber(), u"SN111111"_s);
    QCOMPARE(rig.device->cvFirmwareVersion(), u"1.2B999"_s);
    QCOMPARE(rig.device->cvModel(), 2);
}

void tst_Identity::languageChoosesTheReplyEncoding_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<StringEncoding>("encoding");
    QTest::addColumn<QString>("name"); // byte 0xE6 in it
    QTest::newRow("Arabic") << QByteArray("23") << StringEncoding::WindowsCP1256 << u"\u0648"_s;
    QTest::newRow("Polish") << QByteArray("17") << StringEncoding::WindowsCP1250 << u"\u0107"_s;
    QTest::newRow("Greek too is Western here")
        << QByteArray("14") << StringEncoding::WindowsCP1252 << u"\u00e6"_s;
    QTest::newRow("German") << QByteArray("8") << StringEncoding::WindowsCP1252 << u"\u00e6"_s;
    QTest::newRow("unknown") << QByteArray("99") << StringEncoding::WindowsCP1252 << u"\u00e6"_s;
}

void tst_Identity::languageChoosesTheReplyEncoding()
{
    QFETCH(QByteArray, language);
    DeviceRig rig;
    QCOMPARE(rig.device->stringEncoding(), StringEncoding::Ascii);
    rig.identify(DeviceRig::pcrReply({{8, language}}), DeviceRig::defaultVersion(), "\xe6 1");
    QTEST(rig.device->stringEncoding(), "encoding");
    QTEST(rig.device->getFileName(0), "name");
}

void tst_Identity::valuesOutliveTheLink()
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
}

void tst_Identity::switchSelectsTheLanguage_data()
{
    QTest::addColumn<QByteArray>("tail"); // set letter, switch
    QTest::addColumn<int>("language");
    QTest::newRow("any set, 0") << QByteArray("Z0") << 1;
    QTest::newRow("A 1") << QByteArray("A1") << 2;
    QTest::newRow("D 5") << QByteArray("D5") << 10;
    QTest::newRow("B 8") << QByteArray("B8") << 27;
    QTest::newRow("A 8") << QByteArray("A8") << 0;
    QTest::newRow("unknown set") << QByteArray("Z3") << 0;
    QTest::newRow("not a digit") << QByteArray("A~") << 0;
    QTest::newRow("below the digits") << QByteArray("A!") << 0;
    QTest::newRow("one below the digits is not read")
        << QByteArray("A/") << 9; // 255: the record's number counts
}

void tst_Identity::switchSelectsTheLanguage()
{
    QFETCH(QByteArray, tail);
    DeviceRig rig;
    rig.identify(DeviceRig::pcrReply({{8, "9"}}),
                 QByteArray("1.2") + tail.first(1) + "345SN123456W" + tail.last(1));
    QTEST(rig.device->cvLanguage(), "language");
}

void tst_Identity::gradesAreSentWhenConnected()
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

QTEST_GUILESS_MAIN(tst_Identity)
#include "tst_identity.moc"
