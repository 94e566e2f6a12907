// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/Reconnector.h"
#include "simulator/SimulatedRadio.h"
#include "support/ManualRunLoop.h"
#include "support/Recorders.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace std::chrono_literals;

namespace {

// Between connecting and the first command, and the four silences of 2 seconds that end its replies.
constexpr auto ProtocolTime = 8100ms;
constexpr auto Slack = 2000ms;

class FindOne final : public CVBluetoothManagerDelegate
{
public:
    void newDeviceFound(const CVBTPeripheralPtr &device) override { found = device; }
    CVBTPeripheralPtr found;
};

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

Fault once(Fault::Kind kind, const QByteArray &command = {}, bool withError = true)
{
    Fault fault;
    fault.kind = kind;
    fault.command = command;
    fault.times = 1;
    fault.withError = withError;
    return fault;
}

// A device object that is connected to a simulated device and watched, and what its client heard.
class Bench
{
public:
    explicit Bench(const DeviceProfileSet &profiles = oneDevice())
        : radio(SimulatedRadio::fromProfile(loop, log, profiles, QString()))
        , manager(CVBluetoothManager::create(loop, log, radio->makeCentral()))
        , device({loop, log, idleTimer, manager, {}})
        , reconnector(std::make_unique<Reconnector>(loop, device, manager, client()))
    {
        const auto finder = std::make_shared<FindOne>();
        manager->setDelegate(finder);
        manager->startDeviceScan();
        loop.advanceUntil([&] { return finder->found != nullptr; }, 10s);
        manager->stopDeviceScan();
        manager->setDelegate({});
        device.setCvStateDelegate(states);
        device.connectAsCVCommWithPeripheral(finder->found->peripheral());
        loop.advance(15s);
        reconnector->watch(finder->found->peripheral());
        states->take();
    }

    static DeviceProfileSet oneDevice()
    {
        DeviceProfileSet set = DeviceProfileSet::builtIn();
        set.devices.first().persistent = false;
        return set;
    }
    SimulatedDevice &simulated(qsizetype index = 0) { return *radio->devices().at(index); }
    bool isBack() { return !reconnector->isAway() && device.turn().isLinked(); }
    // True when it came back in time, counted from the attempt that could find it.
    bool waitForReturn()
    {
        const auto from = loop.now();
        loop.advance(0s);
        if (!loop.advanceUntil([&] { return isBack(); }, 3min) || !simulated(found).isLinked())
            return false;
        const auto start = std::max(from, attemptAt);
        return loop.now() - start <= ProtocolTime + Slack;
    }
    // Nothing of it goes on when all that was begun has ended.
    bool isQuiet()
    {
        loop.advance(10s);
        return loop.pendingCalls() == 0;
    }
    QStringList take() { return std::exchange(events, {}); }

    ManualRunLoop loop;
    RecordingLog log;
    FakeIdleTimer idleTimer;
    std::shared_ptr<SimulatedRadio> radio;
    std::shared_ptr<CVBluetoothManager> manager;
    CVBTDevice device;
    std::shared_ptr<RecordingDelegates> states = std::make_shared<RecordingDelegates>();
    QStringList events;
    qsizetype found = 0;                   // the device that it is to come back to
    std::chrono::nanoseconds attemptAt{0}; // the start of the latest attempt
    QString destroyIn;                     // the call that ends it all
    std::unique_ptr<Reconnector> reconnector;

private:
    void heard(const QString &event)
    {
        events.append(event);
        if (event == destroyIn)
            reconnector.reset();
    }
    ReconnectorClient client()
    {
        return {[this](const QString &) { heard(text("lost")); },
                [this](std::chrono::seconds after) {
                    attemptAt = loop.now() + after;
                    heard(text("again %1").arg(after.count()));
                },
                [this] { heard(text("back")); }};
    }
};

} // namespace

class TestReconnector : public QObject
{
    Q_OBJECT

private slots:
    void comesBack_data();
    void comesBack();
    void backOff();
    void returnsWhileAway_data();
    void returnsWhileAway();
    void newAddress();
    void attemptsGoWrong_data();
    void attemptsGoWrong();
    void radioOffAndOn();
    void givesLinkUp_data();
    void givesLinkUp();
    void hundredLosses();
    void stops_data();
    void stops();
    void personDisconnects_data();
    void personDisconnects();
    void destroyedInACall_data();
    void destroyedInACall();
};

void TestReconnector::comesBack_data()
{
    columns<bool, QStringList>("withError", "states");
    row("with an error", true, QStringList{text("state 0"), text("state 1")});
    row("without one", false, QStringList{text("state 1")});
}

void TestReconnector::comesBack()
{
    QFETCH(const bool, withError);
    QFETCH(const QStringList, states);
    Bench bench;
    const auto lost = bench.loop.now();
    bench.simulated().dropLink(withError);
    bench.loop.advance(0s);
    QCOMPARE(bench.take(), (QStringList{text("lost"), text("again 1")}));
    QVERIFY(bench.waitForReturn());
    QCOMPARE(bench.attemptAt - lost, std::chrono::nanoseconds(1s));
    QVERIFY(bench.isQuiet());
    QCOMPARE(bench.take(), QStringList{text("back")});
    QCOMPARE(bench.states->take(), states);
}

