// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/BluetoothLink.h"

#include "device/BluetoothIdentifiers.h"
#include "device/CVBluetoothManager.h"

#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// For each step of connecting.
constexpr auto stepTimeout = 5000ms;
// Between turning notifications on and the first command.
constexpr auto protocolDelay = 100ms;
constexpr int mostConnectTries = 201;

QString shown(const BluetoothPeripheralPtr &peripheral)
{
    return peripheral ? peripheral->identifier() : QStringLiteral("(null)");
}

} // namespace

BluetoothLink::BluetoothLink(DeviceContext &context, BluetoothLinkClient &client,
                             const std::shared_ptr<CVBluetoothManager> &manager)
    : _context(context)
    , _client(client)
    , _manager(manager)
    , _bluetoothTimer(context.runLoop)
    , _connectPCCall(context.runLoop)
{}

void BluetoothLink::connectToPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    const auto earlier = _connectedPeripheral;
    forgetLink();
    if (earlier && earlier != peripheral)
        cancelConnection(earlier);
    _client.linkDidEnd(BluetoothLinkClient::End::Abandoned, QStringLiteral("a new connection was begun"));
    _bIsDiscoveringServices = false;
    _deviceToConnectTo = peripheral;
    _central = &_manager->centralManager();
    _central->setDelegate(weak_from_this());
    _connectTryCount = 0;
    _cancelAsked = false;
    _context.log.debug(QStringLiteral("connectPeripheral:%1 - 1").arg(shown(peripheral)));
    _central->connectPeripheral(peripheral);
    startBluetoothTimer();
}

void BluetoothLink::startDiscoverInfoForPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _central = &_manager->centralManager();
    _central->setDelegate(weak_from_this());
    if (!_connectedPeripheral)
        _connectedPeripheral = peripheral;
    _context.log.debug(QStringLiteral("connectPeripheral:%1 - 4").arg(shown(peripheral)));
    _central->connectPeripheral(peripheral);
}

void BluetoothLink::connectToFoundPeripheral(const BluetoothPeripheralPtr &peripheral,
                                             BluetoothCentral &central)
{
    forgetLink();
    _deviceToConnectTo.reset();
    _connectedPeripheral = peripheral;
    _central = &central;
    _connectTryCount = 0;
    _cancelAsked = false;
    _context.log.debug(QStringLiteral("connectPeripheral:%1 - 2").arg(shown(peripheral)));
    central.connectPeripheral(peripheral);
}

void BluetoothLink::disconnectPeripheral()
{
    // An attempt that has no link yet ends as well.
    const auto peripheral =
        _connectedPeripheral || !_bluetoothTimer.isActive() ? _connectedPeripheral : _deviceToConnectTo;
    if (!peripheral)
        return;
    _context.log.debug(QStringLiteral("cancelPeripheralConnection:%1 - 2").arg(shown(_deviceToConnectTo)));
    // The steps that are under way end here, and their time-outs with them.
    stopBluetoothTimer();
    _connectPCCall.cancel();
    _cancelAsked = true;
    cancelConnection(peripheral);
}

void BluetoothLink::cancelConnection(const BluetoothPeripheralPtr &peripheral)
{
    if (_central)
        _central->cancelPeripheralConnection(peripheral);
}

bool BluetoothLink::isConnected() const
{
    return _connectedPeripheral && _connectedPeripheral->state() == BluetoothPeripheral::State::Connected;
}

bool BluetoothLink::canWrite() const
{
    // Whoever scans takes the central over, and with it the word that the link has ended.
    return _connectedPeripheral && _crCharacteristic &&
           _connectedPeripheral->state() != BluetoothPeripheral::State::Disconnected;
}

bool BluetoothLink::write(const QByteArray &data)
{
    if (!canWrite())
        return false;
    _connectedPeripheral->writeValue(data, _crCharacteristic);
    return true;
}

void BluetoothLink::forgetLink()
{
    _connectPCCall.cancel();
    _cvService.reset();
    _crCharacteristic.reset();
    _connectedPeripheral.reset();
    _discoveredAllServices = false;
}

