// SPDX-License-Identifier: GPL-3.0-or-later
#include "RadioBench.h"
#include "base/NullLog.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace cvtamber;
using namespace std::chrono_literals;

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(','), Qt::SkipEmptyParts);
}

} // namespace

class tst_radio : public QObject
{
    Q_OBJECT

    NullLog _log;

    std::shared_ptr<SimulatedRadio> radioWith(ManualRunLoop &loop, const char *json,
                                              const QString &folder = {})
    {
        const ProfileResult profile = parseProfile(json);
        if (!profile.error.isEmpty())
            qFatal("%s", qPrintable(profile.error));
        return SimulatedRadio::fromProfile(loop, _log, profile.profiles, folder);
    }

private slots:
    void stateIsToldFirst()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, "{}");
        RadioBench bench(loop, radio);
        QCOMPARE(bench.central->state(), BluetoothCentral::State::Unknown);
        loop.advance(1ms);
        QCOMPARE(bench.central->state(), BluetoothCentral::State::PoweredOn);
        QVERIFY(bench.central->stateText().isEmpty());
        QCOMPARE(bench.recorder->take(), words("state"));
        QCOMPARE(loop.pendingCalls(), size_t{0});
    }

    void scanning()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, R"({"devices": [{}, {"serial": "00000002"},
            {"serial": "00000003", "advertisedServices": ["1800"]}]})");
        RadioBench bench(loop, radio);
        QVERIFY(bench.scan());
        QCOMPARE(bench.recorder->take(), words("state,found,found"));
        bench.scan(true);
        QCOMPARE(bench.recorder->take().size(), 20);
        QCOMPARE(bench.recorder->found.size(), 2);
        QCOMPARE(loop.pendingCalls(), size_t{0});

        // A linked device does not advertise, one that left neither; one that came back does.
        bench.connect();
        bench.recorder->take();
        bench.scan();
        QCOMPARE(bench.recorder->take(), words("found"));
        radio->devices()[0]->leave();
        bench.scan();
        QCOMPARE(bench.recorder->take(), words("disconnected with error,found"));
        radio->devices()[0]->comeBack();
        bench.scan();
        QCOMPARE(bench.recorder->take(), words("found,found"));
    }

    void scanEndsInItsOwnCall()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, R"({"devices": [{}, {"serial": "00000002"}]})");
        RadioBench bench(loop, radio);
        bench.recorder->onLine = [&](const QString &line) {
            if (line == QStringLiteral("found"))
                bench.central.reset();
        };
        loop.advance(1ms);
        bench.central->scanForPeripherals({}, true);
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(), words("state,found"));
        QCOMPARE(loop.pendingCalls(), size_t{0});
    }

    void wholeExchange()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, R"({"serial": "12345678", "name": "Desk"})");
        RadioBench bench(loop, radio);
        QVERIFY(bench.scan());
        QCOMPARE(bench.peripheral->name(), QStringLiteral("Desk"));
        bench.connect();
        QCOMPARE(bench.peripheral->state(), BluetoothPeripheral::State::Connected);
        bench.discover();
        QVERIFY(bench.data && bench.info);
        bench.request([&] { bench.peripheral->readValue(bench.info); });
        loop.advance(1s);
        QCOMPARE(bench.recorder->received, QByteArray("12345678,Desk"));
        bench.request([&] { bench.peripheral->setNotifyValue(true, bench.data); });
        loop.advance(1s);
        bench.recorder->received.clear();
        bench.write("{{PC S2 ");
        bench.write("ON}}{{VER1}}");
        loop.advance(1s);
        QCOMPARE(bench.recorder->received, QByteArray("{PC\x11}2.1A00412345678P1"));
        bench.request([&] { bench.central->cancelPeripheralConnection(bench.peripheral); });
        QCOMPARE(bench.peripheral->state(), BluetoothPeripheral::State::Disconnected);
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(),
                 words("state,found,connected,services,characteristics,value 13,notifying,written,written,"
                       "value 5,value 17,disconnected"));
        QVERIFY(bench.peripheral->services().isEmpty());
        QCOMPARE(loop.pendingCalls(), size_t{0});
    }

    void infoPlaces_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("offered");
        QTest::newRow("device") << QByteArray("{}") << QStringLiteral("1800: ,1e45: 5349 fa3e");
        QTest::newRow("generic access")
            << QByteArray("{\"info\": \"genericAccess\"}") << QStringLiteral("1800: 4e8b,1e45: 5349");
        QTest::newRow("none") << QByteArray("{\"info\": \"none\"}") << QStringLiteral("1800: ,1e45: 5349");
        QTest::newRow("no service") << QByteArray(
                                           R"({"faults": [{"fault": "missing", "what": "deviceService"}]})")
                                    << QStringLiteral("1800: ");
        QTest::newRow("no data") << QByteArray(
                                        R"({"faults": [{"fault": "missing", "what": "dataCharacteristic"}]})")
                                 << QStringLiteral("1800: ,1e45: fa3e");
    }
    void infoPlaces()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, offered);
        ManualRunLoop loop;
        const auto radio = radioWith(loop, json.constData());
        RadioBench bench(loop, radio);
        bench.scan();
        bench.connect();
        bench.peripheral->discoverServices({});
        loop.advance(1s);
        QStringList services;
        for (const auto &service : bench.peripheral->services()) {
            bench.peripheral->discoverCharacteristics({}, service);
            loop.advance(1s);
            QStringList characteristics;
            for (const auto &characteristic : service->characteristics)
                characteristics.append(characteristic->uuid.toString().left(4));
            const QString uuid = service->uuid.toString();
            services.append((uuid.startsWith(QStringLiteral("0000")) ? uuid.mid(4, 4) : uuid.left(4)) +
                            QStringLiteral(": ") + characteristics.join(QLatin1Char(' ')));
        }
        QCOMPARE(services.join(QLatin1Char(',')), offered);
    }

    void writesAreConfirmedInOrderOneAtATime()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, R"({"delays": {"write": 10}})");
        RadioBench bench(loop, radio);
        bench.open();
        for (const char *piece : {"ab", "cd", "ef"})
            bench.write(piece);
        loop.advance(9ms);
        QCOMPARE(bench.recorder->take(), QStringList());
        loop.advance(1ms);
        QCOMPARE(bench.recorder->take(), words("written"));
        loop.advance(20ms);
        QCOMPARE(bench.recorder->take(), words("written,written"));
        QCOMPARE(radio->devices()[0]->firmware().embosserPage(), QByteArray("abcdef"));
        bench.write(QByteArray(513, 'x'));
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(), words("written with error"));
    }

    void nothingIsAnsweredAfterADisconnect()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, "{}");
        RadioBench bench(loop, radio);
        bench.open();
        bench.write("{DIR}");
        bench.request([&] {
            bench.peripheral->discoverServices({});
            bench.peripheral->readValue(bench.info);
            bench.peripheral->setNotifyValue(false, bench.data);
            bench.central->cancelPeripheralConnection(bench.peripheral);
            bench.central->cancelPeripheralConnection(bench.peripheral);
            bench.peripheral->discoverServices({});
            bench.peripheral->writeValue("late", bench.data);
        });
        loop.advance(10s);
        QCOMPARE(bench.recorder->take(), words("disconnected"));
        // On the next link what was discovered on the last one is stale.
        bench.connect();
        bench.write("stale");
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(), words("connected,written with error"));
        QCOMPARE(radio->devices()[0]->firmware().embosserPage(), QByteArray());
    }

    void attemptGivenUp()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, R"({"faults": [{"fault": "connectNever", "times": 1}]})");
        RadioBench bench(loop, radio);
        bench.scan();
        bench.recorder->take();
        bench.connect();
        loop.advance(1h);
        QCOMPARE(bench.peripheral->state(), BluetoothPeripheral::State::Connecting);
        bench.request([&] { bench.central->cancelPeripheralConnection(bench.peripheral); });
        loop.advance(1s);
        bench.connect();
        QCOMPARE(bench.recorder->take(), words("disconnected,connected"));
    }

    void faults_data()
    {
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<QString>("told");
        const auto row = [](const char *fault, const QByteArray &told) {
            QTest::newRow(fault) << QByteArray(fault) << QString::fromLatin1(told);
        };
        // Connect, discover, switch notifications on, then three writes: "{PCR}", "{VER1}" and "x".
        const char *good = "connected,services,characteristics,notifying,";
        const auto after = [good](const char *rest) { return QByteArray(good).append(rest); };
        row("", after("written,written,written,value 20,value 20,value 20,value 20,value 8,value 17"));
        row(R"("connectFails")", "failed with error");
        row(R"("connectNever")", "");
        row(R"("dropAfterConnect")", "connected,disconnected with error");
        row(R"("dropAfterConnect", "withError": false)", "connected,disconnected");
        row(R"("dropDuringDiscovery")", "connected,disconnected with error");
        row(R"("servicesNever")", "connected");
        row(R"("discoveryFails")", "connected,services with error");
        row(R"("notifyFails")",
            "connected,services,characteristics,notifying with error,written,written,written");
        row(R"("failWrite", "write": 2)",
            after("written,written with error,written,value 20,value 20,value 20,value 20,value 8"));
        row(R"("loseConfirmation", "write": 2)",
            after("written,written,value 20,value 20,value 20,value 20,value 8,value 17"));
        row(R"("dropAtWrite", "write": 2)", after("written,disconnected with error"));
        row(R"("dropAtWrite", "write": 3, "withError": false)", after("written,written,disconnected"));
        row(R"("noAnswer", "command": "VER1")",
            after("written,written,written,value 20,value 20,value 20,value 20,value 8"));
        row(R"("noAnswer", "times": 1)", after("written,written,written,value 17"));
        row(R"("reply", "command": "PCR", "base64": "AA==")",
            after("written,written,written,value 1,value 17"));
        row(R"("late", "command": "PCR", "ms": 3000)",
            after("written,written,written,value 20,value 20,value 20,value 20,value 8,value 17"));
        row(R"("mergeNotifications", "size": 100)", after("written,written,written,value 88,value 17"));
        row(R"("splitNotifications", "size": 19, "times": 1)",
            after("written,written,written,value 19,value 20,value 20,value 20,value 9,value 17"));
        row(R"("repeatNotifications", "times": 1)",
            after("written,written,written,value 20,value 20,value 20,value 20,value 20,value 8,value 17"));
        row(R"("leave", "after": 1500)", "connected,disconnected with error");
    }
    void faults()
    {
        QFETCH(QByteArray, fault);
        QFETCH(QString, told);
        ManualRunLoop loop;
        const QByteArray json =
            "{\"delays\": {\"reply\": 100, \"connect\": 10, \"discover\": 700}, \"faults\": [" +
            (fault.isEmpty() ? QByteArray() : "{\"fault\": " + fault + "}") + "]}";
        const auto radio = radioWith(loop, json.constData());
        RadioBench bench(loop, radio);
        bench.scan();
        bench.recorder->take();
        bench.connect();
        bench.discover();
        if (bench.data) {
            bench.request([&] { bench.peripheral->setNotifyValue(true, bench.data); });
            loop.advance(1s);
            bench.write("{PCR}");
            bench.write("{VER1}");
            bench.write("x");
            loop.advance(10s);
        }
        QCOMPARE(bench.recorder->take().join(QLatin1Char(',')), told);
        QCOMPARE(loop.pendingCalls(), size_t{0});
    }

    void lateAnswersAreLate()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, R"({"delays": {"reply": 10, "notification": 5}, "faults": [
            {"fault": "late", "command": "VER", "ms": 2500, "times": 1}, {"fault": "noTrailer"}],
            "files": [{"name": "A", "text": "abc"}]})");
        RadioBench bench(loop, radio);
        bench.open();
        bench.write("{VER}");
        loop.advance(2509ms);
        QCOMPARE(bench.recorder->received, QByteArray());
        loop.advance(1ms);
        QCOMPARE(bench.recorder->received, QByteArray("2.1A0041"));
        bench.write("{VER}{PR A}");
        loop.advance(14ms);
        QCOMPARE(bench.recorder->received, QByteArray("2.1A00412.1A0041"));
        loop.advance(1ms);
        QCOMPARE(bench.recorder->received, QByteArray("2.1A00412.1A0041abc"));
        QCOMPARE(radio->devices()[0]->firmware().commandCount("VER"), 2);
    }

    void answersThatAreReadyAreMerged()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, R"({"faults": [{"fault": "mergeNotifications", "size": 20}]})");
        RadioBench bench(loop, radio);
        bench.open();
        bench.write("{VER}{VER}{VER}");
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(), words("written,value 20,value 4"));
    }

    void absentDeviceIsConnectedOnReturn()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, "{}");
        RadioBench bench(loop, radio);
        bench.scan();
        bench.recorder->take();
        radio->devices()[0]->leave();
        bench.connect();
        loop.advance(30s);
        QCOMPARE(bench.recorder->take(), QStringList());
        radio->devices()[0]->comeBack();
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(), words("connected"));
    }

    void twoCentralsShareTheLink()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, "{}");
        RadioBench one(loop, radio);
        RadioBench two(loop, radio);
        QVERIFY(two.scan());
        one.open();
        two.connect();
        two.discover();
        two.peripheral->setNotifyValue(true, two.data);
        loop.advance(1s);
        two.recorder->take();
        one.write("{VER}");
        loop.advance(1s);
        QCOMPARE(two.recorder->received, QByteArray("2.1A0041"));
        QVERIFY(one.peripheral != two.peripheral);

        one.write("{CHAT}");
        loop.advance(1s);
        one.recorder->take();
        one.central.reset();
        loop.advance(1s);
        QCOMPARE(one.recorder->take(), QStringList());
        QVERIFY(radio->devices()[0]->firmware().activity() == FirmwareModel::Activity::Chat);
        two.central->cancelPeripheralConnection(two.peripheral);
        loop.advance(1s);
        QVERIFY(radio->devices()[0]->firmware().activity() == FirmwareModel::Activity::Editing);
        QVERIFY(!radio->devices()[0]->isLinked());
        // What outlived its central is disconnected and harmless.
        one.peripheral->discoverServices({});
        QCOMPARE(one.peripheral->state(), BluetoothPeripheral::State::Disconnected);
    }

    void radioOffAndOn()
    {
        ManualRunLoop loop;
        const auto radio =
            radioWith(loop, R"({"radio": {"state": "off", "onAfter": 500, "offAfter": 4000}})");
        RadioBench bench(loop, radio);
        loop.advance(1ms);
        QVERIFY(!bench.central->stateText().isEmpty());
        bench.central->scanForPeripherals({}, true);
        loop.advance(600ms);
        QCOMPARE(bench.recorder->take(), words("state,state"));
        bench.scan();
        bench.connect();
        bench.central->scanForPeripherals({}, true);
        bench.recorder->take();
        loop.advance(4s);
        QCOMPARE(bench.recorder->take(), words("state,disconnected with error"));
        bench.request([&] { bench.central->connectPeripheral(bench.peripheral); });
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(), words("failed with error"));
        radio->setState(BluetoothCentral::State::PoweredOn);
        bench.central->connectPeripheral(bench.peripheral);
        radio->setState(BluetoothCentral::State::PoweredOff);
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(), words("state,state,failed with error"));
        QCOMPARE(loop.pendingCalls(), size_t{0});
    }

    void liveTextComesUnasked()
    {
        ManualRunLoop loop;
        const auto radio = radioWith(loop, R"({"maximalNotification": 4})");
        RadioBench bench(loop, radio);
        radio->devices()[0]->type("nobody listens");
        bench.open();
        radio->devices()[0]->type("typed");
        loop.advance(1s);
        QCOMPARE(bench.recorder->take(), words("value 4,value 1"));
        QCOMPARE(bench.recorder->received, QByteArray("typed"));
    }

    // The delegate may let everything go in any call.
    void destroyedInACall_data()
    {
        QTest::addColumn<QString>("at");
        for (const char *line : {"state", "found", "connected", "services", "characteristics", "notifying",
                                 "written", "value 20", "disconnected with error"})
            QTest::newRow(line) << QString::fromLatin1(line);
    }
    void destroyedInACall()
    {
        QFETCH(QString, at);
        ManualRunLoop loop;
        auto radio = radioWith(loop, R"({"faults": [{"fault": "dropAtWrite", "write": 2}]})");
        RadioBench bench(loop, radio);
        bool reached = false;
        bench.recorder->onLine = [&](const QString &line) {
            if (line != at || reached)
                return;
            reached = true;
            bench.recorder->found.clear();
            bench.peripheral.reset();
            bench.central.reset();
            radio.reset();
        };
        loop.advance(1ms);
        const auto go = [&](const std::function<void()> &step) {
            if (!reached) {
                step();
                loop.advance(1s);
            }
        };
        go([&] { bench.scan(); });
        go([&] { bench.connect(); });
        go([&] { bench.discover(); });
        go([&] { bench.peripheral->setNotifyValue(true, bench.data); });
        go([&] { bench.write("{PCR}"); });
        go([&] { bench.write("x"); });
        QVERIFY(reached);
        QCOMPARE(loop.pendingCalls(), size_t{0});
    }

    void storedFilesLast_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("listing");
        QTest::newRow("persistent") << QByteArray("{}") << QByteArray("N 5\r\n");
        QTest::newRow("not") << QByteArray("{\"persistent\": false}") << QByteArray();
    }
    void storedFilesLast()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, listing);
        QTemporaryDir folder;
        ManualRunLoop loop;
        {
            const auto radio = radioWith(loop, json.constData(), folder.path());
            RadioBench bench(loop, radio);
            bench.open();
            bench.write("{FGR 2}{BEGIN N}Hello{END}page");
            loop.advance(1s);
        }
        {
            const auto radio = radioWith(loop, json.constData(), folder.path());
            auto &firmware = radio->devices()[0]->firmware();
            QCOMPARE(firmware.storage().listing(SizeStyle::Decimal),
                     listing.isEmpty() ? QByteArray("\r\n") : listing);
            QCOMPARE(firmware.record()[DeviceStateRecord::ForwardGrade], listing.isEmpty() ? 1 : 2);
            QCOMPARE(firmware.embosserPage(), listing.isEmpty() ? QByteArray() : QByteArray("page"));
            // Destroyed before the delayed save came.
            firmware.receive("{DEL N}");
        }
        const auto radio = radioWith(loop, json.constData(), folder.path());
        QVERIFY(radio->devices()[0]->firmware().storage().files().isEmpty());
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), listing.isEmpty() ? 0 : 1);
    }

    void fromFile()
    {
        ManualRunLoop loop;
        QVERIFY(SimulatedRadio::fromFile(loop, _log, QStringLiteral("/no/such"), {}).error.size() > 10);
        const auto builtIn = SimulatedRadio::fromFile(loop, _log, {}, {});
        QVERIFY(builtIn.error.isEmpty());
        QCOMPARE(builtIn.radio->device("10472356")->firmware().storage().files().size(), 3);
    }
};

QTEST_APPLESS_MAIN(tst_radio)
#include "tst_radio.moc"
