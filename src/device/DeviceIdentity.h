// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/DeviceContext.h"
#include "device/DeviceStateRecord.h"
#include "device/ReplyParsers.h"

#include <functional>

namespace cvtamber {

class CommandEngine;

// Who the device is and how it is set up: the state record, the version replies and what follows from them.
//
// The chain for a link of type 1: state record -> extended version (else version) -> directory, which reports
// state 1. For type 3: version -> state 1. Values keep what the last device told, until another one is chosen; only
// the languages read 0 without a link.
class DeviceIdentity
{
public:
    struct Hooks
    {
        std::function<void()> refreshDirectory;
        // The device has said who it is and how it is set up; before the directory is asked for.
        std::function<void()> stateIsKnown;
        // The connect sequence is over.
        std::function<void()> identified;
    };

    DeviceIdentity(DeviceContext &context, CommandEngine &engine, Hooks hooks);

    bool analyzePCRData(const QString &reply);
    void handle_cmdPCR_result(bool success);
    void handle_cmdVER_result(bool success, const QByteArray &reply);
    void handle_cmdVER1_result(bool success, const QByteArray &reply);

    int cvModel() const { return _cvModel; }
    void setCvModel(int model) { _cvModel = model; }
    QString cvFirmwareVersion() const { return _cvFirmwareVersion; }
    void setCvFirmwareVersion(const QString &version) { _cvFirmwareVersion = version; }
    QString cvSerialNumber() const { return _cvSerialNumber; }
    void setCvSerialNumber(const QString &serial) { _cvSerialNumber = serial; }
    int cvLanguage() const;
    int cvKeyboardLanguage() const;
    char16_t cvLanguageSet() const;
    int cvBrailleCode() const;
    const DeviceStateRecord &record() const { return _pcrData; }
    // What a command has just switched.
    void setRecordField(DeviceStateRecord::Field field, int value) { _pcrData[field] = value; }
    // Another device was chosen: what would not be replaced by its answers is forgotten.
    void forgetDevice();
    void setForwardGrade(int grade);
    void setBackwardGrade(int grade);

private:
    void readModelLetter(const ReplyParsers::VersionReply &version);
    void finishVersion();
    void failIdentification();

    DeviceContext &_context;
    CommandEngine &_engine;
    Hooks _hooks;
    DeviceStateRecord _pcrData;
    QString _cvFirmwareVersion;
    QString _cvSerialNumber;
    int _cvModel = 0;
    quint8 _cvDipSwitch = 255; // 255: not read
};

} // namespace cvtamber
