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

class FoundDevices final : public CVBluetoothManagerDelegate
{
public:
    void newDeviceFound(const CVBTPeripheralPtr &device) override { found.append(device); }

    QList<CVBTPeripheralPtr> found;
};

// A manager that is scanning, with peripheral "A" in reach.
struct ManagerRig
{
    explicit ManagerRig(BluetoothCentral::State state = BluetoothCentral::State::PoweredOn)
    {
        auto owned = std::make_unique<FakeCentral>(journal);
        central = owned.get();
        manager = CVBluetoothManager::create(loop, log, std::move(owned));
        manager->setDelegate(listener);
        central->setState(state);
    }
    // Found, connected, and all services asked for.
    void connect()
    {
        manager->startDeviceScan();
        central->discover(peripheral);
        loop.advance(500ms);
        central->connected(peripheral);
        loop.advance(500ms);
    }
    QStringList take() { return std::exchange(journal, {}); }

    ManualRunLoop loop;
    RecordingLog log;
    QStringList journal;
    FakeCentral *central = nullptr;
    std::shared_ptr<FoundDevices> listener = std::make_shared<FoundDevices>();
    std::shared_ptr<CVBluetoothManager> manager;
    std::shared_ptr<FakePeripheral> peripheral =
        std::make_shared<FakePeripheral>(u"A"_s, u"Corvane"_s, journal);
};

} // namespace

// Finding devices: what a scan asks each device, and whom it announces.
class tst_Manager : public QObject
{
    Q_OBJECT

private slots:
    void managerReadsEachDeviceOnce()
    {
        ManagerRig rig;
        rig.manager->startDeviceScan();
        QCOMPARE(rig.take(), QStringList{u"scan [1e45e5bb] duplicates"_s});
        rig.central->discover(rig.peripheral);
        rig.loop.advance(499ms);
        QCOMPARE(rig.take(), QStringList());
        rig.central->discover(rig.peripheral);
        rig.loop.advance(1ms);
        QCOMPARE(rig.take(), QStringList{u"connect A"_s});
        rig.central->connected(rig.peripheral);
        QCOMPARE(rig.log.count(u"[info] didConnectPeripheral"_s), 1);
        rig.loop.advance(499ms);
        QCOMPARE(rig.take(), QStringList());
        rig.loop.advance(1ms);
        QCOMPARE(rig.take(), QStringList{u"services A []"_s});
        rig.peripheral->foundServices({genericAccessService(), deviceService()});
        QCOMPARE(rig.take(), QStringList{u"characteristics A 1e45e5bb [fa3e6100]"_s});
        rig.peripheral->foundCharacteristics(deviceService(), {dataCharacteristic(), infoCharacteristic()});
        QCOMPARE(rig.take(), QStringList{u"read A fa3e6100"_s});
        rig.peripheral->value(infoCharacteristic(), "12345678,Room 4");
        QCOMPARE(rig.log.count(u"[debug] 12345678,Room 4"_s), 1);
        QCOMPARE(rig.take(), QStringList{u"cancel A"_s});
        QCOMPARE(rig.manager->devices(), rig.listener->found);
        QCOMPARE(rig.listener->found.size(), 1);
        QCOMPARE(rig.listener->found[0]->peripheral(), BluetoothPeripheralPtr(rig.peripheral));
        rig.central->disconnected(rig.peripheral);
        QVERIFY(rig.log.lines.last().endsWith(u"didDisconnectPeripheral - NO ERROR"_s));
        rig.take();
        rig.central->discover(rig.peripheral);
        rig.loop.advance(10s);
        QCOMPARE(rig.take(), QStringList());
        QVERIFY(!rig.manager->hasSilentDevice());
    }

    void newScanForgetsTheEarlierOne()
    {
        ManagerRig rig;
        rig.connect();
        rig.peripheral->foundServices({deviceService()});
        rig.peripheral->foundCharacteristics(deviceService(), {});
        QCOMPARE(rig.manager->devices().size(), 1);
        rig.take();
        rig.manager->stopDeviceScan();
        QCOMPARE(rig.take(), QStringList{u"stopScan"_s});
        rig.manager->startDeviceScan();
        QCOMPARE(rig.manager->devices().size(), 0);
        rig.central->discover(rig.peripheral);
        rig.loop.advance(500ms);
        QVERIFY(rig.take().contains(u"connect A"_s));
    }

