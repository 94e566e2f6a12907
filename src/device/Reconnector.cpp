// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/Reconnector.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds FirstDelay{1};
constexpr std::chrono::seconds LongestDelay{64};
// Several advertisements of any device; the same time as the device object gives a connect.
constexpr std::chrono::seconds LookLimit{5};
// Identifying takes about 10 seconds; link types without identification never end it.
constexpr std::chrono::seconds AttemptLimit{30};
// A device with thousands of files is still listing them after the first limit.
constexpr int MostLimitRounds = 10;

} // namespace

// Hears the central while looking and lets the manager read what is not known by its identifier.
class Reconnector::Scout final : public BluetoothCentralDelegate, public CVBluetoothManagerDelegate
{
public:
    explicit Scout(Reconnector &reconnector)
        : _reconnector(reconnector)
    {}
    void centralDidUpdateState() override { _reconnector._manager->centralDidUpdateState(); }
    void centralDidDiscoverPeripheral(const BluetoothPeripheralPtr &peripheral) override
    {
        if (peripheral->identifier() == _reconnector._peripheral->identifier())
            _reconnector.found(peripheral);
        else
            _reconnector._manager->centralDidDiscoverPeripheral(peripheral);
    }
    void centralDidConnectPeripheral(const BluetoothPeripheralPtr &peripheral) override
    {
        _reconnector._manager->centralDidConnectPeripheral(peripheral);
    }
    void centralDidFailToConnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                           const BluetoothResult &error) override
    {
        _reconnector._manager->centralDidFailToConnectPeripheral(peripheral, error);
    }
    void centralDidDisconnectPeripheral(const BluetoothPeripheralPtr &peripheral,
                                        const BluetoothResult &error) override
    {
        _reconnector._manager->centralDidDisconnectPeripheral(peripheral, error);
    }
    void newDeviceFound(const CVBTPeripheralPtr &device) override
    {
        const QString serial = device->serialNumber();
        if (!serial.isEmpty() && serial == _reconnector._serialNumber)
            _reconnector.found(device->peripheral());
    }

private:
    Reconnector &_reconnector;
};

Reconnector::Reconnector(RunLoop &runLoop, CVBTDevice &device,
                         const std::shared_ptr<CVBluetoothManager> &manager, const ReconnectorClient &client)
    : _device(device)
    , _manager(manager)
    , _client(client)
    , _scout(std::make_shared<Scout>(*this))
    , _timer(runLoop)
    , _failed(runLoop)
    , _reporting(runLoop)
{
    _device.addLinkObserver(*this);
}

Reconnector::~Reconnector()
{
    stop();
    _device.removeLinkObserver(*this);
}

void Reconnector::watch(const BluetoothPeripheralPtr &peripheral)
{
    stop();
    _peripheral = peripheral;
    _serialNumber = _device.cvSerialNumber();
    _step = Step::Watching;
}

void Reconnector::stop()
{
    const bool wasAway = isAway();
    if (_step == Step::Looking)
        endLooking();
    else if (_step == Step::Trying)
        letGo();
    if (_step != Step::Off)
        end(Step::Off);
    // What is left of a loss that the platform calls no error.
    if (wasAway && !_device.turn().isLinked() && _device.isConnectedAsCVComm())
        _device.disconnectAsCVComm();
}

// Leaves the steps of being away.
void Reconnector::end(Step step)
{
    _timer.cancel();
    _failed.cancel();
    _step = step;
    if (step != Step::Off)
        return;
    _reports.clear();
    _reporting.cancel();
}

void Reconnector::linkLost(const QString &reason)
{
    if (_step == Step::Watching)
        goAway(reason);
    else if (_step == Step::Trying)
        _failed.start(0s, [this] { attemptFailed(); });
}

// A link that takes nothing is as good as lost; the platform may take very long to notice.
void Reconnector::linkStalled()
{
    giveLinkUp(QStringLiteral("the device has confirmed nothing for 6 seconds"));
}

// What the device has of a command or a text is not known any more: a new link makes both sides begin anew.
void Reconnector::linkWriteFailed(const QString &reason)
{
    giveLinkUp(reason);
}

void Reconnector::giveLinkUp(const QString &reason)
{
    if (_step != Step::Watching || _client.watchesEveryLink)
        return;
    goAway(reason);
    _device.disconnectPeripheral();
}

void Reconnector::linkClosed()
{
    if (_step == Step::Watching)
        end(Step::Off);
    else if (_step == Step::Trying)
        _failed.start(0s, [this] { attemptFailed(); });
}

