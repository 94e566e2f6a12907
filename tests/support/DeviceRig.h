// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/CVBTDevice.h"
#include "device/CVBluetoothManager.h"
#include "support/FakeCentral.h"
#include "support/ManualRunLoop.h"
#include "support/Recorders.h"

namespace cvtamber {

// A device object on a scripted central: peripheral "A", time moved by hand, every delegate set but the one
// for downloads, which would hear progress of any reply.
class DeviceRig
{
public:
    DeviceRig();
    ~DeviceRig();

    // 30 fields of 0 but those given; the embosser (field 21) is on unless told otherwise.
    static QByteArray pcrReply(const QList<std::pair<int, QByteArray>> &fields = {});
    static QByteArray defaultVersion() { return "1.2A345SN123456W1"; }

    // Chooses the peripheral and answers up to the moment when the link command has been written.
    void openLink();
    // openLink, then a link reply with the code; confirms the link command. Leaves what the engine sends on.
    void linkWithCode(int code);
    // The whole chain of a type 1 device in single braces; ends connected and identified with nothing
    // pending.
    void identify(const QByteArray &pcr = pcrReply(), const QByteArray &version = defaultVersion(),
                  const QByteArray &listing = {});
    // A reply in notifications of at most 20 bytes, and the silence that ends it.
    void reply(const QByteArray &bytes);
    void notifyInPieces(const QByteArray &bytes, qsizetype pieceSize = 20);
    // All bytes written since the last call, without or with confirming every write.
    QByteArray sent();
    QByteArray drain();
    // Ends the link with an error.
    void loseLink();

    ManualRunLoop loop;
    RecordingLog log;
    FakeIdleTimer idleTimer;
    QStringList journal;
    FakeCentral *central = nullptr;    // the manager's
    FakeCentral *ownCentral = nullptr; // the device object's own, once made
    std::shared_ptr<FakePeripheral> peripheral;
    std::shared_ptr<CVBluetoothManager> manager;
    std::unique_ptr<CVBTDevice> device;
    std::shared_ptr<RecordingDelegates> told = std::make_shared<RecordingDelegates>();
    RecordingObserver observer;

private:
    qsizetype _taken = 0;
};

} // namespace cvtamber
