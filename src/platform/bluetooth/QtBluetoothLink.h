// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/bluetooth/GattQueue.h"
#include "platform/bluetooth/SharedLinks.h"

#include <QBluetoothDeviceInfo>

namespace cvtamber {

// One attempt to connect to a device and the link that comes of it, over a controller of its own: one that is
// used again takes late answers of the link before for those of the new one.
//
//   waiting (for an earlier link to be gone) -> opening -> open -> ended
//
// "Open" is when the services are resolved; Qt does not tell of the link before that. Destroying the object
// gives the attempt or the link up, silently. Events come from the run loop and may destroy the object. Owner:
// the peripheral.
class QtBluetoothLink
{
public:
    enum class End {
        Refused, // no link was made
        Lost,    // a link was made, also when its services were never resolved, and ended by itself
    };
    struct Events
    {
        std::function<void()> opened;
        std::function<void(End end, const QString &reason)> ended;
        GattQueue::Notified notified;
    };

    // The run loop and the shared links outlive the object.
    QtBluetoothLink(RunLoop &runLoop, SharedLinks &sharedLinks, const QBluetoothDeviceInfo &device,
                    const Events &events);
    QtBluetoothLink(const QtBluetoothLink &) = delete;
    QtBluetoothLink &operator=(const QtBluetoothLink &) = delete;
    ~QtBluetoothLink();

    // Once, after which the events come.
    void open();
    bool isOpen() const { return _isOpen; }
    // For an open link only.
    GattQueue &gatt() { return *_gatt; }
    // Calls from the run loop, unless the object is destroyed before.
    void post(std::function<void()> call) { _calls.perform(std::chrono::nanoseconds{0}, std::move(call)); }

private:
    void connectToDevice();
    void opened();
    void checkEnded();

    RunLoop &_runLoop;
    SharedLinks &_sharedLinks;
    QBluetoothDeviceInfo _device;
    QString _identifier;
    Events _events;
    QLowEnergyController *_controller = nullptr; // handed to the shared links in the end
    std::unique_ptr<GattQueue> _gatt;
    QLowEnergyController::Error _error = QLowEnergyController::NoError;
    bool _wasConnecting = false;
    bool _isOpen = false;
    QObject _context; // the end of Qt's signals
    CallGroup _calls;
};

} // namespace cvtamber
