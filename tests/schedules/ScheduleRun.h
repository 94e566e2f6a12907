// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/VerbBench.h"
#include "schedules/Schedule.h"

namespace cvtamber {

// One schedule carried out by the real verbs on manual time, watched from call to call, and judged.
class ScheduleRun
{
public:
    explicit ScheduleRun(const Schedule &schedule)
        : _schedule(schedule)
        , _bench(schedule.profile)
    {}

    // Null when everything that must hold holds; else what does not, in words.
    QString run();
    int status() const { return _status; }
    // Writes that the device has seen: a trouble at a later one has not come.
    int writes() const { return _writes; }
    QString story() const;

private:
    using Time = std::chrono::nanoseconds;

    void watch();
    QString judge();
    QString judgeSuccess();
    QString judgeFailure();
    QString judgeDelays();
    QString judgeRest();
    bool losesLink() const;
    QByteArray expectedChat() const;

    Schedule _schedule;
    VerbBench _bench;
    int _status = -1;
    int _writes = 0;
    Time _lastWriteAt{0};
    Time _lastWriteBeforeTold{0};
    std::optional<Time> _troubleAt;
    bool _linkedInTrouble = false;
    bool _wasLinked = false;
    qsizetype _said = 0;
    std::optional<Time> _toldAt; // the first message after the trouble
    Time _endedAt{0};
};

} // namespace cvtamber
