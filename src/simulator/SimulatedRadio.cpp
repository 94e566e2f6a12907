// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/SimulatedRadio.h"

#include "simulator/SimulatedCentral.h"

#include <algorithm>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

} // namespace

SimulatedRadio::SimulatedRadio(RunLoop &runLoop, SystemLog &log, const DeviceProfileSet &profiles,
                               const QString &stateFolder)
    : _runLoop(runLoop)
    , _state(profiles.radio.state)
    , _script(runLoop)
{
    for (const DeviceProfile &profile : profiles.devices)
        _devices.append(std::make_shared<SimulatedDevice>(runLoop, log, profile, stateFolder));
    if (profiles.radio.onAfter >= 0ms)
        _script.perform(profiles.radio.onAfter, [this] { setState(BluetoothCentral::State::PoweredOn); });
    if (profiles.radio.offAfter >= 0ms)
        _script.perform(profiles.radio.offAfter, [this] { setState(BluetoothCentral::State::PoweredOff); });
}

SimulatedRadio::~SimulatedRadio() = default;

std::shared_ptr<SimulatedRadio> SimulatedRadio::fromProfile(RunLoop &runLoop, SystemLog &log,
                                                            const DeviceProfileSet &profiles,
                                                            const QString &stateFolder)
{
    return std::shared_ptr<SimulatedRadio>(new SimulatedRadio(runLoop, log, profiles, stateFolder));
}

SimulationResult SimulatedRadio::fromFile(RunLoop &runLoop, SystemLog &log, const QString &profilePath,
                                          const QString &stateFolder)
{
    if (profilePath.isEmpty())
        return {fromProfile(runLoop, log, DeviceProfileSet::builtIn(), stateFolder), {}};
    const ProfileResult profile = readProfileFile(profilePath);
    if (!profile.error.isEmpty())
        return {nullptr, profile.error};
    return {fromProfile(runLoop, log, profile.profiles, stateFolder), {}};
}

std::unique_ptr<BluetoothCentral> SimulatedRadio::makeCentral()
{
    return std::make_unique<SimulatedCentral>(_runLoop, shared_from_this());
}

void SimulatedRadio::setState(BluetoothCentral::State state)
{
    if (_state == state)
        return;
    _state = state;
    const auto centrals = _centrals;
    for (SimulatedCentral *central : centrals)
        central->radioChanged();
    if (_stateChanged)
        _stateChanged();
}

void SimulatedRadio::switchOff(std::chrono::milliseconds duration)
{
    setState(BluetoothCentral::State::PoweredOff);
    if (duration > 0ms)
        _script.perform(duration, [this] { setState(BluetoothCentral::State::PoweredOn); });
}

std::shared_ptr<SimulatedDevice> SimulatedRadio::device(const QByteArray &serial) const
{
    const auto found = std::find_if(_devices.cbegin(), _devices.cend(), [&serial](const auto &device) {
        return device->profile().serial == serial;
    });
    return found == _devices.cend() ? nullptr : *found;
}

std::chrono::milliseconds SimulatedRadio::advertisingInterval() const
{
    if (_devices.isEmpty())
        return DeviceDelays().advertising;
    auto interval = std::chrono::milliseconds::max();
    for (const auto &device : _devices)
        interval = std::min(interval, device->profile().delays.advertising);
    return std::max(interval, std::chrono::milliseconds(1ms));
}

} // namespace cvtamber
