// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "base/InterfaceBase.h"
#include "base/SystemLog.h"
#include "device/BluetoothCentral.h"
#include "device/CVBTPeripheral.h"

#include <functional>
#include <map>

namespace cvtamber {

class CVBluetoothManagerDelegate : public InterfaceBase
{
public:
    virtual void newDeviceFound(const CVBTPeripheralPtr &device) = 0;
    // The radio was switched, or its state is known for the first time; see centralManager().
    virtual void bluetoothStateChanged() {}
};

// Finds devices: scans for the device service, connects briefly to each device, reads its serial number and
// name, disconnects and announces it.
//
//   step         what happens                                          next step
//   idle         startDeviceScan                                       scanning, at once or when the radio comes on
//   scanning     stopDeviceScan                                        idle
//
// and for each device while it scans:
//
//   new          advertises, 5 s or more after its last brief link     delayed
//                began
//   delayed      0.5 s are over                                        connecting
//   connecting   connected, and 0.5 s are over                         reading
//                refused                                               new
//   reading      serial number and name are read, or there are none    announced
//                an error, or no device service                        new
//   connecting   5 s since it began to connect                         new
//   or reading   the link ends with an error                           new, and the 5 s are not waited for
//                stopDeviceScan                                        none: the link is closed
//
// A stopped scan stays stopped, whatever becomes of the radio and of the links. While the device object connects, it
// is the central's delegate and the manager hears nothing; startDeviceScan takes the central back. Thread: main
// thread. Owner: start-up; process-wide through defaultManager. Made with create() only.
class CVBluetoothManager final : public BluetoothCentralDelegate,
                                 public BluetoothPeripheralDelegate,
                                 public std::enable_shared_from_this<CVBluetoothManager>
{
public:
    // The run loop and the log must outlive the manager.
    static std::shared_ptr<CVBluetoothManager> create(RunLoop &runLoop, SystemLog &log,
                                                      std::unique_ptr<BluetoothCentral> central);
    // The one manager of the process; null before start-up has set it.
    static std::shared_ptr<CVBluetoothManager> defaultManager();
    static void setDefaultManager(const std::shared_ptr<CVBluetoothManager> &manager);

    ~CVBluetoothManager() override;

    void startDeviceScan();
    // Begins a scan that was not stopped once more.
    void internalStartScan();
    // Cancels what is delayed, and closes the brief links; a device that was announced has none.
    void stopDeviceScan();
    // Forgets every device, and closes the brief links.
    void clearDevices();
    // Lets go of the links that this scan made, a chosen device's included, and says when none is left: from the
    // run loop, once, unless a later call takes its place. Takes the central back. For the end of a program, which
    // must not leave a link behind, and before a device is chosen.
    void releasePeripherals(const std::function<void()> &released);
    bool isBluetoothSupported() const;
    void connectPeripheral(const BluetoothPeripheralPtr &peripheral);
    void discoverServices(const BluetoothPeripheralPtr &peripheral);

    QList<CVBTPeripheralPtr> devices() const { return _cvBtPeripherals; }
    // A device was seen since the scan began, and has not told who it is for longer than that takes.
    bool hasSilentDevice() const;
    BluetoothCentral &centralManager() const { return *_centralManager; }
    std::shared_ptr<CVBluetoothManagerDelegate> delegate() const { return _delegate.lock(); }
    void setDelegate(const std::weak_ptr<CVBluetoothManagerDelegate> &delegate) { _delegate = delegate; }

    void cvBtDeviceSerialRead(const QString &serial);

    void centralDidUpdateState() override;
    void centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &peripheral) override;
    void centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral) override;
    void centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                           const BluetoothResult &error) override;
    void centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                        const BluetoothResult &error) override;

    void peripheralDidDiscoverServices(const BluetoothPeripheralPtr &peripheral,
                                       const BluetoothResult &error) override;
    void peripheralDidDiscoverCharacteristics(const BluetoothPeripheralPtr &peripheral,
                                              const BluetoothServicePtr &service,
                                              const BluetoothResult &error) override;
    void peripheralDidUpdateValue(const BluetoothPeripheralPtr &peripheral,
                                  const BluetoothCharacteristicPtr &characteristic, const QByteArray &value,
                                  const BluetoothResult &error) override;
    void peripheralDidUpdateNotificationState(const BluetoothPeripheralPtr &,
                                              const BluetoothCharacteristicPtr &,
                                              const BluetoothResult &) override
    {}
    void peripheralDidWriteValue(const BluetoothPeripheralPtr &, const BluetoothCharacteristicPtr &,
                                 const BluetoothResult &) override
    {}

private:
    // What is known of a device that was seen since the scan began.
    struct Visit
    {
        explicit Visit(RunLoop &runLoop)
            : seenAt(runLoop.now())
            , step(runLoop)
            , limit(runLoop)
        {}
        bool isReading() const { return limit.isActive(); } // from connecting until announced

        const std::chrono::nanoseconds seenAt;
        bool isNew = true;
        std::chrono::nanoseconds notBefore{0};
        DelayedCall step;
        DelayedCall limit;
    };

    CVBluetoothManager(RunLoop &runLoop, SystemLog &log, std::unique_ptr<BluetoothCentral> central);
    void beginVisit(const BluetoothPeripheralPtr &peripheral);
    // Null unless the peripheral is being read: what answers later is not listened to.
    Visit *reading(const BluetoothPeripheralPtr &peripheral);
    void visitFailed(const BluetoothPeripheralPtr &peripheral);
    void endVisits();
    void tellReleased();
    void announce(const BluetoothPeripheralPtr &peripheral, const QString &serialNumber,
                  const QString &airName);

    RunLoop &_runLoop;
    SystemLog &_log;
    std::unique_ptr<BluetoothCentral> _centralManager;
    std::weak_ptr<CVBluetoothManagerDelegate> _delegate;
    std::map<BluetoothPeripheralPtr, Visit> _peripherals;
    QList<CVBTPeripheralPtr> _cvBtPeripherals;
    BluetoothCentral::State _lastState = BluetoothCentral::State::Unknown;
    bool _isScanning = false;
    bool _initScanAfterPowerOn = false;
    std::function<void()> _released;
    DelayedCall _releaseCheck;
};

} // namespace cvtamber
