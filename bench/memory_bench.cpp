// SPDX-License-Identifier: GPL-3.0-or-later
// Heap used by transfers, in a program of its own because counting costs time.
#include "AllocationMeter.h"
#include "BenchLink.h"

#include <benchmark/benchmark.h>

namespace {

using namespace cvtamber;

constexpr qsizetype MegaByte = 1'000'000;
constexpr qsizetype TextSize = 10 * MegaByte;

// From the call that starts an upload to its last confirmation, beyond what was there before it.
void uploadPeak(benchmark::State &state)
{
    const QString text(TextSize, u'\u00E9');
    while (state.KeepRunning()) {
        BenchLink link;
        const size_t before = AllocationMeter::live();
        AllocationMeter::restart();
        link.device->sendFileWithName(QStringLiteral("FILE"), text, PlainTransfer);
        link.peripheral->confirmAllWrites();
        const auto used = static_cast<qint64>(AllocationMeter::peak() - before);
        if (link.receiver->uploads != 1)
            state.SkipWithError("the upload did not end");
        state.counters["peak_MB"] = static_cast<double>(used) / MegaByte;
        state.counters["beyond_text_MB"] = static_cast<double>(used - TextSize) / MegaByte;
    }
}

BENCHMARK(uploadPeak)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
