// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/DeviceTurn.h"

#include "device/CommandEngine.h"
#include "device/DeviceContext.h"

namespace cvtamber {

DeviceTurn::DeviceTurn(DeviceContext &context, CommandEngine &engine)
    : _context(context)
    , _engine(engine)
{}

bool DeviceTurn::isLinked() const
{
    return _context.isIdentified && _context.isConnectedAsCVComm;
}

bool DeviceTurn::isFree() const
{
    const int pending = _engine.pendingCommand();
    // Sound waits for nothing.
    return isLinked() && (pending == CommandEngine::NoCommand || pending == CommandEngine::SoundCommand);
}

bool DeviceTurn::isListing() const
{
    return _engine.pendingCommand() == CommandEngine::DirectoryCommand;
}

void DeviceTurn::whenFree(const void *asker, const Ended &ended)
{
    if (!isLinked()) {
        ended(End::Failed);
        return;
    }
    _waiting.emplace_back(asker, ended);
    serve();
}

void DeviceTurn::forget(const void *asker)
{
    _waiting.remove_if([asker](const auto &waiting) { return waiting.first == asker; });
}

void DeviceTurn::list(const Ended &ended)
{
    if (!isLinked()) {
        ended(End::Failed);
        return;
    }
    _listers.push_back(ended);
    serve();
}

void DeviceTurn::serve()
{
    while (isFree() && !_waiting.empty()) {
        const Ended ended = _waiting.front().second;
        _waiting.pop_front();
        ended(End::Done);
    }
    if (isFree() && !_listers.empty())
        _engine.sendWaitCommand(CommandEngine::DirectoryCommand);
}

void DeviceTurn::commandEnded(int command, End end)
{
    if (command == CommandEngine::DirectoryCommand)
        endListing(end);
    // Who pushes a command aside is about to send another.
    if (end != End::PushedAside)
        serve();
}

void DeviceTurn::endListing(End end)
{
    for (const Ended &ended : std::exchange(_listers, {}))
        ended(end);
}

void DeviceTurn::linkEnded()
{
    // One by one: a call may forget another.
    while (!_waiting.empty()) {
        const Ended ended = _waiting.front().second;
        _waiting.pop_front();
        ended(End::Failed);
    }
    endListing(End::Failed);
}

} // namespace cvtamber
