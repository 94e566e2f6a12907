// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreProblems.h"

namespace cvtamber {

class Presenter;

// Tells people what failed in the store: a notice each, without a name that belongs to the store alone.
// Owner: start-up; the presenter outlives it.
class StoreNotices final : public StoreProblemObserver
{
public:
    explicit StoreNotices(Presenter &presenter)
        : _presenter(presenter)
    {}

    void storeProblem(const StoreProblem &problem) override;
    // Pure.
    static QString textOf(const StoreProblem &problem);

private:
    Presenter &_presenter;
};

} // namespace cvtamber
