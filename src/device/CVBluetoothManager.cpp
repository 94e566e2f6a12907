// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/CVBluetoothManager.h"

#include "base/CVCSVRecord.h"
#include "device/BluetoothIdentifiers.h"

#include <QStringConverter>

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// Before connecting to a device and before asking it for its services.
constexpr auto stepDelay = 500ms;

std::shared_ptr<CVBluetoothManager> gDefaultManager;

bool isInformation(const BluetoothCharacteristicPtr &characteristic)
{
    return characteristic->uuid == BluetoothIdentifiers::infoCharacteristic() ||
           characteristic->uuid == BluetoothIdentifiers::secondInfoCharacteristic();
}

// Looked up on the device itself: several may be read at the same time.
BluetoothServicePtr findService(const BluetoothPeripheral &peripheral, const BluetoothUuid &uuid)
{
    for (const BluetoothServicePtr &service : peripheral.services()) {
        if (service->uuid == uuid)
            return service;
    }
    return nullptr;
}

} // namespace

CVBluetoothManager::CVBluetoothManager(RunLoop &runLoop, SystemLog &log,
                                       std::unique_ptr<BluetoothCentral> central)
    : _runLoop(runLoop)
    , _log(log)
    , _centralManager(std::move(central))
{}

CVBluetoothManager::~CVBluetoothManager() = default;

std::shared_ptr<CVBluetoothManager> CVBluetoothManager::create(RunLoop &runLoop, SystemLog &log,
                                                               std::unique_ptr<BluetoothCentral> central)
{
    std::shared_ptr<CVBluetoothManager> manager(new CVBluetoothManager(runLoop, log, std::move(central)));
    manager->_centralManager->setDelegate(manager);
    return manager;
}

std::shared_ptr<CVBluetoothManager> CVBluetoothManager::defaultManager()
{
    return gDefaultManager;
}

void CVBluetoothManager::setDefaultManager(const std::shared_ptr<CVBluetoothManager> &manager)
{
    gDefaultManager = manager;
}

void CVBluetoothManager::startDeviceScan()
{
    clearDevices();
    _centralManager->setDelegate(weak_from_this());
    if (_centralManager->state() != BluetoothCentral::State::PoweredOn) {
        _initScanAfterPowerOn = true;
        return;
    }
    internalStartScan();
}

void CVBluetoothManager::internalStartScan()
{
    _centralManager->scanForPeripherals({BluetoothIdentifiers::deviceService()}, true);
}

void CVBluetoothManager::stopDeviceScan()
{
    _centralManager->stopScan();
}

void CVBluetoothManager::clearDevices()
{
    _peripherals.clear();
    _cvBtPeripherals.clear();
}

void CVBluetoothManager::releasePeripherals(const std::function<void()> &released)
{
    _centralManager->setDelegate(weak_from_this());
    _released = released;
    for (const BluetoothPeripheralPtr &peripheral : std::as_const(_peripherals)) {
        if (peripheral->state() != BluetoothPeripheral::State::Disconnected)
            _centralManager->cancelPeripheralConnection(peripheral);
    }
    // Where nothing is linked no disconnect will come to tell it.
    _runLoop.performAfter(0ms, [manager = weak_from_this()] {
        if (const auto self = manager.lock())
            self->tellReleased();
    });
}

void CVBluetoothManager::tellReleased()
{
    const bool linked = std::any_of(_peripherals.cbegin(), _peripherals.cend(), [](const auto &peripheral) {
        return peripheral->state() != BluetoothPeripheral::State::Disconnected;
    });
    if (linked)
        return;
    if (const auto released = std::exchange(_released, nullptr))
        released();
}

bool CVBluetoothManager::isBluetoothSupported() const
{
    return _centralManager->state() != BluetoothCentral::State::Unsupported;
}

void CVBluetoothManager::connectPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _centralManager->connectPeripheral(peripheral);
}

void CVBluetoothManager::discoverServices(const BluetoothPeripheralPtr &peripheral)
{
    if (peripheral->state() == BluetoothPeripheral::State::Connected)
        peripheral->discoverServices({});
}

void CVBluetoothManager::cvBtDeviceSerialRead(const QString &serial)
{
    _log.debug(serial);
}

