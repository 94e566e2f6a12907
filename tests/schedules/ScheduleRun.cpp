// SPDX-License-Identifier: GPL-3.0-or-later
#include "schedules/ScheduleRun.h"

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// From a write to its confirmation, as profiles have it.
constexpr auto WriteTime = 8ms;
constexpr auto LossKnown = 1s;
constexpr auto StallKnown = 6s;
// From the message to the exit: the polite end of the link, and its limit.
constexpr auto ClosingTime = 13s;
// The longest of all: a silent fetch after a late start.
constexpr auto LongestRun = 3min;
constexpr int English = 2;

QByteArray encoded(const QString &text)
{
    return CVBTDevice::cvOutDataFromString(text, English);
}

QByteArray inBraille(const QByteArray &bytes)
{
    return "<braille 1>" + bytes + "</braille>";
}

} // namespace

QString ScheduleRun::run()
{
    if (_schedule.trouble == Trouble::RadioOff || _schedule.trouble == Trouble::DeviceLeaves)
        _troubleAt = _schedule.after;
    _bench.console.input = _schedule.input;
    _bench.start(_schedule.arguments);
    const auto ended = [this] {
        watch();
        return _bench.status().has_value();
    };
    if (!_bench.loop.advanceUntil(ended, LongestRun))
        return u"it has not ended in %1 minutes"_s.arg(LongestRun.count());
    _endedAt = _bench.loop.now();
    _status = _bench.wait();
    if (_status < 0)
        return u"it ended and left a link"_s;
    const QString fault = judge();
    return fault.isNull() ? judgeRest() : fault;
}

// Before each call of the loop.
void ScheduleRun::watch()
{
    const auto now = _bench.loop.now();
    const SimulatedDevice &device = _bench.simulated();
    if (device.counters().writes != _writes) {
        _writes = device.counters().writes;
        _lastWriteAt = now;
        const bool atWrite =
            _schedule.trouble >= Trouble::LinkLost && _schedule.trouble <= Trouble::FailedWrite;
        if (atWrite && _writes >= _schedule.write && !_troubleAt) {
            _troubleAt = now + WriteTime;
            _wasLinked = true;
        }
    }
    // A link that ends before its first write is made again at once, which fails at once only without a radio.
    const bool isHappening = _troubleAt && now >= *_troubleAt;
    if (!isHappening)
        _wasLinked = device.isLinked();
    else
        _linkedInTrouble = _wasLinked && (_writes > 0 || _schedule.trouble == Trouble::RadioOff);
    if (std::exchange(_said, _bench.console.messages.size()) < _bench.console.messages.size() &&
        isHappening && !_toldAt) {
        _toldAt = now;
        _lastWriteBeforeTold = _lastWriteAt;
    }
}

bool ScheduleRun::losesLink() const
{
    return _schedule.trouble == Trouble::LinkLost || _schedule.trouble == Trouble::LinkLostSilently ||
           _schedule.trouble == Trouble::RadioOff || _schedule.trouble == Trouble::DeviceLeaves;
}

QString ScheduleRun::judge()
{
    QString fault;
    if (_schedule.trouble == Trouble::None && _status != 0)
        return u"status %1 although nothing went wrong"_s.arg(_status);
    fault = _status == 0 ? judgeSuccess() : judgeFailure();
    return fault.isNull() ? judgeDelays() : fault;
}

// Done means that the device, or the output, really holds it.
QString ScheduleRun::judgeSuccess()
{
    const bool warned = _bench.console.messages.contains(u"Warning"_s);
    const QByteArray bytes = encoded(_schedule.text);
    const QByteArray &output = _bench.console.output;
    bool isRight = false;
    switch (_schedule.operation) {
    case Operation::InfoAndList:
        isRight = _schedule.distortsReplies() ||
                  (output.contains("Serial number: 10000001\n") && output.contains("Language: English\n") &&
                   output.endsWith(
                       QByteArray("Files: 1\n" + QByteArray::number(_schedule.stored.size()) + "\tA.TXT\n")));
        break;
    case Operation::Put:
        isRight = _bench.storedText("NEW.TXT") == bytes;
        break;
    case Operation::PutTranslated:
        isRight = _bench.storedText("NEW.TXT") == inBraille(bytes);
        break;
    case Operation::Get:
        isRight = warned || output == _schedule.stored;
        break;
    case Operation::GetBackTranslated:
        // Nobody knows how long a translation is to be: pieces that come twice are not noticed.
        isRight = warned || _schedule.trouble == Trouble::RepeatedNotifications ||
                  output == "<print 1>" + _schedule.stored + "</print>";
        break;
    case Operation::Emboss:
        isRight = _bench.simulated().firmware().embosserPage() == bytes;
        break;
    case Operation::EmbossTranslated:
        isRight =
            _bench.simulated().firmware().embosserPage() == (bytes.isEmpty() ? bytes : inBraille(bytes));
        break;
    case Operation::Remove:
        isRight = _bench.storedText("A.TXT") == "(none)";
        break;
    case Operation::Chat:
        isRight = _schedule.distortsReplies() || output == expectedChat();
        break;
    }
    if (!isRight)
        return u"success is told, and it is not so"_s;
    const bool keptOthers =
        _schedule.operation == Operation::Remove || _bench.storedText("A.TXT") == _schedule.stored;
    return keptOthers ? QString() : u"another file is not what it was"_s;
}

