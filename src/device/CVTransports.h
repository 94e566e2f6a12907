// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <memory>

namespace cvtamber {

class CVConnectionProtocol;

// Hooks for links other than Bluetooth. Nothing in the programs makes one; what is set takes the bytes
// instead.

class CVConnectionDelegate
{
public:
    CVConnectionDelegate() = default;
    CVConnectionDelegate(const CVConnectionDelegate &) = delete;
    CVConnectionDelegate &operator=(const CVConnectionDelegate &) = delete;
    virtual ~CVConnectionDelegate() = default;

    virtual void cvConnectionDidReceiveData(CVConnectionProtocol &connection, const QByteArray &data) = 0;
    // The bytes of one sendData have left: the next piece may go.
    virtual void cvConnectionDidWriteData(CVConnectionProtocol &connection) = 0;
};

class CVConnectionProtocol
{
public:
    CVConnectionProtocol() = default;
    CVConnectionProtocol(const CVConnectionProtocol &) = delete;
    CVConnectionProtocol &operator=(const CVConnectionProtocol &) = delete;
    virtual ~CVConnectionProtocol() = default;

    virtual void setDelegate(const std::weak_ptr<CVConnectionDelegate> &delegate) = 0;
    virtual void sendData(const QByteArray &data) = 0;
};

class CVSerialPort
{
public:
    CVSerialPort() = default;
    CVSerialPort(const CVSerialPort &) = delete;
    CVSerialPort &operator=(const CVSerialPort &) = delete;
    virtual ~CVSerialPort() = default;

    // Answered by CVBTDevice::serialPortDidWriteData.
    virtual void sendData(const QByteArray &data) = 0;
};

} // namespace cvtamber