void BluetoothLink::centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _context.log.debug(QStringLiteral("centralManager:didConnectPeripheral:%1").arg(shown(peripheral)));
    const BluetoothPeripheralPtr expected = _deviceToConnectTo ? _deviceToConnectTo : _connectedPeripheral;
    if (peripheral != expected) {
        cancelConnection(peripheral);
        return;
    }
    stopBluetoothTimer();
    ++_connectTryCount;
    _connectedPeripheral = peripheral;
    peripheral->setDelegate(weak_from_this());
    if (_deviceToConnectTo) {
        _bIsDiscoveringServices = true;
        peripheral->discoverServices({BluetoothIdentifiers::deviceService()});
    } else {
        peripheral->discoverServices({BluetoothIdentifiers::genericAccessService()});
    }
    startBluetoothTimer();
}

void BluetoothLink::centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                                      const BluetoothResult &error)
{
    _context.log.info(QStringLiteral("centralManager:didFailToConnectPeripheral:%1").arg(shown(peripheral)));
    _context.log.info(shown(error));
    if (peripheral != _deviceToConnectTo && peripheral != _connectedPeripheral)
        return;
    _context.tellState(CVDeviceStateDelegate::DisconnectedOrNotConnectable);
}

void BluetoothLink::peripheralDidDiscoverServices(const BluetoothPeripheralPtr &peripheral,
                                                  const BluetoothResult &error)
{
    // A service that is kept was found: a later report answers somebody else's question.
    if (peripheral != _connectedPeripheral || _cvService)
        return;
    _context.log.info(QStringLiteral("peripheral:%1 didDiscoverServices:").arg(shown(peripheral)));
    _bIsDiscoveringServices = false;
    stopBluetoothTimer();
    if (error) {
        failDiscovery();
        return;
    }
    for (const BluetoothServicePtr &service : peripheral->services()) {
        if (service->uuid != BluetoothIdentifiers::deviceService())
            continue;
        _cvService = service;
        peripheral->discoverCharacteristics({BluetoothIdentifiers::dataCharacteristic()}, service);
        startBluetoothTimer();
        return;
    }
    _context.log.write(QStringLiteral("ERROR: Corvane service not found!"));
    // Asking again for all services would give the same answer for ever: the timer ends the attempt.
    if (!std::exchange(_discoveredAllServices, true))
        peripheral->discoverServices({});
    startBluetoothTimer();
}

void BluetoothLink::peripheralDidDiscoverCharacteristics(const BluetoothPeripheralPtr &peripheral,
                                                         const BluetoothServicePtr &service,
                                                         const BluetoothResult &error)
{
    if (peripheral != _connectedPeripheral)
        return;
    _context.log.debug(QStringLiteral("peripheral:%1 didDiscoverCharacteristicsForService:%2")
                           .arg(shown(peripheral), service->uuid.toString()));
    stopBluetoothTimer();
    if (error) {
        failDiscovery();
        return;
    }
    for (const BluetoothCharacteristicPtr &characteristic : service->characteristics) {
        if (characteristic->uuid != BluetoothIdentifiers::dataCharacteristic())
            continue;
        _crCharacteristic = characteristic;
        peripheral->setNotifyValue(true, characteristic);
        _connectPCCall.start(protocolDelay, [this] { _client.connectPC(); });
    }
    // Without the characteristic nothing further would ever happen.
    if (!_crCharacteristic)
        failDiscovery();
}

void BluetoothLink::failDiscovery()
{
    _context.tellState(CVDeviceStateDelegate::ConnectFailedOrLost);
    disconnectPeripheral();
}

void BluetoothLink::peripheralDidUpdateNotificationState(const BluetoothPeripheralPtr &peripheral,
                                                         const BluetoothCharacteristicPtr &characteristic,
                                                         const BluetoothResult &error)
{
    if (error && peripheral == _connectedPeripheral && characteristic == _crCharacteristic)
        _crCharacteristic.reset();
}

