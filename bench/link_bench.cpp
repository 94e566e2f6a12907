// SPDX-License-Identifier: GPL-3.0-or-later
// Confirmed writes over the real path: Qt Bluetooth, D-Bus, a Bluetooth daemon. tools/bench starts it with the
// simulated daemon in the real one's place. The control is a bare call over the same bus to the same program.
#include "base/EventRunLoop.h"
#include "device/BluetoothIdentifiers.h"
#include "platform/bluetooth/QtBluetoothRadio.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QFile>
#include <QLoggingCategory>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

namespace {

using namespace cvtamber;
using namespace std::chrono_literals;

constexpr int Operations = 10'000;
constexpr auto Patience = 60s;

double microseconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double, std::micro>(time).count();
}

double ownProcessorTime()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Of the program that owns the daemon's name, in seconds; its kernel counts in hundredths.
double daemonProcessorTime()
{
    const QDBusReply<uint> pid =
        QDBusConnection::systemBus().interface()->servicePid(QStringLiteral("org.bluez"));
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid.value()));
    if (!pid.isValid() || !file.open(QIODevice::ReadOnly))
        return 0;
    // The second field, the name in brackets, may hold spaces; user and system time are the 12th and 13th after it.
    const QByteArray stat = file.readAll();
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}

// Runs one operation after the other, each when the one before is over, and keeps how long each took.
class Series
{
public:
    explicit Series(RunLoop &runLoop)
        : _runLoop(runLoop)
    {
        _times.reserve(Operations);
    }

    void begin() { _started = _runLoop.now(); }
    // False when it was the last.
    bool end()
    {
        _times.push_back(_runLoop.now() - _started);
        return _times.size() < static_cast<size_t>(Operations);
    }
    bool isComplete() const { return _times.size() == static_cast<size_t>(Operations); }

    void report(benchmark::State &state)
    {
        std::sort(_times.begin(), _times.end());
        const auto at = [this](double part) {
            return microseconds(_times[static_cast<size_t>(part * static_cast<double>(_times.size() - 1))]);
        };
        state.counters["median_us"] = at(0.5);
        state.counters["p99_us"] = at(0.99);
        state.counters["max_us"] = at(1);
    }

private:
    RunLoop &_runLoop;
    std::chrono::nanoseconds _started{0};
    std::vector<std::chrono::nanoseconds> _times;
};

// Finds the first device, connects, and writes; tells through `finished` how it ended.
class Writer final : public BluetoothCentralDelegate,
                     public BluetoothPeripheralDelegate,
                     public std::enable_shared_from_this<Writer>
{
public:
    Writer(RunLoop &runLoop, std::unique_ptr<BluetoothCentral> central, std::function<void()> ready)
        : _central(std::move(central))
        , _ready(std::move(ready))
        , _series(runLoop)
    {}

    void start()
    {
        _central->setDelegate(weak_from_this());
        centralDidUpdateState();
    }
    void writeAll(const std::function<void()> &finished)
    {
        _finished = finished;
        writeOne();
    }
    // With how many writes it failed is of no use: one is enough to distrust the rest.
    bool failed() const { return _failed; }
    Series &series() { return _series; }

    void centralDidUpdateState() override
    {
        if (_central->state() == BluetoothCentral::State::PoweredOn)
            _central->scanForPeripherals({BluetoothIdentifiers::deviceService()}, true);
    }
    void centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &peripheral) override
    {
        _central->stopScan();
        _peripheral = peripheral;
        _central->connectPeripheral(peripheral);
    }
    void centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral) override
    {
        peripheral->setDelegate(weak_from_this());
        peripheral->discoverServices({BluetoothIdentifiers::deviceService()});
    }
    void centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &, const BluetoothResult &) override
    {
        fail();
    }
    void centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &, const BluetoothResult &) override
    {
        fail();
    }
    void peripheralDidDiscoverServices(const BluetoothPeripheralPtr &peripheral,
                                       const BluetoothResult &) override
    {
        if (peripheral->services().isEmpty())
            fail();
        else
            peripheral->discoverCharacteristics({BluetoothIdentifiers::dataCharacteristic()},
                                                peripheral->services().constFirst());
    }
    void peripheralDidDiscoverCharacteristics(const BluetoothPeripheralPtr &,
                                              const BluetoothServicePtr &service,
                                              const BluetoothResult &) override
    {
        if (service->characteristics.isEmpty()) {
            fail();
            return;
        }
        _characteristic = service->characteristics.constFirst();
        _ready();
    }
    void peripheralDidUpdateValue(const BluetoothPeripheralPtr &, const BluetoothCharacteristicPtr &,
                                  const QByteArray &, const BluetoothResult &) override
    {}
    void peripheralDidUpdateNotificationState(const BluetoothPeripheralPtr &,
                                              const BluetoothCharacteristicPtr &,
                                              const BluetoothResult &) override
    {}
    void peripheralDidWriteValue(const BluetoothPeripheralPtr &, const BluetoothCharacteristicPtr &,
                                 const BluetoothResult &error) override
    {
        if (error)
            fail();
        else if (_series.end())
            writeOne();
        else
            _finished();
    }

