// SPDX-License-Identifier: GPL-3.0-or-later
// The application as it is started by a person: the time until the users list stands on the screen, the memory that
// it takes, and how often it wakes up afterwards. The control is an empty window with three tabs, in turns with it.
//
// Both are seen from outside, by their picture: the program needs no hook for it, and what counts is what a person
// sees. A start is over with the last change of the screen before it stands still.
#include "StoreTree.h"
#include "VirtualDesk.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

constexpr int Pupils = 200;
constexpr int DocumentsOfEach = 20;
// Of each program, in each repetition.
constexpr int Starts = 5;
constexpr auto Look = 1ms;
constexpr auto Still = 600ms;
constexpr auto Patience = 60s;
// After a start, before wake-ups are counted.
constexpr auto Settling = 5s;
constexpr auto Idle = 30s;
// Every text, be it a pupil's name or a tab's, is higher than this.
constexpr int LineStep = 4;
constexpr int FewestRows = 8;

struct Start
{
    // An entry is missing where the program did not start, or showed nothing.
    bool isSound = false;
    double shownMs = 0;
    double firstMs = 0;
    double cpuMs = 0;
    double pssMB = 0;
    double rssMB = 0;
    // Lines of text in a column of the picture.
    int textLines = 0;
};

double milliseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

QByteArray programPath(const char *name)
{
    const QFileInfo own(QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget());
    return QFile::encodeName(own.dir().filePath(QString::fromLatin1(name)));
}

// Of all threads, in milliseconds.
double processorTime(pid_t pid)
{
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &time) != 0)
        return 0;
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// The number behind a word in a file of the kernel; 0 when it has none.
qint64 numberIn(const QString &path, const QByteArray &word)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(word))
            return line.mid(word.size()).simplified().split(' ').first().toLongLong();
    }
    return 0;
}

double megabytes(pid_t pid, const QByteArray &word)
{
    return static_cast<double>(numberIn(QStringLiteral("/proc/%1/smaps_rollup").arg(pid), word)) * 1024 / 1e6;
}

// How often any thread of the process has waited, and so was woken.
qint64 wakeUps(pid_t pid)
{
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    qint64 sum = 0;
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        sum += numberIn(tasks.filePath(task + u"/status"), "voluntary_ctxt_switches:");
    return sum;
}

// Stretches of lines that are not all of one colour, in a column that holds the names of pupils.
int textLines(const QImage &picture)
{
    int count = 0;
    bool wasText = false;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        const bool isText = std::any_of(line + picture.width() / 5, line + picture.width() / 2,
                                        [=](QRgb pixel) { return pixel != line[picture.width() / 5]; });
        count += isText && !wasText ? 1 : 0;
        wasText = isText;
    }
    return count;
}

// Looks at the screen until nothing has changed for a while; when it changed last, and first.
struct Watch
{
    Watch(const VirtualDesk &desk, Clock::duration stillFor, bool needsChange)
    {
        QImage seen = desk.picture(LineStep);
        const auto start = Clock::now();
        for (auto now = start; now - start < Patience; now = Clock::now()) {
            if ((!needsChange || last != Clock::time_point{}) && now - std::max(last, start) >= stillFor) {
                isStill = true;
                return;
            }
            const QImage picture = desk.picture(LineStep);
            if (picture != seen) {
                last = Clock::now();
                first = first == Clock::time_point{} ? last : first;
                seen = picture;
            }
            std::this_thread::sleep_for(Look);
        }
    }

    Clock::time_point first;
    Clock::time_point last;
    bool isStill = false;
};

Start start(const VirtualDesk &desk, const QByteArray &program)
{
    Start result;
    // The window of the program before has gone.
    if (!Watch(desk, 200ms, false).isStill)
        return result;
    const auto begin = Clock::now();
    const Child child({program});
    const Watch watch(desk, Still, true);
    result.shownMs = milliseconds(watch.last - begin);
    result.firstMs = milliseconds(watch.first - begin);
    result.cpuMs = processorTime(child.pid());
    result.pssMB = megabytes(child.pid(), "Pss:");
    result.rssMB = megabytes(child.pid(), "Rss:");
    result.textLines = textLines(desk.picture());
    result.isSound = child.hasStarted() && watch.isStill && result.rssMB > 0;
    return result;
}

double median(const std::vector<Start> &starts, double Start::*figure)
{
    std::vector<double> values(starts.size());
    std::transform(starts.begin(), starts.end(), values.begin(),
                   [=](const Start &start) { return start.*figure; });
    const auto middle = values.begin() + static_cast<qsizetype>(values.size()) / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void startOfUsersList(benchmark::State &state, const VirtualDesk *desk)
{
    const QByteArray ours = programPath("cvtamber");
    const QByteArray control = programPath("ui_control");
    // Warm: each has been started before.
    bool isSound = start(*desk, ours).isSound && start(*desk, control).isSound;
    std::vector<Start> oursStarts, controlStarts;
    while (state.KeepRunning()) {
        for (int number = 0; number < Starts && isSound; ++number) {
            oursStarts.push_back(start(*desk, ours));
            controlStarts.push_back(start(*desk, control));
            isSound = oursStarts.back().isSound && controlStarts.back().isSound &&
                      oursStarts.back().textLines >= FewestRows &&
                      controlStarts.back().textLines < FewestRows;
        }
    }
    if (!isSound) {
        state.SkipWithError("a program did not show what it should");
        return;
    }
    const auto report = [&](const char *name, double Start::*figure) {
        state.counters[std::string("ours_") + name] = median(oursStarts, figure);
        state.counters[std::string("control_") + name] = median(controlStarts, figure);
        state.counters[std::string("ratio_") + name] =
            median(oursStarts, figure) / median(controlStarts, figure);
    };
    report("shown_ms", &Start::shownMs);
    report("first_ms", &Start::firstMs);
    report("cpu_ms", &Start::cpuMs);
    report("pss_MB", &Start::pssMB);
    report("rss_MB", &Start::rssMB);
}

// Nobody touches anything.
double wakeUpsWhileIdle(const VirtualDesk &desk, const QByteArray &program)
{
    const Child child({program});
    const Watch watch(desk, Settling, true);
    const qint64 before = wakeUps(child.pid());
    std::this_thread::sleep_for(Idle);
    return watch.isStill && before > 0 ? static_cast<double>(wakeUps(child.pid()) - before) : -1;
}

void idleUsersList(benchmark::State &state, const VirtualDesk *desk)
{
    while (state.KeepRunning()) {
        const double ours = wakeUpsWhileIdle(*desk, programPath("cvtamber"));
        const double control = wakeUpsWhileIdle(*desk, programPath("ui_control"));
        if (ours < 0 || control < 0)
            state.SkipWithError("a program did not show what it should");
        state.counters["ours_wakeups"] = ours;
        state.counters["control_wakeups"] = control;
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    VirtualDesk desk({390, 844});
    if (desk.problem() || !StoreTree::fill(desk.documents(), Pupils, DocumentsOfEach)) {
        std::fprintf(stderr, "ui_start_bench: %s\n",
                     desk.problem() ? desk.problem() : "no store can be made");
        return 2;
    }
    benchmark::RegisterBenchmark("startOfUsersList", startOfUsersList, &desk)
        ->Iterations(1)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("idleUsersList", idleUsersList, &desk)
        ->Iterations(1)
        ->Repetitions(3)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
