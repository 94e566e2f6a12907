// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "device/CVBTDevice.h"
#include "device/Reconnector.h"

namespace cvtamber {

// One link to one device, from connecting to a clean end.
//
//   idle -> opening -> open -> closing -> closed
//                      open <-> away             with keepLink()
// While opening, a failure is the outcome of open(); while open, it is told to the handler of
// setLinkEnded() once: link lost, write failed, stalled, not confirmed. With keepLink() these end nothing but
// what was under way, and the link is made again. What happens while closing is no news. Owner: the runner. Main thread; every callback comes from the run loop, never from inside a request.
class Session final : private LinkObserver
{
public:
    using Callback = std::function<void()>;
    // A sentence; empty when it went well.
    using Opened = std::function<void(const QString &problem)>;
    using LinkEnded = std::function<void(const QString &sentence)>;

    // The device outlives the session.
    Session(RunLoop &runLoop, CVBTDevice &device);
    ~Session() override;

    void setLinkEnded(const LinkEnded &linkEnded) { _linkEnded = linkEnded; }

    // Connects and waits for the device to identify itself.
    void open(const BluetoothPeripheralPtr &peripheral, const Opened &opened);
    // From now on a link that ends is made again; the client is told. Needs an open session.
    void keepLink(const std::shared_ptr<CVBluetoothManager> &manager, const ReconnectorClient &client);
    bool isAway() const { return _step == Step::Away; }
    // Runs the callback once the file list is that of the device; asks for it only when it may be another. A device that
    // does not answer ends the link.
    void withListing(const Callback &callback);
    // The next withListing() asks the device again.
    void forgetListing() { _listingIsFresh = false; }
    // Runs the callback once all that was sent has been confirmed; never when the link is lost before. While away
    // nothing is outstanding.
    void whenWritten(const Callback &callback);
    // Ends an identified link in order; any other is left to CVBluetoothManager::releasePeripherals. The
    // callback always comes.
    void close(const Callback &closed);

    CVBTDevice &device() { return _device; }

private:
    enum class Step { Idle, Opening, Open, Away, Closing, Closed };

    void openingTakesLong();
    void finishOpening(const QString &problem);
    void endLink(const QString &sentence);
    void dropWaits();
    void comeBack();
    void linkFailed(const QString &sentence);
    void checkWritten();
    void finishClosing();
    void writingTakesLong();
    // Writes and bytes that still wait; 0 when all has been confirmed.
    qsizetype outstanding() const;

    void linkStateChanged(int state) override;
    void linkLost(const QString &reason) override;
    void linkClosed() override;
    void linkStalled() override;
    void linkWritesConfirmed() override;
    void linkWriteFailed(const QString &reason) override;

    RunLoop &_runLoop;
    CVBTDevice &_device;
    BluetoothPeripheralPtr _peripheral;
    Step _step = Step::Idle;
    bool _listingIsFresh = false;
    int _openingRounds = 0;
    qsizetype _outstanding = 0;
    LinkEnded _linkEnded;
    Opened _opened;
    Callback _written;
    Callback _closed;
    std::unique_ptr<Reconnector> _reconnector; // with keepLink()
    Callback _back;
    DelayedCall _openLimit;
    DelayedCall _listingCall;
    DelayedCall _writtenLimit;
    DelayedCall _writtenCall;
    DelayedCall _closeLimit;
    DelayedCall _stateCall;
    DelayedCall _report;
};

} // namespace cvtamber