// While the device is away each wait is twice the one before, and in it there is nothing but the one call.
void TestReconnector::backOff()
{
    Bench bench;
    bench.simulated().leave();
    for (const int seconds : {1, 2, 4, 8, 16, 32, 64, 64, 64}) {
        QVERIFY(bench.loop.advanceUntil([&] { return !bench.take().filter(text("again")).isEmpty(); }, 31s));
        QCOMPARE(bench.attemptAt - bench.loop.now(), std::chrono::nanoseconds(std::chrono::seconds(seconds)));
        // Half-way, what was left of the attempt before has ended.
        bench.loop.advance(seconds * 500ms);
        QCOMPARE(bench.loop.pendingCalls(), size_t{1});
        const auto logged = bench.log.lines.size();
        bench.loop.advance(bench.attemptAt - bench.loop.now() - 1ns);
        QCOMPARE(bench.log.lines.size(), logged);
        QCOMPARE(bench.events, QStringList());
    }
}

// Whatever is under way when it comes back.
void TestReconnector::returnsWhileAway_data()
{
    columns<int>("milliseconds");
    for (const int at : {0, 500, 999, 1000, 1030, 1500, 5999, 6000, 7999, 8000, 8050, 12999, 13001, 100000})
        QTest::addRow("after %d ms", at) << at;
}

void TestReconnector::returnsWhileAway()
{
    QFETCH(const int, milliseconds);
    Bench bench;
    bench.simulated().leave();
    bench.loop.advance(std::chrono::milliseconds(milliseconds));
    bench.simulated().comeBack();
    QVERIFY(bench.waitForReturn());
    QVERIFY(bench.isQuiet());
    QCOMPARE(bench.events.count(text("lost")), 1);
    QCOMPARE(bench.events.count(text("back")), 1);
}

// The same serial number under an address that was not there before.
void TestReconnector::newAddress()
{
    DeviceProfileSet profiles = Bench::oneDevice();
    DeviceProfile other = profiles.devices.constFirst();
    other.serial = "20000002";
    other.infoText = QString::fromLatin1(profiles.devices.constFirst().serial + ",Other");
    profiles.devices.append(other);
    DeviceProfile stranger = other;
    stranger.serial = "30000003";
    stranger.infoText = QString();
    profiles.devices.append(stranger);
    profiles.devices[1].absences = {Absence{}};
    profiles.devices[2].absences = {Absence{}};

    Bench bench(profiles);
    bench.found = 1;
    bench.simulated(0).leave();
    bench.simulated(1).comeBack();
    bench.simulated(2).comeBack();
    QVERIFY(bench.waitForReturn());
    QVERIFY(bench.isQuiet());
    QVERIFY(!bench.simulated(2).isLinked());
    QCOMPARE(bench.reconnector->peripheral()->identifier(), bench.simulated(1).identifier());
}

// One thing after the other goes wrong in the first attempt; the second, 2 seconds later, is well again.
void TestReconnector::attemptsGoWrong_data()
{
    using Kind = Fault::Kind;
    columns<QList<Fault>, int>("faults", "attempts");
    const auto add = [](const char *name, const QList<Fault> &faults, int attempts = 2) {
        row(name, faults, attempts);
    };
    add("refused", {once(Kind::ConnectFails)});
    add("refused twice", {once(Kind::ConnectFails), once(Kind::ConnectFails)}, 3);
    add("no answer", {once(Kind::ConnectNever)});
    add("lost when connected, tried again at once", {once(Kind::DropAfterConnect)}, 1);
    add("lost when connected, without an error", {once(Kind::DropAfterConnect, {}, false)});
    add("lost while discovering", {once(Kind::DropDuringDiscovery, {}, false)});
    add("services never", {once(Kind::ServicesNever)});
    add("services with an error", {once(Kind::DiscoveryFails)});
    add("no notifications", {once(Kind::NotifyFails)});
    add("lost at the first write", {once(Kind::DropAtWrite)});
    add("lost at the first write, without an error", {once(Kind::DropAtWrite, {}, false)});
    add("link command not answered", {once(Kind::NoAnswer, "PC S2 ON")});
    add("state not told", {once(Kind::NoAnswer, "PCR")});
    add("version not told", {once(Kind::NoAnswer, "VER1"), once(Kind::NoAnswer, "VER")});
}

void TestReconnector::attemptsGoWrong()
{
    QFETCH(const QList<Fault>, faults);
    QFETCH(const int, attempts);
    Bench bench;
    for (const Fault &fault : faults)
        bench.simulated().faults().add(fault);
    bench.simulated().dropLink(true);
    QVERIFY(bench.waitForReturn());
    QVERIFY(bench.isQuiet());
    QCOMPARE(bench.events.count(text("lost")), 1);
    QCOMPARE(bench.events.filter(text("again")).size(), attempts);
    QCOMPARE(bench.events.count(text("back")), 1);
    QCOMPARE(bench.states->take().count(text("state 1")), 1);
}

