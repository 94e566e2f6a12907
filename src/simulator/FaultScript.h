// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>

#include <chrono>
#include <optional>

namespace cvtamber {

// One thing that goes wrong on a simulated device.
struct Fault
{
    enum class Kind {
        // Answers; `command` narrows them to one command.
        NoAnswer,
        LateAnswer,  // by `time`
        CustomReply, // `bytes` instead of what the device would say
        NoTrailer,   // a fetch ends without its five bytes
        // Notifications.
        SplitNotifications,  // into pieces of `size` bytes
        MergeNotifications,  // into pieces of `size` bytes, above what the link carries
        RepeatNotifications, // each is sent twice
        // Writes; `number` is the n-th since the device was switched on, 0 for every one.
        LoseConfirmation,
        FailWrite,
        DropAtWrite,          // after the bytes arrived, instead of the confirmation
        RadioOffAtWrite,      // likewise; on again after `time`, or never when that is 0
        DaemonRestartAtWrite, // likewise, on a D-Bus; the daemon is back after `time`
        // The way to a working link.
        ConnectNever,
        ConnectFails,
        DropAfterConnect,
        DropDuringDiscovery,
        ServicesNever,
        DiscoveryFails,
        ReadFails,
        NotifyFails,
    };

    static constexpr int Always = -1;

    Kind kind = Kind::NoAnswer;
    QByteArray command; // empty: every command
    int number = 0;
    int times = Always; // how often it happens, counted down
    std::chrono::milliseconds time{0};
    qsizetype size = 0;
    bool withError = true; // how a dropped link is reported
    QByteArray bytes;
};

// The faults of one device, in the order in which they were written; the first that fits is used.
class FaultScript
{
public:
    FaultScript() = default;
    explicit FaultScript(const QList<Fault> &faults)
        : _faults(faults)
    {}

    void add(const Fault &fault) { _faults.append(fault); }
    // The fault of this kind that applies now; one with a count is used up by one.
    std::optional<Fault> take(Fault::Kind kind, const QByteArray &command = {}, int number = 0);

private:
    QList<Fault> _faults;
};

} // namespace cvtamber
