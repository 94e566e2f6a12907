// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/CallGroup.h"
#include "base/DelayedCall.h"
#include "simulator/SimulatedLinkHolder.h"
#include "simulator/bluez/GattLink.h"
#include "simulator/bluez/GattService.h"

#include <functional>
#include <memory>

namespace cvtamber {

// A simulated device as the daemon shows it.
//
// state          ends with                     clients see
// Disconnected   Connect                       Connected false
// Connecting     link, failure, Disconnect     Connected false
// Linked         services known, end of link   Connected true
// Resolved       end of link                   ServicesResolved true as well
//
// It is on the bus while it is remembered, linked or was seen not long ago, and has an RSSI from when it was seen
// until the discovery ends. A device that was once connected to is remembered. Owner: BluezAdapter, as a shared
// pointer.
class BluezDevice final : public BusObject,
                          public GattLink,
                          public SimulatedLinkHolder,
                          public std::enable_shared_from_this<BluezDevice>
{
public:
    // Whether a discovery wants the device with these services.
    using Wanted = std::function<bool(const QList<BluetoothUuid> &services)>;

    BluezDevice(BluezContext &context, const std::shared_ptr<SimulatedDevice> &peer,
                const QString &adapterPath, const Wanted &wanted);
    ~BluezDevice() override;

    // The device's own address, or one made from its serial number.
    static QString addressOf(const DeviceProfile &profile);

    const QString &address() const { return _address; }
    bool isRemembered() const { return _remembered; }
    void remember();
    // Forgets and hides it.
    void removeFromBus();
    void setListening(bool listening);
    void forgetClient(const QString &client);
    void radioOff();

    SimulatedDevice &peer() override { return *_peer; }
    bool isResolved() const override { return _state == State::Resolved; }
    void after(std::chrono::nanoseconds delay, const RunLoop::Callback &callback) override;
    void later(std::chrono::nanoseconds delay, const RunLoop::Callback &callback) override;

    void linkNotified(const QByteArray &value) override;
    void linkEnded(const QString &error) override;
    void deviceCameBack() override;

private:
    enum class State { Disconnected, Connecting, Linked, Resolved };

    void declareIdentity(const QString &adapterPath);
    void declareState();
    void declareMethods();
    void connect(const BusCall &call);
    void tryConnect();
    void discover();
    void resolve();
    void connectFailed(const QString &why);
    void answerConnect();
    void disconnect();
    void dropSoon(bool withError);
    void linkDown(bool operationsFirst);
    void failPending();
    void pair(const BusCall &call);
    void advertised();
    void show();
    void forgetLater();
    void tell(const QStringList &properties);
    QStringList uuids() const;
    QString alias() const;

    BluezContext &_context;
    std::shared_ptr<SimulatedDevice> _peer;
    QString _address;
    Wanted _wanted;
    State _state = State::Disconnected;
    bool _remembered = false;
    bool _servicesKnown = false;
    bool _paired = false;
    bool _trusted = false;
    bool _blocked = false;
    QString _alias;
    std::optional<short> _rssi;
    int _timesSeen = 0;
    std::optional<BusCall> _connectCall;
    QString _connectClient;
    std::vector<std::unique_ptr<GattService>> _services;
    DelayedCall _advertising;
    DelayedCall _connectTimer;
    DelayedCall _forgetTimer;
    CallGroup _linkCalls; // what the end of the link or attempt ends
};

} // namespace cvtamber
