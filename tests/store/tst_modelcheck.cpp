// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/modelcheck/CloudRun.h"
#include "store/modelcheck/LocalRun.h"

#include <QTest>

#include <cstdio>

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

// CVTAMBER_SEED runs one again, CVTAMBER_SEQUENCES another number of them. A user's and a folder's directory
// get a name of their own each time, so the order within a directory may differ.
template<typename MakeRun> int faults(const MakeRun &makeRun)
{
    const quint32 seed = numberFrom("CVTAMBER_SEED");
    const quint32 count = numberFrom("CVTAMBER_SEQUENCES");
    const quint32 first = seed == 0 ? 1 : seed;
    const quint32 last = seed == 0 ? (count == 0 ? SequenceCount : count) : seed;
    int faults = 0;
    for (quint32 next = first; next <= last; ++next) {
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
        QCOMPARE(faults([](quint32 seed) { return LocalRun(seed, false); }), 0);
    }
    void localDisturbed()
    {
        QCOMPARE(faults([](quint32 seed) { return LocalRun(seed, true); }), 0);
    }
    void cloud()
    {
        QCOMPARE(faults([](quint32 seed) { return CloudRun(seed); }), 0);
    }
};

QTEST_GUILESS_MAIN(TestModelCheck)
#include "tst_modelcheck.moc"
