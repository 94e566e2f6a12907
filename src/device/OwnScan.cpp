// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/OwnScan.h"

#include "device/BluetoothIdentifiers.h"
#include "device/BluetoothLink.h"

#include <utility>

namespace cvtamber {

OwnScan::OwnScan(BluetoothCentralFactory makeCentral, std::weak_ptr<BluetoothLink> link,
                 std::function<void()> started)
    : _makeCentral(std::move(makeCentral))
    , _link(std::move(link))
    , _started(std::move(started))
{}

bool OwnScan::prepare()
{
    _isWanted = true;
    _peripherals.clear();
    if (!_manager && _makeCentral) {
        _manager = _makeCentral();
        _manager->setDelegate(weak_from_this());
    }
    return _manager && _manager->state() == BluetoothCentral::State::PoweredOn;
}

void OwnScan::start()
{
    _manager->scanForPeripherals(BluetoothIdentifiers::ownScanServices(), true);
    _started();
}

void OwnScan::stop()
{
    _isWanted = false;
    if (_manager)
        _manager->stopScan();
}

void OwnScan::centralDidUpdateState()
{
    if (_isWanted && _manager->state() == BluetoothCentral::State::PoweredOn)
        start();
}

void OwnScan::centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    const auto link = _link.lock();
    if (!_isWanted || !link || peripheral->name() != BluetoothIdentifiers::ownScanName())
        return;
    stop();
    _peripherals.append(peripheral);
    link->connectToFoundPeripheral(peripheral, *_manager);
}

void OwnScan::centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    if (const auto link = _link.lock())
        link->centralDidConnectPeripheral(peripheral);
}

void OwnScan::centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                                const BluetoothResult &error)
{
    if (const auto link = _link.lock())
        link->centralDidFailToConnectPeripheral(peripheral, error);
}

void OwnScan::centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                             const BluetoothResult &error)
{
    if (const auto link = _link.lock())
        link->centralDidDisconnectPeripheral(peripheral, error);
}

} // namespace cvtamber
