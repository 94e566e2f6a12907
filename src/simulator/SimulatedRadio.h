// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"
#include "base/SystemLog.h"
#include "device/BluetoothCentral.h"
#include "simulator/DeviceProfile.h"
#include "simulator/ProfileParser.h"
#include "simulator/SimulatedDevice.h"

#include <functional>
#include <memory>

namespace cvtamber {

class SimulatedCentral;
class SimulatedRadio;

struct SimulationResult
{
    std::shared_ptr<SimulatedRadio> radio; // null when there is an error
    QString error;                         // one sentence, with the place in the profile
};

// A radio with simulated devices in reach, for any number of centrals: the one header that programs need.
//
// Each central has its own peripherals and delegate; a device has one link, which centrals share, and which
// ends when the last of them lets go. Switching the radio off ends scans, attempts and links of all centrals.
// Owner: whoever starts the simulation, and the centrals made here. Main thread. The run loop and the log
// outlive it.
class SimulatedRadio : public std::enable_shared_from_this<SimulatedRadio>
{
public:
    // What is stored on a device lasts in the state folder; with an empty one nothing does.
    static std::shared_ptr<SimulatedRadio> fromProfile(RunLoop &runLoop, SystemLog &log,
                                                       const DeviceProfileSet &profiles,
                                                       const QString &stateFolder);
    // Reads a profile file; the built-in profile for an empty path.
    static SimulationResult fromFile(RunLoop &runLoop, SystemLog &log, const QString &profilePath,
                                     const QString &stateFolder);
    ~SimulatedRadio();

    std::unique_ptr<BluetoothCentral> makeCentral();

    BluetoothCentral::State state() const { return _state; }
    void setState(BluetoothCentral::State state);
    // On again after this time; never when it is 0.
    void switchOff(std::chrono::milliseconds duration);
    // Who hears of each new state beside the centrals; one at a time.
    void setStateChanged(const std::function<void()> &changed) { _stateChanged = changed; }
    const QList<std::shared_ptr<SimulatedDevice>> &devices() const { return _devices; }
    // Null when there is no such device.
    std::shared_ptr<SimulatedDevice> device(const QByteArray &serial) const;
    // Between two advertisements of the quickest device.
    std::chrono::milliseconds advertisingInterval() const;

    // The centrals' side.
    void addCentral(SimulatedCentral *central) { _centrals.append(central); }
    void removeCentral(SimulatedCentral *central) { _centrals.removeOne(central); }

private:
    SimulatedRadio(RunLoop &runLoop, SystemLog &log, const DeviceProfileSet &profiles,
                   const QString &stateFolder);

    RunLoop &_runLoop;
    BluetoothCentral::State _state;
    QList<std::shared_ptr<SimulatedDevice>> _devices;
    QList<SimulatedCentral *> _centrals;
    std::function<void()> _stateChanged;
    CallGroup _script;
};

} // namespace cvtamber
