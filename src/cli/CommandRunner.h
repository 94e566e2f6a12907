// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandLine.h"
#include "cli/DeviceFinder.h"
#include "cli/Verb.h"

namespace cvtamber {

// What the runner needs from start-up. All of it outlives the runner.
struct CommandServices
{
    RunLoop &runLoop;
    Console &console;
    // Both null for a verb that needs no device.
    std::shared_ptr<CVBluetoothManager> manager;
    CVBTDevice *device = nullptr;
};

// Carries out one command line: local checks, finding, connecting, the verb, a clean end of the link.
//
// The exit status is reported once, from the run loop, when nothing is under way any more. Owner: main().
// Main thread.
class CommandRunner
{
public:
    using Finished = std::function<void(ExitStatus)>;

    CommandRunner(const CommandServices &services, const CommandLine &commandLine);
    CommandRunner(const CommandRunner &) = delete;
    CommandRunner &operator=(const CommandRunner &) = delete;
    ~CommandRunner();

    void start(const Finished &finished);
    // Gives up what is under way and ends the link in order; `status` is what is reported then, unless the link
    // was lost and has not come back: that is what the person waited for.
    void interrupt(ExitStatus status);

private:
    void findDevice();
    void deviceFound(const DeviceFinder::Outcome &outcome);
    void opened(const QString &problem);
    void verbFinished(ExitStatus status);
    void linkEnded(const QString &sentence);
    void conclude(ExitStatus status);
    void releaseRadio();
    void tellFinished();

    CommandServices _services;
    CommandLine _commandLine;
    Finished _finished;
    bool _concluding = false;
    ExitStatus _status = ExitStatus::Done;
    // The session outlives the verb, which works on it.
    std::unique_ptr<DeviceFinder> _finder;
    std::unique_ptr<Session> _session;
    VerbPtr _verb;
    DelayedCall _report;
};

} // namespace cvtamber
