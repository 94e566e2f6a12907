// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NullLog.h"
#include "device/BluetoothIdentifiers.h"
#include "device/CVBTDevice.h"
#include "device/CVBluetoothManager.h"
#include "support/ManualRunLoop.h"

#include <memory>

namespace cvtamber {

// The thinnest peripheral that the engine can talk to: it keeps no bytes, so that what is measured is the
// engine.
class BenchPeripheral final : public BluetoothPeripheral, public std::enable_shared_from_this<BenchPeripheral>
{
public:
    BenchPeripheral()
        : _data(std::make_shared<BluetoothCharacteristic>(BluetoothCharacteristic{
              BluetoothIdentifiers::dataCharacteristic(), BluetoothIdentifiers::deviceService()}))
        , _service(std::make_shared<BluetoothService>(
              BluetoothService{BluetoothIdentifiers::deviceService(), {_data}}))
    {}

    // What the device does.
    void becomeReady()
    {
        _state = State::Connected;
        _delegate.lock()->peripheralDidDiscoverServices(shared_from_this(), {});
        _delegate.lock()->peripheralDidDiscoverCharacteristics(shared_from_this(), _service, {});
        _delegate.lock()->peripheralDidUpdateNotificationState(shared_from_this(), _data, {});
    }
    void confirmWrite()
    {
        --_unconfirmed;
        _delegate.lock()->peripheralDidWriteValue(shared_from_this(), _data, {});
    }
    void confirmAllWrites()
    {
        while (_unconfirmed > 0)
            confirmWrite();
    }
    void notify(const QByteArray &bytes)
    {
        _delegate.lock()->peripheralDidUpdateValue(shared_from_this(), _data, bytes, {});
    }

    qsizetype unconfirmed() const { return _unconfirmed; }
    qint64 writtenBytes() const { return _writtenBytes; }
    void setConnected() { _state = State::Connected; }

    QString identifier() const override { return QStringLiteral("bench"); }
    QString name() const override { return QStringLiteral("bench"); }
    State state() const override { return _state; }
    void setDelegate(const std::weak_ptr<BluetoothPeripheralDelegate> &delegate) override
    {
        _delegate = delegate;
    }
    QList<BluetoothServicePtr> services() const override { return {_service}; }
    void discoverServices(const QList<BluetoothUuid> &) override {}
    void discoverCharacteristics(const QList<BluetoothUuid> &, const BluetoothServicePtr &) override {}
    void readValue(const BluetoothCharacteristicPtr &) override {}
    void setNotifyValue(bool, const BluetoothCharacteristicPtr &) override {}
    void writeValue(const QByteArray &value, const BluetoothCharacteristicPtr &) override
    {
        ++_unconfirmed;
        _writtenBytes += value.size();
    }

private:
    BluetoothCharacteristicPtr _data;
    BluetoothServicePtr _service;
    std::weak_ptr<BluetoothPeripheralDelegate> _delegate;
    State _state = State::Disconnected;
    qsizetype _unconfirmed = 0;
    qint64 _writtenBytes = 0;
};

class BenchCentral final : public BluetoothCentral
{
public:
    void linkMade(const BluetoothPeripheralPtr &peripheral)
    {
        _delegate.lock()->centralDidConnectPeripheral(peripheral);
    }

    State state() const override { return State::PoweredOn; }
    QString stateText() const override { return {}; }
    void setDelegate(const std::weak_ptr<BluetoothCentralDelegate> &delegate) override
    {
        _delegate = delegate;
    }
    void scanForPeripherals(const QList<BluetoothUuid> &, bool) override {}
    void stopScan() override {}
    void connectPeripheral(const BluetoothPeripheralPtr &) override {}
    void cancelPeripheralConnection(const BluetoothPeripheralPtr &) override {}

private:
    std::weak_ptr<BluetoothCentralDelegate> _delegate;
};

class BenchIdleTimer final : public IdleTimer
{
public:
    void setEnabled(bool) override {}
};

// What a screen is during a transfer; keeps sizes only.
class BenchReceiver final : public CVDownloadFileDelegate, public CVUploadFileDelegate
{
public:
    void cvDownloadProgress(float fraction) override { progress = fraction; }
    void cvFileDownloaded(const QString &text) override { downloadedSize = text.size(); }
    void cvUploadProgress(float fraction) override { progress = fraction; }
    void cvFileUploaded() override { ++uploads; }

    float progress = 0;
    qsizetype downloadedSize = 0;
    int uploads = 0;
};

// A device object, connected and identified, with delegates for transfers. What the device does, the benchmark calls by hand.
class BenchLink
{
public:
    BenchLink()
    {
        auto central = std::make_unique<BenchCentral>();
        BenchCentral &radio = *central;
        const auto manager = CVBluetoothManager::create(loop, _log, std::move(central));
        device = std::make_unique<CVBTDevice>(CVBTDeviceServices{loop, _log, _idleTimer, manager, {}});
        device->connectAsCVCommWithPeripheral(peripheral);
        peripheral->setConnected();
        radio.linkMade(peripheral);
        peripheral->becomeReady();
        using namespace std::chrono_literals;
        loop.advance(100ms);
        reply("{PC\x01}");
        reply("0" + QByteArray(", 0").repeated(29));
        reply("1.2A345SN123456W1");
        reply({});
        peripheral->confirmAllWrites();
        device->setCvDownloadDelegate(receiver);
        device->setCvUploadDelegate(receiver);
    }

    // One notification, and the silence that ends a reply.
    void reply(const QByteArray &bytes)
    {
        peripheral->confirmAllWrites();
        if (!bytes.isEmpty())
            peripheral->notify(bytes);
        loop.advance(ReplySilence);
    }

    static constexpr std::chrono::seconds ReplySilence{2};

    ManualRunLoop loop;
    std::shared_ptr<BenchPeripheral> peripheral = std::make_shared<BenchPeripheral>();
    std::shared_ptr<BenchReceiver> receiver = std::make_shared<BenchReceiver>();
    std::unique_ptr<CVBTDevice> device;

private:
    NullLog _log;
    BenchIdleTimer _idleTimer;
};

} // namespace cvtamber
