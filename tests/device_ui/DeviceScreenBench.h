// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppContext.h"
#include "base/UserDefaults.h"
#include "device/CVBTDevice.h"

#include "device/CVBluetoothManager.h"
#include "device/Reconnector.h"
#include "simulator/SimulatedRadio.h"
#include "support/Recorders.h"
#include "support/RecordingPresenter.h"
#include "support/Rows.h"
#include "support/StoreRig.h"
#include "support/TemporaryLocations.h"
#include "ui/DocumentPreview.h"
#include "ui/MailComposer.h"
#include "ui/TableViewController.h"

#include <QHash>

namespace cvtamber {

// What the screens of the device are given and never use.
class UnusedDefaults final : public UserDefaults
{
public:
    QVariant value(const QString &) override { return {}; }
    void setValue(const QString &, const QVariant &) override {}
    void synchronize() override {}
};

class UnusedMail final : public MailComposer
{
public:
    bool canSendMail() override { return false; }
    void compose(const MailMessage &, std::function<void(bool)>) override {}
};

class UnusedPreview final : public DocumentPreview
{
public:
    void show(const QString &, std::function<void(bool)>) override {}
};

inline Fault fault(Fault::Kind kind, const QByteArray &command = {}, const QByteArray &bytes = {},
                   std::chrono::milliseconds time = {})
{
    Fault fault;
    fault.kind = kind;
    fault.command = command;
    fault.bytes = bytes;
    fault.time = time;
    return fault;
}

// Keeps the device that a scan has found last.
class FoundDevice final : public CVBluetoothManagerDelegate
{
public:
    void newDeviceFound(const CVBTPeripheralPtr &device) override { found = device; }

    CVBTPeripheralPtr found;
};

// The surroundings of a device screen: a recording presenter, and a real device object on a radio with simulated
// devices. Time moves only when told.
class DeviceScreenBench
{
public:
    explicit DeviceScreenBench(bool isTablet = true, const QList<DeviceProfile> &profiles = {DeviceProfile()},
                               BluetoothCentral::State state = BluetoothCentral::State::PoweredOn)
        : radio(makeRadio(profiles, state))
        , manager(CVBluetoothManager::create(rig.loop, rig.log, radio->makeCentral()))
        , device({rig.loop, rig.log, idleTimer, manager, [this] { return radio->makeCentral(); }})
    {
        presenter.setTablet(isTablet);
        rig.loop.advance(std::chrono::milliseconds(1)); // the radio's state becomes known
    }
    DeviceScreenBench(const DeviceScreenBench &) = delete;
    DeviceScreenBench &operator=(const DeviceScreenBench &) = delete;
    ~DeviceScreenBench() { device.setCvStateDelegate(nullptr); }

    void advance(std::chrono::nanoseconds time) { rig.loop.advance(time); }
    bool advanceUntil(const std::function<bool()> &condition,
                      std::chrono::nanoseconds limit = std::chrono::minutes(2))
    {
        return rig.loop.advanceUntil(condition, limit);
    }
    // The device that a scan finds first; the scan has ended and let go of it.
    BluetoothPeripheralPtr findDevice()
    {
        const auto scan = std::make_shared<FoundDevice>();
        manager->setDelegate(scan);
        manager->startDeviceScan();
        bool isReleased = false;
        if (advanceUntil([&] { return scan->found != nullptr; }))
            manager->releasePeripherals([&] { isReleased = true; });
        if (!advanceUntil([&] { return isReleased; }))
            qFatal("No simulated device was found");
        manager->stopDeviceScan();
        return scan->found->peripheral();
    }
    SimulatedDevice &simulated(int index = 0) const { return *radio->devices().at(index); }
    // The only one there is, or the last one presented.
    template<typename Screen>
    std::shared_ptr<Screen> presentedBy(const std::shared_ptr<ViewController> &screen) const
    {
        return std::dynamic_pointer_cast<Screen>(screen->presentedViewController());
    }

    StoreRig rig;
    FakeIdleTimer idleTimer;
    std::shared_ptr<SimulatedRadio> radio;
    std::shared_ptr<CVBluetoothManager> manager;
    CVBTDevice device;
    // Holds screens, which the device outlives.
    RecordingPresenter presenter{rig.loop};
    UnusedDefaults defaults;
    TemporaryLocations locations;
    UnusedMail mail;
    UnusedPreview preview;
    Reconnector reconnector{rig.loop, device, manager, ReconnectorClient{.watchesEveryLink = true}};
    AppContext context{rig.loop,  presenter, rig.context, device,  *manager,          defaults,
                       locations, mail,      preview,     rig.log, rig.notifications, reconnector};

private:
    std::shared_ptr<SimulatedRadio> makeRadio(const QList<DeviceProfile> &profiles,
                                              BluetoothCentral::State state)
    {
        DeviceProfileSet set;
        set.radio.state = state;
        set.devices = profiles;
        return SimulatedRadio::fromProfile(rig.loop, rig.log, set, {});
    }
};

} // namespace cvtamber
