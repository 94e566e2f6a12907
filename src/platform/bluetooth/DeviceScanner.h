// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "platform/bluetooth/Advertisement.h"

#include <QBluetoothDeviceDiscoveryAgent>

#include <functional>
#include <optional>

namespace cvtamber {

// The scan of one central.
//
// A scan is wanted until it is stopped, and runs while the radio is on: Qt's own ends silently when the radio
// is switched off and does not come back with it. Each run has an agent of its own. What is found is reported
// from inside a handler of Qt's. Owner: the central. Main thread.
class DeviceScanner
{
public:
    using Found = std::function<void(const QBluetoothDeviceInfo &device)>;

    DeviceScanner(RunLoop &runLoop, Found found);
    DeviceScanner(const DeviceScanner &) = delete;
    DeviceScanner &operator=(const DeviceScanner &) = delete;
    ~DeviceScanner();

    // Replaces an earlier scan.
    void start(const QList<BluetoothUuid> &services, bool allowDuplicates);
    void stop();
    void setRadioOn(bool isOn);

private:
    void run();
    void end();
    void found(const QBluetoothDeviceInfo &device);

    RunLoop &_runLoop;
    Found _found;
    std::optional<AdvertisementFilter> _filter; // while a scan is wanted
    bool _isRadioOn = false;
    QBluetoothDeviceDiscoveryAgent *_agent = nullptr; // while it runs
    std::chrono::nanoseconds _mayRunAt{0};
    DelayedCall _start;
    QObject _context; // the end of Qt's signals
};

} // namespace cvtamber
