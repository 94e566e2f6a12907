// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QByteArray>

#include <memory>

namespace cvtamber {

class CVConnectionProtocol;

// Hooks for links other than Bluetooth. Nothing in the programs makes one; what is set takes the bytes
// instead.

class CVConnectionDelegate : public InterfaceBase
{
public:
    virtual void cvConnectionDidReceiveData(CVConnectionProtocol &connection, const QByteArray &data) = 0;
    // The bytes of one sendData have left: the next piece may go.
    virtual void cvConnectionDidWriteData(CVConnectionProtocol &connection) = 0;
};

class CVConnectionProtocol : public InterfaceBase
{
public:
    virtual void setDelegate(const std::weak_ptr<CVConnectionDelegate> &delegate) = 0;
    virtual void sendData(const QByteArray &data) = 0;
};

class CVSerialPort : public InterfaceBase
{
public:
    // Answered by CVBTDevice::serialPortDidWriteData.
    virtual void sendData(const QByteArray &data) = 0;
};

} // namespace cvtamber
