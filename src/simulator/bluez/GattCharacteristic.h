// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/NotifyDescriptor.h"

#include <QSet>

namespace cvtamber {

// A characteristic on the bus, there from construction to destruction.
//
// One read and one write can be under way. A write is answered when the device confirms it. Each notification
// is told as one change of Value while at least one client has asked for them; clients stay subscribed over the
// end of a link. Owner: GattService.
class GattCharacteristic final : public BusObject
{
public:
    static constexpr char Interface[] = "org.bluez.GattCharacteristic1";

    GattCharacteristic(BluezContext &context, GattLink &link, const QString &servicePath, int handle,
                       const BluetoothUuid &uuid);
    ~GattCharacteristic() override;

    const BluetoothUuid &uuid() const { return _uuid; }
    void notified(const QByteArray &value);
    // The link has ended: what is under way fails.
    void failPending();
    void forgetClient(const QString &client);

private:
    bool carriesData() const { return _uuid == BluetoothIdentifiers::dataCharacteristic(); }
    QStringList flags() const;
    void read(const BusCall &call);
    void write(const BusCall &call);
    void deliver(const BusCall &call, const QByteArray &value, bool isCommand);
    // True when a fault takes the confirmation's place.
    bool breaksAtWrite(int number);
    void confirm(bool fails);
    void startNotify(const BusCall &call);
    void subscribe(const BusCall &call);
    void stopNotify(const BusCall &call);
    void tellValue(const QByteArray &value);
    void tellNotifying();

    BluezContext &_context;
    GattLink &_link;
    BluetoothUuid _uuid;
    QString _servicePath;
    QByteArray _value;
    std::optional<BusCall> _pendingRead;
    std::optional<BusCall> _pendingWrite;
    std::optional<BusCall> _pendingNotify;
    QSet<QString> _subscribers;
    std::unique_ptr<NotifyDescriptor> _descriptor;
};

} // namespace cvtamber
