// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CentralBench.h"
#include "simulator_bluez/PrivateBus.h"
#include "support/Rows.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using State = BluetoothCentral::State;

const QString noLine;
constexpr int oneSecond = 1000;

void setPowered(bool isOn)
{
    auto call = QDBusMessage::createMethodCall(u"org.bluez"_s, u"/org/bluez/hci0"_s,
                                               u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
    call << u"org.bluez.Adapter1"_s << u"Powered"_s << QVariant::fromValue(QDBusVariant(isOn));
    QDBusConnection::systemBus().asyncCall(call);
}

} // namespace

// The contract of a central, kept over the real Qt Bluetooth and a simulated daemon in a process of its own.
class tst_qtcentral : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase() { _bus.stop(); }

    void statesAndTheirSentences();
    void onlyPresentDevicesAreFound();
    void wayToALink();
    void nextLinkIsNew();
    void oneAnswerForEachWrite();
    void notificationsAreSwitched();
    void attemptsThatFail_data();
    void attemptsThatFail();
    void cancelIsNoError_data();
    void cancelIsNoError();
    void lostLinkAnswersNothing_data();
    void lostLinkAnswersNothing();
    void centralsShareALink();
    void scanComesBackWithTheRadio_data();
    void scanComesBackWithTheRadio();
    void centralGoesInItsOwnCall_data();
    void centralGoesInItsOwnCall();

private:
    bool startDaemon(const QByteArray &device = {});
    void stopDaemon() { _daemon.reset(); }

    PrivateBus _bus;
    std::unique_ptr<ReadyProgram> _daemon;
    EventRunLoop _loop;
    std::shared_ptr<QtBluetoothRadio> _radio;
};

void tst_qtcentral::initTestCase()
{
    const QString address = _bus.start();
    QVERIFY2(!address.isNull(), "dbus-daemon is needed");
    // Before Qt first asks for the system bus.
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.toUtf8());
    qputenv("BLUETOOTH_FORCE_DBUS_LE_VERSION", "5.66");
    _radio = QtBluetoothRadio::create(_loop);
}

void tst_qtcentral::cleanup()
{
    stopDaemon();
}

// `device` is a profile of one device without the outer braces.
bool tst_qtcentral::startDaemon(const QByteArray &device)
{
    QFile profile(_bus.filePath(u"profile.json"_s));
    if (!profile.open(QIODevice::WriteOnly))
        return false;
    profile.write("{ \"delays\": { \"advertising\": 20 }" + (device.isEmpty() ? device : ", " + device) +
                  "}");
    profile.close();
    _daemon = std::make_unique<ReadyProgram>();
    return _daemon->start(QStringLiteral(CORVANE_SIMULATOR),
                          {u"--no-state"_s, u"--profile"_s, profile.fileName()}) == u"ready"_s;
}

void tst_qtcentral::statesAndTheirSentences()
{
    CentralBench bench(_radio);
    QCOMPARE(bench.central->state(), State::Unknown);
    QVERIFY(bench.waitForState(State::Unsupported));
    QVERIFY(bench.central->stateText().contains(u"start bluetooth"_s));
    QVERIFY(bench.waitFor(u"state"_s));

    QVERIFY(startDaemon());
    QVERIFY(bench.waitForState(State::PoweredOn));
    QVERIFY(bench.waitFor(u"state"_s));
    QVERIFY(bench.central->stateText().isEmpty());

    setPowered(false);
    QVERIFY(bench.waitForState(State::PoweredOff));
    QVERIFY(bench.central->stateText().contains(u"power on"_s));
    setPowered(true);
    QVERIFY(bench.waitForState(State::PoweredOn));

    // A central that comes later is told too.
    CentralBench late(_radio);
    QCOMPARE(late.central->state(), State::Unknown);
    QVERIFY(late.waitFor(u"state"_s));
    QCOMPARE(late.central->state(), State::PoweredOn);

    stopDaemon();
    QVERIFY(bench.waitForState(State::Unsupported));
}

