// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/BluezDevice.h"

#include <QMap>

namespace cvtamber {

// The radio on the bus, with the devices in its reach.
//
// Each client has its own discovery, with its own filter; the radio listens while there is one. Switching the
// radio off ends them all for good. Owner: BluezDaemon.
class BluezAdapter final : public BusObject
{
public:
    // Devices of these addresses are remembered from an earlier run of the daemon.
    BluezAdapter(BluezContext &context, const QStringList &remembered);
    ~BluezAdapter() override;

    QStringList rememberedAddresses() const;
    void radioChanged();
    void forgetClient(const QString &client);

private:
    struct Discovery
    {
        bool running = false;
        QList<BluetoothUuid> services; // empty: all
        bool classicOnly = false;
    };

    void declareIdentity();
    void declareState();
    void declareMethods();
    void startDiscovery(const BusCall &call);
    void stopDiscovery(const BusCall &call);
    void setDiscoveryFilter(const BusCall &call);
    void removeDevice(const BusCall &call);
    std::optional<BusError> setPowered(bool powered);
    bool isDiscovering() const;
    bool isWanted(const QList<BluetoothUuid> &services) const;
    void updateDiscovering();
    void tell(const QStringList &properties);

    BluezContext &_context;
    QString _alias;
    bool _discoverable = false;
    bool _pairable = true;
    bool _listening = false;
    QMap<QString, Discovery> _discoveries; // by client
    QList<std::shared_ptr<BluezDevice>> _devices;
};

} // namespace cvtamber
