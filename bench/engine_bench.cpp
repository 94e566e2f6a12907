// SPDX-License-Identifier: GPL-3.0-or-later
// The command engine over a peripheral that answers at once: what is left is the engine's own cost.
#include "BenchLink.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace {

using namespace cvtamber;
using Clock = std::chrono::steady_clock;

constexpr qsizetype MegaByte = 1'000'000;
constexpr int Runs = 9;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

QString uploadText(qsizetype size)
{
    const QString line = QStringLiteral("Une le\u00E7on de braille, point apr\u00E8s point.\n");
    return line.repeated(size / line.size() + 1).left(size);
}

// From the call of the platform that confirms a write to the next write, one sample a confirmation.
void confirmationToNextWrite(benchmark::State &state)
{
    BenchLink link;
    const QString text = uploadText(MegaByte);
    std::vector<double> samples;
    while (state.KeepRunning()) {
        link.device->sendFileWithName(QStringLiteral("FILE"), text, PlainTransfer);
        while (link.device->queuedBytes() > 0) {
            const qint64 before = link.peripheral->writtenBytes();
            const auto start = Clock::now();
            link.peripheral->confirmWrite();
            const double taken = secondsSince(start);
            if (link.peripheral->writtenBytes() > before)
                samples.push_back(taken);
        }
        link.peripheral->confirmAllWrites();
    }
    if (samples.empty()) {
        state.SkipWithError("no confirmation was followed by a write");
        return;
    }
    state.counters["median_us"] = median(samples) * 1e6;
    state.counters["max_us"] = *std::max_element(samples.begin(), samples.end()) * 1e6;
}

// Negative when the transfer did not end as it should.
double uploadSeconds(const QString &text)
{
    BenchLink link;
    const auto start = Clock::now();
    link.device->sendFileWithName(QStringLiteral("FILE"), text, PlainTransfer);
    link.peripheral->confirmAllWrites();
    const double taken = secondsSince(start);
    return link.receiver->uploads == 1 ? taken : -1;
}

double fetchSeconds(qsizetype size)
{
    constexpr qsizetype NotificationSize = 20;
    BenchLink link;
    const QByteArray piece(NotificationSize, 'x');
    link.device->getFile(QStringLiteral("FILE"), PlainTransfer);
    link.peripheral->confirmAllWrites();
    const auto start = Clock::now();
    for (qsizetype sent = 0; sent < size; sent += NotificationSize)
        link.peripheral->notify(piece);
    link.peripheral->notify("{PC\xFD}");
    const double taken = secondsSince(start);
    return link.receiver->downloadedSize == size ? taken : -1;
}

// The cost of ten times as much, as the ratio of the medians of alternating runs.
template<typename Small, typename Large> void compare(benchmark::State &state, Small small, Large large)
{
    while (state.KeepRunning()) {
        std::vector<double> one;
        std::vector<double> ten;
        for (int run = 0; run < Runs; ++run) {
            one.push_back(small());
            ten.push_back(large());
        }
        if (*std::min_element(one.begin(), one.end()) < 0 || *std::min_element(ten.begin(), ten.end()) < 0) {
            state.SkipWithError("a transfer did not end");
            return;
        }
        state.counters["ms_1MB"] = median(one) * 1e3;
        state.counters["ms_10MB"] = median(ten) * 1e3;
        state.counters["ratio"] = median(ten) / median(one);
    }
}

void uploadTenTimesAsMuch(benchmark::State &state)
{
    const QString small = uploadText(MegaByte);
    const QString large = uploadText(10 * MegaByte);
    compare(
        state, [&small] { return uploadSeconds(small); }, [&large] { return uploadSeconds(large); });
}

void fetchTenTimesAsMuch(benchmark::State &state)
{
    compare(
        state, [] { return fetchSeconds(MegaByte); }, [] { return fetchSeconds(10 * MegaByte); });
}

// The reply has come; measured is what the engine does when the silence after it ends.
void directoryOfTenThousand(benchmark::State &state)
{
    constexpr int Lines = 10'000;
    QByteArray listing;
    for (int line = 0; line < Lines; ++line)
        listing += "LESSON" + QByteArray::number(line) + ".TXT " + QByteArray::number(line * 7) + "\r\n";
    BenchLink link;
    while (state.KeepRunning()) {
        bool done = false;
        link.device->refreshFilesWithCompletionHandler([&done] { done = true; });
        link.peripheral->confirmAllWrites();
        link.peripheral->notify(listing);
        const auto start = Clock::now();
        link.loop.advance(BenchLink::ReplySilence);
        state.SetIterationTime(secondsSince(start));
        if (!done || link.device->getFilesCount() != Lines)
            state.SkipWithError("the listing was not read");
    }
}

BENCHMARK(confirmationToNextWrite)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(uploadTenTimesAsMuch)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(fetchTenTimesAsMuch)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(directoryOfTenThousand)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
