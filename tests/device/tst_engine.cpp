// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DeviceRig.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int SingleBraces = 32;
constexpr int DoubleBraces = 46;

class SerialPort final : public CVSerialPort
{
public:
    void sendData(const QByteArray &data) override { bytes += data; }
    QByteArray take() { return std::exchange(bytes, {}); }

    QByteArray bytes;
};

class Connection final : public CVConnectionProtocol
{
public:
    void setDelegate(const std::weak_ptr<CVConnectionDelegate> &value) override { delegate = value; }
    void sendData(const QByteArray &data) override { bytes += data; }

    std::weak_ptr<CVConnectionDelegate> delegate;
    QByteArray bytes;
};

// With a link that is up and all of it confirmed; types 6 and 2 ask nothing themselves.
struct LinkedRig : DeviceRig
{
    explicit LinkedRig(int code = SingleBraces)
    {
        linkWithCode(code);
        drain();
        told->take();
    }
};

} // namespace

// The command engine: framing, the send queue, waiting for replies, and who is told.
class tst_Engine : public QObject
{
    Q_OBJECT

private slots:
    void commandsAreLogged()
    {
        LinkedRig rig;
        QCOMPARE(rig.log.count(u"[info] CVBTDevice:init"_s), 1);
        rig.device->sendCommand(u"NW"_s);
        QCOMPARE(rig.sent(), "{NW}");
        QCOMPARE(rig.log.count(u"[debug] - (void) sendCommand:(NSString*)\"NW\" ("_s), 1);
        QCOMPARE(rig.device->pendingCommand(), 0);
        rig.device->deleteFile(u"LETTER"_s);
        QCOMPARE(rig.log.count(u"[debug] - (void) sendCommand:(NSString*)\"DEL <hidden>\" ("_s), 1);
        QVERIFY(!rig.log.lines.join(u' ').contains(u"LETTER"_s));
    }

    void waitedCommandsEndBySilence_data()
    {
        columns<int, QByteArray, std::chrono::seconds>("number", "text", "silence");
        const QList<QByteArray> texts{"PC S2 ON", "VER", "VER1", "PCR", "DIR", "FREE", "PR A B"};
        for (int i = 0; i < texts.size(); ++i)
            row(texts[i], i + 1, texts[i], i == 6 ? 26s : 2s);
    }
    void waitedCommandsEndBySilence()
    {
        QFETCH(int, number);
        QFETCH(QByteArray, text);
        QFETCH(std::chrono::seconds, silence);
        for (const int code : {SingleBraces, DoubleBraces}) {
            LinkedRig rig(code);
            if (number == 7)
                rig.device->sendWaitCommand(7, u"A B"_s);
            else
                rig.device->sendWaitCommand(number);
            const int braces = code == SingleBraces ? 1 : 2;
            QCOMPARE(rig.sent(), QByteArray(braces, '{') + text + QByteArray(braces, '}'));
            QCOMPARE(rig.device->pendingCommand(), number);
            rig.loop.advance(silence - 1ms);
            QCOMPARE(rig.device->pendingCommand(), number);
            rig.loop.advance(1ms);
            QCOMPARE(rig.device->pendingCommand(), number == 3 ? 2 : 0); // a silent VER1 asks VER
        }
    }

