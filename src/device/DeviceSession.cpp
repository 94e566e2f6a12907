// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/DeviceSession.h"

#include "device/CommandEngine.h"
#include "device/CommandSender.h"
#include "device/DeviceFiles.h"
#include "device/DeviceIdentity.h"
#include "device/DeviceTurn.h"
#include "device/OwnScan.h"
#include "device/ReplyParsers.h"
#include "device/SoundUpload.h"

#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// How long the own scan may look.
constexpr auto scanTimeout = 10000ms;
// Lets the last commands leave before the link is closed.
constexpr auto disconnectDelay = 2000ms;

} // namespace

DeviceSession::DeviceSession(DeviceContext &context, const Rooms &rooms)
    : _context(context)
    , _rooms(rooms)
    , _btTimer(context.runLoop)
    , _delayedDisconnect(context.runLoop)
{}

void DeviceSession::setLink(const std::shared_ptr<BluetoothLink> &link, BluetoothCentralFactory makeCentral)
{
    _link = link;
    _ownScan = std::make_shared<OwnScan>(std::move(makeCentral), _link, [this] { startBTTimer(); });
}

void DeviceSession::connectAsCVComm(const std::weak_ptr<CVConnectionDelegate> &connectionDelegate)
{
    if (_context.connection) {
        _context.connection->setDelegate(connectionDelegate);
        connectPC();
        return;
    }
    if (!_ownScan->prepare())
        return;
    if (_link->hasPeripheral()) {
        connectPC();
        return;
    }
    _link->forgetChosenPeripheral();
    _ownScan->start();
}

void DeviceSession::connectAsCVCommWithPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _ownScan->stop();
    stopBTTimer();
    _link->connectToPeripheral(peripheral);
    if (std::exchange(_chosenIdentifier, peripheral->identifier()) != peripheral->identifier())
        _rooms.identity.forgetDevice();
}

void DeviceSession::connectPC()
{
    stopBTTimer();
    _rooms.sender.setDoubleBraces(true);
    _context.isConnectingAsCVComm = true;
    _context.isIdentified = false;
    _rooms.engine.sendWaitCommand(CommandEngine::LinkCommand);
}

void DeviceSession::startBTTimer()
{
    _btTimer.start(scanTimeout, [this] { _context.tellState(CVDeviceStateDelegate::ConnectFailedOrLost); });
}

void DeviceSession::stopBTTimer()
{
    _btTimer.cancel();
}

bool DeviceSession::linkIsUp() const
{
    return _context.serialPort || _context.connection || _link->isConnected();
}

void DeviceSession::identified()
{
    if (!std::exchange(_context.isConnectingAsCVComm, false) || !linkIsUp())
        return;
    _context.isIdentified = true;
    _context.tellState(CVDeviceStateDelegate::ConnectedAndIdentified);
    // The delegate may have disconnected inside its call.
    if (_context.isIdentified)
        _context.observers.tell(&LinkObserver::linkConnected);
}

void DeviceSession::handle_cmdPC_result(bool success, int linkCode)
{
    if (!success) {
        _context.isConnectingAsCVComm = false;
        _context.idleTimer.setEnabled(true);
        _context.tellState(CVDeviceStateDelegate::ConnectFailedOrLost);
        _link->disconnectPeripheral();
        return;
    }
    const auto kind = ReplyParsers::linkKind(linkCode);
    _context.connectionType = kind.connectionType;
    _rooms.sender.setDoubleBraces(kind.doubleBraces);
    switch (kind.connectionType) {
    case 1:
        if (_context.serialPort) {
            _rooms.engine.sendCommand(QStringLiteral("USB HS S"));
            _rooms.engine.sendCommand(QStringLiteral("USB OFF"));
        }
        _rooms.engine.sendWaitCommand(CommandEngine::StateCommand);
        _context.isConnectedAsCVComm = true;
        break;
    case 3:
        _rooms.engine.sendWaitCommand(CommandEngine::VersionCommand);
        _context.isConnectedAsCVComm = true;
        break;
    case 4:
        _context.isConnectedAsCVComm = true;
        identified();
        break;
    default:
        // Types 2, 5 and 6 answer no further query: they stay connected without an identity, and nobody is
        // told.
        _context.isConnectedAsCVComm = true;
        break;
    }
}

