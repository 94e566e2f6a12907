// SPDX-License-Identifier: GPL-3.0-or-later
// CVTAMBER_SEED=N walks that walk again, CVTAMBER_WALKS=N that many.
#include "ScreenWalk.h"

#include <QTest>

#include <cstdio>

using namespace cvtamber;

class tst_screenwalk : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsLostWhateverIsPressed()
    {
        const quint32 seed = qEnvironmentVariable("CVTAMBER_SEED").toUInt();
        const quint32 asked = qEnvironmentVariable("CVTAMBER_WALKS").toUInt();
        const quint32 last = seed ? seed : asked ? asked : 500;
        int faults = 0;
        for (quint32 walk = seed ? seed : 1; walk <= last; ++walk) {
            ScreenWalk person(walk);
            const QString fault = person.run();
            faults += fault.isNull() ? 0 : 1;
            if (seed || (!fault.isNull() && faults <= 3))
                std::fprintf(stderr, "walk %u: %s\n    %s\n", walk, qPrintable(fault),
                             qPrintable(person.story().join(QStringLiteral("\n    "))));
        }
        QCOMPARE(faults, 0);
    }
};

QTEST_GUILESS_MAIN(tst_screenwalk)
#include "tst_screenwalk.moc"
