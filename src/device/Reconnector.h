// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "device/CVBTDevice.h"
#include "device/CVBluetoothManager.h"

#include <deque>

namespace cvtamber {

// Who is told what becomes of a lost link. Each call comes from the run loop, never from inside the device
// object; the reconnector may be stopped or destroyed in it. Empty ones are left out.
struct ReconnectorClient
{
    std::function<void(const QString &reason)> lost{};             // once for each loss
    std::function<void(std::chrono::seconds after)> tryingAgain{}; // once for each attempt, when it is set
    std::function<void()> back{};                                  // once for each loss that ended well
    // Every link that is identified is watched, without watch(). One that stalls, or that a write has failed on, is kept:
    // a person sees it and may well wait.
    bool watchesEveryLink = false;
};

// Makes a lost link again, for clients that live as long as the person wants: chat, whiteboard, screens.
//
//   step       what happens                               next step
//   off        watch()                                    watching
//   watching   link lost                                  waiting, 1 s: lost(), tryingAgain()
//              link stalled, or a write failed            the same, and the link is closed
//              link closed by this side                   off
//   waiting    the time is over                           trying; looking if the last attempt met nobody
//   looking    a scan sees the device                     trying
//              5 s are over, or the radio is off          waiting, twice as long: tryingAgain()
//   trying     connected and identified                   watching: back()
//              refused, lost, silent, not identified      waiting, twice as long: tryingAgain()
//   any        stop(), or the person disconnects          off
//
// The waits are 1, 2, 4 ... 64 seconds and stay at 64: quick for a device that comes right back, cheap for one
// that is away for hours. While waiting, one delayed call is all there is. Looking finds the device that
// the platform has forgotten or that has a new address: by its identifier, else by its serial number, which the
// manager reads.
//
// Who observes the link hears the states of the attempts too; isAway() tells them from those of a person's connect. While
// looking it is the delegate of the manager and of its central. Main thread; owner: the client. The
// device object, whose link must be up in watch(), and the run loop outlive it.
class Reconnector final : private LinkObserver
{
public:
    Reconnector(RunLoop &runLoop, CVBTDevice &device, const std::shared_ptr<CVBluetoothManager> &manager,
                const ReconnectorClient &client);
    ~Reconnector() override;

    // From now on a loss of the link to this peripheral is followed by attempts to make it again.
    void watch(const BluetoothPeripheralPtr &peripheral);
    // Gives up; an attempt under way is ended, a link that is up stays.
    void stop();
    // The link was lost and is not yet back.
    bool isAway() const { return _step != Step::Off && _step != Step::Watching; }
    // The peripheral that the link was last made with; a new object when the platform had forgotten the old.
    BluetoothPeripheralPtr peripheral() const { return _peripheral; }

private:
    enum class Step { Off, Watching, Waiting, Looking, Trying, LettingGo };
    class Scout;

    void linkStateChanged(int state) override;
    void linkConnected() override;
    void linkLost(const QString &reason) override;
    void linkClosed() override;
    void linkStalled() override;
    void linkWriteFailed(const QString &reason) override;

    void goAway(const QString &reason);
    void giveLinkUp(const QString &reason);
    void wait();
    void attempt();
    void look();
    void endLooking();
    void found(const BluetoothPeripheralPtr &peripheral);
    void tryPeripheral(const BluetoothPeripheralPtr &peripheral);
    void attemptTakesLong();
    void attemptFailed();
    void letGo();
    bool isPersonsDisconnect(bool linked) const;
    void end(Step step);
    void report(const std::function<void()> &call);
    void reportNext();

    CVBTDevice &_device;
    std::shared_ptr<CVBluetoothManager> _manager;
    ReconnectorClient _client;
    std::shared_ptr<Scout> _scout;
    std::weak_ptr<CVBluetoothManagerDelegate> _earlierManagerDelegate;
    BluetoothPeripheralPtr _peripheral;
    QString _serialNumber;
    Step _step = Step::Off;
    std::chrono::seconds _delay{0};
    bool _lookNext = false;
    // A loss that the platform calls no error leaves the device object connected in its own eyes.
    bool _seemedConnected = false;
    int _limitRounds = 0;
    DelayedCall _timer;  // the wait, the look or the attempt that is under way
    DelayedCall _failed; // ends an attempt a turn later, when the device object has said all
    std::deque<std::function<void()>> _reports;
    DelayedCall _reporting;
};

} // namespace cvtamber