    void informationIsReadAsCsv_data()
    {
        columns<QByteArray, QString, QString>("value", "serial", "name");
        row("both", "12345678,Corvane 7"_ba, u"12345678"_s, u"Corvane 7"_s);
        row("no name", "12345678"_ba, u"12345678"_s, QString());
        row("not ASCII", "1,B\xc3\xa9"_ba, u"1"_s, u"Bé"_s);
        row("third field", "1,B,C"_ba, u"1"_s, u"B"_s);
        row("one byte", "1"_ba, QString(), QString());
        row("empty", QByteArray(), QString(), QString());
        row("not UTF-8", "12,\xff\xfe"_ba, QString(), QString());
    }

    void informationIsReadAsCsv()
    {
        QFETCH(QByteArray, value);
        QFETCH(QString, serial);
        QFETCH(QString, name);
        ManagerRig rig;
        rig.connect();
        rig.peripheral->foundServices({deviceService()});
        rig.peripheral->foundCharacteristics(deviceService(), {infoCharacteristic()});
        rig.take();
        rig.peripheral->value(infoCharacteristic(), value);
        QCOMPARE(rig.take(), QStringList{u"cancel A"_s});
        QCOMPARE(rig.listener->found.size(), 1);
        QCOMPARE(rig.listener->found[0]->serialNumber(), serial);
        QCOMPARE(rig.listener->found[0]->airName(), name);
        QCOMPARE(rig.listener->found[0]->airName().isNull(), name.isNull());
    }

    void informationIsLookedForInTwoServices_data()
    {
        columns<bool, bool>("hasAccessService", "hasCharacteristic");
        row("in the access service", true, true);
        row("not there either", true, false);
        row("no access service", false, false);
    }

    void informationIsLookedForInTwoServices()
    {
        QFETCH(bool, hasAccessService);
        QFETCH(bool, hasCharacteristic);
        ManagerRig rig;
        rig.connect();
        if (hasAccessService)
            rig.peripheral->foundServices({deviceService(), genericAccessService()});
        else
            rig.peripheral->foundServices({deviceService()});
        rig.take();
        rig.peripheral->foundCharacteristics(deviceService(), {dataCharacteristic()});
        if (hasAccessService) {
            QCOMPARE(rig.listener->found.size(), 0);
            QCOMPARE(rig.take(), QStringList{u"characteristics A 00001800 [4e8b39af]"_s});
            rig.peripheral->foundCharacteristics(genericAccessService(),
                                                 hasCharacteristic ? QList{secondInfoCharacteristic()}
                                                                   : QList<BluetoothUuid>());
        }
        if (hasCharacteristic) {
            QCOMPARE(rig.take(), QStringList{u"read A 4e8b39af"_s});
            rig.peripheral->value(secondInfoCharacteristic(), "42,B");
        }
        QCOMPARE(rig.listener->found.size(), 1);
        QCOMPARE(rig.listener->found[0]->serialNumber(), hasCharacteristic ? u"42"_s : QString());
        QCOMPARE(rig.manager->devices().size(), 1);
    }

    void failedDeviceIsTriedAgain_data()
    {
        columns<int, QString>("step", "line");
        row("services", 0, u"[***ERROR***] error: "_s);
        row("no device service", 1, u"CVTamber Error: Corvane Brailler Bluetooth Service not found!"_s);
        row("characteristics", 2, u"[***ERROR***] error: "_s);
        row("value", 3, u"[***ERROR***] error: "_s);
        row("connect", 4, u"Connection to peripheral failed."_s);
        row("silence", 5, u"[***ERROR***] The device was not read in 5 seconds."_s);
    }

    // Not before 5 seconds have passed since it was seen, which is when the rig begins.
    void failedDeviceIsTriedAgain()
    {
        QFETCH(int, step);
        QFETCH(QString, line);
        ManagerRig rig;
        rig.connect();
        rig.take();
        if (step == 5) {
            rig.loop.advance(4499ms);
            QCOMPARE(rig.take(), QStringList());
            rig.loop.advance(1ms);
        } else if (step == 4) {
            rig.central->failedToConnect(rig.peripheral, u"boom"_s);
        } else if (step < 2) {
            rig.peripheral->foundServices({genericAccessService()},
                                          step == 0 ? BluetoothResult(boom) : BluetoothResult());
        } else {
            rig.peripheral->foundServices({deviceService()});
            rig.peripheral->foundCharacteristics(deviceService(), {infoCharacteristic()},
                                                 step == 2 ? BluetoothResult(boom) : BluetoothResult());
            if (step == 3)
                rig.peripheral->value(infoCharacteristic(), "1,B", boom);
        }
        const auto text = rig.log.lines.join(u'\n');
        QVERIFY2(text.contains(line), qPrintable(text));
        QCOMPARE(text.contains(u"boom"_s), step != 1 && step != 5);
        QCOMPARE(rig.listener->found.size(), 0);
        QCOMPARE(rig.take().contains(u"cancel A"_s), step != 4);
        rig.central->disconnected(rig.peripheral);
        rig.take();
        if (step != 5) {
            rig.loop.advance(3999ms);
            rig.central->discover(rig.peripheral);
            rig.loop.advance(500ms);
            QCOMPARE(rig.take(), QStringList());
        }
        rig.central->discover(rig.peripheral);
        rig.loop.advance(500ms);
        QCOMPARE(rig.take(), QStringList{u"connect A"_s});
        QVERIFY(rig.manager->hasSilentDevice());
    }

