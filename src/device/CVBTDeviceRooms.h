// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/CVBTDevice.h"
#include "device/CommandEngine.h"
#include "device/CommandSender.h"
#include "device/DeviceContext.h"
#include "device/DeviceFiles.h"
#include "device/DeviceIdentity.h"
#include "device/DeviceSession.h"
#include "device/DeviceTurn.h"
#include "device/SoundUpload.h"

namespace cvtamber {

// The rooms in the order in which they need each other, and the wires between them.
class CVBTDevice::Rooms final : public ReplyHandlers
{
public:
    Rooms(CVBTDevice &device, const CVBTDeviceServices &services);

    void handle_cmdPC_result(bool success, int linkCode) override
    {
        session.handle_cmdPC_result(success, linkCode);
    }
    void handle_cmdVER_result(bool success, const QByteArray &reply) override
    {
        identity.handle_cmdVER_result(success, reply);
    }
    void handle_cmdVER1_result(bool success, const QByteArray &reply) override
    {
        identity.handle_cmdVER1_result(success, reply);
    }
    void handle_cmdPCR_result(bool success) override { identity.handle_cmdPCR_result(success); }
    bool analyzePCRData(const QString &reply) override { return identity.analyzePCRData(reply); }
    void handle_cmdDIR_result(const QByteArray &reply) override { files.handle_cmdDIR_result(reply); }
    void handle_cmdPR_result(QByteArray reply, bool endedBySilence) override
    {
        files.handle_cmdPR_result(std::move(reply), endedBySilence);
    }
    void handle_cmdFLASH_result(QByteArray &buffer) override { sound.handle_cmdFLASH_result(buffer); }
    void commandEnded(int command, DeviceTurn::End end) override
    {
        if (command == CommandEngine::FetchCommand && end == DeviceTurn::End::PushedAside)
            files.fetchPushedAside();
        turn.commandEnded(command, end);
    }
    void downloadProgressOnThread(qsizetype receivedBytes) override
    {
        files.downloadProgressOnThread(receivedBytes);
    }

    bool write(const QByteArray &data);

    // What the connection object calls; apart from the rooms, so that it can be held weakly.
    class ConnectionReceiver final : public CVConnectionDelegate
    {
    public:
        explicit ConnectionReceiver(DeviceSession &session)
            : _session(session)
        {}
        void cvConnectionDidReceiveData(CVConnectionProtocol &, const QByteArray &data) override
        {
            _session.linkDidReceive(data);
        }
        void cvConnectionDidWriteData(CVConnectionProtocol &) override { _session.linkDidWrite({}); }

    private:
        DeviceSession &_session;
    };

    DeviceContext context;
    CommandSender sender;
    CommandEngine engine;
    DeviceTurn turn;
    DeviceIdentity identity;
    DeviceFiles files;
    SoundUpload sound;
    DeviceSession session;
    std::shared_ptr<BluetoothLink> link;
    std::shared_ptr<ConnectionReceiver> connectionReceiver;
};

} // namespace cvtamber