void tst_qtcentral::onlyPresentDevicesAreFound()
{
    QVERIFY(startDaemon(R"("remembered": true, "faults": [{ "fault": "leave", "returnAfter": 1500 }])"));
    CentralBench bench(_radio);
    QVERIFY(bench.waitForState(State::PoweredOn));
    bench.request([&] { bench.central->scanForPeripherals({BluetoothIdentifiers::deviceService()}, true); });
    QTest::qWait(700);
    QVERIFY2(bench.recorder->found.isEmpty(), "the daemon only remembers it");
    QVERIFY(bench.waitFor(u"found"_s));
    QVERIFY(bench.waitFor(u"found"_s));
    QCOMPARE(bench.recorder->found.size(), 1);
    QCOMPARE(bench.recorder->found.constFirst()->name(), u"Corvane Scribe Plus"_s);

    bench.request([&] { bench.central->scanForPeripherals({BluetoothUuid(u"180D"_s)}, true); });
    bench.recorder->take();
    QTest::qWait(300);
    QCOMPARE(bench.recorder->take(), QStringList());
}

void tst_qtcentral::wayToALink()
{
    QVERIFY(startDaemon());
    CentralBench bench(_radio);
    QVERIFY(bench.scan());
    bench.request([&] { bench.central->connectPeripheral(bench.peripheral); });
    QCOMPARE(bench.peripheral->state(), BluetoothPeripheral::State::Connecting);
    QVERIFY(bench.waitFor(u"connected"_s));
    QCOMPARE(bench.peripheral->state(), BluetoothPeripheral::State::Connected);
    bench.request([&] { bench.peripheral->discoverServices({BluetoothUuid(u"180D"_s)}); });
    QVERIFY(bench.waitFor(u"services"_s));
    QVERIFY(bench.peripheral->services().isEmpty());
    QVERIFY(bench.discover());

    bench.request([&] {
        bench.peripheral->readValue(bench.info);
        bench.peripheral->setNotifyValue(true, bench.data);
    });
    QVERIFY(bench.waitFor(u"notifying"_s));
    QCOMPARE(bench.recorder->received, "10472356,Corvane Scribe Plus");
    bench.recorder->received.clear();
    bench.write("{{PC S2 ON}}");
    QTRY_VERIFY(bench.recorder->received.startsWith("{PC"));
}

// The same object for the same device, but not the same characteristics.
void tst_qtcentral::nextLinkIsNew()
{
    QVERIFY(startDaemon());
    CentralBench bench(_radio);
    QVERIFY(bench.open());
    bench.cancel();
    QCOMPARE(bench.peripheral->state(), BluetoothPeripheral::State::Disconnected);
    QVERIFY(bench.waitFor(u"disconnected"_s));
    QVERIFY(bench.peripheral->services().isEmpty());
    QVERIFY(bench.scan());
    QCOMPARE(bench.recorder->found.size(), 1);
    const auto earlier = bench.data;
    QVERIFY(bench.connect());
    // Once more for one that is connected already.
    QVERIFY(bench.connect());
    QVERIFY(bench.discover());
    bench.request([&] { bench.peripheral->writeValue("x", earlier); });
    QVERIFY(bench.waitFor(u"written with error"_s));
}

void tst_qtcentral::oneAnswerForEachWrite()
{
    QVERIFY(startDaemon(R"("faults": [{ "fault": "failWrite", "write": 4 }])"));
    CentralBench bench(_radio);
    QVERIFY(bench.open());
    // The whiteboard sends back what arrives.
    bench.write("{{PC S2 ON}}{{BOARD}}");
    QVERIFY(bench.waitFor(u"written"_s));
    QStringList order;
    bench.recorder->onLine = [&](const QString &line) {
        if (line.startsWith(u"written"_s))
            order.append(line);
    };
    for (int i = 0; i < 5; ++i)
        bench.write(QByteArray(1, static_cast<char>('a' + i)));
    QTRY_COMPARE(order, QStringList({u"written"_s, u"written"_s, u"written with error"_s, u"written"_s,
                                     u"written"_s}));
    QTRY_VERIFY2(bench.recorder->received.endsWith("abde"), bench.recorder->received.constData());
}