QByteArray ScheduleRun::expectedChat() const
{
    QByteArray lines = _schedule.text.toUtf8();
    if (!lines.isEmpty() && !lines.endsWith('\n'))
        lines += '\n';
    return lines;
}

// Failed means that it is said, by the number and in words, and what it means for the file.
QString ScheduleRun::judgeFailure()
{
    const QString &messages = _bench.console.messages;
    if (!messages.endsWith(u".\n"_s) && !messages.endsWith(u"?\n"_s))
        return u"it failed without a sentence"_s;
    static constexpr int Expected[] = {1, 3, 4, 5, 6};
    if (std::find(std::begin(Expected), std::end(Expected), _status) == std::end(Expected))
        return u"status %1"_s.arg(_status);
    const bool atWrite = _schedule.trouble >= Trouble::LinkLost && _schedule.trouble <= Trouble::FailedWrite;
    if (atWrite && _status != 5)
        return u"status %1 for a trouble of the link"_s.arg(_status);
    if (_status == 3 && _schedule.trouble != Trouble::RadioOff)
        return u"the radio is blamed"_s;
    if (_schedule.operation != Operation::Put && _schedule.operation != Operation::PutTranslated)
        return {};
    FirmwareModel &firmware = _bench.simulated().firmware();
    const bool begun = firmware.commandCount("BEGIN") + firmware.commandCount("FM") > 0;
    if (begun && !messages.contains(u"may be incomplete: put the whole"_s))
        return u"nothing is said of the file that was begun"_s;
    return {};
}

QString ScheduleRun::judgeDelays()
{
    if (_status == 0 || !_troubleAt)
        return {};
    if (_toldAt && _endedAt - *_toldAt > ClosingTime)
        return u"closing took too long"_s;
    if (losesLink() && _linkedInTrouble && _status == 5 && (!_toldAt || *_toldAt - *_troubleAt > LossKnown))
        return u"the loss was not known within a second"_s;
    if (_schedule.trouble == Trouble::FailedWrite && (!_toldAt || *_toldAt - *_troubleAt > LossKnown))
        return u"the failed write was not known within a second"_s;
    // Another write that is confirmed starts the time anew: the link moves.
    if (_schedule.trouble == Trouble::LostConfirmation &&
        (!_toldAt || *_toldAt - _lastWriteBeforeTold > StallKnown + WriteTime))
        return u"the missing confirmation was not known within 6 seconds"_s;
    return {};
}

// Nothing goes on, and the next command finds everything as if nothing had been.
QString ScheduleRun::judgeRest()
{
    // The last of the profile's own events, and the device object's longest timer.
    _bench.loop.advance(1min);
    if (_bench.loop.pendingCalls() != 0)
        return u"calls are left"_s;
    _bench.simulated().faults() = FaultScript();
    if (_schedule.trouble == Trouble::MissingService ||
        _bench.radio().state() != BluetoothCentral::State::PoweredOn || !_bench.simulated().isInRange())
        return {};
    const int status = _bench.run({u"ls"_s});
    return status == 0 ? QString() : u"the next command ended with status %1"_s.arg(status);
}

QString ScheduleRun::story() const
{
    return u"status %1 after %2 ms and %3 writes; messages: %4"_s.arg(
        QString::number(_status),
        QString::number(std::chrono::duration_cast<std::chrono::milliseconds>(_endedAt).count()),
        QString::number(_writes), _bench.console.messages.trimmed());
}

} // namespace cvtamber