private:
    void writeOne()
    {
        _series.begin();
        _peripheral->writeValue(QByteArray(20, 'x'), _characteristic);
    }
    void fail()
    {
        _failed = true;
        if (_finished)
            _finished();
        else
            _ready();
    }

    std::unique_ptr<BluetoothCentral> _central;
    std::function<void()> _ready;
    std::function<void()> _finished;
    Series _series;
    BluetoothPeripheralPtr _peripheral;
    BluetoothCharacteristicPtr _characteristic;
    bool _failed = false;
};

// Runs the event loop until the step calls what it is given; false when it takes too long.
bool runUntil(RunLoop &runLoop, const std::function<void(const std::function<void()> &)> &step)
{
    const auto limit = runLoop.performAfter(Patience, [] { QCoreApplication::exit(1); });
    runLoop.performAfter(0s, [&step] { step([] { QCoreApplication::exit(0); }); });
    const bool inTime = QCoreApplication::exec() == 0;
    runLoop.cancel(limit);
    return inTime;
}

void confirmedWrites(benchmark::State &state)
{
    EventRunLoop runLoop;
    const auto radio = QtBluetoothRadio::create(runLoop);
    std::shared_ptr<Writer> writer;
    const bool ready = runUntil(runLoop, [&](const std::function<void()> &done) {
        writer = std::make_shared<Writer>(runLoop, radio->makeCentral(), done);
        writer->start();
    });
    if (!ready || writer->failed()) {
        state.SkipWithError("no device was found on the bus, or it could not be connected");
        return;
    }
    const double own = ownProcessorTime();
    const double daemon = daemonProcessorTime();
    bool written = false;
    for ([[maybe_unused]] auto _ : state)
        written = runUntil(runLoop, [&](const std::function<void()> &done) { writer->writeAll(done); });
    if (!written || writer->failed() || !writer->series().isComplete()) {
        state.SkipWithError("the writes did not all go through");
        return;
    }
    writer->series().report(state);
    state.counters["own_cpu_us"] = (ownProcessorTime() - own) / Operations * 1e6;
    state.counters["daemon_cpu_us"] = (daemonProcessorTime() - daemon) / Operations * 1e6;
}
BENCHMARK(confirmedWrites)->Iterations(1)->Unit(benchmark::kMillisecond);

void bareCalls(benchmark::State &state)
{
    EventRunLoop runLoop;
    Series series(runLoop);
    bool failed = false;
    const QDBusConnection bus = QDBusConnection::systemBus();
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.bluez"), QStringLiteral("/org/bluez/hci0"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message << QStringLiteral("org.bluez.Adapter1") << QStringLiteral("Powered");
    std::function<void()> call;
    std::function<void()> finished;
    call = [&] {
        series.begin();
        auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message));
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, [&, watcher] {
            failed = failed || watcher->isError();
            watcher->deleteLater();
            if (series.end())
                call();
            else
                finished();
        });
    };
    bool inTime = false;
    for ([[maybe_unused]] auto _ : state) {
        inTime = runUntil(runLoop, [&](const std::function<void()> &done) {
            finished = done;
            call();
        });
    }
    if (!inTime || failed)
        state.SkipWithError("the daemon did not answer");
    else
        series.report(state);
}
BENCHMARK(bareCalls)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("qt.bluetooth*.warning=false"));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
