// SPDX-License-Identifier: GPL-3.0-or-later
// A durable save of a document through all of the store's layers, beside the bare system calls, in turns.
#include "BenchStore.h"

#include "base/EventRunLoop.h"
#include "base/ThreadPoolTaskRunner.h"
#include "platform/documents/DiskFileCoordinator.h"
#include "store/TamberDocument.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <vector>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace cvtamber;
using Clock = std::chrono::steady_clock;

constexpr int Saves = 200;
constexpr qsizetype Size = 4096;

double microsecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<qsizetype>(values.size()) / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Write, fsync, rename, fsync of the folder.
bool bareSave(const QByteArray &folder, const QByteArray &bytes)
{
    const QByteArray hidden = folder + "/.bare", name = folder + "/bare";
    const int file = ::open(hidden.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0)
        return false;
    bool done = ::write(file, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size() &&
                ::fsync(file) == 0;
    ::close(file);
    done = done && std::rename(hidden.constData(), name.constData()) == 0;
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    done = done && descriptor >= 0 && ::fsync(descriptor) == 0;
    if (descriptor >= 0)
        ::close(descriptor);
    return done;
}

// The real disk work behind the documents of a benchmark.
struct SavingStore
{
    explicit SavingStore(const QString &folder)
        : root(FileURL::directory(folder))
    {}

    bool save(const std::shared_ptr<TamberDocument> &document, Document::SaveOperation operation)
    {
        bool saved = false;
        bool ended = false;
        document->saveToURL(document->fileURL(), operation, [&](bool success) {
            saved = success;
            ended = true;
        });
        while (!ended)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return saved;
    }

    FileURL root;
    BenchStore idle;
    EventRunLoop runLoop;
    ThreadPoolTaskRunner tasks;
    DiskFileCoordinator coordinator{tasks, idle.disk, idle.trash};
    StoreContext context{runLoop,    idle.disk,          coordinator,   idle.cloud,
                         idle.trash, idle.notifications, idle.problems, idle.log};
};

void durableSave(benchmark::State &state)
{
    QTemporaryDir folder;
    SavingStore store(folder.path());
    const auto document = std::make_shared<TamberDocument>(
        store.context, store.root.appendingFile(QStringLiteral("Letter.tamber")));
    document->setText(QString(Size, u'x'));
    bool sound = store.save(document, Document::SaveOperation::ForCreating);
    while (state.KeepRunning()) {
        std::vector<double> ours, bare;
        for (int number = 0; number < Saves && sound; ++number) {
            const QChar letter(static_cast<char16_t>(u'a' + number % 26));
            document->setText(QString(Size, letter));
            auto start = Clock::now();
            sound = store.save(document, Document::SaveOperation::ForOverwriting);
            ours.push_back(microsecondsSince(start));
            start = Clock::now();
            sound = sound && bareSave(QFile::encodeName(folder.path()), QByteArray(Size, letter.toLatin1()));
            bare.push_back(microsecondsSince(start));
        }
        if (!sound) {
            state.SkipWithError("a save failed");
            return;
        }
        state.counters["median_us"] = median(ours);
        state.counters["bare_us"] = median(bare);
        state.counters["ratio"] = median(ours) / median(bare);
    }
}

BENCHMARK(durableSave)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