void CVBluetoothManager::performLater(void (CVBluetoothManager::*step)(const BluetoothPeripheralPtr &),
                                      const BluetoothPeripheralPtr &peripheral)
{
    _runLoop.performAfter(stepDelay, [manager = weak_from_this(), step, peripheral] {
        if (const auto self = manager.lock())
            (self.get()->*step)(peripheral);
    });
}

void CVBluetoothManager::centralDidUpdateState()
{
    const auto state = _centralManager->state();
    const bool cameOn = state != _lastState && state == BluetoothCentral::State::PoweredOn;
    if (cameOn && std::exchange(_initScanAfterPowerOn, false))
        internalStartScan();
    _lastState = state;
    if (const auto delegate = _delegate.lock())
        delegate->bluetoothStateChanged();
}

void CVBluetoothManager::centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    if (_peripherals.contains(peripheral))
        return;
    _peripherals.append(peripheral);
    performLater(&CVBluetoothManager::connectPeripheral, peripheral);
}

void CVBluetoothManager::centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _log.info(QStringLiteral("didConnectPeripheral"));
    peripheral->setDelegate(weak_from_this());
    performLater(&CVBluetoothManager::discoverServices, peripheral);
}

void CVBluetoothManager::centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &,
                                                           const BluetoothResult &error)
{
    _log.error(QStringLiteral("Connection to peripheral failed."));
    _log.error(shown(error));
    tellReleased();
}

void CVBluetoothManager::centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                                        const BluetoothResult &error)
{
    _centralManager->cancelPeripheralConnection(peripheral);
    if (error) {
        _log.info(QStringLiteral("didDisconnectPeripheral - error: %1").arg(error->text));
        _peripherals.removeAll(peripheral);
        internalStartScan();
    } else {
        _log.info(QStringLiteral("didDisconnectPeripheral - NO ERROR"));
    }
    tellReleased();
}

void CVBluetoothManager::peripheralDidDiscoverServices(const BluetoothPeripheralPtr &peripheral,
                                                       const BluetoothResult &error)
{
    if (error) {
        _log.error(QStringLiteral("error: %1").arg(error->text));
        return;
    }
    if (const auto service = findService(*peripheral, BluetoothIdentifiers::deviceService()))
        peripheral->discoverCharacteristics({BluetoothIdentifiers::infoCharacteristic()}, service);
    else
        _log.write(QStringLiteral("CVTamber Error: Corvane Brailler Bluetooth Service not found!"));
}

void CVBluetoothManager::peripheralDidDiscoverCharacteristics(const BluetoothPeripheralPtr &peripheral,
                                                              const BluetoothServicePtr &service,
                                                              const BluetoothResult &error)
{
    if (error) {
        _log.error(QStringLiteral("error: %1").arg(error->text));
        return;
    }
    const auto &found = service->characteristics;
    const auto information = std::find_if(found.begin(), found.end(), isInformation);
    if (information != found.end()) {
        peripheral->readValue(*information);
        return;
    }
    const auto genericAccess = findService(*peripheral, BluetoothIdentifiers::genericAccessService());
    if (service->uuid == BluetoothIdentifiers::deviceService() && genericAccess)
        peripheral->discoverCharacteristics({BluetoothIdentifiers::secondInfoCharacteristic()},
                                            genericAccess);
    else
        announce(peripheral, QString(), QString());
}

void CVBluetoothManager::peripheralDidUpdateValue(const BluetoothPeripheralPtr &peripheral,
                                                  const BluetoothCharacteristicPtr &, const QByteArray &value,
                                                  const BluetoothResult &error)
{
    if (error) {
        _log.error(QStringLiteral("error: %1").arg(error->text));
        return;
    }
    QString serialNumber;
    QString airName;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(value);
    if (value.size() >= 2 && !decoder.hasError()) {
        const QStringList fields = CVCSVRecord::recordFromString(text).fields();
        _log.debug(text);
        serialNumber = fields.value(0);
        airName = fields.value(1);
    }
    announce(peripheral, serialNumber, airName);
}

void CVBluetoothManager::announce(const BluetoothPeripheralPtr &peripheral, const QString &serialNumber,
                                  const QString &airName)
{
    _centralManager->cancelPeripheralConnection(peripheral);
    const auto delegate = _delegate.lock();
    if (!delegate)
        return;
    const auto device = std::make_shared<CVBTPeripheral>(peripheral, serialNumber, airName);
    _cvBtPeripherals.append(device);
    delegate->newDeviceFound(device);
}

} // namespace cvtamber
