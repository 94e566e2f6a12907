// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FakeCentral.h"

#include "device/BluetoothIdentifiers.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

QString shortForm(const BluetoothUuid &uuid)
{
    return uuid.toString().left(8);
}

QString shortForm(const QList<BluetoothUuid> &uuids)
{
    QStringList texts;
    for (const auto &uuid : uuids)
        texts.append(shortForm(uuid));
    return u"["_s + texts.join(u',') + u']';
}

} // namespace

BluetoothServicePtr FakePeripheral::service(const BluetoothUuid &uuid) const
{
    for (const auto &known : _services) {
        if (known->uuid == uuid)
            return known;
    }
    return std::make_shared<BluetoothService>(BluetoothService{uuid, {}});
}

BluetoothCharacteristicPtr FakePeripheral::characteristic(const BluetoothUuid &uuid) const
{
    for (const auto &known : _services) {
        for (const auto &found : known->characteristics) {
            if (found->uuid == uuid)
                return found;
        }
    }
    return std::make_shared<BluetoothCharacteristic>(BluetoothCharacteristic{uuid, {}});
}

void FakePeripheral::foundServices(const QList<BluetoothUuid> &uuids, const BluetoothResult &error)
{
    QList<BluetoothServicePtr> found;
    for (const auto &uuid : uuids)
        found.append(service(uuid));
    _services = found;
    if (const auto delegate = _delegate.lock())
        delegate->peripheralDidDiscoverServices(shared_from_this(), error);
}

void FakePeripheral::foundCharacteristics(const BluetoothUuid &serviceUuid, const QList<BluetoothUuid> &uuids,
                                          const BluetoothResult &error)
{
    const auto found = service(serviceUuid);
    for (const auto &uuid : uuids)
        found->characteristics.append(
            std::make_shared<BluetoothCharacteristic>(BluetoothCharacteristic{uuid, serviceUuid}));
    if (const auto delegate = _delegate.lock())
        delegate->peripheralDidDiscoverCharacteristics(shared_from_this(), found, error);
}

void FakePeripheral::value(const BluetoothUuid &uuid, const QByteArray &bytes, const BluetoothResult &error)
{
    if (const auto delegate = _delegate.lock())
        delegate->peripheralDidUpdateValue(shared_from_this(), characteristic(uuid), bytes, error);
}

void FakePeripheral::notify(const QByteArray &bytes)
{
    value(BluetoothIdentifiers::dataCharacteristic(), bytes);
}

void FakePeripheral::notificationState(const BluetoothResult &error)
{
    const auto data = characteristic(BluetoothIdentifiers::dataCharacteristic());
    if (const auto delegate = _delegate.lock())
        delegate->peripheralDidUpdateNotificationState(shared_from_this(), data, error);
}

void FakePeripheral::answerWrite(const BluetoothResult &error)
{
    Q_ASSERT(_unconfirmed > 0);
    --_unconfirmed;
    const auto data = characteristic(BluetoothIdentifiers::dataCharacteristic());
    if (const auto delegate = _delegate.lock())
        delegate->peripheralDidWriteValue(shared_from_this(), data, error);
}

void FakePeripheral::linkEnded()
{
    _state = State::Disconnected;
    _services.clear();
    _unconfirmed = 0;
}

void FakePeripheral::discoverServices(const QList<BluetoothUuid> &uuids)
{
    _journal.append(u"services "_s + _identifier + u' ' + shortForm(uuids));
}

void FakePeripheral::discoverCharacteristics(const QList<BluetoothUuid> &uuids,
                                             const BluetoothServicePtr &service)
{
    _journal.append(u"characteristics "_s + _identifier + u' ' + shortForm(service->uuid) + u' ' +
                    shortForm(uuids));
}

void FakePeripheral::readValue(const BluetoothCharacteristicPtr &characteristic)
{
    _journal.append(u"read "_s + _identifier + u' ' + shortForm(characteristic->uuid));
}

void FakePeripheral::setNotifyValue(bool enabled, const BluetoothCharacteristicPtr &characteristic)
{
    _journal.append((enabled ? u"notify "_s : u"mute "_s) + _identifier + u' ' +
                    shortForm(characteristic->uuid));
}

void FakePeripheral::writeValue(const QByteArray &value, const BluetoothCharacteristicPtr &)
{
    if (_state != State::Connected)
        return;
    _writes.append(value);
    ++_unconfirmed;
}

void FakeCentral::setState(State state)
{
    _state = state;
    if (const auto delegate = _delegate.lock())
        delegate->centralDidUpdateState();
}

void FakeCentral::discover(const std::shared_ptr<FakePeripheral> &peripheral)
{
    if (const auto delegate = _delegate.lock())
        delegate->centralDidDiscoverPeripheral(peripheral);
}

void FakeCentral::connected(const std::shared_ptr<FakePeripheral> &peripheral)
{
    peripheral->setState(BluetoothPeripheral::State::Connected);
    if (const auto delegate = _delegate.lock())
        delegate->centralDidConnectPeripheral(peripheral);
}

void FakeCentral::failedToConnect(const std::shared_ptr<FakePeripheral> &peripheral, const QString &reason)
{
    peripheral->linkEnded();
    if (const auto delegate = _delegate.lock())
        delegate->centralDidFailToConnectPeripheral(peripheral, BluetoothError{reason});
}

void FakeCentral::disconnected(const std::shared_ptr<FakePeripheral> &peripheral,
                               const BluetoothResult &error)
{
    peripheral->linkEnded();
    if (const auto delegate = _delegate.lock())
        delegate->centralDidDisconnectPeripheral(peripheral, error);
}

void FakeCentral::scanForPeripherals(const QList<BluetoothUuid> &services, bool allowDuplicates)
{
    _journal.append(u"scan "_s + shortForm(services) + (allowDuplicates ? u" duplicates"_s : QString()));
}

void FakeCentral::stopScan()
{
    _journal.append(u"stopScan"_s);
}

void FakeCentral::connectPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _journal.append(u"connect "_s + peripheral->identifier());
    if (peripheral->state() == BluetoothPeripheral::State::Disconnected)
        std::static_pointer_cast<FakePeripheral>(peripheral)
            ->setState(BluetoothPeripheral::State::Connecting);
}

void FakeCentral::cancelPeripheralConnection(const BluetoothPeripheralPtr &peripheral)
{
    _journal.append(u"cancel "_s + peripheral->identifier());
}

} // namespace cvtamber
