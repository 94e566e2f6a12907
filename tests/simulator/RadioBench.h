// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothIdentifiers.h"
#include "simulator/SimulatedRadio.h"
#include "support/ManualRunLoop.h"

#include <QStringList>

namespace cvtamber {

// Keeps what a central and its peripherals tell, one line a call with the milliseconds left out.
class RadioRecorder final : public BluetoothCentralDelegate, public BluetoothPeripheralDelegate
{
public:
    QStringList lines;
    QByteArray received;
    QList<BluetoothPeripheralPtr> found;
    // Set while a request is made: a call from inside it is a breach of contract.
    bool insideRequest = false;
    std::function<void(const QString &line)> onLine;

    QStringList take() { return std::exchange(lines, {}); }

    void centralDidUpdateState() override { add(QStringLiteral("state")); }
    void centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &peripheral) override
    {
        if (!found.contains(peripheral))
            found.append(peripheral);
        add(QStringLiteral("found"));
    }
    void centralDidConnectPeripheral(const BluetoothPeripheralPtr &) override
    {
        add(QStringLiteral("connected"));
    }
    void centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &, const BluetoothResult &e) override
    {
        add(QStringLiteral("failed"), e);
    }
    void centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &, const BluetoothResult &e) override
    {
        add(QStringLiteral("disconnected"), e);
    }
    void peripheralDidDiscoverServices(const BluetoothPeripheralPtr &, const BluetoothResult &e) override
    {
        add(QStringLiteral("services"), e);
    }
    void peripheralDidDiscoverCharacteristics(const BluetoothPeripheralPtr &, const BluetoothServicePtr &,
                                              const BluetoothResult &e) override
    {
        add(QStringLiteral("characteristics"), e);
    }
    void peripheralDidUpdateValue(const BluetoothPeripheralPtr &, const BluetoothCharacteristicPtr &,
                                  const QByteArray &value, const BluetoothResult &e) override
    {
        received += value;
        add(QStringLiteral("value %1").arg(value.size()), e);
    }
    void peripheralDidUpdateNotificationState(const BluetoothPeripheralPtr &,
                                              const BluetoothCharacteristicPtr &,
                                              const BluetoothResult &e) override
    {
        add(QStringLiteral("notifying"), e);
    }
    void peripheralDidWriteValue(const BluetoothPeripheralPtr &, const BluetoothCharacteristicPtr &,
                                 const BluetoothResult &e) override
    {
        add(QStringLiteral("written"), e);
    }

private:
    void add(const QString &line, const BluetoothResult &error = {})
    {
        QString entry = error ? QString(line + QStringLiteral(" with error")) : line;
        if (insideRequest)
            entry.prepend(QStringLiteral("INSIDE A REQUEST: "));
        lines.append(entry);
        if (onLine)
            onLine(entry);
    }
};

// One central on a radio, and the way to a link that notifies.
struct RadioBench
{
    RadioBench(ManualRunLoop &theLoop, const std::shared_ptr<SimulatedRadio> &radio)
        : loop(theLoop)
        , central(radio->makeCentral())
    {
        central->setDelegate(recorder);
    }

    template<typename Request> void request(const Request &call)
    {
        recorder->insideRequest = true;
        call();
        recorder->insideRequest = false;
    }
    bool scan(bool duplicates = false)
    {
        loop.advance(std::chrono::milliseconds(1));
        request([&] { central->scanForPeripherals({BluetoothIdentifiers::deviceService()}, duplicates); });
        loop.advance(std::chrono::seconds(1));
        if (!central) // given up in a call
            return false;
        request([&] { central->stopScan(); });
        if (recorder->found.isEmpty())
            return false;
        peripheral = recorder->found.constFirst();
        peripheral->setDelegate(recorder);
        return true;
    }
    void connect()
    {
        request([&] { central->connectPeripheral(peripheral); });
        loop.advance(std::chrono::seconds(1));
    }
    void discover()
    {
        request([&] { peripheral->discoverServices({BluetoothIdentifiers::deviceService()}); });
        loop.advance(std::chrono::seconds(1));
        if (!peripheral || peripheral->services().isEmpty())
            return;
        const auto service = peripheral->services().constFirst();
        request([&] { peripheral->discoverCharacteristics({}, service); });
        loop.advance(std::chrono::seconds(1));
        for (const auto &characteristic : service->characteristics) {
            if (characteristic->uuid == BluetoothIdentifiers::dataCharacteristic())
                data = characteristic;
            else
                info = characteristic;
        }
    }
    void open()
    {
        scan();
        connect();
        discover();
        request([&] { peripheral->setNotifyValue(true, data); });
        loop.advance(std::chrono::seconds(1));
        recorder->take();
    }
    void write(const QByteArray &bytes)
    {
        request([&] { peripheral->writeValue(bytes, data); });
    }

    ManualRunLoop &loop;
    std::shared_ptr<RadioRecorder> recorder = std::make_shared<RadioRecorder>();
    std::unique_ptr<BluetoothCentral> central;
    BluetoothPeripheralPtr peripheral;
    BluetoothCharacteristicPtr data;
    BluetoothCharacteristicPtr info;
};

} // namespace cvtamber
