// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/QtBluetoothRadio.h"

#include "platform/bluetooth/QtBluetoothCentral.h"

namespace cvtamber {

using namespace std::chrono_literals;

QtBluetoothRadio::QtBluetoothRadio(RunLoop &runLoop)
    : _runLoop(runLoop)
    , _watcher(makeAdapterWatcher())
    , _calls(runLoop)
{
    _watcher->setChanged([this] { postChange(); });
}

QtBluetoothRadio::~QtBluetoothRadio() = default;

std::shared_ptr<QtBluetoothRadio> QtBluetoothRadio::create(RunLoop &runLoop)
{
    return std::shared_ptr<QtBluetoothRadio>(new QtBluetoothRadio(runLoop));
}

std::unique_ptr<BluetoothCentral> QtBluetoothRadio::makeCentral()
{
    return std::make_unique<QtBluetoothCentral>(_runLoop, shared_from_this());
}

void QtBluetoothRadio::postChange()
{
    const Situation situation{_watcher->state(), _watcher->stateText(), _watcher->isServiceRunning()};
    _calls.perform(0ns, [this, situation] { change(situation); });
}

void QtBluetoothRadio::change(const Situation &situation)
{
    const bool wasServiceRunning = _now.isServiceRunning;
    _now = situation;
    if (wasServiceRunning && !_now.isServiceRunning)
        _sharedLinks.serviceWentAway();
    else if (!wasServiceRunning && _now.isServiceRunning)
        _sharedLinks.serviceCameBack();
    for (QtBluetoothCentral *central : std::as_const(_centrals))
        central->radioChanged();
}

} // namespace cvtamber
