// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "device/BluetoothCentral.h"
#include "device/DeviceContext.h"

#include <memory>

namespace cvtamber {

class CVBluetoothManager;

// What the link tells the session above it.
class BluetoothLinkClient
{
public:
    enum class End {
        Asked,        // this side cancelled the connection
        WithError,    // lost, and the platform said so
        WithoutError, // lost, though the platform calls it no error
        Abandoned,    // a new connect begins, or every retry failed
    };

    BluetoothLinkClient() = default;
    BluetoothLinkClient(const BluetoothLinkClient &) = delete;
    BluetoothLinkClient &operator=(const BluetoothLinkClient &) = delete;
    virtual ~BluetoothLinkClient() = default;

    // Notifications are being turned on: the protocol may start.
    virtual void connectPC() = 0;
    virtual void linkDidReceive(const QByteArray &data) = 0;
    virtual void linkDidReadSerial(const QString &serial) = 0;
    virtual void linkDidWrite(const BluetoothResult &error) = 0;
    virtual void linkDidEnd(End end, const QString &reason) = 0;
};

// The Bluetooth side of the device object: from a chosen peripheral to a data characteristic that notifies.
//
//   idle -> connecting -> discovering the service -> discovering the characteristic -> notifications on ->
//   (0.1 s) protocol start
//
// Each of the first three steps has 5 seconds, then state 0. A link that is lost with an error before the
// protocol started is made again at once, up to 200 tries. A connect that the platform refuses reports state
// 2 and leaves the 5-second timer running, whose state 0 ends the attempt for the screens. Only the
// peripheral that was chosen is taken: any other that connects late is let go.
class BluetoothLink final : public BluetoothCentralDelegate,
                            public BluetoothPeripheralDelegate,
                            public std::enable_shared_from_this<BluetoothLink>
{
public:
    BluetoothLink(DeviceContext &context, BluetoothLinkClient &client,
                  const std::shared_ptr<CVBluetoothManager> &manager);

    void connectToPeripheral(const BluetoothPeripheralPtr &peripheral);
    void startDiscoverInfoForPeripheral(const BluetoothPeripheralPtr &peripheral);
    // From the device object's own scan, over its own central.
    void connectToFoundPeripheral(const BluetoothPeripheralPtr &peripheral, BluetoothCentral &central);
    // No chosen device any more: the own scan decides.
    void forgetChosenPeripheral() { _deviceToConnectTo.reset(); }
    void disconnectPeripheral();
    // From here on the end of the link is no loss, whoever ends it.
    void expectEnd() { _cancelAsked = true; }
    void setInfoCharacteristic(const std::weak_ptr<BluetoothCharacteristic> &characteristic)
    {
        _cvBtInfoCharacteristic = characteristic;
    }

    const BluetoothPeripheralPtr &peripheral() const { return _connectedPeripheral; }
    bool hasPeripheral() const { return _connectedPeripheral != nullptr; }
    bool isConnected() const;
    bool canWrite() const;
    bool write(const QByteArray &data);

    void centralDidUpdateState() override {}
    void centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &) override {}
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
    void peripheralDidUpdateNotificationState(const BluetoothPeripheralPtr &peripheral,
                                              const BluetoothCharacteristicPtr &characteristic,
                                              const BluetoothResult &error) override;
    void peripheralDidWriteValue(const BluetoothPeripheralPtr &peripheral,
                                 const BluetoothCharacteristicPtr &characteristic,
                                 const BluetoothResult &error) override;

private:
    void startBluetoothTimer();
    void stopBluetoothTimer();
    void bluetoothTimeout();
    void cancelConnection(const BluetoothPeripheralPtr &peripheral);
    void forgetLink();
    void failDiscovery();
    void retry(const BluetoothPeripheralPtr &peripheral, const QString &reason);
    void lostWithError(const BluetoothPeripheralPtr &peripheral, const QString &reason);

    DeviceContext &_context;
    BluetoothLinkClient &_client;
    std::shared_ptr<CVBluetoothManager> _manager;
    BluetoothCentral *_central = nullptr; // the one that the present attempt goes through
    BluetoothPeripheralPtr _deviceToConnectTo;
    BluetoothPeripheralPtr _connectedPeripheral;
    BluetoothServicePtr _cvService;
    BluetoothCharacteristicPtr _crCharacteristic;
    // Nothing in the programs stores one, so the branch that reads the serial number from it sleeps.
    std::weak_ptr<BluetoothCharacteristic> _cvBtInfoCharacteristic;
    bool _bIsDiscoveringServices = false;
    bool _discoveredAllServices = false;
    bool _cancelAsked = false;
    int _connectTryCount = 0;
    DelayedCall _bluetoothTimer;
    DelayedCall _connectPCCall;
};

} // namespace cvtamber
