// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/CallGroup.h"
#include "device/BluetoothPeripheral.h"
#include "platform/bluetooth/CharacteristicWriter.h"

#include <QLowEnergyController>
#include <QMap>

#include <deque>
#include <functional>

namespace cvtamber {

// The requests of one link, one at a time with Qt, answered in the order in which they were made.
//
// One at a time because Qt's answers name no request, its queue drops jobs without a word, and its discovery
// of details never ends while another job waits. A request begins and an answer is given from the run loop or
// from the request, never inside a handler of Qt's; a link that is lost in such a handler crashes. An answer
// that Qt never gives is not given here either. Owner: the link, whose end ends every request unanswered.
class GattQueue
{
public:
    using Done = std::function<void(const QByteArray &value, const BluetoothResult &error)>;
    using Notified = std::function<void(const BluetoothUuid &service, const BluetoothUuid &characteristic,
                                        const QByteArray &value)>;
    struct Request
    {
        enum class Kind {
            DiscoverServices,
            DiscoverCharacteristics,
            Read,
            Write,
            SetNotify,
            Fail, // answered with the error that is the value
        };
        Kind kind = Kind::Fail;
        BluetoothUuid service;
        BluetoothUuid characteristic;
        QByteArray value;
        bool enabled = false;
        Done done;
    };

    // The controller outlives the queue.
    GattQueue(RunLoop &runLoop, QLowEnergyController &controller, Notified notified);

    void add(const Request &request);

    QList<BluetoothUuid> services() const;
    QList<BluetoothUuid> characteristics(const BluetoothUuid &service) const;

private:
    using Kind = Request::Kind;

    void startNext();
    void start(const Request &request);
    bool writeDirectly(const Request &request);
    void discoverServices();
    void discoverCharacteristics(const Request &request);
    void setNotify(QLowEnergyService &service, const QLowEnergyCharacteristic &characteristic, bool enabled);
    QLowEnergyService *serviceObject(const BluetoothUuid &uuid);
    void connectService(QLowEnergyService *service);
    void serviceStateChanged(const BluetoothUuid &service, QLowEnergyService::ServiceState state);
    void serviceBecameInvalid(const BluetoothUuid &service, quint64 number);
    void serviceFailed(QLowEnergyService::ServiceError error);
    void changed(const BluetoothUuid &service, const QLowEnergyCharacteristic &characteristic,
                 const QByteArray &value);
    bool isRunning(Kind kind) const;
    void finishIf(Kind kind, const QByteArray &value = {});
    void finish(const QByteArray &value, const BluetoothResult &error);
    void fail(const QString &text) { finish({}, BluetoothError{text}); }

    QLowEnergyController &_controller;
    Notified _notified;
    std::unique_ptr<CharacteristicWriter> _writer; // null where there is none
    QMap<QUuid, QLowEnergyService *> _services;    // owned by the controller
    QList<std::pair<QUuid, QUuid>> _notifying;     // service and characteristic
    std::deque<Request> _requests;                 // the first one is the one that runs
    bool _isRunning = false;
    quint64 _number = 0; // of the request that runs or ran last
    QObject _context;    // the end of Qt's signals
    CallGroup _calls;
};

} // namespace cvtamber