void TestReconnector::radioOffAndOn()
{
    Bench bench;
    bench.radio->setState(BluetoothCentral::State::PoweredOff);
    bench.loop.advance(30s);
    QCOMPARE(bench.take().constLast(), text("again 16"));
    bench.radio->setState(BluetoothCentral::State::PoweredOn);
    QVERIFY(bench.waitForReturn());
    QVERIFY(bench.isQuiet());
}

// A link that takes nothing, or not all, is closed and made again.
void TestReconnector::givesLinkUp_data()
{
    columns<Fault::Kind, int>("kind", "seconds");
    row("no confirmation", Fault::Kind::LoseConfirmation, 6);
    row("failed write", Fault::Kind::FailWrite, 1);
}

void TestReconnector::givesLinkUp()
{
    QFETCH(const Fault::Kind, kind);
    QFETCH(const int, seconds);
    Bench bench;
    bench.simulated().faults().add(once(kind));
    bench.device.sendString(text("x"));
    bench.loop.advanceUntil([&] { return bench.events.size() == 2; }, std::chrono::seconds(seconds));
    QCOMPARE(bench.take(), (QStringList{text("lost"), text("again 1")}));
    QVERIFY(bench.waitForReturn());
    QVERIFY(bench.isQuiet());
    QCOMPARE(bench.take(), QStringList{text("back")});
}

void TestReconnector::hundredLosses()
{
    Bench bench;
    for (int loss = 0; loss < 100; ++loss) {
        const bool away = loss % 3 == 0;
        if (away)
            bench.simulated().leave();
        else
            bench.simulated().dropLink(loss % 2 == 0);
        bench.loop.advance(std::chrono::milliseconds(170 * loss));
        if (away)
            bench.simulated().comeBack();
        QVERIFY2(bench.waitForReturn(), qPrintable(QString::number(loss)));
        QVERIFY(bench.isQuiet());
        QCOMPARE(bench.events.count(text("lost")), 1);
        QCOMPARE(bench.events.count(text("back")), 1);
        QCOMPARE(bench.take().constLast(), text("back"));
    }
}

void TestReconnector::stops_data()
{
    columns<bool, int>("away", "milliseconds");
    row("at once", true, 0);
    row("waiting", true, 900);
    row("connecting", true, 1500);
    row("looking", true, 8500);
    row("discovering", false, 1080);
    row("waiting for the first answer", false, 2000);
    row("identifying", false, 5000);
}

void TestReconnector::stops()
{
    QFETCH(const bool, away);
    QFETCH(const int, milliseconds);
    Bench bench;
    if (away)
        bench.simulated().leave();
    else
        bench.simulated().dropLink(true);
    bench.loop.advance(std::chrono::milliseconds(milliseconds));
    bench.events.clear();
    bench.reconnector->stop();
    QVERIFY(bench.isQuiet());
    bench.simulated().comeBack();
    bench.loop.advance(5min);
    QVERIFY(!bench.simulated().isLinked());
    QCOMPARE(bench.events, QStringList());
}

// Who disconnects does not want the device back.
void TestReconnector::personDisconnects_data()
{
    columns<bool, int>("lost", "milliseconds");
    row("while all is well", false, 0);
    row("after a loss that was no error", true, 500);
    row("while it is identified again", true, 5000);
}

void TestReconnector::personDisconnects()
{
    QFETCH(const bool, lost);
    QFETCH(const int, milliseconds);
    Bench bench;
    if (lost)
        bench.simulated().dropLink(false);
    bench.loop.advance(std::chrono::milliseconds(milliseconds));
    bench.events.clear();
    bench.device.disconnectAsCVComm();
    QVERIFY(bench.isQuiet());
    bench.loop.advance(5min);
    QVERIFY(!bench.simulated().isLinked());
    QCOMPARE(bench.events, QStringList());
    QCOMPARE(bench.states->take(), QStringList{text("state 2")});
}

void TestReconnector::destroyedInACall_data()
{
    columns<QString>("call");
    for (const auto *call : {"lost", "again 1", "again 2", "back"})
        row(call, text(call));
}

void TestReconnector::destroyedInACall()
{
    QFETCH(const QString, call);
    Bench bench;
    bench.destroyIn = call;
    bench.simulated().faults().add(once(Fault::Kind::ConnectFails));
    bench.simulated().dropLink(true);
    bench.loop.advance(1min);
    QCOMPARE(bench.take().constLast(), call);
    QVERIFY(!bench.reconnector);
    QCOMPARE(bench.loop.pendingCalls(), size_t{0});
}

QTEST_GUILESS_MAIN(TestReconnector)
#include "tst_reconnector.moc"
