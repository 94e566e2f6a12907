// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/DeviceScanner.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// The daemon says that discovery is over a little after it was stopped. A scan that begins before takes it for
// another program's and is never stopped by Qt.
constexpr auto settlingTime = 100ms;
// After a scan that could not begin, though the radio is on.
constexpr auto retryDelay = 1s;

} // namespace

DeviceScanner::DeviceScanner(RunLoop &runLoop, Found found)
    : _runLoop(runLoop)
    , _found(std::move(found))
    , _start(runLoop)
{}

DeviceScanner::~DeviceScanner()
{
    end();
}

void DeviceScanner::start(const QList<BluetoothUuid> &services, bool allowDuplicates)
{
    end();
    _filter.emplace(services, allowDuplicates);
    if (_isRadioOn)
        run();
}

void DeviceScanner::stop()
{
    _filter.reset();
    end();
}

void DeviceScanner::setRadioOn(bool isOn)
{
    if (isOn == std::exchange(_isRadioOn, isOn))
        return;
    _start.cancel();
    // The dead agent stays till the radio is back: stopping it could have a stopped daemon started again.
    if (!isOn)
        return;
    end();
    if (_filter)
        run();
}

void DeviceScanner::run()
{
    const auto now = _runLoop.now();
    if (now < _mayRunAt) {
        _start.start(_mayRunAt - now, [this] { run(); });
        return;
    }
    _agent = new QBluetoothDeviceDiscoveryAgent;
    // Without end, and with every advertisement that has something new.
    _agent->setLowEnergyDiscoveryTimeout(0);
    QObject::connect(_agent, &QBluetoothDeviceDiscoveryAgent::deviceDiscovered, &_context,
                     [this](const QBluetoothDeviceInfo &device) { found(device); });
    QObject::connect(_agent, &QBluetoothDeviceDiscoveryAgent::deviceUpdated, &_context,
                     [this](const QBluetoothDeviceInfo &device) { found(device); });
    QObject::connect(_agent, &QBluetoothDeviceDiscoveryAgent::errorOccurred, &_context, [this] {
        _start.start(retryDelay, [this] {
            end();
            if (_isRadioOn)
                run();
        });
    });
    _agent->start(QBluetoothDeviceDiscoveryAgent::LowEnergyMethod);
}

void DeviceScanner::end()
{
    _start.cancel();
    if (!_agent)
        return;
    QObject::disconnect(_agent, nullptr, &_context, nullptr);
    _agent->stop();
    _agent->deleteLater();
    _agent = nullptr;
    _mayRunAt = _runLoop.now() + settlingTime;
}

void DeviceScanner::found(const QBluetoothDeviceInfo &device)
{
    if (_isRadioOn && _filter && _filter->takes(device))
        _found(device);
}

} // namespace cvtamber
