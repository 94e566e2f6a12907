// SPDX-License-Identifier: GPL-3.0-or-later
// The document store: opening it, changing a long list, cloud reports, and a durable save.
#include "BenchStore.h"
#include "StoreTree.h"

#include "store/TamberStorage.h"
#include "store/TamberUbiquitousFolderMonitor.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"

#include <QHash>

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

namespace {

using namespace cvtamber;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

const StoreTree &manyUsers()
{
    static const StoreTree tree(100, 100);
    return tree;
}

const StoreTree &oneContainer()
{
    static const StoreTree tree(1, 10'000);
    return tree;
}

qint64 documentsOf(const TamberUsers &users)
{
    qint64 count = 0;
    for (const auto &user : users.users())
        count += static_cast<qint64>(user->files().size());
    return count;
}

void openStore(benchmark::State &state, const StoreTree &tree)
{
    if (!tree.isComplete()) {
        state.SkipWithError("the tree could not be made");
        return;
    }
    while (state.KeepRunning()) {
        BenchStore store;
        const auto start = Clock::now();
        const auto storage = TamberStorage::withURL(store.context, FileURL::directory(tree.root()));
        const auto users = storage->activeUsers();
        state.SetIterationTime(secondsSince(start));
        if (documentsOf(*users) != 10'000)
            state.SkipWithError("the store does not hold what was made");
        storage->close();
    }
}

void walkBare(benchmark::State &state, const StoreTree &tree)
{
    bareWalk(tree.root());
    while (state.KeepRunning()) {
        const auto start = Clock::now();
        benchmark::DoNotOptimize(bareWalk(tree.root()));
        state.SetIterationTime(secondsSince(start));
    }
}

void openHundredUsers(benchmark::State &state)
{
    openStore(state, manyUsers());
}
void walkHundredUsers(benchmark::State &state)
{
    walkBare(state, manyUsers());
}
void openTenThousandDocuments(benchmark::State &state)
{
    openStore(state, oneContainer());
}
void walkTenThousandDocuments(benchmark::State &state)
{
    walkBare(state, oneContainer());
}

// Apart from the disk: the save is answered without one.
void addToTenThousand(benchmark::State &state)
{
    BenchStore store;
    const auto storage = TamberStorage::withURL(store.context, FileURL::directory(oneContainer().root()));
    const auto user = storage->activeUsers()->users().front();
    user->sortFiles();
    int number = 0;
    while (state.KeepRunning()) {
        const QString title =
            QStringLiteral("Homework %1b").arg((number++ * 7919) % 10'000, 5, 10, QLatin1Char('0'));
        const auto start = Clock::now();
        user->addFileWithName(title, QStringLiteral("A short text."));
        store.runLoop.advance({});
        state.SetIterationTime(secondsSince(start));
    }
    storage->close();
}

constexpr int ReportedUsers = 100;

FileURL cloudRoot()
{
    return FileURL::directory(manyUsers().root());
}

// The records of the users first, as they stand on the disk, then their documents, user by user in turn.
void reportItems(ScriptedCloud &cloud, int count)
{
    const FileURL active = cloudRoot().appendingDirectory(QStringLiteral("ActiveUsers"));
    const auto item = [](const FileURL &url) {
        MetadataItem found;
        found.url = url;
        found.isDownloaded = true;
        return found;
    };
    for (int user = 0; user < ReportedUsers; ++user)
        cloud.items().append(item(active.appendingDirectory(StoreTree::userFolder(user))
                                      .appendingFile(QStringLiteral("user.txt"))));
    for (int number = 0; number < count; ++number) {
        const FileURL folder = active.appendingDirectory(StoreTree::userFolder(number % ReportedUsers));
        // Neither in order nor one behind the other.
        cloud.items().append(item(
            folder.appendingFile(StoreTree::documentName(static_cast<int>(number * 7919LL % 1'000'003)))));
    }
}

// From the query's report to the last document listed.
void cloudReports(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    while (state.KeepRunning()) {
        BenchStore store(manyUsers().root());
        const auto storage = TamberStorage::withURL(store.context, cloudRoot());
        const auto users = storage->activeUsers();
        users->startQuery();
        reportItems(store.cloud, count);
        const auto start = Clock::now();
        store.cloud.gather();
        store.runLoop.advance({});
        state.SetIterationTime(secondsSince(start));
        if (documentsOf(*users) != count)
            state.SkipWithError("not every report was handled");
        storage->close();
    }
}

class Listener final : public TamberUbiquitousFolderMonitorDelegate
{
public:
    void ubiquitousMonitorItemAdded(TamberUbiquitousFolderMonitor &, const Item &) override { ++reports; }
    void ubiquitousMonitorItemDeleted(TamberUbiquitousFolderMonitor &, const Item &) override { ++reports; }
    void ubiquitousMonitorItemDownloaded(TamberUbiquitousFolderMonitor &, const Item &) override
    {
        ++reports;
    }
    void ubiquitousMonitorItemDownloadedAgain(TamberUbiquitousFolderMonitor &, const Item &) override
    {
        ++reports;
    }
    void ubiquitousMonitorContentGathered(TamberUbiquitousFolderMonitor &,
                                          const TamberUbiquitousItems &) override
    {}

    qint64 reports = 0;
};

// All items appear, then half of them go.
double monitorPass(int count)
{
    BenchStore store(manyUsers().root());
    const auto monitor =
        std::make_shared<TamberUbiquitousFolderMonitor>(store.context, cloudRoot(), QStringLiteral("*"));
    const auto listener = std::make_shared<Listener>();
    monitor->setDelegate(listener);
    monitor->startMonitoring();
    reportItems(store.cloud, count);
    const auto start = Clock::now();
    store.cloud.gather();
    store.runLoop.advance({});
    const double gathered = secondsSince(start);
    store.cloud.items().resize(count / 2);
    const auto restart = Clock::now();
    store.cloud.update();
    store.runLoop.advance({});
    const double updated = secondsSince(restart);
    return listener->reports == count + ReportedUsers + (count + ReportedUsers - count / 2)
               ? gathered + updated
               : -1;
}

// The least that the same work needs: the items' paths put into one index, looked up once more, half of them removed.
double indexPass(int count)
{
    BenchStore store(manyUsers().root());
    reportItems(store.cloud, count);
    const QList<MetadataItem> &items = store.cloud.items();
    const auto start = Clock::now();
    QHash<QString, MetadataItem> index;
    for (const MetadataItem &item : items)
        index.insert(item.url.path(), item);
    for (qsizetype number = 0; number < items.size(); ++number) {
        if (number >= count / 2)
            index.remove(items[number].url.path());
        else
            benchmark::DoNotOptimize(index.find(items[number].url.path()));
    }
    return secondsSince(start);
}

void monitorFourTimesAsMuch(benchmark::State &state)
{
    // More items cost more each where they leave the processor's caches; the control shows how much of it is that.
    while (state.KeepRunning()) {
        const double few = monitorPass(50'000);
        const double many = monitorPass(200'000);
        if (few < 0 || many < 0)
            state.SkipWithError("a report is missing");
        const double control = indexPass(200'000) / indexPass(50'000);
        state.SetIterationTime(many);
        state.counters["ratio"] = many / few;
        state.counters["control_ratio"] = control;
        state.counters["against_control"] = many / few / control;
        state.counters["each_us"] = many * 1e6 / 200'000;
    }
}

BENCHMARK(openHundredUsers)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(walkHundredUsers)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(openTenThousandDocuments)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(walkTenThousandDocuments)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(addToTenThousand)->Iterations(1000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(cloudReports)->Arg(1'000)->Arg(10'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(monitorFourTimesAsMuch)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
