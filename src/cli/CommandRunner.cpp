// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandRunner.h"

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Longer than the 5 seconds that a session takes for its end at most.
constexpr auto ReleaseLimit = 7s;

} // namespace

CommandRunner::CommandRunner(const CommandServices &services, const CommandLine &commandLine)
    : _services(services)
    , _commandLine(commandLine)
    , _report(services.runLoop)
{}

CommandRunner::~CommandRunner()
{
    if (_verb)
        _verb->abandon();
}

void CommandRunner::start(const Finished &finished)
{
    _finished = finished;
    const VerbContext context{_services.runLoop, _services.console, _services.manager, _commandLine.device,
                              _commandLine.timeout};
    _verb = makeVerb(context, _commandLine.request);
    _verb->begin([this] { findDevice(); }, [this](ExitStatus status) { verbFinished(status); });
}

void CommandRunner::findDevice()
{
    _finder = std::make_unique<DeviceFinder>(_services.runLoop, _services.manager);
    _finder->start(DeviceFinder::Want::OneDevice, _commandLine.device, _commandLine.timeout,
                   [this](const DeviceFinder::Outcome &outcome) { deviceFound(outcome); });
}

void CommandRunner::deviceFound(const DeviceFinder::Outcome &outcome)
{
    if (!outcome.device) {
        _services.console.writeMessage(outcome.sentence);
        conclude(outcome.status);
        return;
    }
    _services.console.writeNote(u"Connecting to %1."_s.arg(DeviceFinder::shownName(*outcome.device)));
    _session = std::make_unique<Session>(_services.runLoop, *_services.device);
    _session->setLinkEnded([this](const QString &sentence) { linkEnded(sentence); });
    _session->open(outcome.device->peripheral(), [this](const QString &problem) { opened(problem); });
}

void CommandRunner::opened(const QString &problem)
{
    if (problem.isEmpty()) {
        _verb->run(*_session);
        return;
    }
    _services.console.writeMessage(problem);
    conclude(ExitStatus::LinkFailed);
}

void CommandRunner::verbFinished(ExitStatus status)
{
    if (_concluding)
        return;
    // A fetch restores the device's modes after its last byte: that has to arrive, too.
    if (_session)
        _session->whenWritten([this, status] { conclude(status); });
    else
        conclude(status);
}

void CommandRunner::linkEnded(const QString &sentence)
{
    if (_concluding)
        return;
    _services.console.endProgress();
    _services.console.writeMessage(sentence);
    _verb->interrupted();
    conclude(ExitStatus::LinkFailed);
}

void CommandRunner::interrupt(ExitStatus status)
{
    if (_concluding)
        return;
    _services.console.endProgress();
    const bool isAway = _session && _session->isAway();
    _verb->interrupted();
    conclude(isAway ? ExitStatus::LinkFailed : status);
}

void CommandRunner::conclude(ExitStatus status)
{
    _concluding = true;
    _verb->abandon();
    // Looking on would take the central away from the link that is being closed.
    _finder.reset();
    _status = status;
    if (_session)
        _session->close([this] { releaseRadio(); });
    else
        _report.start(0s, [this] { releaseRadio(); });
}

// A device that was being read, or did not come as far as identifying itself, is let go of here.
void CommandRunner::releaseRadio()
{
    if (!_services.manager) {
        tellFinished();
        return;
    }
    _report.start(ReleaseLimit, [this] { tellFinished(); });
    // Told from inside the manager, so that the report takes a turn of the loop of its own.
    _services.manager->releasePeripherals([this] { _report.start(0s, [this] { tellFinished(); }); });
}

void CommandRunner::tellFinished()
{
    if (_services.manager)
        _services.manager->releasePeripherals({});
    std::exchange(_finished, nullptr)(_status);
}

} // namespace cvtamber