void DeviceSession::disconnectAsCVComm()
{
    _ownScan->stop();
    _context.idleTimer.setEnabled(true);
    if (_context.isConnectedAsCVComm) {
        const bool wasFetching = _rooms.engine.pendingCommand() == CommandEngine::FetchCommand;
        _rooms.engine.drop();
        // A half-sent file is closed, and the device is left as it was found.
        const bool wasUploading = _rooms.files.abandonTransfer(wasFetching);
        _rooms.engine.sendCommand(QStringLiteral("NW OFF"));
        _rooms.engine.sendCommand(QStringLiteral("PC %1 OFF").arg(_context.portName()));
        if (_context.serialPort)
            _rooms.engine.sendCommand(QStringLiteral("USB HS H"));
        _context.endSession();
        if (!_context.serialPort) {
            _link->expectEnd();
            _delayedDisconnect.start(disconnectDelay, [this] { _link->disconnectPeripheral(); });
        }
        tellWorkFailed(wasFetching, wasUploading, QStringLiteral("the device was disconnected"));
        _context.tellState(CVDeviceStateDelegate::DisconnectedOrNotConnectable);
    } else if (!_context.serialPort) {
        // An attempt owes the device nothing: it ends at once, and its answer is nobody's.
        _rooms.engine.drop();
        _context.isConnectingAsCVComm = false;
        _link->disconnectPeripheral();
    }
    _rooms.files.setFiles({});
}

void DeviceSession::receive(const QByteArray &data, int liveTextLanguage)
{
    if (_rooms.engine.pendingCommand() != CommandEngine::NoCommand) {
        _rooms.engine.handleCommandData(data);
        return;
    }
    // What comes before or after that is the rest of an answer, not what somebody writes.
    const bool isLive = _context.isIdentified && _context.isConnectedAsCVComm;
    if (const auto delegate = isLive ? _context.dataDelegate : nullptr)
        delegate->CV_newDataReceived(TextCodec::decode(data, liveTextLanguage).text);
}

void DeviceSession::linkDidReceive(const QByteArray &data)
{
    receive(data, _rooms.identity.cvKeyboardLanguage());
}

void DeviceSession::linkDidReadSerial(const QString &serial)
{
    _rooms.identity.setCvSerialNumber(serial);
    if (const auto delegate = _context.deviceDelegate)
        delegate->cvBtDeviceSerialRead(_context.device, serial);
}

void DeviceSession::linkDidWrite(const BluetoothResult &error)
{
    _hasFailedWrite = _hasFailedWrite || error;
    _rooms.sender.writeEnded(error);
    const bool isAllWritten = _rooms.sender.unconfirmedWrites() == 0 && _rooms.sender.queuedBytes() == 0;
    if (isAllWritten && !_hasFailedWrite && _rooms.engine.pendingCommand() != CommandEngine::FetchCommand)
        _rooms.files.allIsWritten();
}

void DeviceSession::linkDidEnd(End end, const QString &reason)
{
    const bool wasConnecting = _context.isConnectingAsCVComm;
    // A loss that the platform calls no error shows in a connect sequence only by the silence that follows
    // it.
    const bool waitsForSilence = end == End::WithoutError && wasConnecting;
    const bool wasFetching = _rooms.engine.pendingCommand() == CommandEngine::FetchCommand;
    const bool wasUploading = _rooms.sender.drop();
    if (!waitsForSilence)
        _rooms.engine.drop();
    _rooms.files.drop();
    _rooms.sound.drop();
    _delayedDisconnect.cancel();
    _hasFailedWrite = false;
    _context.isIdentified = false;
    if (end != End::WithoutError)
        _context.endSession();

    tellWorkFailed(wasFetching, wasUploading, reason);
    if (end == End::WithError) {
        _context.idleTimer.setEnabled(true);
        _context.tellState(CVDeviceStateDelegate::ConnectFailedOrLost);
    }
    if (end == End::WithError || end == End::WithoutError)
        _context.observers.tell(&LinkObserver::linkLost, reason);
    else if (end == End::Asked)
        _context.observers.tell(&LinkObserver::linkClosed);
}

void DeviceSession::tellWorkFailed(bool wasFetching, bool wasUploading, const QString &reason)
{
    if (const auto delegate = wasFetching ? _context.downloadDelegate : nullptr)
        delegate->cvFileDownloadFailed(reason);
    if (const auto delegate = wasUploading ? _context.uploadDelegate : nullptr)
        delegate->cvFileUploadFailed(reason);
    _rooms.turn.linkEnded();
}

} // namespace cvtamber
