// SPDX-License-Identifier: GPL-3.0-or-later
// A large school: 10,000 users with 100,000 documents, in a program of its own, so that its memory is that of
// this store and nothing else.
#include "BenchStore.h"
#include "StoreTree.h"

#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <chrono>

namespace {

using namespace cvtamber;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Resident memory of this program in megabytes; "VmRSS" now, "VmHWM" the highest so far.
double residentMegabytes(const QByteArray &field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(QByteArray(field + ":")))
            return line.mid(field.size() + 1).trimmed().split(' ').first().toDouble() * 1024 / 1e6;
    }
    return -1;
}

void openLargeSchool(benchmark::State &state)
{
    static const StoreTree tree(10'000, 10);
    if (!tree.isComplete()) {
        state.SkipWithError("the tree could not be made");
        return;
    }
    bareWalk(tree.root());
    while (state.KeepRunning()) {
        const auto walked = Clock::now();
        bareWalk(tree.root());
        state.counters["control_s"] = secondsSince(walked);
        BenchStore store;
        const auto start = Clock::now();
        double firstNotification = -1;
        store.notifications.addObserver(TamberUsersUserAddedNotification.toString(),
                                        [&](const Notification &) {
                                            if (firstNotification < 0)
                                                firstNotification = secondsSince(start);
                                        });
        const auto storage = TamberStorage::withURL(store.context, FileURL::directory(tree.root()));
        const auto users = storage->activeUsers();
        state.SetIterationTime(secondsSince(start));
        qint64 documents = 0;
        for (const auto &user : users->users())
            documents += static_cast<qint64>(user->files().size());
        if (users->users().size() != 10'000 || documents != 100'000)
            state.SkipWithError("the store does not hold what was made");
        state.counters["first_ms"] = firstNotification * 1000;
        state.counters["resident_MB"] = residentMegabytes("VmRSS");
        state.counters["peak_MB"] = residentMegabytes("VmHWM");
        storage->close();
    }
}

BENCHMARK(openLargeSchool)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

} // namespace