    void textLeavesInPieces_data()
    {
        columns<QString, QList<QByteArray>>("text", "pieces");
        const QByteArray digits = "0123456789";
        row("20 characters", QString::fromLatin1(digits + digits), QList<QByteArray>{digits + digits});
        row("21 characters", QString::fromLatin1(digits + digits + "x"),
            QList<QByteArray>{digits + digits, "x"});
        row("45 characters", QString::fromLatin1(digits + digits + digits + digits + "abcde"),
            QList<QByteArray>{digits + digits, digits + digits, "abcde"});
        row("two code units, one byte", u"\U0001F600"_s.repeated(15), QList<QByteArray>{QByteArray(15, '?')});
        row("pairs beyond 20 bytes", u"\U0001F600"_s.repeated(25),
            QList<QByteArray>{QByteArray(20, '?'), QByteArray(5, '?')});
        row("combining marks", u"e\u0301"_s.repeated(12), QList<QByteArray>{QByteArray(12, '\x82')});
        row("a lone surrogate", QString(QChar(0xD83D)), QList<QByteArray>{"?"});
    }
    void textLeavesInPieces()
    {
        QFETCH(QString, text);
        QFETCH(QList<QByteArray>, pieces);
        LinkedRig rig;
        const auto before = rig.peripheral->writes().size();
        QVERIFY(!rig.device->sendString(text));
        for (int i = 0; i < pieces.size(); ++i) {
            QCOMPARE(rig.peripheral->writes().mid(before), pieces.first(i + 1));
            rig.peripheral->confirmWrite();
        }
        QCOMPARE(rig.peripheral->writes().mid(before), pieces);
        QCOMPARE(rig.device->queuedBytes(), 0);
        QCOMPARE(rig.device->unconfirmedWrites(), 0);
    }

    void commandGoesOutWhileEarlierWritesAreUnconfirmed()
    {
        LinkedRig rig;
        for (const auto &command : {u"A"_s, u"B"_s, u"C"_s})
            rig.device->sendCommand(command);
        QCOMPARE(rig.sent(), "{A}{B}{C}");
        QCOMPARE(rig.device->unconfirmedWrites(), 3);
        rig.drain();
        QCOMPARE(rig.observer.take().count(u"confirmed"_s), 2); // the link command, then these three together
    }

    void rawStringLeavesInOneWrite()
    {
        DeviceRig rig;
        rig.identify();
        const auto before = rig.peripheral->writes().size();
        QVERIFY(!rig.device->internalSendString(u"\u00e9"_s.repeated(30)));
        QVERIFY(!rig.device->internalSendString(QString()));
        QCOMPARE(rig.peripheral->writes().mid(before), QList<QByteArray>{QByteArray(30, '\xe9')});
    }

    void queueKeepsItsOrder()
    {
        LinkedRig rig;
        QVERIFY(!rig.device->sendData(QByteArray(30, 'a')));
        QVERIFY(rig.device->sendData(QByteArray(30, 'b')));
        QVERIFY(rig.device->sendString(u"c"_s));
        rig.device->sendCommand(u"D"_s);
        QCOMPARE(rig.sent(), QByteArray(20, 'a'));
        QCOMPARE(rig.device->queuedBytes(), 44);
        rig.peripheral->confirmWrite();
        QCOMPARE(rig.sent(), QByteArray(10, 'a') + QByteArray(10, 'b'));
        QCOMPARE(rig.drain(), QByteArray(20, 'b') + "c{D}");
    }

    void everyPieceRestartsTheSilence()
    {
        LinkedRig rig;
        rig.device->sendWaitCommand(5);
        for (const char *piece : {"A.TXT ", "12", "0\r\nB"}) {
            rig.loop.advance(1999ms);
            rig.peripheral->notify(piece);
        }
        rig.loop.advance(1999ms);
        QCOMPARE(rig.device->pendingCommand(), 5);
        rig.loop.advance(1ms);
        QCOMPARE(rig.device->getFileSize(0), 120);
        rig.told->take();
        rig.device->setCvDownloadDelegate(rig.told);
        rig.device->getFile(u"A.TXT"_s, PlainTransfer);
        rig.loop.advance(25s);
        rig.peripheral->notify("half");
        rig.loop.advance(25999ms);
        QCOMPARE(rig.device->pendingCommand(), 7);
        rig.loop.advance(1ms);
        QVERIFY(rig.told->events.contains(u"downloaded half"_s));
    }

