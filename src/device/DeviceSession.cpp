// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/DeviceSession.h"

#include "device/CommandEngine.h"
#include "device/CommandSender.h"
#include "device/DeviceFiles.h"
#include "device/DeviceIdentity.h"
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
}

void DeviceSession::connectPC()
{
    stopBTTimer();
    _rooms.sender.setDoubleBraces(true);
    _context.isConnectingAsCVComm = true;
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
        if (std::exchange(_context.isConnectingAsCVComm, false) && linkIsUp())
            _context.tellState(CVDeviceStateDelegate::ConnectedAndIdentified);
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
        _context.isConnectingAsCVComm = false;
        _rooms.engine.sendCommand(QStringLiteral("NW OFF"));
        _rooms.engine.sendCommand(QStringLiteral("PC %1 OFF").arg(_context.portName()));
        if (_context.serialPort)
            _rooms.engine.sendCommand(QStringLiteral("USB HS H"));
        _context.isConnectedAsCVComm = false;
        _context.connectionType = 0;
        _context.stringEncoding = StringEncoding::Ascii;
        if (!_context.serialPort) {
            _link->expectEnd();
            _delayedDisconnect.start(disconnectDelay, [this] { _link->disconnectPeripheral(); });
        }
        if (wasFetching)
            dropFetch(QStringLiteral("the device was disconnected"));
        _context.tellState(CVDeviceStateDelegate::DisconnectedOrNotConnectable);
    }
    _rooms.files.setFiles({});
}

void DeviceSession::receive(const QByteArray &data, int liveTextLanguage)
{
    if (_rooms.engine.pendingCommand() != CommandEngine::NoCommand)
        _rooms.engine.handleCommandData(data);
    else if (const auto delegate = _context.dataDelegate)
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
    _rooms.sender.writeEnded(error);
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
    if (end != End::WithoutError) {
        _context.isConnectingAsCVComm = false;
        _context.isConnectedAsCVComm = false;
        _context.connectionType = 0;
        _context.stringEncoding = StringEncoding::Ascii;
    }

    if (wasFetching)
        dropFetch(reason);
    const auto uploadDelegate = _context.uploadDelegate;
    if (wasUploading && uploadDelegate)
        uploadDelegate->cvFileUploadFailed(reason);
    if (end == End::WithError) {
        _context.idleTimer.setEnabled(true);
        _context.tellState(CVDeviceStateDelegate::ConnectFailedOrLost);
    }
    if (end == End::WithError || end == End::WithoutError)
        _context.observers.tell(&LinkObserver::linkLost, reason);
    else if (end == End::Asked)
        _context.observers.tell(&LinkObserver::linkClosed);
}

void DeviceSession::dropFetch(const QString &reason)
{
    if (const auto delegate = _context.downloadDelegate)
        delegate->cvFileDownloadFailed(reason);
}

} // namespace cvtamber
