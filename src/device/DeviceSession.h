// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "device/BluetoothLink.h"
#include "device/DeviceContext.h"

namespace cvtamber {

class CommandEngine;
class CommandSender;
class DeviceFiles;
class DeviceIdentity;
class DeviceTurn;
class OwnScan;
class SoundUpload;

// The session over a link: the link command and its answer, disconnecting, and what an end of the link ends.
//
// Everything that was under way when the link ends is dropped before anyone is told, so that nothing of it
// reaches the next link. A fetch that was running is told as failed, its text is never handed over.
class DeviceSession final : public BluetoothLinkClient
{
public:
    struct Rooms
    {
        CommandEngine &engine;
        DeviceTurn &turn;
        CommandSender &sender;
        DeviceIdentity &identity;
        DeviceFiles &files;
        SoundUpload &sound;
    };

    DeviceSession(DeviceContext &context, const Rooms &rooms);
    // Given after the link was made, which itself needs the session.
    void setLink(const std::shared_ptr<BluetoothLink> &link, BluetoothCentralFactory makeCentral);

    void connectAsCVComm(const std::weak_ptr<CVConnectionDelegate> &connectionDelegate);
    void connectAsCVCommWithPeripheral(const BluetoothPeripheralPtr &peripheral);
    void connectPC() override;
    void disconnectAsCVComm();
    void handle_cmdPC_result(bool success, int linkCode);
    // The one end of a connect sequence that went well; nothing while none runs. State 1 is told where there is a link,
    // of whatever kind.
    void identified();

    void receive(const QByteArray &data, int liveTextLanguage);
    void linkDidReceive(const QByteArray &data) override;
    void linkDidReadSerial(const QString &serial) override;
    void linkDidWrite(const BluetoothResult &error) override;
    void linkDidEnd(End end, const QString &reason) override;

private:
    void startBTTimer();
    void stopBTTimer();
    bool linkIsUp() const;
    void tellWorkFailed(bool wasFetching, bool wasUploading, const QString &reason);

    DeviceContext &_context;
    Rooms _rooms;
    std::shared_ptr<BluetoothLink> _link;
    std::shared_ptr<OwnScan> _ownScan;
    QString _chosenIdentifier; // of the peripheral that was chosen last
    bool _hasFailedWrite = false;
    DelayedCall _btTimer;
    DelayedCall _delayedDisconnect;
};

} // namespace cvtamber
