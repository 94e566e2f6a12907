// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/SimulatedDevice.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// Long enough for a page of writes to be saved once, short enough to survive a program that is killed.
constexpr auto SaveDelay = 250ms;

} // namespace

SimulatedDevice::SimulatedDevice(RunLoop &runLoop, SystemLog &log, const DeviceProfile &profile,
                                 const QString &stateFolder)
    : _runLoop(runLoop)
    , _log(log)
    , _profile(profile)
    , _firmware(profile)
    , _partner(runLoop, profile, [this](const QByteArray &bytes) { type(bytes); })
    , _faults(profile.faults)
    , _stateFile(profile.persistent ? stateFolder : QString(), profile.serial)
    , _saveLater(runLoop)
    , _pump(runLoop)
    , _repeats(runLoop)
    , _script(runLoop)
{
    restoreState();
    _firmware.setOutput(
        [this](const QByteArray &command, const QByteArray &bytes) { answer(command, bytes); });
    _firmware.setChanged([this] {
        if (_stateFile.isUsed() && !_saveLater.isActive())
            _saveLater.start(SaveDelay, [this] { save(); });
    });
    _firmware.setActivityChanged(
        [this](FirmwareModel::Activity activity) { _partner.activityChanged(activity); });
    _firmware.setLiveText([this](const QByteArray &bytes) { return _partner.hear(bytes); });
    startAbsences({});
}

SimulatedDevice::~SimulatedDevice()
{
    if (_saveLater.isActive())
        save();
}

void SimulatedDevice::startAbsences(const QByteArray &command)
{
    const auto isDue = [&](const Absence &absence) {
        const QByteArray &awaited = absence.command;
        return awaited == command || (!awaited.isEmpty() && command.startsWith(QByteArray(awaited + ' ')));
    };
    for (const Absence &absence : std::as_const(_profile.absences)) {
        if (!isDue(absence))
            continue;
        _script.perform(absence.after, [this] { leave(); });
        if (absence.duration >= 0ms)
            _script.perform(absence.after + absence.duration, [this] { comeBack(); });
    }
    _profile.absences.removeIf(isDue);
}

void SimulatedDevice::restoreState()
{
    const auto loaded = _stateFile.load();
    if (!loaded.error.isEmpty())
        _log.error(loaded.error);
    if (loaded.state)
        _firmware.restore(loaded.state->files, loaded.state->backwardGrade, loaded.state->forwardGrade,
                          loaded.state->embosserPage);
}

void SimulatedDevice::save()
{
    _saveLater.cancel();
    const auto &record = _firmware.record();
    const QString error =
        _stateFile.save({_firmware.storage().files(), record[DeviceStateRecord::BackwardGrade],
                         record[DeviceStateRecord::ForwardGrade], _firmware.embosserPage()});
    if (!error.isEmpty())
        _log.error(error);
}

QString SimulatedDevice::identifier() const
{
    return QStringLiteral("simulated:") + QString::fromLatin1(_profile.serial);
}

void SimulatedDevice::type(const QByteArray &bytes)
{
    if (isLinked())
        enqueue(bytes, 0ms);
}

void SimulatedDevice::dropLink(bool withError)
{
    dropLink(withError ? QStringLiteral("The device ended the link.") : QString());
}

void SimulatedDevice::dropLink(const QString &error)
{
    const auto holders = std::exchange(_holders, {});
    if (holders.isEmpty())
        return;
    endLink();
    for (const auto &weak : holders) {
        if (const auto holder = weak.lock())
            holder->linkEnded(error);
    }
}

void SimulatedDevice::leave()
{
    _inRange = false;
    _log.info(QStringLiteral("%1 goes out of range.").arg(identifier()));
    dropLink(QStringLiteral("The device is out of range."));
}

void SimulatedDevice::comeBack()
{
    _inRange = true;
    _log.info(QStringLiteral("%1 is back.").arg(identifier()));
    for (const auto &weak : std::exchange(_waiting, {})) {
        if (const auto holder = weak.lock())
            holder->deviceCameBack();
    }
}

bool SimulatedDevice::advertises(const QList<BluetoothUuid> &filter) const
{
    if (!_inRange || isLinked())
        return false;
    return filter.isEmpty() ||
           std::any_of(filter.cbegin(), filter.cend(), [this](const BluetoothUuid &service) {
               return _profile.advertisedServices.contains(service);
           });
}

