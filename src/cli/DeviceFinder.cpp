// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DeviceFinder.h"

#include "base/VisibleText.h"

#include <algorithm>

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto WaitForAnother = 3s;

} // namespace

class DeviceFinder::Listener final : public CVBluetoothManagerDelegate
{
public:
    explicit Listener(DeviceFinder &finder)
        : _finder(finder)
    {}
    void newDeviceFound(const CVBTPeripheralPtr &device) override { _finder.deviceFound(device); }
    void bluetoothStateChanged() override { _finder.checkRadio(); }

private:
    DeviceFinder &_finder;
};

DeviceFinder::DeviceFinder(RunLoop &runLoop, std::shared_ptr<CVBluetoothManager> manager)
    : _runLoop(runLoop)
    , _manager(std::move(manager))
    , _listener(std::make_shared<Listener>(*this))
    , _timeOver(_runLoop)
    , _firstDeviceWait(_runLoop)
    , _radioCheck(_runLoop)
    , _report(_runLoop)
{}

DeviceFinder::~DeviceFinder()
{
    if (_finished)
        stop();
}

void DeviceFinder::start(Want want, const QString &name, std::chrono::seconds limit, const Finished &finished)
{
    _want = want;
    _name = name;
    _limit = limit;
    _finished = finished;
    _manager->setDelegate(_listener);
    _manager->startDeviceScan();
    _timeOver.start(_limit, [this] { timeOver(); });
    _radioCheck.start(0s, [this] { checkRadio(); });
}

void DeviceFinder::checkRadio()
{
    using State = BluetoothCentral::State;
    const BluetoothCentral &central = _manager->centralManager();
    const State state = central.state();
    // Unknown and resetting pass by themselves, and the manager tells when.
    if (state == State::Unsupported || state == State::Unauthorized || state == State::PoweredOff)
        finish({nullptr, ExitStatus::NoBluetooth, central.stateText()});
}

void DeviceFinder::deviceFound(const CVBTPeripheralPtr &device)
{
    const auto known = [&device](const CVBTPeripheralPtr &other) {
        return other->peripheral()->identifier() == device->peripheral()->identifier();
    };
    if (std::any_of(_devices.begin(), _devices.end(), known))
        return;
    _devices.append(device);
    if (_seen)
        _seen(device);
    if (!_name.isNull()) {
        if (isWanted(*device))
            finish({device, ExitStatus::Done, {}});
    } else if (_want == Want::OneDevice && _devices.size() == 1) {
        _firstDeviceWait.start(WaitForAnother, [this] { firstDeviceWaited(); });
    } else if (_want == Want::OneDevice) {
        finish({nullptr, ExitStatus::NoDevice,
                u"Several devices are in reach: name one with --device. Found: %1; %2."_s.arg(
                    shownName(*_devices.at(0)), shownName(*_devices.at(1)))});
    }
}

bool DeviceFinder::isWanted(const CVBTPeripheral &device) const
{
    return device.serialNumber() == _name || device.airName() == _name;
}

void DeviceFinder::firstDeviceWaited()
{
    finish({_devices.constFirst(), ExitStatus::Done, {}});
}

void DeviceFinder::timeOver()
{
    const BluetoothCentral &central = _manager->centralManager();
    if (central.state() != BluetoothCentral::State::PoweredOn) {
        finish({nullptr, ExitStatus::NoBluetooth, central.stateText()});
        return;
    }
    if (_want == Want::OneDevice && _name.isNull() && !_devices.isEmpty())
        return; // the wait for another one ends soon
    if (_want == Want::All && _name.isNull() && !_devices.isEmpty()) {
        finish({_devices.constFirst(), ExitStatus::Done, {}});
        return;
    }
    const QString what = _name.isNull() ? u"No device"_s : u"No device %1"_s.arg(visibleText(_name));
    QString sentence = u"%1 was found in %2 seconds."_s.arg(what, QString::number(_limit.count()));
    if (_manager->hasSilentDevice())
        sentence += u" A device was seen but did not answer: is it connected to something else?"_s
                    " Switching it off and on may help."_s;
    else if (_devices.isEmpty())
        sentence += u" Is it switched on, near, and not connected to something else?"_s;
    finish({nullptr, ExitStatus::NoDevice, sentence});
}

void DeviceFinder::finish(const Outcome &outcome)
{
    if (!_finished)
        return;
    stop();
    // Not from inside the manager's callback: who is told may take the central for connecting.
    _report.start(0s, [finished = std::exchange(_finished, nullptr), outcome] { finished(outcome); });
}

void DeviceFinder::stop()
{
    _timeOver.cancel();
    _firstDeviceWait.cancel();
    _radioCheck.cancel();
    _manager->setDelegate({});
    _manager->stopDeviceScan();
}

QString DeviceFinder::shownName(const CVBTPeripheral &device)
{
    const QString serial = device.serialNumber().isEmpty() ? u"-"_s : device.serialNumber();
    const QString name = device.airName().isEmpty() ? u"-"_s : device.airName();
    return visibleText(serial) + u' ' + visibleText(name);
}

} // namespace cvtamber
