// SPDX-License-Identifier: GPL-3.0-or-later
// A pupil's 10,000 documents, scrolled as with a touchpad, and one document more while they are shown: the program's own
// screens and views over a store on the disk. A frame's time is all that the GUI thread does from one frame to the next,
// drawing included (the software renderer has no thread of its own), in processor time of that thread.
#include "BenchStore.h"
#include "StoreTree.h"
#include "VirtualDesk.h"

#include "app/MAppDelegate.h"
#include "app/MGlobals.h"
#include "base/EventRunLoop.h"
#include "base/Locations.h"
#include "base/ThreadPoolTaskRunner.h"
#include "base/UserDefaults.h"
#include "device/CVBluetoothManager.h"
#include "device/IdleTimer.h"
#include "platform/documents/DiskFileCoordinator.h"
#include "qml/QmlPresenter.h"
#include "qml/SheetAnchor.h"
#include "store/TamberUser.h"
#include "support/FakeCentral.h"
#include "ui/DocumentPreview.h"
#include "ui/MailComposer.h"
#include "ui/NavigationController.h"
#include "ui/TabBarController.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTranslator>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>
#include <vector>

namespace {

using namespace cvtamber;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int Documents = 10'000;
constexpr int Frames = 600;
constexpr int Insertions = 5;
// The fastest flick of a list, 2,500 pixels a second, at 60 frames a second.
constexpr int FlickStep = 42;
constexpr auto Patience = 5s;
constexpr int MillisecondsOfFrame = 16;
// For the server to draw what it was sent.
constexpr auto Drawing = 200ms;
constexpr auto Resting = 700ms;

class NoIdleTimer final : public IdleTimer
{
public:
    void setEnabled(bool) override {}
};

class NoMail final : public MailComposer
{
public:
    bool canSendMail() override { return false; }
    void compose(const MailMessage &, std::function<void(bool)> finished) override { finished(false); }
};

class NoPreview final : public DocumentPreview
{
public:
    void show(const QString &, std::function<void(bool)> finished) override { finished(false); }
};

class NoDefaults final : public UserDefaults
{
public:
    QVariant value(const QString &) override { return {}; }
    void setValue(const QString &, const QVariant &) override {}
    void synchronize() override {}
};

class TreeLocations final : public Locations
{
public:
    explicit TreeLocations(QString documents)
        : _documents(std::move(documents))
    {}
    QString documentsFolder() override { return _documents; }
    QString stateFolder() override { return _other.path(); }
    QString temporaryFolder() override { return _other.path(); }

private:
    QString _documents;
    QTemporaryDir _other;
};

double threadMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

struct FrameTime
{
    double ownMs = 0;
    double wallMs = 0;
};

// The application with the documents of its one pupil in the window.
class Application
{
public:
    explicit Application(QSize size)
        : _context{_runLoop,    _idle.disk,          _coordinator,   _idle.cloud,
                   _idle.trash, _idle.notifications, _idle.problems, _idle.log}
    {
        if (!_presenter.window())
            return;
        QObject::connect(
            window(), &QQuickWindow::frameSwapped, window(), [this] { ++_frames; }, Qt::DirectConnection);
        window()->resize(size);
        _delegate->applicationDidFinishLaunchingWithOptions({});
        window()->show();
        frame([] {});
        showDocuments();
    }
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;
    ~Application() { _delegate->tearDown(); }

    QQuickWindow *window() { return _presenter.window(); }
    bool isSound() const { return _list && _list->property("count").toInt() == Documents; }
    double scrolled() const { return _list->property("contentY").toDouble(); }
    double length() const { return _list->property("contentHeight").toDouble(); }
    void scrollTo(double place) const { _list->setProperty("contentY", place); }
    void scrollToTop() const { QMetaObject::invokeMethod(_list, "positionViewAtBeginning"); }
    const std::shared_ptr<TamberUser> &pupil() const { return MGlobals::currentActiveUser(); }

