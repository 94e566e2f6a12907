// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "cli/Console.h"
#include "cli/ExitStatus.h"
#include "cli/Session.h"
#include "cli/VerbRequest.h"

#include <memory>

namespace cvtamber {

// What verbs work with. The references outlive them.
struct VerbContext
{
    RunLoop &runLoop;
    Console &console;
    // Null for verbs that need no device.
    std::shared_ptr<CVBluetoothManager> manager;
    QString deviceName; // null when none was named
    std::chrono::seconds timeout{10};
};

// One command being carried out.
//
//   made -> preparing -> ready -> running -> finished
// Preparing is what needs no link: reading and checking what the person gave. A verb without a device
// finishes there. Each verb reports exactly once, through finish(). Owner: the runner or a batch, by
// shared_ptr, because the device object holds its delegates. Main thread.
class Verb : public std::enable_shared_from_this<Verb>
{
public:
    using Ready = std::function<void()>;
    using Finished = std::function<void(ExitStatus)>;

    Verb(const Verb &) = delete;
    Verb &operator=(const Verb &) = delete;
    virtual ~Verb() = default;

    // Ends in `ready` or, from the run loop, in `finished`.
    void begin(const Ready &ready, const Finished &finished);
    // Called after `ready`, with an open session that outlives the verb.
    virtual void run(Session &session) = 0;
    // The link is about to end before the verb has finished: because it failed or because the person asked.
    // Says what that means for the work under way, sends what leaves the device in order.
    virtual void interrupted() {}
    // The verb is over and reports nothing any more.
    void abandon();

protected:
    Verb(const VerbContext &context, const VerbRequest &request);

    virtual void prepare() { ready(); }
    void ready();
    void finish(ExitStatus status);
    void fail(ExitStatus status, const QString &sentence);
    bool isOver() const { return _over; }
    // Whether the device lists the file that the operand names and can be asked for it; else the verb has failed.
    bool isListed(const CVBTDevice &device);

    const VerbContext &context() const { return _context; }
    const VerbRequest &request() const { return _request; }
    Console &console() const { return _context.console; }

private:
    VerbContext _context;
    VerbRequest _request;
    Ready _ready;
    Finished _finished;
    bool _over = false;
    DelayedCall _exit;
};
using VerbPtr = std::shared_ptr<Verb>;

// The object for a request.
VerbPtr makeVerb(const VerbContext &context, const VerbRequest &request);

} // namespace cvtamber