void tst_qtcentral::notificationsAreSwitched()
{
    QVERIFY(startDaemon());
    CentralBench bench(_radio);
    QVERIFY(bench.open());
    bench.request([&] { bench.peripheral->setNotifyValue(false, bench.data); });
    QVERIFY(bench.waitFor(u"notifying"_s));
    bench.request([&] { bench.peripheral->setNotifyValue(true, bench.info); });
    QVERIFY(bench.waitFor(u"notifying with error"_s));
}

void tst_qtcentral::attemptsThatFail_data()
{
    columns<QByteArray, QString>("fault", "answer");
    row("refused", QByteArray("connectFails"), u"failed with error"_s);
    // The link was made, so it is told as any other that is lost, and tried again like one.
    row("lost before its services are known", QByteArray("dropDuringDiscovery"), noLine);
}

void tst_qtcentral::attemptsThatFail()
{
    QFETCH(QByteArray, fault);
    QFETCH(QString, answer);
    QVERIFY(startDaemon("\"faults\": [{ \"fault\": \"" + fault + "\", \"times\": 1 }]"));
    CentralBench bench(_radio);
    QVERIFY(bench.scan());
    bench.recorder->take();
    bench.request([&] { bench.central->connectPeripheral(bench.peripheral); });
    QTRY_COMPARE(bench.peripheral->state(), BluetoothPeripheral::State::Disconnected);
    QCOMPARE(bench.recorder->lines.size(), 1);
    QVERIFY(bench.recorder->lines.constFirst().endsWith(u" with error"_s));
    if (!answer.isNull())
        QCOMPARE(bench.recorder->lines.constFirst(), answer);
    QVERIFY(bench.scan());
    QVERIFY(bench.connect());
}

void tst_qtcentral::cancelIsNoError_data()
{
    columns<QByteArray>("fault");
    row("no answer to the attempt", QByteArray("connectNever"));
    row("services are never resolved", QByteArray("servicesNever"));
}

void tst_qtcentral::cancelIsNoError()
{
    QFETCH(QByteArray, fault);
    QVERIFY(startDaemon("\"faults\": [{ \"fault\": \"" + fault + "\", \"times\": 1 }]"));
    CentralBench bench(_radio);
    QVERIFY(bench.scan());
    bench.recorder->take();
    bench.request([&] { bench.central->connectPeripheral(bench.peripheral); });
    QTest::qWait(400);
    QCOMPARE(bench.peripheral->state(), BluetoothPeripheral::State::Connecting);
    bench.cancel();
    bench.cancel();
    // At once, while the earlier link is still being closed.
    bench.request([&] { bench.central->connectPeripheral(bench.peripheral); });
    QVERIFY(bench.waitFor(u"connected"_s));
    QCOMPARE(bench.passed, QStringList{u"disconnected"_s});
}

void tst_qtcentral::lostLinkAnswersNothing_data()
{
    columns<QByteArray, QString>("profile", "how");
    row("dropped by the device", QByteArray(R"("faults": [{ "fault": "dropAtWrite", "write": 2 }])"),
        u"write"_s);
    row("radio off", QByteArray(), u"radio"_s);
    row("daemon dead", QByteArray(), u"daemon"_s);
    row("no confirmation, then cancelled",
        QByteArray(R"("faults": [{ "fault": "loseConfirmation", "write": 1 }])"), u"cancel"_s);
}