    // Does the step and all that follows it until the next frame is on its way to the screen.
    template<typename Step> FrameTime frame(Step step)
    {
        const int before = _frames;
        const auto begin = Clock::now();
        const double start = threadMilliseconds();
        step();
        const auto alarm = _runLoop.performAfter(Patience, [] {});
        while (_frames == before && Clock::now() - begin < Patience)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        _runLoop.cancel(alarm);
        return {threadMilliseconds() - start,
                std::chrono::duration<double, std::milli>(Clock::now() - begin).count()};
    }
    // Until all animations have ended.
    static void rest()
    {
        for (const auto begin = Clock::now(); Clock::now() - begin < Resting;) {
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(1ms);
        }
    }
    // As two fingers on a touchpad move it.
    void scrollBy(int pixels)
    {
        const QPointF middle(window()->width() / 2.0, window()->height() / 2.0);
        const auto phase = _isScrolling ? Qt::ScrollUpdate : Qt::ScrollBegin;
        const QPoint delta(0, -pixels);
        QWheelEvent event(middle, window()->mapToGlobal(middle), delta, delta, Qt::NoButton, Qt::NoModifier,
                          phase, false, Qt::MouseEventSynthesizedBySystem);
        _time += MillisecondsOfFrame;
        event.setTimestamp(_time);
        _isScrolling = true;
        QCoreApplication::sendEvent(window(), &event);
    }
    // The row on the screen; empty where it is not there.
    QRect rowOnScreen(int row)
    {
        QQuickItem *item = nullptr;
        QMetaObject::invokeMethod(window(), "anchorItem", Q_RETURN_ARG(QQuickItem *, item),
                                  Q_ARG(int, SheetAnchor::Row), Q_ARG(int, 1), Q_ARG(int, row),
                                  Q_ARG(int, 0));
        return item ? item->mapRectToScene(item->boundingRect())
                          .toAlignedRect()
                          .translated(window()->position())
                    : QRect();
    }

private:
    void showDocuments()
    {
        const auto tab = MGlobals::tabBarController()->tabs().front().controller;
        const auto navigation = std::dynamic_pointer_cast<NavigationController>(tab);
        const auto users = std::dynamic_pointer_cast<TableViewController>(navigation->topViewController());
        users->rowClicked(0, 0);
        rest();
        for (QQuickItem *item : window()->findChildren<QQuickItem *>()) {
            if (item->inherits("QQuickListView") && item->property("count").toInt() == Documents)
                _list = item;
        }
    }

