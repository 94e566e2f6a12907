// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/EventRunLoop.h"
#include "platform/bluetooth/QtBluetoothRadio.h"
#include "simulator/RadioBench.h"

#include <QTest>

namespace cvtamber {

// One central on Qt Bluetooth, and the way to a link that notifies. Waiting for a line takes it and all before
// it; what came on the way is in `passed`.
struct CentralBench
{
    static constexpr int Patience = 8000; // ms

    explicit CentralBench(const std::shared_ptr<QtBluetoothRadio> &radio)
        : central(radio->makeCentral())
    {
        central->setDelegate(recorder);
    }

    template<typename Request> void request(const Request &call)
    {
        recorder->insideRequest = true;
        call();
        recorder->insideRequest = false;
    }
    bool waitFor(const QString &line, int patience = Patience)
    {
        const bool came = QTest::qWaitFor([&] { return recorder->lines.contains(line); }, patience);
        if (!came) {
            qWarning() << "no" << line << "in" << recorder->lines;
            return false;
        }
        passed = recorder->lines.mid(0, recorder->lines.indexOf(line));
        recorder->lines.remove(0, passed.size() + 1);
        return true;
    }
    bool waitForState(BluetoothCentral::State state)
    {
        return QTest::qWaitFor([&] { return central->state() == state; }, Patience);
    }
    bool scan()
    {
        if (!waitForState(BluetoothCentral::State::PoweredOn))
            return false;
        request([&] { central->scanForPeripherals({BluetoothIdentifiers::deviceService()}, true); });
        const bool isFound = waitFor(QStringLiteral("found"));
        if (!central) // given up in a call
            return false;
        request([&] { central->stopScan(); });
        if (!isFound)
            return false;
        peripheral = recorder->found.constFirst();
        peripheral->setDelegate(recorder);
        return true;
    }
    bool connect()
    {
        recorder->take();
        request([&] { central->connectPeripheral(peripheral); });
        return waitFor(QStringLiteral("connected")) && central;
    }
    bool discover()
    {
        request([&] { peripheral->discoverServices({BluetoothIdentifiers::deviceService()}); });
        if (!waitFor(QStringLiteral("services")) || peripheral->services().size() != 1)
            return false;
        const auto service = peripheral->services().constFirst();
        request([&] { peripheral->discoverCharacteristics({}, service); });
        if (!waitFor(QStringLiteral("characteristics")))
            return false;
        for (const auto &characteristic : service->characteristics) {
            if (characteristic->uuid == BluetoothIdentifiers::dataCharacteristic())
                data = characteristic;
            else
                info = characteristic;
        }
        return data && info;
    }
    bool open()
    {
        if (!scan() || !connect() || !discover())
            return false;
        request([&] { peripheral->setNotifyValue(true, data); });
        return waitFor(QStringLiteral("notifying"));
    }
    void write(const QByteArray &bytes)
    {
        request([&] { peripheral->writeValue(bytes, data); });
    }
    void cancel()
    {
        request([&] { central->cancelPeripheralConnection(peripheral); });
    }

    std::shared_ptr<RadioRecorder> recorder = std::make_shared<RadioRecorder>();
    std::unique_ptr<BluetoothCentral> central;
    BluetoothPeripheralPtr peripheral;
    BluetoothCharacteristicPtr data;
    BluetoothCharacteristicPtr info;
    QStringList passed;
};

} // namespace cvtamber
