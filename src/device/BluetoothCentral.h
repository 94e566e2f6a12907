// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "device/BluetoothPeripheral.h"

#include <functional>

namespace cvtamber {

// What a central tells its one delegate, on the main thread, from the run loop.
class BluetoothCentralDelegate : public InterfaceBase
{
public:
    // The central's state changed, or is known for the first time after it was made.
    virtual void centralDidUpdateState() = 0;
    // A device advertised; again for each advertisement when duplicates are allowed.
    virtual void centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &peripheral) = 0;
    virtual void centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral) = 0;
    // The link could not be made.
    virtual void centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                                   const BluetoothResult &error) = 0;
    // A link that was made has ended: without an error when cancelPeripheralConnection asked for it, else
    // with one.
    virtual void centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                                const BluetoothResult &error) = 0;
};

// The central role of Bluetooth Low Energy, which the device link needs and a platform (or the simulated
// radio) gives.
//
// Thread: main thread. Nothing here waits and nothing calls the delegate from inside a request.
// Time-outs are the caller's: a connect that gets no answer stays under way until it is cancelled.
class BluetoothCentral
{
public:
    // The numbers are those that log lines and the rules of the link speak of.
    enum class State {
        Unknown = 0,
        Resetting = 1,
        Unsupported = 2,
        Unauthorized = 3,
        PoweredOff = 4,
        PoweredOn = 5,
    };

    BluetoothCentral() = default;
    BluetoothCentral(const BluetoothCentral &) = delete;
    BluetoothCentral &operator=(const BluetoothCentral &) = delete;
    virtual ~BluetoothCentral() = default;

    virtual State state() const = 0;
    // Why the state is not PoweredOn and what a person can do about it: one sentence, empty when powered on.
    virtual QString stateText() const = 0;
    // The delegate is not kept alive. Changing it also redirects what is already under way.
    virtual void setDelegate(const std::weak_ptr<BluetoothCentralDelegate> &delegate) = 0;
    // Reports devices that offer any of the services (all devices for an empty list), replacing an earlier
    // scan.
    virtual void scanForPeripherals(const QList<BluetoothUuid> &services, bool allowDuplicates) = 0;
    virtual void stopScan() = 0;
    // A peripheral that is connected already is reported connected once more.
    virtual void connectPeripheral(const BluetoothPeripheralPtr &peripheral) = 0;
    // Ends a link or gives up an attempt. An attempt given up is answered with
    // centralDidDisconnectPeripheral without an error, like a link; a peripheral without either gets no
    // answer.
    virtual void cancelPeripheralConnection(const BluetoothPeripheralPtr &peripheral) = 0;
};

// Makes one more central on the same radio.
using BluetoothCentralFactory = std::function<std::unique_ptr<BluetoothCentral>()>;

} // namespace cvtamber