    void stoppedScanStaysStopped_data()
    {
        columns<int, QStringList>("steps", "requests");
        const QStringList closing{u"stopScan"_s, u"cancel A"_s};
        row("before the radio is on", 0, QStringList{u"stopScan"_s});
        row("while connecting is delayed", 1, QStringList{u"stopScan"_s});
        row("while connecting", 2, closing);
        row("while discovering is delayed", 3, closing);
        row("while reading", 4, closing);
    }

    // Nothing that is under way goes on, and nothing begins it again.
    void stoppedScanStaysStopped()
    {
        QFETCH(int, steps);
        QFETCH(QStringList, requests);
        ManagerRig rig(steps == 0 ? BluetoothCentral::State::PoweredOff : BluetoothCentral::State::PoweredOn);
        rig.manager->startDeviceScan();
        if (steps >= 1)
            rig.central->discover(rig.peripheral);
        if (steps >= 2)
            rig.loop.advance(500ms);
        if (steps >= 3)
            rig.central->connected(rig.peripheral);
        if (steps >= 4) {
            rig.loop.advance(500ms);
            rig.peripheral->foundServices({deviceService()});
            rig.peripheral->foundCharacteristics(deviceService(), {infoCharacteristic()});
        }
        rig.take();
        rig.manager->stopDeviceScan();
        QCOMPARE(rig.take(), requests);
        rig.central->setState(BluetoothCentral::State::PoweredOff);
        rig.central->setState(BluetoothCentral::State::PoweredOn);
        rig.peripheral->value(infoCharacteristic(), "12345678,Room 4");
        rig.central->discover(rig.peripheral);
        rig.loop.advance(60s);
        QCOMPARE(rig.take(), QStringList());
        rig.central->disconnected(rig.peripheral, boom);
        QCOMPARE(rig.take(), QStringList{u"cancel A"_s}); // what every lost link is answered with
        QCOMPARE(rig.listener->found.size(), 0);
    }

    void lostDeviceIsFoundAnew()
    {
        ManagerRig rig;
        rig.connect();
        rig.take();
        rig.central->disconnected(rig.peripheral, boom);
        QCOMPARE(rig.take(), (QStringList{u"cancel A"_s, u"scan [1e45e5bb] duplicates"_s}));
        QCOMPARE(rig.log.count(u"[info] didDisconnectPeripheral - error: boom"_s), 1);
        rig.central->discover(rig.peripheral);
        rig.loop.advance(500ms);
        QCOMPARE(rig.take(), QStringList{u"connect A"_s});
    }

    void scanWaitsForTheRadio_data()
    {
        columns<int, bool>("state", "supported");
        row("unknown", 0, true);
        row("unsupported", 2, false);
        row("unauthorised", 3, true);
        row("off", 4, true);
    }

    void scanWaitsForTheRadio()
    {
        QFETCH(int, state);
        QFETCH(bool, supported);
        ManagerRig rig(static_cast<BluetoothCentral::State>(state));
        QCOMPARE(rig.manager->isBluetoothSupported(), supported);
        rig.manager->startDeviceScan();
        QCOMPARE(rig.take(), QStringList());
        rig.central->setState(BluetoothCentral::State::PoweredOn);
        QCOMPARE(rig.take(), QStringList{u"scan [1e45e5bb] duplicates"_s});
        rig.central->setState(BluetoothCentral::State::PoweredOff);
        rig.central->setState(BluetoothCentral::State::PoweredOn);
        QCOMPARE(rig.take(), QStringList()); // only what was asked for is made up for
    }

    void managerMayGoWhileCallsAreDelayed()
    {
        ManagerRig rig;
        rig.manager->startDeviceScan();
        rig.central->discover(rig.peripheral);
        rig.take();
        rig.manager.reset();
        rig.loop.advance(10s);
        QCOMPARE(rig.take(), QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_Manager)
#include "tst_manager.moc"