void tst_qtcentral::lostLinkAnswersNothing()
{
    QFETCH(QByteArray, profile);
    QFETCH(QString, how);
    const bool isAsked = how == u"cancel"_s;
    QVERIFY(startDaemon(profile));
    CentralBench bench(_radio);
    QVERIFY(bench.open());
    bench.recorder->take();
    for (int i = 0; i < 20; ++i)
        bench.write("x");
    if (how == u"radio"_s)
        setPowered(false);
    else if (how == u"daemon"_s)
        stopDaemon();
    else if (isAsked)
        bench.cancel();
    const QString end = isAsked ? u"disconnected"_s : u"disconnected with error"_s;
    QVERIFY(bench.waitFor(end, oneSecond));
    QVERIFY(bench.passed.count(u"written"_s) < 20);
    QVERIFY(bench.peripheral->services().isEmpty());
    bench.request([&] { bench.peripheral->writeValue("late", bench.data); });
    QTest::qWait(300);
    bench.recorder->lines.removeAll(u"state"_s);
    QCOMPARE(bench.recorder->take(), QStringList());
}

void tst_qtcentral::centralsShareALink()
{
    QVERIFY(startDaemon());
    CentralBench reader(_radio);
    CentralBench writer(_radio);
    QVERIFY(reader.scan());
    QVERIFY(writer.scan());
    QVERIFY(reader.peripheral != writer.peripheral);
    QVERIFY(reader.connect());
    QVERIFY(writer.connect());
    QVERIFY(writer.discover());
    reader.cancel();
    QVERIFY(reader.waitFor(u"disconnected"_s));

    // The other one's link is whole, and the first can join it again.
    QTest::qWait(200);
    writer.write("x");
    QVERIFY(writer.waitFor(u"written"_s));
    QVERIFY(reader.connect());
    writer.cancel();
    QVERIFY(writer.waitFor(u"disconnected"_s));
    QVERIFY(reader.discover());

    // With the last one the link is closed: the device advertises again.
    reader.cancel();
    QVERIFY(reader.waitFor(u"disconnected"_s));
    QVERIFY(writer.scan());
    QCOMPARE(reader.recorder->take(), QStringList());
}

void tst_qtcentral::scanComesBackWithTheRadio_data()
{
    columns<bool>("isDaemonStopped");
    row("switched off and on", false);
    row("daemon stopped and started", true);
}

void tst_qtcentral::scanComesBackWithTheRadio()
{
    QFETCH(bool, isDaemonStopped);
    QVERIFY(startDaemon());
    CentralBench bench(_radio);
    QVERIFY(bench.waitForState(State::PoweredOn));
    bench.request([&] { bench.central->scanForPeripherals({BluetoothIdentifiers::deviceService()}, true); });
    QVERIFY(bench.waitFor(u"found"_s));
    isDaemonStopped ? stopDaemon() : setPowered(false);
    QVERIFY(bench.waitForState(isDaemonStopped ? State::Unsupported : State::PoweredOff));
    QVERIFY(bench.waitFor(u"state"_s));
    bench.recorder->take();
    if (isDaemonStopped)
        QVERIFY(startDaemon());
    else
        setPowered(true);
    QVERIFY(bench.waitFor(u"found"_s));
    bench.request([&] { bench.central->stopScan(); });
    bench.peripheral = bench.recorder->found.constFirst();
    QVERIFY(bench.connect());
}

void tst_qtcentral::centralGoesInItsOwnCall_data()
{
    columns<QString>("moment");
    for (const char *moment :
         {"found", "connected", "services", "notifying", "written", "disconnected with error"})
        row(moment, QString::fromLatin1(moment));
}

void tst_qtcentral::centralGoesInItsOwnCall()
{
    QFETCH(QString, moment);
    QVERIFY(startDaemon(R"("faults": [{ "fault": "dropAtWrite", "write": 2 }])"));
    CentralBench bench(_radio);
    bench.recorder->onLine = [&](const QString &line) {
        if (line == moment)
            bench.central.reset();
    };
    if (bench.open()) {
        bench.write("x");
        bench.write("y");
    }
    QTRY_VERIFY(!bench.central);
    QTest::qWait(100);
}

QTEST_GUILESS_MAIN(tst_qtcentral)
#include "tst_qtcentral.moc"
