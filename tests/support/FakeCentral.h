// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothCentral.h"

#include <QStringList>

namespace cvtamber {

// A peripheral whose answers the test gives by hand; requests go to the journal it shares with its central.
class FakePeripheral final : public BluetoothPeripheral, public std::enable_shared_from_this<FakePeripheral>
{
public:
    FakePeripheral(const QString &identifier, const QString &name, QStringList &journal)
        : _identifier(identifier)
        , _name(name)
        , _journal(journal)
    {}

    // What the test makes happen.
    void setState(State state) { _state = state; } // without telling anybody
    void foundServices(const QList<BluetoothUuid> &uuids, const BluetoothResult &error = {});
    void foundCharacteristics(const BluetoothUuid &service, const QList<BluetoothUuid> &uuids,
                              const BluetoothResult &error = {});
    void value(const BluetoothUuid &characteristic, const QByteArray &bytes,
               const BluetoothResult &error = {});
    void notify(const QByteArray &bytes); // from the data characteristic
    void notificationState(const BluetoothResult &error = {});
    void confirmWrite() { answerWrite({}); }
    void failWrite(const QString &reason) { answerWrite(BluetoothError{reason}); }
    void linkEnded();

    std::shared_ptr<BluetoothPeripheralDelegate> delegate() const { return _delegate.lock(); }
    const QList<QByteArray> &writes() const { return _writes; } // those made on a live link
    int unconfirmed() const { return _unconfirmed; }

    QString identifier() const override { return _identifier; }
    QString name() const override { return _name; }
    State state() const override { return _state; }
    void setDelegate(const std::weak_ptr<BluetoothPeripheralDelegate> &delegate) override
    {
        _delegate = delegate;
    }
    QList<BluetoothServicePtr> services() const override { return _services; }
    void discoverServices(const QList<BluetoothUuid> &uuids) override;
    void discoverCharacteristics(const QList<BluetoothUuid> &uuids,
                                 const BluetoothServicePtr &service) override;
    void readValue(const BluetoothCharacteristicPtr &characteristic) override;
    void setNotifyValue(bool enabled, const BluetoothCharacteristicPtr &characteristic) override;
    void writeValue(const QByteArray &value, const BluetoothCharacteristicPtr &characteristic) override;

private:
    void answerWrite(const BluetoothResult &error);
    BluetoothServicePtr service(const BluetoothUuid &uuid) const;
    BluetoothCharacteristicPtr characteristic(const BluetoothUuid &uuid) const;

    QString _identifier;
    QString _name;
    QStringList &_journal;
    State _state = State::Disconnected;
    std::weak_ptr<BluetoothPeripheralDelegate> _delegate;
    QList<BluetoothServicePtr> _services;
    QList<QByteArray> _writes;
    int _unconfirmed = 0;
};

// A central where the test says what happens. Requests are journal lines: "scan [1e45e5bb] duplicates",
// "stopScan", "connect A", "cancel A", "services A [1e45e5bb]", "characteristics A 1e45e5bb [534945e7]",
// "read A fa3e6100", "notify A 534945e7"; identifiers are cut to their first eight digits.
class FakeCentral final : public BluetoothCentral
{
public:
    explicit FakeCentral(QStringList &journal)
        : _journal(journal)
    {}

    // What the test makes happen.
    void setState(State state);
    void discover(const std::shared_ptr<FakePeripheral> &peripheral);
    void connected(const std::shared_ptr<FakePeripheral> &peripheral);
    void failedToConnect(const std::shared_ptr<FakePeripheral> &peripheral, const QString &reason);
    void disconnected(const std::shared_ptr<FakePeripheral> &peripheral, const BluetoothResult &error = {});

    State state() const override { return _state; }
    QString stateText() const override { return {}; }
    void setDelegate(const std::weak_ptr<BluetoothCentralDelegate> &delegate) override
    {
        _delegate = delegate;
    }
    void scanForPeripherals(const QList<BluetoothUuid> &services, bool allowDuplicates) override;
    void stopScan() override;
    void connectPeripheral(const BluetoothPeripheralPtr &peripheral) override;
    void cancelPeripheralConnection(const BluetoothPeripheralPtr &peripheral) override;

private:
    QStringList &_journal;
    State _state = State::Unknown;
    std::weak_ptr<BluetoothCentralDelegate> _delegate;
};

} // namespace cvtamber
