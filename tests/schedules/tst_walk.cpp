// SPDX-License-Identifier: GPL-3.0-or-later
#include "schedules/Walk.h"

#include <QTest>

#include <cstdio>

using namespace cvtamber;

// Random walks through the screens of the device.
class TestWalk : public QObject
{
    Q_OBJECT

private slots:
    // CVTAMBER_SEED runs one again and tells its steps, CVTAMBER_WALKS another number of them.
    void seeded()
    {
        const quint32 seed = qEnvironmentVariable("CVTAMBER_SEED").toUInt();
        const quint32 count = qEnvironmentVariable("CVTAMBER_WALKS", QStringLiteral("1000")).toUInt();
        int faults = 0;
        for (quint32 next = seed == 0 ? 1 : seed; next <= (seed == 0 ? count : seed) && faults < 10; ++next) {
            Walk walk(next);
            const QString fault = walk.run();
            faults += fault.isNull() ? 0 : 1;
            if (!fault.isNull() || seed != 0)
                std::fprintf(stderr, "seed %u: %s\n    %s\n", next, qPrintable(fault),
                             qPrintable(walk.steps().join(QStringLiteral(" | "))));
        }
        QCOMPARE(faults, 0);
    }
};

QTEST_GUILESS_MAIN(TestWalk)
#include "tst_walk.moc"