void BluetoothLink::peripheralDidUpdateValue(const BluetoothPeripheralPtr &peripheral,
                                             const BluetoothCharacteristicPtr &characteristic,
                                             const QByteArray &value, const BluetoothResult &error)
{
    if (peripheral != _connectedPeripheral)
        return;
    if (error) {
        _context.log.info(
            QStringLiteral("- (void)peripheral:(CBPeripheral *)peripheral "
                           "didUpdateValueForCharacteristic:(CBCharacteristic *)%1 error:(NSError *)%2")
                .arg(characteristic->uuid.toString(), error->text));
        return;
    }
    const auto information = _cvBtInfoCharacteristic.lock();
    if (information && information == characteristic && value.size() >= 8) {
        _client.linkDidReadSerial(QString::fromLatin1(value.left(8)));
        return;
    }
    if (!value.isEmpty())
        _client.linkDidReceive(value);
}

void BluetoothLink::peripheralDidWriteValue(const BluetoothPeripheralPtr &peripheral,
                                            const BluetoothCharacteristicPtr &, const BluetoothResult &error)
{
    if (peripheral == _connectedPeripheral)
        _client.linkDidWrite(error);
}

void BluetoothLink::centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                                   const BluetoothResult &error)
{
    _context.log.info(QStringLiteral("centralManager:didDisconnectPeripheral:%1 error:%2")
                          .arg(shown(peripheral), shown(error)));
    const bool isOurs = peripheral == _connectedPeripheral;
    if (!isOurs && peripheral != _deviceToConnectTo)
        return;
    forgetLink();
    if (isOurs && _cancelAsked)
        _client.linkDidEnd(BluetoothLinkClient::End::Asked, QStringLiteral("the link was closed"));
    else if (isOurs && error)
        lostWithError(peripheral, error->text);
    else if (isOurs)
        _client.linkDidEnd(BluetoothLinkClient::End::WithoutError, QStringLiteral("the link ended"));
    else if (error && !_cancelAsked)
        retry(peripheral, error->text);
}

void BluetoothLink::lostWithError(const BluetoothPeripheralPtr &peripheral, const QString &reason)
{
    if (_context.isConnectingAsCVComm || _context.isConnectedAsCVComm) {
        stopBluetoothTimer();
        _client.linkDidEnd(BluetoothLinkClient::End::WithError, reason);
    } else {
        retry(peripheral, reason);
    }
}

void BluetoothLink::retry(const BluetoothPeripheralPtr &peripheral, const QString &reason)
{
    stopBluetoothTimer();
    _client.linkDidEnd(BluetoothLinkClient::End::Abandoned, reason);
    if (_connectTryCount >= mostConnectTries) {
        _context.tellState(CVDeviceStateDelegate::ConnectFailedOrLost);
        return;
    }
    if (!_deviceToConnectTo)
        _connectedPeripheral = peripheral;
    ++_connectTryCount;
    _context.log.debug(QStringLiteral("connectPeripheral:%1 - 3 (try No.: %2)")
                           .arg(shown(peripheral))
                           .arg(_connectTryCount));
    if (_central)
        _central->connectPeripheral(peripheral);
    startBluetoothTimer();
}

void BluetoothLink::startBluetoothTimer()
{
    _context.log.debug(QStringLiteral("-(void)startBluetoothTimer"));
    _bluetoothTimer.start(stepTimeout, [this] { bluetoothTimeout(); });
}

void BluetoothLink::stopBluetoothTimer()
{
    _context.log.debug(QStringLiteral("-(void)stopBluetoothTimer"));
    _bluetoothTimer.cancel();
}

void BluetoothLink::bluetoothTimeout()
{
    _context.log.error(QStringLiteral("[CVTamber Error]: -(void)bluetoothTimeout"));
    if (_deviceToConnectTo && _deviceToConnectTo->state() != BluetoothPeripheral::State::Disconnected) {
        _context.log.debug(
            QStringLiteral("cancelPeripheralConnection:%1 - 1").arg(shown(_deviceToConnectTo)));
        _cancelAsked = true;
        cancelConnection(_deviceToConnectTo);
    }
    _context.tellState(CVDeviceStateDelegate::ConnectFailedOrLost);
}

} // namespace cvtamber
