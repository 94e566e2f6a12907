// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothCentral.h"

#include <QList>

#include <memory>

namespace cvtamber {

class BluetoothLink;

// The device object's own scan, for connecting without a chosen device: over a central of its own, made on
// first use, it takes the first peripheral of the one advertised name and hands it to the link.
class OwnScan final : public BluetoothCentralDelegate, public std::enable_shared_from_this<OwnScan>
{
public:
    // `started` is called whenever the scan begins: at once, or when the radio comes on.
    OwnScan(BluetoothCentralFactory makeCentral, std::weak_ptr<BluetoothLink> link,
            std::function<void()> started);

    // Makes the central when there is none; false when it is not powered on (yet) or cannot be made.
    bool prepare();
    void start();
    // A radio that comes on later starts nothing any more.
    void stop();

    void centralDidUpdateState() override;
    void centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &peripheral) override;
    void centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral) override;
    void centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                           const BluetoothResult &error) override;
    void centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                        const BluetoothResult &error) override;

private:
    BluetoothCentralFactory _makeCentral;
    std::weak_ptr<BluetoothLink> _link;
    std::function<void()> _started;
    std::unique_ptr<BluetoothCentral> _manager;
    QList<BluetoothPeripheralPtr> _peripherals; // keeps what was found alive
    bool _isWanted = false;
};

} // namespace cvtamber
