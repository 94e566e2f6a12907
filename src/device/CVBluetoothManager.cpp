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
// From connecting until announced.
constexpr auto visitLimit = 5s;
// Between two brief links to a device that fails.
constexpr auto visitInterval = 5s;
// A device that answers is announced in little more than a second.
constexpr auto answerTime = 2s;

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
    , _releaseCheck(runLoop)
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
    _isScanning = true;
    _centralManager->setDelegate(weak_from_this());
    if (_centralManager->state() != BluetoothCentral::State::PoweredOn) {
        _initScanAfterPowerOn = true;
        return;
    }
    internalStartScan();
}

void CVBluetoothManager::internalStartScan()
{
    if (_isScanning)
        _centralManager->scanForPeripherals({BluetoothIdentifiers::deviceService()}, true);
}

void CVBluetoothManager::stopDeviceScan()
{
    _isScanning = false;
    _initScanAfterPowerOn = false;
    _centralManager->stopScan();
    endVisits();
}

void CVBluetoothManager::endVisits()
{
    for (auto &[peripheral, visit] : _peripherals) {
        if (visit.isReading())
            _centralManager->cancelPeripheralConnection(peripheral);
        visit.step.cancel();
        visit.limit.cancel();
    }
}

void CVBluetoothManager::clearDevices()
{
    endVisits();
    _peripherals.clear();
    _cvBtPeripherals.clear();
}

void CVBluetoothManager::releasePeripherals(const std::function<void()> &released)
{
    _centralManager->setDelegate(weak_from_this());
    _released = released;
    for (const auto &[peripheral, visit] : _peripherals) {
        if (peripheral->state() != BluetoothPeripheral::State::Disconnected)
            _centralManager->cancelPeripheralConnection(peripheral);
    }
    // Where nothing is linked no disconnect will come to tell it.
    _releaseCheck.start(0ms, [this] { tellReleased(); });
}

void CVBluetoothManager::tellReleased()
{
    const bool linked = std::any_of(_peripherals.cbegin(), _peripherals.cend(), [](const auto &seen) {
        return seen.first->state() != BluetoothPeripheral::State::Disconnected;
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

bool CVBluetoothManager::hasSilentDevice() const
{
    const auto isAnnounced = [this](const BluetoothPeripheralPtr &peripheral) {
        return std::any_of(_cvBtPeripherals.cbegin(), _cvBtPeripherals.cend(),
                           [&peripheral](const auto &device) { return device->peripheral() == peripheral; });
    };
    return std::any_of(_peripherals.cbegin(), _peripherals.cend(), [&](const auto &seen) {
        return seen.second.seenAt + answerTime <= _runLoop.now() && !isAnnounced(seen.first);
    });
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

void CVBluetoothManager::beginVisit(const BluetoothPeripheralPtr &peripheral)
{
    _peripherals.at(peripheral).limit.start(visitLimit, [this, peripheral] {
        _log.error(QStringLiteral("The device was not read in %1 seconds.").arg(visitLimit.count()));
        visitFailed(peripheral);
    });
    connectPeripheral(peripheral);
}

CVBluetoothManager::Visit *CVBluetoothManager::reading(const BluetoothPeripheralPtr &peripheral)
{
    const auto seen = _peripherals.find(peripheral);
    return seen != _peripherals.end() && seen->second.isReading() ? &seen->second : nullptr;
}

// The next advertisement begins another one.
void CVBluetoothManager::visitFailed(const BluetoothPeripheralPtr &peripheral)
{
    Visit &visit = _peripherals.at(peripheral);
    visit.step.cancel();
    visit.limit.cancel();
    visit.isNew = true;
    if (peripheral->state() != BluetoothPeripheral::State::Disconnected)
        _centralManager->cancelPeripheralConnection(peripheral);
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
    if (!_isScanning)
        return;
    Visit &visit = _peripherals.try_emplace(peripheral, _runLoop).first->second;
    if (!visit.isNew || _runLoop.now() < visit.notBefore)
        return;
    visit.isNew = false;
    visit.notBefore = _runLoop.now() + visitInterval;
    visit.step.start(stepDelay, [this, peripheral] { beginVisit(peripheral); });
}

void CVBluetoothManager::centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _log.info(QStringLiteral("didConnectPeripheral"));
    Visit *visit = reading(peripheral);
    if (!visit) {
        // A linked device shows up in no scan.
        _centralManager->cancelPeripheralConnection(peripheral);
        return;
    }
    peripheral->setDelegate(weak_from_this());
    visit->step.start(stepDelay, [this, peripheral] { discoverServices(peripheral); });
}

void CVBluetoothManager::centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                                           const BluetoothResult &error)
{
    _log.error(QStringLiteral("Connection to peripheral failed."));
    _log.error(shown(error));
    if (reading(peripheral))
        visitFailed(peripheral);
    tellReleased();
}

void CVBluetoothManager::centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                                        const BluetoothResult &error)
{
    _centralManager->cancelPeripheralConnection(peripheral);
    const auto seen = _peripherals.find(peripheral);
    if (seen != _peripherals.end() && (error || seen->second.isReading()))
        visitFailed(peripheral);
    if (error) {
        _log.info(QStringLiteral("didDisconnectPeripheral - error: %1").arg(error->text));
        if (seen != _peripherals.end())
            seen->second.notBefore = _runLoop.now();
        internalStartScan();
    } else {
        _log.info(QStringLiteral("didDisconnectPeripheral - NO ERROR"));
    }
    tellReleased();
}

void CVBluetoothManager::peripheralDidDiscoverServices(const BluetoothPeripheralPtr &peripheral,
                                                       const BluetoothResult &error)
{
    if (!reading(peripheral))
        return;
    if (error) {
        _log.error(QStringLiteral("error: %1").arg(error->text));
        visitFailed(peripheral);
        return;
    }
    if (const auto service = findService(*peripheral, BluetoothIdentifiers::deviceService())) {
        peripheral->discoverCharacteristics({BluetoothIdentifiers::infoCharacteristic()}, service);
    } else {
        _log.write(QStringLiteral("CVTamber Error: Corvane Brailler Bluetooth Service not found!"));
        visitFailed(peripheral);
    }
}

void CVBluetoothManager::peripheralDidDiscoverCharacteristics(const BluetoothPeripheralPtr &peripheral,
                                                              const BluetoothServicePtr &service,
                                                              const BluetoothResult &error)
{
    if (!reading(peripheral))
        return;
    if (error) {
        _log.error(QStringLiteral("error: %1").arg(error->text));
        visitFailed(peripheral);
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
    if (!reading(peripheral))
        return;
    if (error) {
        _log.error(QStringLiteral("error: %1").arg(error->text));
        visitFailed(peripheral);
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
    _peripherals.at(peripheral).limit.cancel();
    _centralManager->cancelPeripheralConnection(peripheral);
    const auto delegate = _delegate.lock();
    if (!delegate)
        return;
    const auto device = std::make_shared<CVBTPeripheral>(peripheral, serialNumber, airName);
    _cvBtPeripherals.append(device);
    delegate->newDeviceFound(device);
}

} // namespace cvtamber
