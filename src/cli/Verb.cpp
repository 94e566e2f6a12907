// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Verb.h"

#include "cli/DeviceSentences.h"

namespace cvtamber {

using namespace std::chrono_literals;

Verb::Verb(const VerbContext &context, const VerbRequest &request)
    : _context(context)
    , _request(request)
    , _exit(context.runLoop)
{}

void Verb::begin(const Ready &ready, const Finished &finished)
{
    _ready = ready;
    _finished = finished;
    prepare();
}

void Verb::ready()
{
    if (!_over)
        _ready();
}

void Verb::finish(ExitStatus status)
{
    if (_over)
        return;
    _over = true;
    console().endProgress();
    // From the run loop: the device object may be in the middle of a handler that sends more.
    _exit.start(0s, [finished = std::exchange(_finished, nullptr), status] { finished(status); });
}

void Verb::fail(ExitStatus status, const QString &sentence)
{
    if (_over)
        return;
    console().endProgress();
    console().writeMessage(sentence);
    finish(status);
}

void Verb::abandon()
{
    _over = true;
    _exit.cancel();
    console().endProgress();
    console().stopInput();
}

bool Verb::isListed(const CVBTDevice &device)
{
    const QString &name = _request.operand;
    if (device.getSizeOfFileWithName(name) < 0) {
        fail(ExitStatus::NoSuchFile, noSuchFileSentence(name, device.files()));
        return false;
    }
    const QString problem = unlistableNameProblem(name, device.cvKeyboardLanguage(), device.stringEncoding());
    if (!problem.isEmpty())
        fail(ExitStatus::WrongUsage, problem);
    return problem.isEmpty();
}

} // namespace cvtamber
