// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/CommandEngine.h"

#include "device/CommandSender.h"
#include "device/ReplyParsers.h"

#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// A reply has no end mark: it is over when the line has been silent for this long.
constexpr auto replySilence = 2000ms;
// The device pauses for long while it translates and reads a file.
constexpr auto fetchSilence = 26000ms;

constexpr QByteArrayView fetchTrailer("{PC\xFD}", 5);

} // namespace

CommandEngine::CommandEngine(DeviceContext &context, CommandSender &sender, ReplyHandlers &handlers,
                             std::function<int()> keyboardLanguage)
    : _context(context)
    , _sender(sender)
    , _handlers(handlers)
    , _keyboardLanguage(std::move(keyboardLanguage))
    , _commandTimeout(replySilence)
    , _timer(context.runLoop)
{}

void CommandEngine::sendCommand(const QString &command)
{
    _sender.sendCommand(command, _keyboardLanguage());
}

void CommandEngine::sendWaitCommand(int number)
{
    QString command;
    switch (number) {
    case LinkCommand:
        command = QStringLiteral("PC %1 ON").arg(_context.portName());
        break;
    case VersionCommand:
        command = QStringLiteral("VER");
        break;
    case ExtendedVersionCommand:
        command = QStringLiteral("VER1");
        break;
    case StateCommand:
        command = QStringLiteral("PCR");
        break;
    case DirectoryCommand:
        command = QStringLiteral("DIR");
        break;
    case FreeSpaceCommand:
        command = QStringLiteral("FREE");
        break;
    default:
        return;
    }
    pushAside();
    _commandTimeout = replySilence;
    _pendingCommand = number;
    sendFinalWaitCommand(command);
}

void CommandEngine::sendWaitCommand(int number, const QString &parameters)
{
    if (number != FetchCommand)
        return;
    pushAside();
    _commandTimeout = fetchSilence;
    _pendingCommand = number;
    sendFinalWaitCommand(QStringLiteral("PR ") + parameters);
}

void CommandEngine::sendFinalWaitCommand(const QString &command)
{
    sendCommand(command);
    startCommanndTimer();
}

void CommandEngine::pushAside()
{
    stopCommandTimer();
    if (const int command = std::exchange(_pendingCommand, NoCommand); command != NoCommand)
        _handlers.commandEnded(command, DeviceTurn::End::PushedAside);
}

void CommandEngine::awaitSoundRequests()
{
    pushAside();
    _pendingCommand = SoundCommand;
}

void CommandEngine::handleCommandData(const QByteArray &data)
{
    stopCommandTimer();
    _receiveBuffer.append(data);
    if (_pendingCommand != SoundCommand)
        startCommanndTimer();
    _handlers.downloadProgressOnThread(_receiveBuffer.size());
    // The progress call may have ended the link, and with it the command.
    if (_pendingCommand == SoundCommand) {
        _handlers.handle_cmdFLASH_result(_receiveBuffer);
    } else if (_pendingCommand == FetchCommand && endsWithTrailer()) {
        stopCommandTimer();
        _pendingCommand = NoCommand;
        _handlers.handle_cmdPR_result(std::exchange(_receiveBuffer, {}), false);
        _handlers.commandEnded(FetchCommand, DeviceTurn::End::Done);
    }
}

bool CommandEngine::endsWithTrailer() const
{
    return _receiveBuffer.endsWith(fetchTrailer);
}

void CommandEngine::startCommanndTimer()
{
    _timer.start(_commandTimeout, [this] { commandTimerElapsed(); });
}

void CommandEngine::stopCommandTimer()
{
    _timer.cancel();
}

void CommandEngine::commandTimerElapsed()
{
    // Slot and buffer are free before the handler runs, which may start the next wait.
    const int command = std::exchange(_pendingCommand, NoCommand);
    const auto end = _receiveBuffer.isEmpty() ? DeviceTurn::End::Failed : DeviceTurn::End::Done;
    dispatch(command, std::exchange(_receiveBuffer, {}));
    _handlers.commandEnded(command, end);
}

void CommandEngine::dispatch(int command, QByteArray reply)
{
    const bool answered = !reply.isEmpty();
    switch (command) {
    case LinkCommand: {
        const auto code = ReplyParsers::linkCode(reply);
        _handlers.handle_cmdPC_result(code.has_value(), code.value_or(0));
        break;
    }
    case VersionCommand:
        _handlers.handle_cmdVER_result(answered, reply);
        break;
    case ExtendedVersionCommand:
        _handlers.handle_cmdVER1_result(answered, reply);
        break;
    case StateCommand:
        _handlers.handle_cmdPCR_result(
            answered && _handlers.analyzePCRData(TextCodec::decodeRaw(reply, StringEncoding::Ascii).text));
        break;
    case DirectoryCommand:
        _handlers.handle_cmdDIR_result(reply);
        break;
    case FetchCommand:
        _handlers.handle_cmdPR_result(std::move(reply), true);
        break;
    default:
        break;
    }
}

void CommandEngine::drop()
{
    stopCommandTimer();
    _pendingCommand = NoCommand;
    _receiveBuffer.clear();
}

} // namespace cvtamber
