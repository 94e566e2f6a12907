// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <list>
#include <utility>

namespace cvtamber {

class CommandEngine;
struct DeviceContext;

// Whose turn it is with the device. It answers one question at a time, and nothing in an answer says which question it
// is for: whoever wants an answer, or what the device says of itself, asks here and is told once how that ended.
//
//   Done          whenFree(): nothing is awaited, it is the asker's turn; list(): the list is that of the device
//   Failed        there is no link, it ended, or the device did not answer
//   PushedAside   a command that did not ask here has taken the answer away
//
// A listing that is under way serves all who ask for one. A device without files answers with an empty line.
// The answer may come inside the question. Main thread; owner: the device object.
class DeviceTurn final
{
public:
    enum class End { Done, Failed, PushedAside };
    using Ended = std::function<void(End)>;

    DeviceTurn(DeviceContext &context, CommandEngine &engine);

    // The device is connected and identified, and the link is up.
    bool isLinked() const;
    // Linked, and no answer is awaited.
    bool isFree() const;
    // The file list is being asked for.
    bool isListing() const;

    void whenFree(const void *asker, const Ended &ended);
    // The asker wants no answer any more.
    void forget(const void *asker);
    void list(const Ended &ended);

    // From the engine: the command awaits nothing any more.
    void commandEnded(int command, End end);
    // From the session.
    void linkEnded();

private:
    void serve();
    void endListing(End end);

    DeviceContext &_context;
    CommandEngine &_engine;
    std::list<std::pair<const void *, Ended>> _waiting;
    std::list<Ended> _listers;
};

} // namespace cvtamber
