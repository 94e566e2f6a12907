// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreProblems.h"

namespace cvtamber {

class Presenter;
class SystemLog;

// The sentence, and behind it why in a person's words where that can be acted on: the disk is full, say. Of everything else the
// system's words belong in the log. `why` as in StoreProblem. Pure.
QString withReason(const QString &sentence, const QString &why);

// Tells people what failed in the store: a notice each, without a name that belongs to the store alone.
// Owner: start-up; the presenter and the log outlive it.
class StoreNotices final : public StoreProblemObserver
{
public:
    StoreNotices(Presenter &presenter, SystemLog &log)
        : _presenter(presenter)
        , _log(log)
    {}

    void storeProblem(const StoreProblem &problem) override;
    // Pure.
    static QString textOf(const StoreProblem &problem);

private:
    Presenter &_presenter;
    SystemLog &_log;
};

} // namespace cvtamber
