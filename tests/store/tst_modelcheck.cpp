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
// Where disk calls fail most is found: 500 of both kinds.
constexpr quint32 FailingCount = 250;
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
std::vector<quint32> seedsToRun(quint32 usual, const std::vector<quint32> &found)
{
    if (const quint32 seed = numberFrom("CVTAMBER_SEED"))
        return {seed};
    const quint32 count = numberFrom("CVTAMBER_SEQUENCES");
    std::vector<quint32> seeds(count == 0 ? usual : count);
    std::iota(seeds.begin(), seeds.end(), 1);
    std::copy_if(found.begin(), found.end(), std::back_inserter(seeds),
                 [last = seeds.back()](quint32 seed) { return seed > last; });
    return seeds;
}

template<typename MakeRun>
int faults(const MakeRun &makeRun, quint32 usual = SequenceCount, const std::vector<quint32> &found = {})
{
    int faults = 0;
    for (const quint32 next : seedsToRun(usual, found)) {
        auto run = makeRun(next);
        const QString fault = run.run();
        if (!fault.isNull() && ++faults <= MostFaultsShown)
            std::fprintf(stderr, "seed %u: %s\n    %s\n", next, qPrintable(fault),
                         qPrintable(run.story().join(u"\n    "_s)));
    }
    return faults;
}

template<typename Run, typename Run::Kind kind> Run runOf(quint32 seed)
{
    return Run(seed, kind);
}

} // namespace

class TestModelCheck : public QObject
{
    Q_OBJECT

private slots:
    void local() { QCOMPARE(faults(&runOf<LocalRun, LocalRun::Kind::Undisturbed>), 0); }
    void localFailing() { QCOMPARE(faults(&runOf<LocalRun, LocalRun::Kind::Failing>, FailingCount), 0); }
    void localDisturbed() { QCOMPARE(faults(&runOf<LocalRun, LocalRun::Kind::Disturbed>), 0); }
    void cloud()
    {
        QCOMPARE(faults(&runOf<CloudRun, CloudRun::Kind::Undisturbed>, SequenceCount, FoundInTheCloud), 0);
    }
    void cloudFailing() { QCOMPARE(faults(&runOf<CloudRun, CloudRun::Kind::Failing>, FailingCount), 0); }
};

QTEST_GUILESS_MAIN(TestModelCheck)
#include "tst_modelcheck.moc"