    void trailerEndsAFetchAtOnce_data()
    {
        // null: only silence ends it
        columns<QList<QByteArray>, QString, QString>("pieces", "atOnce", "bySilence");
        row("one piece", QList<QByteArray>{"text{PC\xFD}"}, u"text"_s, QString());
        row("split trailer", QList<QByteArray>{"te", "xt{P", "C\xFD", "}"}, u"text"_s, QString());
        row("trailer alone", QList<QByteArray>{"{PC\xFD}"}, u""_s, QString());
        row("trailer in the middle", QList<QByteArray>{"a{PC\xFD}b"}, QString(), u"a{PC\u00fd}b"_s);
        row("another brace", QList<QByteArray>{"hello world}"}, QString(), u"hello w"_s);
        row("too short to cut", QList<QByteArray>{"abc}"}, QString(), u"abc}"_s);
        row("wrong byte", QList<QByteArray>{"text{PC\xFC}"}, QString(), u"text"_s);
    }
    void trailerEndsAFetchAtOnce()
    {
        QFETCH(QList<QByteArray>, pieces);
        QFETCH(QString, atOnce);
        QFETCH(QString, bySilence);
        LinkedRig rig;
        rig.device->setCvDownloadDelegate(rig.told);
        rig.device->getFile(u"A"_s, PlainTransfer);
        rig.told->take();
        for (const auto &piece : pieces)
            rig.peripheral->notify(piece);
        QCOMPARE(rig.device->pendingCommand(), atOnce.isNull() ? 7 : 0);
        rig.loop.advance(26s);
        const auto text = atOnce.isNull() ? bySilence : atOnce;
        const auto events = rig.told->take();
        QCOMPARE(events.count(u"downloaded "_s + text), 1);
        QCOMPARE(events.last(), u"downloaded "_s + text);
        QVERIFY(events.at(events.size() - 2)
                    .startsWith(atOnce.isNull() ? u"outcome silence=1 "_s : u"outcome silence=0 "_s));
    }

