// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/DeviceFinder.h"
#include "cli/Verb.h"

namespace cvtamber {

// `scan`: prints each device as it is found; with --json one array at the end.
class ScanVerb final : public Verb
{
public:
    ScanVerb(const VerbContext &context, const VerbRequest &request);
    void run(Session &) override {}

private:
    void prepare() override;
    void printDevice(const CVBTPeripheral &device);
    void over(const DeviceFinder::Outcome &outcome);
    QByteArray json() const;

    DeviceFinder _finder;
    bool _printed = true;
};

} // namespace cvtamber
