// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/BluetoothIdentifiers.h"
#include "support/DeviceRig.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace BluetoothIdentifiers;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const BluetoothError boom{u"boom"_s};

} // namespace

// The link to the chosen device, from the first connect to its loss.
class tst_Link : public QObject
{
    Q_OBJECT

    static void begin(DeviceRig &rig, const QString &action, int &listed)
    {
        if (action == u"fetch"_s) {
            rig.device->setCvDownloadDelegate(rig.told);
            rig.device->getFile(u"A"_s, BackTranslation);
            rig.peripheral->notify("half of a te");
        } else if (action == u"store"_s || action == u"short store"_s) {
            rig.device->sendFileWithName(u"A"_s, QString(action == u"store"_s ? 500 : 5, u'x'),
                                         ForwardTranslation);
        } else if (action == u"emboss"_s) {
            rig.device->embossString(QString(500, u'x'), ForwardTranslation);
        } else if (action == u"listing"_s) {
            rig.device->refreshFilesWithCompletionHandler([&] { ++listed; });
            rig.peripheral->notify("GHOST 1\r\n");
        } else if (action == u"sound"_s) {
            rig.device->uploadSoundData(QByteArray(100, 's'));
        }
    }

    // A new link starts with nothing of the earlier one.
    static void checkCleanStart(DeviceRig &rig)
    {
        rig.sent();
        rig.openLink();
        QCOMPARE(rig.sent(), "{{PC S2 ON}}");
        rig.told->take();
        rig.drain();
        QCOMPARE(rig.told->take(), QStringList()); // no end of an upload of the earlier link
        rig.reply("{PC\x01}");
        for (const auto &answer : {DeviceRig::pcrReply(), DeviceRig::defaultVersion(), "B 2"_ba})
            rig.reply(answer);
        QVERIFY(rig.told->take().contains(u"state 1"_s));
        QCOMPARE(rig.device->getFilesCount(), 1);
        QCOMPARE(rig.device->getFileName(0), u"B"_s);
        QCOMPARE(rig.drain(), "{PCR}{VER1}{NW}{DIR}");
        rig.device->embossString(u"x"_s, PlainTransfer);
        QCOMPARE(rig.drain(), "x"); // modes toggled on the earlier link are not toggled back on this one
        rig.peripheral->notify("\x02");
        QCOMPARE(rig.drain(), "");
    }

private slots:
    void linkIsMadeStepByStep()
    {
        DeviceRig rig;
        const auto take = [&] { return std::exchange(rig.journal, {}); };
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        QCOMPARE(take(), QStringList{u"connect A"_s});
        QCOMPARE(rig.log.count(u"[debug] connectPeripheral:"_s), 1);
        QCOMPARE(rig.log.lines.filter(u" - 1"_s).size(), 1);
        QCOMPARE(rig.log.count(u"[debug] -(void)startBluetoothTimer"_s), 1);
        rig.loop.advance(4999ms);
        rig.central->connected(rig.peripheral);
        QVERIFY(!rig.log.lines.filter(u"-(void)stopBluetoothTimer"_s).isEmpty());
        QCOMPARE(take(), QStringList{u"services A [1e45e5bb]"_s});
        rig.loop.advance(4999ms);
        rig.peripheral->foundServices({genericAccessService(), deviceService()});
        QCOMPARE(take(), QStringList{u"characteristics A 1e45e5bb [534945e7]"_s});
        rig.loop.advance(4999ms);
        rig.peripheral->foundCharacteristics(deviceService(), {infoCharacteristic(), dataCharacteristic()});
        QCOMPARE(take(), QStringList{u"notify A 534945e7"_s});
        rig.peripheral->notificationState();
        rig.loop.advance(99ms);
        QCOMPARE(rig.sent(), "");
        rig.loop.advance(1ms);
        QCOMPARE(rig.sent(), "{{PC S2 ON}}");
        QCOMPARE(rig.device->pendingCommand(), 1);
        rig.central->discover(rig.peripheral); // the manager hears nothing of it
        QCOMPARE(take(), QStringList());
        QCOMPARE(rig.told->take(), QStringList());
    }