    StoreTree _tree{1, Documents};
    TreeLocations _locations{_tree.root()};
    EventRunLoop _runLoop;
    BenchStore _idle;
    ThreadPoolTaskRunner _tasks;
    DiskFileCoordinator _coordinator{_tasks, _idle.disk, _idle.trash};
    StoreContext _context;
    NoIdleTimer _idleTimer;
    NoMail _mail;
    NoPreview _preview;
    NoDefaults _defaults;
    QStringList _journal;
    std::shared_ptr<CVBluetoothManager> _manager =
        CVBluetoothManager::create(_runLoop, _idle.log, std::make_unique<FakeCentral>(_journal));
    QmlPresenter _presenter{_runLoop};
    std::shared_ptr<MAppDelegate> _delegate =
        std::make_shared<MAppDelegate>(AppServices{{_runLoop, _idle.log, _idleTimer, _manager, {}},
                                                   _presenter,
                                                   _context,
                                                   _tasks,
                                                   _defaults,
                                                   _locations,
                                                   _mail,
                                                   _preview,
                                                   [] { return QStringList{QStringLiteral("en")}; }});
    int _frames = 0;
    bool _isScrolling = false;
    quint64 _time = 1;
    QQuickItem *_list = nullptr;
};

double at(std::vector<double> values, double part)
{
    const auto place = values.begin() + static_cast<qsizetype>(part * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

void report(benchmark::State &state, const std::vector<FrameTime> &frames)
{
    std::vector<double> own, wall;
    for (const FrameTime &frame : frames) {
        own.push_back(frame.ownMs);
        wall.push_back(frame.wallMs);
    }
    state.counters["median_ms"] = at(own, 0.5);
    state.counters["p99_ms"] = at(own, 0.99);
    state.counters["max_ms"] = at(own, 1);
    state.counters["wall_median_ms"] = at(wall, 0.5);
    state.counters["wall_p99_ms"] = at(wall, 0.99);
}

QSize sizeOf(const benchmark::State &state)
{
    return {static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
}

// As fast as a finger can flick it.
void scroll(benchmark::State &state)
{
    Application application(sizeOf(state));
    if (!application.isSound()) {
        state.SkipWithError("the documents are not shown");
        return;
    }
    application.scrollBy(FlickStep);
    application.rest();
    std::vector<FrameTime> frames;
    double way = 0;
    while (state.KeepRunning()) {
        for (int number = 0; number < Frames; ++number) {
            const double before = application.scrolled();
            frames.push_back(application.frame([&] { application.scrollBy(FlickStep); }));
            way += application.scrolled() - before;
        }
    }
    if (way < FlickStep * (Frames - 1))
        state.SkipWithError("the list did not move");
    report(state, frames);
}

// The bar at the side pulled from one end to the other: every frame shows rows that were not there before.
void scrollFromEndToEnd(benchmark::State &state)
{
    Application application(sizeOf(state));
    if (!application.isSound()) {
        state.SkipWithError("the documents are not shown");
        return;
    }
    application.scrollBy(FlickStep);
    application.rest();
    constexpr int Steps = 200;
    const double step = (application.length() - application.window()->height()) / Steps;
    std::vector<FrameTime> frames;
    while (state.KeepRunning()) {
        for (int number = 0; number < Steps; ++number)
            frames.push_back(application.frame([&] { application.scrollTo(application.scrolled() + step); }));
    }
    report(state, frames);
}

// The picture of a new row in the frame after it is that of the same row at rest. The store's own work is in the time.
void insert(benchmark::State &state, const VirtualDesk *desk)
{
    Application application(sizeOf(state));
    if (!application.isSound()) {
        state.SkipWithError("the documents are not shown");
        return;
    }
    // Each stands before the one that came before it, in the fourth row. The first sorts what the disk gave in any order.
    constexpr int Row = 3;
    const auto add = [&](int number) {
        const QString title = QStringLiteral("Homework 00003 %1").arg(99 - number);
        application.pupil()->addFileWithName(title, QStringLiteral("x"));
    };
    add(0);
    application.rest();
    // Down and up again: rows that were seen before are used again for new ones.
    application.scrollTo(application.window()->height() * 2);
    application.rest();
    application.scrollToTop();
    application.rest();
    std::vector<FrameTime> frames;
    int shown = 0;
    while (state.KeepRunning()) {
        for (int number = 1; number <= Insertions; ++number) {
            frames.push_back(application.frame([&] { add(number); }));
            std::this_thread::sleep_for(Drawing);
            const QImage first = desk->picture();
            application.rest();
            const QRect part = application.rowOnScreen(Row);
            const bool isShown = !part.isEmpty() && desk->picture().copy(part) == first.copy(part);
            shown += isShown ? 1 : 0;
        }
    }
    report(state, frames);
    state.counters["shown_in_first_frame"] = static_cast<double>(shown) / Insertions;
}

void sizes(benchmark::internal::Benchmark *bench)
{
    bench->Args({390, 844})->Args({820, 1180})->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    VirtualDesk desk({820, 1180});
    if (desk.problem()) {
        std::fprintf(stderr, "ui_scroll_bench: %s\n", desk.problem());
        return 2;
    }
    const QGuiApplication application(argc, argv);
    benchmark::RegisterBenchmark("scroll", scroll)->Apply(sizes);
    benchmark::RegisterBenchmark("scrollFromEndToEnd", scrollFromEndToEnd)->Apply(sizes);
    benchmark::RegisterBenchmark("insert", insert, &desk)->Apply(sizes);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
