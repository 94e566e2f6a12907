// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/DeviceIdentity.h"

#include "device/CommandEngine.h"
#include "text/DeviceTables.h"

#include <utility>

namespace cvtamber {

namespace {

// The code page of replies that do not go through the device's own map. Greek stays with 1252 here.
StringEncoding encodingForLanguage(int language)
{
    switch (language) {
    case DeviceLanguage::Arabic:
        return StringEncoding::WindowsCP1256;
    case DeviceLanguage::Polish:
        return StringEncoding::WindowsCP1250;
    default:
        return StringEncoding::WindowsCP1252;
    }
}

} // namespace

DeviceIdentity::DeviceIdentity(DeviceContext &context, CommandEngine &engine, Hooks hooks)
    : _context(context)
    , _engine(engine)
    , _hooks(std::move(hooks))
{}

bool DeviceIdentity::analyzePCRData(const QString &reply)
{
    const auto state = ReplyParsers::stateReply(reply);
    if (!state)
        return false;
    _context.embosserOn = state->embosserOn;
    _context.advancedModeOn = state->advancedModeOn;
    _pcrData = state->record;
    return true;
}

void DeviceIdentity::handle_cmdPCR_result(bool success)
{
    if (!success) {
        failIdentification();
        return;
    }
    _context.stringEncoding = encodingForLanguage(_pcrData[DeviceStateRecord::LanguageNumber]);
    _engine.sendWaitCommand(CommandEngine::ExtendedVersionCommand);
}

void DeviceIdentity::handle_cmdVER1_result(bool success, const QByteArray &reply)
{
    if (!success) {
        _engine.sendWaitCommand(CommandEngine::VersionCommand);
        return;
    }
    const auto version = ReplyParsers::versionReply(reply);
    if (version.firmwareVersion)
        _cvFirmwareVersion = *version.firmwareVersion;
    if (_cvSerialNumber.isNull() && version.serialNumber)
        _cvSerialNumber = *version.serialNumber;
    readModelLetter(version);
    if (version.dipSwitch)
        _cvDipSwitch = *version.dipSwitch;
    finishVersion();
}

void DeviceIdentity::handle_cmdVER_result(bool success, const QByteArray &reply)
{
    if (!success) {
        failIdentification();
        return;
    }
    const auto version = ReplyParsers::versionReply(reply);
    if (version.firmwareVersion)
        _cvFirmwareVersion = *version.firmwareVersion;
    if (_context.connectionType == 3) {
        if (version.serialNumber)
            _cvSerialNumber = *version.serialNumber;
        readModelLetter(version);
        _hooks.identified();
    } else if (_context.connectionType == 1) {
        const char16_t digit = version.modelDigit.value_or(u' ');
        if (digit >= u'0' && digit <= u'3')
            _cvModel = digit - u'0' + 1;
        finishVersion();
    }
}

void DeviceIdentity::readModelLetter(const ReplyParsers::VersionReply &version)
{
    const int model = modelFromLetter(version.modelLetter.value_or(u' '));
    if (model >= 0)
        _cvModel = model;
}

void DeviceIdentity::finishVersion()
{
    _engine.sendCommand(QStringLiteral("NW"));
    _hooks.stateIsKnown();
    _hooks.refreshDirectory();
}

void DeviceIdentity::forgetDevice()
{
    _cvSerialNumber.clear();
    _cvDipSwitch = 255;
}

void DeviceIdentity::failIdentification()
{
    _context.idleTimer.setEnabled(true);
    if (std::exchange(_context.isConnectingAsCVComm, false))
        _context.tellState(CVDeviceStateDelegate::ConnectFailedOrLost);
}

int DeviceIdentity::cvKeyboardLanguage() const
{
    return _context.isConnectedAsCVComm ? _pcrData[DeviceStateRecord::LanguageNumber]
                                        : DeviceLanguage::Unknown;
}

int DeviceIdentity::cvLanguage() const
{
    if (_context.isConnectedAsCVComm && _cvDipSwitch < 255)
        return languageFromSetAndDipSwitch(cvLanguageSet(), _cvDipSwitch);
    return cvKeyboardLanguage();
}

char16_t DeviceIdentity::cvLanguageSet() const
{
    return _cvFirmwareVersion.size() > 3 ? _cvFirmwareVersion[3].unicode() : u'\0';
}

int DeviceIdentity::cvBrailleCode() const
{
    return brailleCodeFromField(_pcrData[DeviceStateRecord::BrailleCodeSetting], cvLanguageSet());
}

void DeviceIdentity::setForwardGrade(int grade)
{
    _pcrData[DeviceStateRecord::ForwardGrade] = grade;
    if (_context.isConnectedAsCVComm)
        _engine.sendCommand(QStringLiteral("FGR %1").arg(grade));
}

void DeviceIdentity::setBackwardGrade(int grade)
{
    _pcrData[DeviceStateRecord::BackwardGrade] = grade;
    if (_context.isConnectedAsCVComm)
        _engine.sendCommand(QStringLiteral("BGR %1").arg(grade));
}

} // namespace cvtamber
