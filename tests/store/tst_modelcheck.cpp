// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/modelcheck/CloudRun.h"
#include "store/modelcheck/LocalRun.h"

#include <QTest>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <numeric>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

constexpr quint32 SequenceCount = 60;
constexpr int MostFaultsShown = 5;

// 0 where the variable is not set.
quint32 numberFrom(const char *variable)
{
    return qEnvironmentVariable(variable).toUInt();
}

// Found by longer runs, and gone over each time since.
const std::vector<quint32> FoundInTheCloud{121};

// CVTAMBER_SEED runs one again, CVTAMBER_SEQUENCES another number of them. A user's and a folder's directory
// get a name of their own each time, so the order within a directory may differ.
std::vector<quint32> seedsToRun(const std::vector<quint32> &found)
{
    if (const quint32 seed = numberFrom("CVTAMBER_SEED"))
        return {seed};
    const quint32 count = numberFrom("CVTAMBER_SEQUENCES");
    std::vector<quint32> seeds(count == 0 ? SequenceCount : count);
    std::iota(seeds.begin(), seeds.end(), 1);
    std::copy_if(found.begin(), found.end(), std::back_inserter(seeds),
                 [last = seeds.back()](quint32 seed) { return seed > last; });
    return seeds;
}

template<typename MakeRun> int faults(const MakeRun &makeRun, const std::vector<quint32> &found = {})
{
    int faults = 0;
    for (const quint32 next : seedsToRun(found)) {
        auto run = makeRun(next);
        const QString fault = run.run();
        if (!fault.isNull() && ++faults <= MostFaultsShown)
            std::fprintf(stderr, "seed %u: %s\n    %s\n", next, qPrintable(fault),
                         qPrintable(run.story().join(u"\n    "_s)));
    }
    return faults;
}

} // namespace

class TestModelCheck : public QObject
{
    Q_OBJECT

private slots:
    void local()
    {
        QCOMPARE(faults([](quint32 seed) { return LocalRun(seed, LocalRun::Kind::Undisturbed); }), 0);
    }
    void localFailing()
    {
        QCOMPARE(faults([](quint32 seed) { return LocalRun(seed, LocalRun::Kind::Failing); }), 0);
    }
    void localDisturbed()
    {
        QCOMPARE(faults([](quint32 seed) { return LocalRun(seed, LocalRun::Kind::Disturbed); }), 0);
    }
    void cloud()
    {
        QCOMPARE(faults([](quint32 seed) { return CloudRun(seed); }, FoundInTheCloud), 0);
    }
};

QTEST_GUILESS_MAIN(TestModelCheck)
#include "tst_modelcheck.moc"
