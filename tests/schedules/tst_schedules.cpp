// SPDX-License-Identifier: GPL-3.0-or-later
#include "schedules/ScheduleRun.h"

#include <QTest>

#include <cstdio>
#include <map>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

constexpr quint32 ScheduleCount = 300;
constexpr int MostFaultsShown = 20;

// Runs schedules, counts outcomes and collects what must not be.
class Ledger
{
public:
    // The number of writes that the device has seen.
    int run(const Schedule &schedule)
    {
        ScheduleRun run(schedule);
        const QString fault = run.run();
        ++_outcomes[Schedule::name(schedule.trouble)][run.status()];
        if (!fault.isNull() && ++_faults <= MostFaultsShown)
            std::fprintf(stderr, "%s: %s\n    %s\n", qPrintable(schedule.description()), qPrintable(fault),
                         qPrintable(run.story()));
        return run.writes();
    }
    int faults() const { return _faults; }
    void print() const
    {
        for (const auto &[trouble, statuses] : _outcomes) {
            QString line = trouble.leftJustified(20);
            for (const auto &[status, count] : statuses)
                line += u"  status %1: %2"_s.arg(QString::number(status), QString::number(count));
            std::printf("    %s\n", qPrintable(line));
        }
    }

private:
    std::map<QString, std::map<int, int>> _outcomes;
    int _faults = 0;
};

// 0 where the variable is not set.
quint32 numberFrom(const char *variable)
{
    return qEnvironmentVariable(variable).toUInt();
}

} // namespace

class TestSchedules : public QObject
{
    Q_OBJECT

private slots:
    void sameSeedSameSchedule();
    void everyWrite_data();
    void everyWrite();
    void seeded();
};

void TestSchedules::sameSeedSameSchedule()
{
    const Schedule one = Schedule::fromSeed(7);
    QCOMPARE(Schedule::fromSeed(7).profile, one.profile);
    QVERIFY(Schedule::fromSeed(8).profile != one.profile);
    // A seed that was noted on one machine must mean the same on another.
    QCOMPARE(one.description(), u"seed 7: info and ls, failed write (write 330, after 13926 ms, passing), "
                                "text of 15286, file of 714"_s);
}

void TestSchedules::everyWrite_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("trouble");
    for (int operation = 0; operation < OperationCount; ++operation) {
        for (int trouble = int(Trouble::LinkLost); trouble <= int(Trouble::FailedWrite); ++trouble)
            QTest::addRow("%s, %s", qPrintable(Schedule::name(static_cast<Operation>(operation))),
                          qPrintable(Schedule::name(static_cast<Trouble>(trouble))))
                << operation << trouble;
    }
}

// One after the other, until a write is meant that does not come.
void TestSchedules::everyWrite()
{
    QFETCH(const int, operation);
    QFETCH(const int, trouble);
    Ledger ledger;
    int write = 1;
    while (ledger.run(Schedule::atWrite(static_cast<Operation>(operation), static_cast<Trouble>(trouble),
                                        write)) >= write)
        ++write;
    QVERIFY(write > 7);
    QCOMPARE(ledger.faults(), 0);
}

// CVTAMBER_SEED (or --seed) runs one again, CVTAMBER_SCHEDULES another number of them.
void TestSchedules::seeded()
{
    Ledger ledger;
    const quint32 seed = numberFrom("CVTAMBER_SEED");
    const quint32 count = numberFrom("CVTAMBER_SCHEDULES");
    const quint32 first = seed == 0 ? 1 : seed;
    const quint32 last = seed == 0 ? (count == 0 ? ScheduleCount : count) : seed;
    for (quint32 next = first; next <= last; ++next)
        ledger.run(Schedule::fromSeed(next));
    std::printf("Outcomes of %u schedules:\n", last - first + 1);
    ledger.print();
    QCOMPARE(ledger.faults(), 0);
}

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        if (argument == u"--seed"_s && i + 1 < argc)
            qputenv("CVTAMBER_SEED", argv[++i]);
        else
            arguments.append(argument);
    }
    TestSchedules test;
    return QTest::qExec(&test, arguments);
}

#include "tst_schedules.moc"
