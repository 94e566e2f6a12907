// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "cli/ExitStatus.h"
#include "device/CVBluetoothManager.h"

namespace cvtamber {

// Looks for devices until the one that is wanted is there, or the time is over.
//
//   looking -> found     the named device; with none named the only one, when no other has come within
//                        3 seconds of the first
//           -> failed    no Bluetooth, time over, or several and none named
// Owner: a verb or the runner. Main thread; the outcome comes once, from the run loop, and the scan has
// stopped by then. Destroying the finder stops it silently.
class DeviceFinder
{
public:
    struct Outcome
    {
        CVBTPeripheralPtr device; // null: see the rest
        ExitStatus status = ExitStatus::Done;
        QString sentence;
    };
    using Finished = std::function<void(const Outcome &)>;
    using Seen = std::function<void(const CVBTPeripheralPtr &)>;

    enum class Want {
        OneDevice, // the named one or the only one
        All,       // go on until the time is over, or the named one comes
    };

    DeviceFinder(RunLoop &runLoop, std::shared_ptr<CVBluetoothManager> manager);
    DeviceFinder(const DeviceFinder &) = delete;
    DeviceFinder &operator=(const DeviceFinder &) = delete;
    ~DeviceFinder();

    // Each device once, before the outcome.
    void setSeen(const Seen &seen) { _seen = seen; }
    // `name` is a serial number or an air name, as a whole; null for any device.
    void start(Want want, const QString &name, std::chrono::seconds limit, const Finished &finished);

    const QList<CVBTPeripheralPtr> &devices() const { return _devices; }

    // "SERIAL NAME" for a message.
    static QString shownName(const CVBTPeripheral &device);

private:
    class Listener;

    void checkRadio();
    void deviceFound(const CVBTPeripheralPtr &device);
    void timeOver();
    void firstDeviceWaited();
    bool isWanted(const CVBTPeripheral &device) const;
    void finish(const Outcome &outcome);
    void stop();

    RunLoop &_runLoop;
    std::shared_ptr<CVBluetoothManager> _manager;
    std::shared_ptr<Listener> _listener;
    Seen _seen;
    Finished _finished;
    Want _want = Want::OneDevice;
    QString _name;
    std::chrono::seconds _limit{0};
    QList<CVBTPeripheralPtr> _devices;
    DelayedCall _timeOver;
    DelayedCall _firstDeviceWait;
    DelayedCall _radioCheck;
    DelayedCall _report;
};

} // namespace cvtamber
