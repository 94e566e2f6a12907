// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Observers.h"
#include "base/RunLoop.h"
#include "base/SystemLog.h"
#include "device/CVDeviceDelegates.h"
#include "device/CVTransports.h"
#include "device/IdleTimer.h"
#include "device/LinkObserver.h"
#include "text/TextCodec.h"

#include <deque>
#include <memory>

namespace cvtamber {

// What the rooms of one device object share: its surroundings, its delegates and the state of its session.
struct DeviceContext
{
    DeviceContext(CVBTDevice &owner, RunLoop &loop, SystemLog &systemLog, IdleTimer &idle)
        : device(owner)
        , runLoop(loop)
        , log(systemLog)
        , idleTimer(idle)
    {}

    CVBTDevice &device;
    RunLoop &runLoop;
    SystemLog &log;
    IdleTimer &idleTimer;

    std::shared_ptr<CVDeviceStateDelegate> stateDelegate;
    std::shared_ptr<CVDownloadFileDelegate> downloadDelegate;
    std::shared_ptr<CVUploadFileDelegate> uploadDelegate;
    std::shared_ptr<CVDataDelegate> dataDelegate;
    std::shared_ptr<CVBTDeviceDelegate> deviceDelegate;
    Observers<LinkObserver> observers;
    std::deque<int> untoldStates;

    std::shared_ptr<CVConnectionProtocol> connection;
    std::shared_ptr<CVSerialPort> serialPort;

    bool isConnectedAsCVComm = false;
    // A connect sequence runs and has not been reported yet.
    bool isConnectingAsCVComm = false;
    // State 1 was told for the link that is up.
    bool isIdentified = false;
    int connectionType = 0;
    StringEncoding stringEncoding = StringEncoding::Ascii;
    bool advancedModeOn = false;
    bool embosserOn = true;
    // A mode of the device was toggled for a transfer and is to be toggled back. The third is kept and
    // unused.
    bool restoreAdvancedMode = false;
    bool restoreBackwardTranslation = false;
    bool restoreForwardTranslation = false;

    // A state that changes inside a call is told after it, so that all hear the states in their order. The delegate
    // may replace itself inside the call, so it is held for its length.
    void tellState(int state)
    {
        untoldStates.push_back(state);
        if (untoldStates.size() > 1)
            return;
        for (; !untoldStates.empty(); untoldStates.pop_front()) {
            if (const auto delegate = stateDelegate)
                delegate->corvaneDeviceStateChanged(untoldStates.front());
            observers.tell(&LinkObserver::linkStateChanged, untoldStates.front());
        }
    }
    void endSession()
    {
        isIdentified = false;
        isConnectingAsCVComm = false;
        isConnectedAsCVComm = false;
        connectionType = 0;
        stringEncoding = StringEncoding::Ascii;
    }
    QString portName() const { return serialPort ? QStringLiteral("USB") : QStringLiteral("S2"); }
};

} // namespace cvtamber