QList<OfferedService> SimulatedDevice::offeredServices() const
{
    using namespace BluetoothIdentifiers;
    OfferedService access{genericAccessService(), {}};
    OfferedService device{deviceService(), {dataCharacteristic()}};
    if (_profile.info == InfoPlace::DeviceService)
        device.characteristics.append(infoCharacteristic());
    else if (_profile.info == InfoPlace::GenericAccessService)
        access.characteristics.append(secondInfoCharacteristic());

    QList<OfferedService> offered;
    for (OfferedService service : {access, device}) {
        if (_profile.missing.contains(service.uuid))
            continue;
        for (const BluetoothUuid &missing : _profile.missing)
            service.characteristics.removeAll(missing);
        offered.append(service);
    }
    return offered;
}

QByteArray SimulatedDevice::readableValue(const BluetoothUuid &characteristic) const
{
    if (characteristic == BluetoothIdentifiers::dataCharacteristic())
        return {};
    if (!_profile.infoText.isNull())
        return _profile.infoText.toUtf8();
    return _profile.serial + ',' + _profile.name.toUtf8();
}

void SimulatedDevice::attach(const std::weak_ptr<SimulatedLinkHolder> &holder)
{
    _holders.append(holder);
    ++_counters.connects;
}

void SimulatedDevice::detach(const SimulatedLinkHolder *holder)
{
    const auto count = _holders.removeIf(
        [holder](const auto &weak) { return weak.expired() || weak.lock().get() == holder; });
    if (count > 0 && _holders.isEmpty())
        endLink();
}

void SimulatedDevice::waitForReturn(const std::weak_ptr<SimulatedLinkHolder> &holder)
{
    _waiting.append(holder);
}

void SimulatedDevice::endLink()
{
    _pump.cancel();
    _repeats.cancelAll();
    _outgoing.clear();
    _firmware.linkClosed();
}

void SimulatedDevice::answer(const QByteArray &command, QByteArray bytes)
{
    if (!command.isEmpty()) {
        startAbsences(command);
        if (const auto reply = _faults.take(Fault::Kind::CustomReply, command))
            bytes = reply->bytes;
    }
    if (bytes.isEmpty() || _faults.take(Fault::Kind::NoAnswer, command))
        return;
    if (bytes.endsWith(FirmwareModel::FetchTrailer) && _faults.take(Fault::Kind::NoTrailer, command))
        bytes.chop(qsizetype{sizeof FirmwareModel::FetchTrailer} - 1);
    std::chrono::nanoseconds delay = _profile.delays.reply;
    if (const auto late = _faults.take(Fault::Kind::LateAnswer, command))
        delay += late->time;
    enqueue(bytes, delay);
}

void SimulatedDevice::enqueue(const QByteArray &bytes, std::chrono::nanoseconds delay)
{
    if (bytes.isEmpty())
        return;
    _outgoing.push_back({_runLoop.now() + delay, bytes});
    if (!_pump.isActive())
        schedulePump();
}

void SimulatedDevice::schedulePump()
{
    if (_outgoing.empty())
        return;
    const auto at = std::max(_outgoing.front().readyAt, _nextNotification);
    _pump.start(std::max(at - _runLoop.now(), std::chrono::nanoseconds{0}), [this] { pump(); });
}

void SimulatedDevice::pump()
{
    qsizetype limit = _profile.maximalNotification;
    if (const auto split = _faults.take(Fault::Kind::SplitNotifications))
        limit = std::min(limit, split->size);
    const auto merge = _faults.take(Fault::Kind::MergeNotifications);
    if (merge)
        limit = merge->size;
    const QByteArray value = takeOutgoing(limit, merge.has_value());
    const bool repeated = _faults.take(Fault::Kind::RepeatNotifications).has_value();
    _nextNotification = _runLoop.now() + _profile.delays.notification;
    if (repeated)
        _repeats.perform(0ns, [this, value] { notify(value); });
    schedulePump();
    notify(value);
}

QByteArray SimulatedDevice::takeOutgoing(qsizetype limit, bool merging)
{
    QByteArray value;
    while (!_outgoing.empty() && value.size() < limit) {
        Outgoing &front = _outgoing.front();
        if (!value.isEmpty() && (!merging || front.readyAt > _runLoop.now()))
            break;
        const QByteArray piece = front.bytes.mid(front.sent, limit - value.size());
        value += piece;
        front.sent += piece.size();
        if (front.sent == front.bytes.size())
            _outgoing.pop_front();
    }
    return value;
}

void SimulatedDevice::notify(const QByteArray &value)
{
    ++_counters.notifications;
    const auto holders = _holders;
    for (const auto &weak : holders) {
        if (const auto holder = weak.lock())
            holder->linkNotified(value);
    }
}

} // namespace cvtamber