    void everyStepHasFiveSeconds_data()
    {
        columns<int, bool>("step", "cancels");
        row("connecting", 0, true);
        row("services", 1, true);
        row("characteristics", 2, true);
        row("already disconnected", 3, false);
    }

    void everyStepHasFiveSeconds()
    {
        QFETCH(int, step);
        QFETCH(bool, cancels);
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.loop.advance(1s);
        if (step == 1 || step == 2)
            rig.central->connected(rig.peripheral);
        if (step == 2)
            rig.peripheral->foundServices({deviceService()});
        if (step == 3) {
            rig.peripheral->setState(BluetoothPeripheral::State::Disconnected);
            rig.loop.advance(3999ms);
        } else {
            rig.loop.advance(step == 0 ? 3999ms : 4999ms);
        }
        QCOMPARE(rig.told->take(), QStringList());
        rig.journal.clear();
        rig.loop.advance(1ms);
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
        QCOMPARE(rig.journal, cancels ? QStringList{u"cancel A"_s} : QStringList());
        QCOMPARE(rig.log.count(u"[***ERROR***] [CVTamber Error]: -(void)bluetoothTimeout"_s), 1);
        QCOMPARE(rig.log.count(u"[debug] cancelPeripheralConnection:"_s), cancels ? 1 : 0);
        rig.central->disconnected(rig.peripheral);
        rig.loop.advance(60s);
        QCOMPARE(rig.told->take(), QStringList());
    }

    void failedConnectKeepsTheTimer()
    {
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.loop.advance(1s);
        rig.central->failedToConnect(rig.peripheral, u"boom"_s);
        QCOMPARE(rig.told->take(), QStringList{u"state 2"_s});
        QVERIFY(rig.log.lines.contains(u"[info] boom"_s));
        rig.loop.advance(3999ms);
        QCOMPARE(rig.told->take(), QStringList());
        rig.loop.advance(1ms);
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
    }

    void discoveryErrorEndsTheAttempt_data()
    {
        QTest::addColumn<bool>("inServices");
        row("services", true);
        row("characteristics", false);
    }

    void discoveryErrorEndsTheAttempt()
    {
        QFETCH(bool, inServices);
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.central->connected(rig.peripheral);
        rig.peripheral->foundServices({deviceService()},
                                      inServices ? BluetoothResult(boom) : BluetoothResult());
        rig.journal.clear();
        if (!inServices)
            rig.peripheral->foundCharacteristics(deviceService(), {dataCharacteristic()}, boom);
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
        rig.central->disconnected(rig.peripheral);
        rig.loop.advance(60s);
        QCOMPARE(rig.told->take(), QStringList());
        QCOMPARE(rig.sent(), "");
        QCOMPARE(rig.log.count(u"[debug] cancelPeripheralConnection:"_s), 1);
    }

    void missingPartsEndTheAttempt_data()
    {
        QTest::addColumn<bool>("hasService");
        row("no device service", false);
        row("no data characteristic", true);
    }

    void missingPartsEndTheAttempt()
    {
        QFETCH(bool, hasService);
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.central->connected(rig.peripheral);
        int requests = 0;
        const auto start = rig.loop.now();
        while (!rig.told->events.contains(u"state 0"_s) && rig.loop.now() - start < 30s) {
            const auto request = rig.journal.isEmpty() ? QString() : rig.journal.takeLast();
            if (request.startsWith(u"services"_s)) {
                ++requests;
                rig.peripheral->foundServices(hasService ? QList{deviceService()}
                                                         : QList{genericAccessService()});
            } else if (request.startsWith(u"characteristics"_s)) {
                ++requests;
                rig.peripheral->foundCharacteristics(deviceService(), {infoCharacteristic()});
            }
            rig.loop.advance(1s);
        }
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
        QVERIFY2(requests < 5, qPrintable(QString::number(requests)));
        if (!hasService)
            QVERIFY(!rig.log.lines.filter(u"ERROR: Corvane service not found!"_s).isEmpty());
    }

