// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/CallGroup.h"
#include "base/DelayedCall.h"
#include "base/SystemLog.h"
#include "simulator/ChatPartner.h"
#include "simulator/DeviceStateFile.h"
#include "simulator/SimulatedLinkHolder.h"

#include <deque>
#include <memory>

namespace cvtamber {

// What one simulated device has seen since it was switched on.
struct DeviceCounters
{
    int connects = 0; // links made, by any central
    int failedConnects = 0;
    int discoveries = 0;
    int writes = 0; // that arrived, failed ones included
    int notifications = 0;
};

// A service as the device offers it.
struct OfferedService
{
    BluetoothUuid uuid;
    QList<BluetoothUuid> characteristics;
};

// One device in reach of the simulated radio: firmware, services, the one link, and what a script lets go
// wrong.
//
// While it is linked it does not advertise. Owner: SimulatedRadio. Main thread. What it stores is saved a
// moment after it changed, and when the device is destroyed.
class SimulatedDevice
{
public:
    // With an empty state folder nothing lasts.
    SimulatedDevice(RunLoop &runLoop, SystemLog &log, const DeviceProfile &profile,
                    const QString &stateFolder);
    SimulatedDevice(const SimulatedDevice &) = delete;
    SimulatedDevice &operator=(const SimulatedDevice &) = delete;
    ~SimulatedDevice();

    const DeviceProfile &profile() const { return _profile; }
    QString identifier() const;
    FirmwareModel &firmware() { return _firmware; }
    FaultScript &faults() { return _faults; }
    const DeviceCounters &counters() const { return _counters; }
    DeviceCounters &counters() { return _counters; }

    // Someone types on the device: live text to the other side.
    void type(const QByteArray &bytes);
    void dropLink(bool withError = true);
    void dropLink(const QString &error);
    void leave();
    void comeBack();
    // Writes what changed to the state file now.
    void save();

    bool isInRange() const { return _inRange; }
    bool isLinked() const { return !_holders.isEmpty(); }
    bool advertises(const QList<BluetoothUuid> &filter) const;
    QList<OfferedService> offeredServices() const;
    // The value of a characteristic that can be read.
    QByteArray readableValue(const BluetoothUuid &characteristic) const;

    void attach(const std::weak_ptr<SimulatedLinkHolder> &holder);
    void detach(const SimulatedLinkHolder *holder);
    void waitForReturn(const std::weak_ptr<SimulatedLinkHolder> &holder);
    void receive(const QByteArray &bytes) { _firmware.receive(bytes); }

private:
    struct Outgoing
    {
        std::chrono::nanoseconds readyAt;
        QByteArray bytes;
        qsizetype sent = 0;
    };

    void restoreState();
    void startAbsences(const QByteArray &command);
    void answer(const QByteArray &command, QByteArray bytes);
    void enqueue(const QByteArray &bytes, std::chrono::nanoseconds delay);
    void schedulePump();
    void pump();
    QByteArray takeOutgoing(qsizetype limit, bool merging);
    void notify(const QByteArray &value);
    void endLink();

    RunLoop &_runLoop;
    SystemLog &_log;
    DeviceProfile _profile;
    FirmwareModel _firmware;
    ChatPartner _partner;
    FaultScript _faults;
    DeviceCounters _counters;
    DeviceStateFile _stateFile;
    DelayedCall _saveLater;
    QList<std::weak_ptr<SimulatedLinkHolder>> _holders;
    QList<std::weak_ptr<SimulatedLinkHolder>> _waiting;
    std::deque<Outgoing> _outgoing;
    std::chrono::nanoseconds _nextNotification{0};
    DelayedCall _pump;
    CallGroup _repeats;
    CallGroup _script;
    bool _inRange = true;
};

} // namespace cvtamber
