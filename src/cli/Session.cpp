// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Session.h"

#include "base/VisibleText.h"

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Identifying takes about 10 seconds; link types without identification never end it.
constexpr auto OpenLimit = 30s;
// A device with thousands of files is still listing them after the first limit.
constexpr int OpeningRounds = 10;
// Longer than the 6 seconds after which the device object reports a stalled link.
constexpr auto WrittenLimit = 10s;
// The device object takes 2 seconds for a polite end.
constexpr auto CloseLimit = 5s;

} // namespace

Session::Session(RunLoop &runLoop, CVBTDevice &device)
    : _runLoop(runLoop)
    , _device(device)
    , _openLimit(_runLoop)
    , _listingCall(_runLoop)
    , _writtenLimit(_runLoop)
    , _writtenCall(_runLoop)
    , _closeLimit(_runLoop)
    , _stateCall(_runLoop)
    , _report(_runLoop)
{
    _device.addLinkObserver(*this);
}

Session::~Session()
{
    _reconnector.reset();
    _device.removeLinkObserver(*this);
    _device.setCvDownloadDelegate(nullptr);
    _device.setCvUploadDelegate(nullptr);
    _device.setDataDelegate(nullptr);
}

void Session::open(const BluetoothPeripheralPtr &peripheral, const Opened &opened)
{
    _peripheral = peripheral;
    _opened = opened;
    _step = Step::Opening;
    _openLimit.start(OpenLimit, [this] { openingTakesLong(); });
    _device.connectAsCVCommWithPeripheral(peripheral);
}

// Loss is taken up a turn of the loop later: a link observer's call with the reason may follow. A refused
// connect (state 2) is not made again by anybody, so it ends the opening as well.
void Session::linkStateChanged(int state)
{
    if (_step == Step::Opening) {
        if (state == CVDeviceStateDelegate::ConnectedAndIdentified)
            finishOpening({});
        else
            _stateCall.start(
                0s, [this] { finishOpening(u"The device could not be connected or did not answer."_s); });
    } else if (_step == Step::Open && !_reconnector && state == CVDeviceStateDelegate::ConnectFailedOrLost) {
        _stateCall.start(0s, [this] { endLink(u"The link to the device was lost."_s); });
    }
}

void Session::openingTakesLong()
{
    if (_device.turn().isListing() && ++_openingRounds < OpeningRounds) {
        _openLimit.start(OpenLimit, [this] { openingTakesLong(); });
        return;
    }
    if (_device.connectionType() != 0)
        finishOpening(
            u"The device answers but does not say what it is (link type %1). It cannot be used."_s.arg(
                _device.connectionType()));
    else
        finishOpening(u"The device did not answer in time."_s);
}

void Session::finishOpening(const QString &problem)
{
    _openLimit.cancel();
    if (_step != Step::Opening)
        return;
    _step = problem.isEmpty() ? Step::Open : Step::Idle;
    // Only a link of type 1 has the files listed while it is identified.
    _listingIsFresh = _device.connectionType() == 1;
    _report.start(0s, [this, problem] { std::exchange(_opened, nullptr)(problem); });
}

void Session::keepLink(const std::shared_ptr<CVBluetoothManager> &manager, const ReconnectorClient &client)
{
    _back = client.back;
    _reconnector = std::make_unique<Reconnector>(
        _runLoop, _device, manager,
        ReconnectorClient{client.lost, client.tryingAgain, [this] { comeBack(); }});
    _reconnector->watch(_peripheral);
}

void Session::comeBack()
{
    _peripheral = _reconnector->peripheral();
    _step = Step::Open;
    _back();
}

void Session::withListing(const Callback &callback)
{
    if (_listingIsFresh) {
        _listingCall.start(0s, callback);
        return;
    }
    _device.turn().list([this, callback](DeviceTurn::End end) {
        if (_step == Step::Open && end != DeviceTurn::End::Done)
            endLink(u"The device did not answer when it was asked for its files."_s);
        _listingIsFresh = end == DeviceTurn::End::Done;
        if (_listingIsFresh)
            _listingCall.start(0s, callback);
    });
}

qsizetype Session::outstanding() const
{
    return _device.unconfirmedWrites() + _device.queuedBytes();
}

void Session::whenWritten(const Callback &callback)
{
    if (_step == Step::Away) {
        _writtenCall.start(0s, callback);
        return;
    }
    _written = callback;
    _outstanding = outstanding();
    _writtenLimit.start(WrittenLimit, [this] { writingTakesLong(); });
    checkWritten();
}

// A long queue may well take longer than the limit: only one that does not move is given up.
void Session::writingTakesLong()
{
    const qsizetype before = std::exchange(_outstanding, outstanding());
    if (_outstanding != before)
        _writtenLimit.start(WrittenLimit, [this] { writingTakesLong(); });
    else
        endLink(u"The device does not confirm what was sent to it."_s);
}

void Session::checkWritten()
{
    if (!_written || outstanding() != 0)
        return;
    _writtenLimit.cancel();
    _writtenCall.start(0s, std::exchange(_written, nullptr));
}

void Session::endLink(const QString &sentence)
{
    if (_step != Step::Open)
        return;
    dropWaits();
    _step = Step::Idle;
    _report.start(0s, [this, sentence] { _linkEnded(sentence); });
}

void Session::dropWaits()
{
    _listingCall.cancel();
    _writtenLimit.cancel();
    _writtenCall.cancel();
    _written = nullptr;
}

void Session::linkLost(const QString &reason)
{
    const QString words = reason.isEmpty() ? QString() : u" (%1)"_s.arg(visibleText(reason));
    if (_step == Step::Closing)
        finishClosing();
    else if (_step == Step::Opening)
        finishOpening(u"The link to the device was lost while it was being connected%1."_s.arg(words));
    else
        linkFailed(u"The link to the device was lost%1."_s.arg(words));
}

void Session::linkClosed()
{
    if (_step == Step::Closing)
        finishClosing();
}

void Session::linkStalled()
{
    linkFailed(u"The device takes no more data: it has confirmed nothing for 6 seconds."_s);
}

void Session::linkWritesConfirmed()
{
    checkWritten();
}

void Session::linkWriteFailed(const QString &reason)
{
    linkFailed(u"A write to the device failed (%1)."_s.arg(visibleText(reason)));
}

void Session::linkFailed(const QString &sentence)
{
    if (_step == Step::Opening) {
        // What did not arrive would be missing in what is believed of the device.
        finishOpening(sentence);
    } else if (_step == Step::Open && _reconnector) {
        // It has been told the same, and tells its client.
        dropWaits();
        _step = Step::Away;
    } else {
        endLink(sentence);
    }
}

void Session::close(const Callback &closed)
{
    _openLimit.cancel();
    dropWaits();
    _report.cancel();
    _closed = closed;
    _step = Step::Closing;
    _closeLimit.start(CloseLimit, [this] { finishClosing(); });
    if (_reconnector)
        _peripheral = _reconnector->peripheral();
    const bool connected = _device.isConnectedAsCVComm();
    // Ends an attempt that is under way, one that has got through as politely as the link itself.
    _reconnector.reset();
    const bool linked = _peripheral && _peripheral->state() != BluetoothPeripheral::State::Disconnected;
    if (!linked || !connected)
        finishClosing();
    else if (_device.isConnectedAsCVComm())
        _device.disconnectAsCVComm();
}

void Session::finishClosing()
{
    if (_step != Step::Closing)
        return;
    _step = Step::Closed;
    _closeLimit.cancel();
    _report.start(0s, std::exchange(_closed, nullptr));
}

} // namespace cvtamber