void Reconnector::linkConnected()
{
    if (const auto peripheral = _device.peripheral();
        peripheral && _client.watchesEveryLink && _step == Step::Off)
        watch(peripheral);
    if (_step != Step::Trying)
        return;
    end(Step::Watching);
    report([this] {
        if (_client.back)
            _client.back();
    });
}

void Reconnector::goAway(const QString &reason)
{
    _delay = FirstDelay;
    _lookNext = false;
    report([this, reason] {
        if (_client.lost)
            _client.lost(reason);
    });
    wait();
}

void Reconnector::wait()
{
    _step = Step::Waiting;
    _seemedConnected = _device.isConnectedAsCVComm();
    _timer.start(_delay, [this] { attempt(); });
    report([this, after = _delay] {
        if (_client.tryingAgain)
            _client.tryingAgain(after);
    });
}

void Reconnector::attempt()
{
    if (_lookNext)
        look();
    else
        tryPeripheral(_peripheral);
}

void Reconnector::look()
{
    _lookNext = false;
    if (_manager->centralManager().state() != BluetoothCentral::State::PoweredOn) {
        attemptFailed();
        return;
    }
    _step = Step::Looking;
    _earlierManagerDelegate = _manager->delegate();
    _manager->setDelegate(_scout);
    _manager->startDeviceScan();
    _manager->centralManager().setDelegate(_scout);
    _timer.start(LookLimit, [this] {
        endLooking();
        attemptFailed();
    });
}

void Reconnector::endLooking()
{
    _timer.cancel();
    _manager->stopDeviceScan();
    _manager->setDelegate(std::exchange(_earlierManagerDelegate, {}));
    // Takes the central back from the scout.
    _manager->releasePeripherals({});
}

void Reconnector::found(const BluetoothPeripheralPtr &peripheral)
{
    if (_step != Step::Looking)
        return;
    endLooking();
    _step = Step::Waiting;
    // Not from inside the manager's callback: connecting takes the central.
    _timer.start(0s, [this, peripheral] { tryPeripheral(peripheral); });
}

void Reconnector::tryPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _step = Step::Trying;
    _peripheral = peripheral;
    _limitRounds = 0;
    _timer.start(AttemptLimit, [this] { attemptTakesLong(); });
    _device.connectAsCVCommWithPeripheral(peripheral);
}

void Reconnector::attemptTakesLong()
{
    if (_device.turn().isListing() && ++_limitRounds < MostLimitRounds)
        _timer.start(AttemptLimit, [this] { attemptTakesLong(); });
    else
        attemptFailed();
}

void Reconnector::attemptFailed()
{
    _failed.cancel();
    if (_step == Step::Trying)
        letGo();
    _delay = std::min(_delay * 2, LongestDelay);
    wait();
}

// What an attempt may have left behind: a link that did not identify itself, or a connect without an answer.
void Reconnector::letGo()
{
    _step = Step::LettingGo;
    if (_peripheral->state() == BluetoothPeripheral::State::Disconnected)
        return;
    if (_device.isConnectedAsCVComm()) {
        _device.disconnectAsCVComm();
        return;
    }
    _device.disconnectPeripheral();
    _manager->centralManager().cancelPeripheralConnection(_peripheral);
}

void Reconnector::linkStateChanged(int state)
{
    const bool linked = _peripheral && _peripheral->state() == BluetoothPeripheral::State::Connected;
    if (state == CVDeviceStateDelegate::DisconnectedOrNotConnectable && isPersonsDisconnect(linked)) {
        end(Step::Off);
    } else if (state != CVDeviceStateDelegate::ConnectedAndIdentified && _step == Step::Trying) {
        // Who was not even there may be known to the platform no longer.
        _lookNext = !linked;
        _failed.start(0s, [this] { attemptFailed(); });
    }
}

// State 2 also says that the platform refused a connect; then there is nothing that somebody could have ended.
bool Reconnector::isPersonsDisconnect(bool linked) const
{
    if (_step == Step::Waiting)
        return _seemedConnected && !_device.isConnectedAsCVComm();
    return _step == Step::Trying && linked;
}

void Reconnector::report(const std::function<void()> &call)
{
    _reports.push_back(call);
    if (!_reporting.isActive())
        _reporting.start(0s, [this] { reportNext(); });
}

void Reconnector::reportNext()
{
    const auto call = _reports.front();
    _reports.pop_front();
    if (!_reports.empty())
        _reporting.start(0s, [this] { reportNext(); });
    call();
}

} // namespace cvtamber