    void strangerIsLetGo()
    {
        DeviceRig rig;
        const auto stranger = std::make_shared<FakePeripheral>(u"B"_s, QString(), rig.journal);
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.journal.clear();
        rig.loop.advance(1s);
        rig.central->connected(stranger);
        QCOMPARE(rig.journal, QStringList{u"cancel B"_s});
        rig.central->disconnected(stranger, boom);
        QVERIFY(!rig.journal.contains(u"connect B"_s));
        rig.loop.advance(3999ms);
        QCOMPARE(rig.told->take(), QStringList());
        rig.loop.advance(1ms);
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s}); // the chosen one's time was not prolonged
        rig.identify();
        rig.journal.clear();
        rig.central->connected(stranger);
        QCOMPARE(rig.journal, QStringList{u"cancel B"_s});
        rig.central->disconnected(stranger, boom);
        QVERIFY(rig.device->isConnectedAsCVComm());
        QCOMPARE(rig.told->take(), QStringList());
        QVERIFY(!rig.journal.contains(u"connect B"_s));
    }

    void lossBeforeTheProtocolIsRetried()
    {
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.central->connected(rig.peripheral);
        rig.loop.advance(4s);
        rig.journal.clear();
        rig.loseLink();
        QCOMPARE(rig.journal, QStringList{u"connect A"_s});
        QCOMPARE(rig.log.lines.filter(u" - 3 (try No.: 2)"_s).size(), 1);
        QCOMPARE(rig.told->take(), QStringList());
        rig.loop.advance(4999ms);
        QCOMPARE(rig.told->take(), QStringList());
        rig.openLink();
        QVERIFY(rig.sent().endsWith("{{PC S2 ON}}"));
    }

    void lossBeforeConnectedIsRetried()
    {
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.journal.clear();
        rig.loseLink();
        QCOMPARE(rig.journal, QStringList{u"connect A"_s});
        QCOMPARE(rig.log.lines.filter(u" - 3 (try No.: 1)"_s).size(), 1);
        rig.loop.advance(5s);
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
    }

    void retriesEnd_data()
    {
        columns<int, int>("lostBefore", "lastTry");
        row("each link is made and lost", 0, 200);
        row("one is lost before it is made", 1, 201);
    }

    void retriesEnd()
    {
        QFETCH(int, lostBefore);
        QFETCH(int, lastTry);
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        for (int i = 0; i < lostBefore; ++i)
            rig.loseLink();
        int losses = 0;
        for (; losses < 500 && rig.told->events.isEmpty(); ++losses) {
            rig.central->connected(rig.peripheral);
            rig.loseLink();
        }
        // Each round counts twice, the connect and the retry, and none follows once the count is 201.
        QCOMPARE(losses, 101);
        QCOMPARE(rig.journal.count(u"connect A"_s), 101 + lostBefore);
        QVERIFY(rig.log.lines.filter(u" - 3 (try No.: "_s).last().endsWith(u"%1)"_s.arg(lastTry)));
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
    }

    void lossJustBeforeTheLinkCommandIsRetried()
    {
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.central->connected(rig.peripheral);
        rig.peripheral->foundServices({deviceService()});
        rig.peripheral->foundCharacteristics(deviceService(), {dataCharacteristic()});
        rig.loop.advance(50ms);
        rig.loseLink();
        rig.loop.advance(4s);
        QCOMPARE(rig.device->pendingCommand(), 0); // no link command into the air
        QCOMPARE(rig.told->take(), QStringList());
    }

    void lateAnswersChangeNothing()
    {
        DeviceRig rig; // the manager had asked for all services when the device was chosen
        rig.linkWithCode(1);
        rig.journal.clear();
        rig.drain();
        rig.peripheral->foundServices({deviceService()});
        QCOMPARE(rig.journal, QStringList());
        rig.loop.advance(1s);
        QCOMPARE(rig.drain(), "");
        QCOMPARE(rig.device->pendingCommand(), 4);
        rig.loop.advance(10s);
        QCOMPARE(rig.log.lines.filter(u"bluetoothTimeout"_s), QStringList());
    }

    void serialNumberIsReadFromTheInformation()
    {
        DeviceRig rig;
        rig.openLink();
        const auto information = std::make_shared<BluetoothCharacteristic>();
        rig.device->setCvBtInfoCharacteristic(information);
        auto &receiver = *rig.peripheral->delegate();
        receiver.peripheralDidUpdateValue(rig.peripheral, information, "short", {});
        QVERIFY(rig.device->cvSerialNumber().isNull());
        receiver.peripheralDidUpdateValue(rig.peripheral, information, "SN765432,Room 4", {});
        QCOMPARE(rig.device->cvSerialNumber(), u"SN765432"_s);
        QCOMPARE(rig.told->take(), QStringList{u"serial SN765432"_s});
        rig.reply("{PC\x01}");
        rig.reply(DeviceRig::pcrReply());
        rig.reply("1.2A345SN111111W1");
        QCOMPARE(rig.device->cvSerialNumber(), u"SN765432"_s);
    }

    void notificationErrorStopsWrites()
    {
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.central->connected(rig.peripheral);
        rig.peripheral->foundServices({deviceService()});
        rig.peripheral->foundCharacteristics(deviceService(), {dataCharacteristic()});
        rig.peripheral->notificationState(boom);
        rig.loop.advance(10s);
        QCOMPARE(rig.sent(), "");
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
        QVERIFY(rig.journal.contains(u"cancel A"_s));
    }

    void lossInTheConnectSequence()
    {
        DeviceRig rig;
        rig.linkWithCode(1); // PCR is asked
        QCOMPARE(rig.device->pendingCommand(), 4);
        rig.journal.clear();
        rig.loseLink();
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
        QVERIFY(!rig.device->isConnectedAsCVComm());
        QCOMPARE(rig.device->pendingCommand(), 0);
        QCOMPARE(rig.journal, QStringList()); // no retry
        rig.loop.advance(60s);
        QCOMPARE(rig.told->take(), QStringList());
        QCOMPARE(rig.loop.pendingCalls(), size_t{0});
    }

    void lossDropsWhatWasUnderWay_data()
    {
        columns<QString, QStringList>("action", "told");
        row("nothing", u"nothing"_s, QStringList{u"state 0"_s});
        row("fetch", u"fetch"_s, QStringList{u"download failed"_s, u"state 0"_s});
        row("queued upload", u"store"_s, QStringList{u"state 0"_s, u"upload failed"_s});
        row("written upload", u"short store"_s, QStringList{u"state 0"_s, u"upload failed"_s});
        row("emboss with modes", u"emboss"_s, QStringList{u"state 0"_s, u"upload failed"_s});
        row("listing", u"listing"_s, QStringList{u"state 0"_s});
        row("sound", u"sound"_s, QStringList{u"state 0"_s});
    }

    void lossDropsWhatWasUnderWay()
    {
        QFETCH(QString, action);
        QFETCH(QStringList, told);
        DeviceRig rig;
        rig.identify();
        rig.idleTimer.enabled = false;
        int listed = 0;
        begin(rig, action, listed);
        rig.told->take();
        rig.journal.clear();
        rig.loseLink();
        auto events = rig.told->take();
        events.sort();
        QCOMPARE(events, told);
        QCOMPARE(rig.observer.take(), QStringList{u"lost"_s});
        QVERIFY(rig.idleTimer.enabled);
        QVERIFY(!rig.device->isConnectedAsCVComm());
        QCOMPARE(rig.device->connectionType(), 0);
        QCOMPARE(rig.device->stringEncoding(), StringEncoding::Ascii);
        QCOMPARE(rig.device->queuedBytes(), 0);
        QCOMPARE(rig.device->unconfirmedWrites(), 0);
        QCOMPARE(rig.device->pendingCommand(), 0);
        QCOMPARE(rig.journal, QStringList());
        rig.loop.advance(60s);
        QCOMPARE(rig.told->take(), QStringList());
        QCOMPARE(rig.loop.pendingCalls(), size_t{0});

        rig.device->setCvDownloadDelegate(nullptr);
        const auto listedByLoss = listed;
        checkCleanStart(rig);
        QCOMPARE(listed, listedByLoss);
    }

    void lossWithoutErrorIsALossToo()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->sendFileWithName(u"A"_s, QString(500, u'x'), PlainTransfer);
        rig.central->disconnected(rig.peripheral);
        QCOMPARE(rig.observer.take(), QStringList{u"lost"_s});
        QVERIFY(rig.told->take().contains(u"upload failed"_s));
        QCOMPARE(rig.device->queuedBytes(), 0);
        QCOMPARE(rig.device->pendingCommand(), 0);
    }

    void liveTextIsThatOfAnIdentifiedDevice()
    {
        DeviceRig rig;
        rig.openLink();
        rig.drain();
        rig.reply("{PC\x01}");
        rig.told->take();
        rig.drain();
        rig.reply(DeviceRig::pcrReply());
        rig.drain();
        rig.reply(DeviceRig::defaultVersion());
        rig.drain();
        rig.reply({});
        rig.peripheral->notify("a");
        rig.device->setCvDownloadDelegate(rig.told);
        rig.device->getFile(u"A"_s, PlainTransfer);
        rig.peripheral->notify("half of a file");
        rig.device->disconnectAsCVComm();
        rig.peripheral->notify("its other half");
        QCOMPARE(rig.told->take().filter(u"live"_s), QStringList{u"live a"_s});
    }

    void aDelegateThatDisconnectsInStateOneIsNotConnected()
    {
        DeviceRig rig;
        rig.linkWithCode(34);
        rig.drain();
        rig.observer.take();
        rig.told->react = [&](const QString &event) {
            if (event == u"state 1"_s)
                rig.device->disconnectAsCVComm();
        };
        rig.reply(DeviceRig::defaultVersion());
        QVERIFY(rig.told->take().contains(u"state 2"_s));
        QVERIFY(!rig.observer.take().contains(u"connected"_s));
    }

    void anAskedForEndHasNoTimeOut()
    {
        DeviceRig rig;
        rig.device->connectAsCVCommWithPeripheral(rig.peripheral);
        rig.central->connected(rig.peripheral);
        rig.device->disconnectPeripheral();
        rig.loop.advance(10s);
        QVERIFY(!rig.told->take().contains(u"state 0"_s));
    }

    // Whoever scans hears of the end of the link in the device object's place.
    void aLinkThatEndedUnheardTakesNoWrites()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->disconnectAsCVComm();
        rig.manager->startDeviceScan();
        rig.loop.advance(2s);
        rig.central->disconnected(rig.peripheral);
        rig.sent();
        rig.device->sendCommand(u"CHAT"_s);
        QCOMPARE(rig.sent(), QByteArray());
    }

    void ownScanAfterAChosenDevice()
    {
        DeviceRig rig;
        rig.identify();
        rig.loseLink();
        rig.device->connectAsCVComm();
        rig.ownCentral->setState(BluetoothCentral::State::PoweredOn);
        const auto found = std::make_shared<FakePeripheral>(u"B"_s, u"Bluegiga CR device"_s, rig.journal);
        rig.ownCentral->discover(found);
        rig.journal.clear();
        rig.ownCentral->connected(found);
        QVERIFY(!rig.journal.contains(u"cancel B"_s));
    }

    void newConnectDropsTheDelayedDisconnect()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->disconnectAsCVComm();
        rig.loop.advance(1s);
        rig.journal.clear();
        rig.linkWithCode(35);
        rig.loop.advance(10s);
        QVERIFY(!rig.journal.contains(u"cancel A"_s));
        QVERIFY(rig.device->isConnectedAsCVComm());
    }

    void lossDropsTheDelayedDisconnect()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->disconnectAsCVComm();
        rig.told->take();
        rig.loop.advance(1s);
        rig.journal.clear();
        rig.loseLink();
        rig.loop.advance(10s);
        QCOMPARE(rig.journal, QStringList());
        QCOMPARE(rig.told->take(), QStringList()); // state 2 was told when it was asked for
        QCOMPARE(rig.loop.pendingCalls(), size_t{0});
    }

    void stallIsToldOncePerSilence()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->sendData(QByteArray(100, 'x'));
        rig.loop.advance(5999ms);
        QCOMPARE(rig.observer.take(), QStringList());
        rig.loop.advance(1ms);
        QCOMPARE(rig.observer.take(), QStringList{u"stalled"_s});
        rig.loop.advance(60s);
        QCOMPARE(rig.observer.take(), QStringList());
        rig.peripheral->confirmWrite();
        rig.loop.advance(5999ms);
        QCOMPARE(rig.observer.take(), QStringList());
        rig.loop.advance(1ms);
        QCOMPARE(rig.observer.take(), QStringList{u"stalled"_s});
        rig.drain();
        rig.loop.advance(60s);
        QCOMPARE(rig.observer.take(), QStringList{u"confirmed"_s});
    }

    void failedWriteIsToldAndTheQueueGoesOn()
    {
        DeviceRig rig;
        rig.identify();
        rig.device->sendData(QByteArray(20, 'a') + QByteArray(20, 'b'));
        rig.peripheral->failWrite(u"boom"_s);
        QCOMPARE(rig.observer.take(), QStringList{u"write failed: boom"_s});
        QCOMPARE(rig.drain(), QByteArray(20, 'a') + QByteArray(20, 'b'));
    }

    void ownScanTakesTheNamedDevice()
    {
        DeviceRig rig;
        const auto other = std::make_shared<FakePeripheral>(u"C"_s, u"Bluegiga CR device 2"_s, rig.journal);
        const auto named = std::make_shared<FakePeripheral>(u"D"_s, ownScanName(), rig.journal);
        const auto take = [&] { return std::exchange(rig.journal, {}); };
        rig.device->connectAsCVComm();
        QVERIFY(rig.ownCentral);
        QCOMPARE(take(), QStringList());
        rig.ownCentral->setState(BluetoothCentral::State::PoweredOn);
        QCOMPARE(take(), QStringList{u"scan [00001800,0000180d,0bd51666] duplicates"_s});
        rig.ownCentral->discover(other);
        QCOMPARE(take(), QStringList());
        rig.ownCentral->discover(named);
        QCOMPARE(take(), (QStringList{u"stopScan"_s, u"connect D"_s}));
        QCOMPARE(rig.log.count(u"[debug] connectPeripheral:"_s), 1);
        QVERIFY(!rig.log.lines.filter(u" - 2"_s).isEmpty());
        rig.ownCentral->connected(named);
        QCOMPARE(take(), QStringList{u"services D [00001800]"_s});
        named->foundServices({genericAccessService()});
        QCOMPARE(take(), QStringList{u"services D []"_s});
        named->foundServices({genericAccessService(), deviceService()});
        QCOMPARE(take(), QStringList{u"characteristics D 1e45e5bb [534945e7]"_s});
        named->foundCharacteristics(deviceService(), {dataCharacteristic()});
        named->notificationState();
        rig.loop.advance(100ms);
        QCOMPARE(named->writes(), QList<QByteArray>{"{{PC S2 ON}}"});
        named->notify("{PC\x23}");
        rig.loop.advance(20s);
        QCOMPARE(rig.told->take(), QStringList{u"state 1"_s}); // the scan's ten seconds were stopped
    }

    void ownScanEndsAfterTenSeconds()
    {
        DeviceRig rig;
        rig.device->connectAsCVComm();
        rig.ownCentral->setState(BluetoothCentral::State::PoweredOn);
        rig.loop.advance(9999ms);
        QCOMPARE(rig.told->take(), QStringList());
        rig.loop.advance(1ms);
        QCOMPARE(rig.told->take(), QStringList{u"state 0"_s});
    }
};

QTEST_GUILESS_MAIN(tst_Link)
#include "tst_link.moc"