    void lateRestOfAReplyIsLiveText()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->sendWaitCommand(5);
        rig.reply("A.TXT 12");
        rig.reply("0\r\nB 1");
        QCOMPARE(rig.device->getFilesCount(), 1);
        QCOMPARE(rig.device->getFileSize(0), 12);
        QCOMPARE(rig.told->take(), QStringList{u"live 0\r\nB 1"_s});
    }

    void linkReplySelectsTypeAndBraces_data()
    {
        // with the probe command X behind what the engine asks itself
        columns<QByteArray, int, QByteArray, QStringList>("reply", "type", "sent", "told");
        const auto add = [](int code, int type, const QByteArray &sent, const QStringList &told = {}) {
            QTest::addRow("code %d", code)
                << "{PC"_ba + static_cast<char>(code) + '}' << type << sent << told;
        };
        for (const int code : {0, 17, 26})
            add(code, 1, "{{PCR}}{{X}}");
        for (const int code : {1, 31, 48, 100, 200, 255})
            add(code, 1, "{PCR}{X}");
        for (const int code : {46, 47})
            add(code, 2, "{{X}}");
        for (const int code : {34, 44})
            add(code, 3, "{VER}{X}");
        for (const int code : {35, 45})
            add(code, 4, "{X}", {u"state 1"_s});
        for (const int code : {33, 43})
            add(code, 5, "{X}");
        for (const int code : {32, 42})
            add(code, 6, "{X}");
        row("lower case", "{pc\x2e}"_ba, 2, "{{X}}"_ba, QStringList());
        row("upper case first", "{pc\x2e}{PC\x20}"_ba, 6, "{X}"_ba, QStringList());
        row("behind other text", "noise{{PC\x2c}}"_ba, 3, "{VER}{X}"_ba, QStringList());
        row("nothing behind it", "{PC"_ba, 1, "{{PCR}}{{X}}"_ba, QStringList());
    }
    void linkReplySelectsTypeAndBraces()
    {
        QFETCH(QByteArray, reply);
        QFETCH(int, type);
        QFETCH(QByteArray, sent);
        QFETCH(QStringList, told);
        DeviceRig rig;
        rig.openLink();
        QCOMPARE(rig.drain(), "{{PC S2 ON}}");
        rig.reply(reply);
        QVERIFY(rig.device->isConnectedAsCVComm());
        QCOMPARE(rig.device->connectionType(), type);
        rig.device->sendCommand(u"X"_s);
        QCOMPARE(rig.sent(), sent);
        QCOMPARE(rig.told->take(), told);
        QCOMPARE(rig.observer.events.contains(u"connected"_s), !told.isEmpty());
    }

    void noLinkReplyEndsTheAttempt_data()
    {
        QTest::addColumn<QByteArray>("reply");
        row("silence", QByteArray());
        row("garbage", QByteArray("\xff\xfe{P C}", 7));
        row("a zero byte before it", QByteArray("x\0{PC\x01}", 7));
        row("mixed case", "{Pc\x01}"_ba);
        row("huge", QByteArray(5000, '{'));
    }
    void noLinkReplyEndsTheAttempt()
    {
        QFETCH(QByteArray, reply);
        DeviceRig rig;
        rig.openLink();
        rig.journal.clear();
        rig.idleTimer.enabled = false;
        rig.reply(reply);
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
        QVERIFY(rig.idleTimer.enabled);
        QCOMPARE(rig.journal, QStringList{u"cancel A"_s});
        QCOMPARE(rig.log.count(u"[debug] cancelPeripheralConnection:"_s), 1);
        QVERIFY(!rig.device->isConnectedAsCVComm());
    }

    void identificationNeedsAConnectedPeripheral_data()
    {
        columns<int, QList<QByteArray>, QByteArray>("code", "before", "last");
        row("type 4", -1, QList<QByteArray>{}, "{PC\x23}"_ba);
        row("type 3", 34, QList<QByteArray>{}, DeviceRig::defaultVersion());
        row("type 1", 1, QList<QByteArray>{DeviceRig::pcrReply(), DeviceRig::defaultVersion()}, QByteArray());
    }
    void identificationNeedsAConnectedPeripheral()
    {
        QFETCH(int, code);
        QFETCH(QList<QByteArray>, before);
        QFETCH(QByteArray, last);
        DeviceRig rig;
        if (code < 0)
            rig.openLink();
        else
            rig.linkWithCode(code);
        for (const auto &answer : before)
            rig.reply(answer);
        rig.peripheral->setState(BluetoothPeripheral::State::Connecting);
        rig.reply(last);
        QCOMPARE(rig.told->take(), QStringList());
        QVERIFY(rig.device->isConnectedAsCVComm());
        rig.device->sendWaitCommand(2); // without a sequence, a missing reply is no failed connect
        rig.loop.advance(2s);
        QCOMPARE(rig.told->take(), QStringList());
    }

    void freeIsAnsweredByNothing()
    {
        LinkedRig rig;
        rig.device->sendWaitCommand(6);
        rig.told->take();
        rig.reply("1234");
        QCOMPARE(rig.device->pendingCommand(), 0);
        rig.device->sendWaitCommand(5);
        rig.reply("A 1");
        QCOMPARE(rig.device->getFileName(0), u"A"_s); // nothing of the dropped reply is left in front
    }

    void soundGoesOutOnRequest()
    {
        LinkedRig rig;
        QByteArray block;
        for (int i = 0; i < 45; ++i)
            block.append(static_cast<char>('A' + i));
        QVERIFY(!rig.device->uploadSoundData(block.first(14)));
        QCOMPARE(rig.sent(), "");
        const auto before = rig.peripheral->writes().size();
        rig.device->uploadSoundData(block);
        QCOMPARE(rig.peripheral->writes().mid(before),
                 (QList<QByteArray>{"{FLASH}", block.first(9), block.mid(9, 5)}));
        rig.sent();
        rig.loop.advance(100s);
        QCOMPARE(rig.device->pendingCommand(), 8);
        rig.peripheral->notify("\x01\x03");
        rig.loop.advance(100s);
        QCOMPARE(rig.drain(), "");
        rig.peripheral->notify("\x01\x02");
        QCOMPARE(rig.peripheral->writes().last().size(), 20);
        QCOMPARE(rig.drain(), block.mid(15));
        rig.peripheral->notify("\x02\x02");
        QCOMPARE(rig.drain(), block.mid(15) + block.mid(15));
        QCOMPARE(rig.device->pendingCommand(), 8);
        rig.device->sendWaitCommand(5);
        rig.reply("A 1");
        QCOMPARE(rig.device->getFilesCount(), 1);
    }

    void liveTextNeedsAnIdleEngine()
    {
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply({{8, "14"}})); // Greek keyboard; the language switch says English
        rig.peripheral->notify(QByteArray("\x80\xD2", 2));
        QCOMPARE(rig.told->take(), QStringList{u"live \u0391\uFFFD"_s});
        rig.device->sendWaitCommand(6);
        rig.peripheral->notify("reply");
        QCOMPARE(rig.told->take().filter(u"live"_s), QStringList());
        rig.loop.advance(2s);
        rig.device->setDataDelegate(nullptr);
        rig.peripheral->notify("nobody");
        rig.peripheral->value(BluetoothUuid(u"534945e7-bf79-427b-944a-31b9e444665d"_s), "x",
                              BluetoothError{u"e"_s});
        QCOMPARE(rig.told->take(), QStringList());
        QCOMPARE(rig.log.count(u"[info] - (void)peripheral:(CBPeripheral *)peripheral "
                               "didUpdateValueForCharacteristic:(CBCharacteristic *)"_s),
                 1);
    }

    void notificationsOfAnySizeAreWhole()
    {
        for (const int size : {0, 1, 31, 32, 33, 512}) {
            DeviceRig rig;
            rig.identify();
            const QString text(size, u'x');
            rig.peripheral->notify(text.toLatin1());
            QCOMPARE(rig.told->take(), size == 0 ? QStringList() : QStringList{QString(u"live "_s + text)});
            rig.device->setCvDownloadDelegate(rig.told);
            rig.device->getFile(u"A"_s, PlainTransfer);
            rig.peripheral->notify(text.toLatin1());
            rig.peripheral->notify("{PC\xFD}");
            QVERIFY(rig.told->events.contains(u"downloaded "_s + text));
        }
    }

    void uploadEndsOnFirstConfirmationWithAnEmptyQueue_data()
    {
        // by each confirmation
        columns<int, QList<QStringList>>("length", "told");
        const QStringList end{u"uploaded"_s, u"upload 1"_s};
        // Ten characters leave in seven writes at once; fifty keep 50 bytes in the queue behind the fourth write.
        row("all written at once", 10, QList<QStringList>{end, {}, {}, {}, {}, {}, {}});
        row("queued", 50,
            QList<QStringList>{{u"upload 0.4"_s}, {u"upload 0.8"_s}, {u"upload 1"_s}, end, {}, {}, {}});
    }
    void uploadEndsOnFirstConfirmationWithAnEmptyQueue()
    {
        QFETCH(int, length);
        QFETCH(QList<QStringList>, told);
        DeviceRig rig;
        rig.identify();
        rig.device->sendFileWithName(u"A"_s, QString(length, u'x'), PlainTransfer);
        QCOMPARE(rig.told->take(), QStringList());
        for (const QStringList &events : told) {
            QCOMPARE(rig.observer.take(), QStringList());
            rig.peripheral->confirmWrite();
            QCOMPARE(rig.told->take(), events);
        }
        QCOMPARE(rig.peripheral->unconfirmed(), 0);
        QCOMPARE(rig.observer.take(), QStringList{u"confirmed"_s});
        rig.device->sendCommand(u"X"_s);
        rig.drain();
        QCOMPARE(rig.told->take(), QStringList()); // reported once
    }

    void delegatesMayActInsideCallbacks()
    {
        DeviceRig rig;
        rig.identify();
        rig.told->react = [&](const QString &line) {
            if (line.startsWith(u"downloaded "_s) && line.endsWith(u"first"_s))
                rig.device->getFile(u"B"_s, PlainTransfer);
            else if (line == u"uploaded"_s)
                rig.device->setCvUploadDelegate(nullptr);
            else if (line.startsWith(u"live "_s))
                rig.device->setDataDelegate(nullptr);
            else if (line == u"download failed"_s)
                rig.device->setCvDownloadDelegate(nullptr);
        };
        rig.device->setCvDownloadDelegate(rig.told);
        rig.device->getFile(u"A"_s, PlainTransfer);
        rig.peripheral->notify("first{PC\xFD}");
        QCOMPARE(rig.device->pendingCommand(), 7);
        rig.peripheral->notify("second{PC\xFD}");
        QCOMPARE(rig.told->take().filter(u"downloaded"_s),
                 (QStringList{u"downloaded first"_s, u"downloaded second"_s}));
        rig.drain();
        rig.told->take();
        rig.device->sendFileWithName(u"C"_s, u"text"_s, PlainTransfer);
        rig.drain();
        QCOMPARE(rig.told->take().first(), u"uploaded"_s);
        rig.peripheral->notify("one");
        rig.peripheral->notify("two");
        QCOMPARE(rig.told->take(), QStringList{u"live one"_s});
        rig.device->getFile(u"A"_s, PlainTransfer);
        rig.told->react = [&](const QString &line) {
            if (line.startsWith(u"download "_s))
                rig.device->disconnectAsCVComm();
        };
        rig.peripheral->notify("rest{PC\xFD}");
        QVERIFY(!rig.device->isConnectedAsCVComm());
        QCOMPARE(rig.told->take().count(u"state 2"_s), 1);
        rig.told->react = [&](const QString &) { rig.device->setCvStateDelegate(nullptr); };
        rig.openLink();
        rig.reply("");
        QVERIFY(rig.told->take().contains(u"state 0"_s));
    }

    void observersMayLeaveInsideCallbacks()
    {
        DeviceRig rig;
        auto second = std::make_unique<RecordingObserver>();
        RecordingObserver third;
        rig.device->addLinkObserver(*second);
        rig.device->addLinkObserver(*second);
        rig.device->addLinkObserver(third);
        rig.observer.react = [&](const QString &) {
            rig.device->removeLinkObserver(rig.observer);
            if (second)
                rig.device->removeLinkObserver(*second);
            second.reset();
        };
        rig.openLink();
        rig.peripheral->confirmWrite();
        QCOMPARE(rig.observer.take(), QStringList{u"confirmed"_s});
        QCOMPARE(third.take(), QStringList{u"confirmed"_s});
        rig.device->sendCommand(u"X"_s);
        rig.peripheral->confirmWrite();
        QCOMPARE(rig.observer.take(), QStringList());
        rig.device->addLinkObserver(third);
        rig.device->sendCommand(u"X"_s);
        rig.peripheral->confirmWrite();
        QCOMPARE(third.take().size(), 2); // one for each of the two, though added twice
        rig.device->removeLinkObserver(third);
    }

    void serialPortTakesTheBytes()
    {
        DeviceRig rig;
        const auto port = std::make_shared<SerialPort>();
        QCOMPARE(rig.device->portName(), u"S2"_s);
        rig.device->serialPortWasOpened(port);
        QCOMPARE(rig.device->portName(), u"USB"_s);
        QCOMPARE(port->take(), "{{PC USB ON}}");
        rig.device->serialPortDidReceiveData("{PC\x01}");
        rig.loop.advance(2s);
        QCOMPARE(port->take(), "{USB HS S}{USB OFF}{PCR}");
        rig.device->serialPortDidReceiveData(DeviceRig::pcrReply({{8, "14"}}));
        rig.loop.advance(2s);
        rig.device->serialPortDidReceiveData("1.2A345SN123456W1");
        rig.loop.advance(4s);
        port->take();
        rig.told->take();
        rig.device->serialPortDidReceiveData(QByteArray("\x82", 1)); // read in the switch's language, English
        QCOMPARE(rig.told->take(), QStringList{u"live \u00e9"_s});
        rig.device->sendData(QByteArray(30, 'a'));
        QCOMPARE(port->take(), QByteArray(20, 'a'));
        rig.device->serialPortDidWriteData();
        QCOMPARE(port->take(), QByteArray(10, 'a'));
        rig.device->disconnectAsCVComm();
        rig.device->serialPortDidWriteData();
        QCOMPARE(port->take(), "{NW OFF}{PC USB OFF}{USB HS H}");
        QCOMPARE(rig.peripheral->writes().size(), 0);
    }

    void connectionObjectTakesTheBytes()
    {
        DeviceRig rig;
        const auto connection = std::make_shared<Connection>();
        rig.device->setConnection(connection);
        rig.device->connectAsCVComm();
        QCOMPARE(connection->bytes, "{{PC S2 ON}}");
        const auto delegate = connection->delegate.lock();
        QVERIFY(delegate);
        delegate->cvConnectionDidReceiveData(*connection, "{PC\x23}");
        rig.loop.advance(2s);
        QCOMPARE(rig.told->take(), QStringList{u"state 1"_s});
        rig.device->sendData(QByteArray(30, 'a'));
        delegate->cvConnectionDidWriteData(*connection);
        QCOMPARE(connection->bytes, "{{PC S2 ON}}" + QByteArray(30, 'a'));
    }

    void disconnectingTellsTheDeviceFirst()
    {
        DeviceRig rig;
        rig.identify(DeviceRig::pcrReply(), DeviceRig::defaultVersion(), "A 1");
        rig.journal.clear();
        rig.idleTimer.enabled = false;
        rig.device->disconnectAsCVComm();
        QCOMPARE(rig.told->take(), QStringList{u"state 2"_s});
        QVERIFY(rig.idleTimer.enabled);
        QVERIFY(!rig.device->isConnectedAsCVComm());
        QCOMPARE(rig.device->connectionType(), 0);
        QCOMPARE(rig.device->stringEncoding(), StringEncoding::Ascii);
        QCOMPARE(rig.device->getFilesCount(), 0);
        QCOMPARE(rig.drain(), "{NW OFF}{PC S2 OFF}");
        rig.loop.advance(1999ms);
        QCOMPARE(rig.journal, QStringList());
        rig.loop.advance(1ms);
        QCOMPARE(rig.journal, QStringList{u"cancel A"_s});
        QCOMPARE(rig.log.count(u"[debug] cancelPeripheralConnection:"_s), 1);
        rig.observer.take();
        rig.central->disconnected(rig.peripheral);
        QCOMPARE(rig.observer.take(), QStringList{u"closed"_s});
        QCOMPARE(rig.told->take(), QStringList());
        QCOMPARE(rig.loop.pendingCalls(), size_t{0});
    }

    void disconnectingWhenNotConnectedOnlyEmptiesTheList()
    {
        DeviceRig rig;
        rig.device->setFiles({CVFileData(u"A"_s, 1)});
        rig.device->disconnectAsCVComm();
        QCOMPARE(rig.device->getFilesCount(), 0);
        QCOMPARE(rig.told->take(), QStringList());
        QCOMPARE(rig.journal, QStringList());
        rig.device->cableDisconnected();
        QCOMPARE(rig.log.count(u"[info] cableDisconnected"_s), 1);
        rig.device->setIsConnectedAsCVComm(true);
        rig.device->cableConnected();
        QVERIFY(!rig.device->isConnectedAsCVComm());
    }
};

QTEST_GUILESS_MAIN(tst_Engine)
#include "tst_engine.moc"
