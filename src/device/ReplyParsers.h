// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/DeviceStateRecord.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace cvtamber {

// What the device's replies say, as pure functions. Any bytes are allowed; what does not fit yields nothing.
namespace ReplyParsers {

// The byte after "{PC" (else after "{pc"), looked for up to the first zero byte; 0 when the reply ends there.
std::optional<int> linkCode(const QByteArray &reply);

struct LinkKind
{
    int connectionType;
    bool doubleBraces;
};
LinkKind linkKind(int linkCode);

struct StateReply
{
    DeviceStateRecord record;
    bool embosserOn;
    bool advancedModeOn;
};
// Thirty numbers separated by comma and space; fewer yield nothing, more are ignored.
std::optional<StateReply> stateReply(const QString &reply);

// Fields of a version reply by position; those that the reply is too short for are absent.
struct VersionReply
{
    std::optional<QString> firmwareVersion; // characters 0 to 6
    std::optional<QString> serialNumber;    // 7 to 14
    std::optional<char16_t> modelDigit;     // 7, where a device of type 1 keeps its model
    std::optional<char16_t> modelLetter;    // 15
    std::optional<quint8> dipSwitch;        // 16: the character's code minus 48, in 8 bits
};
VersionReply versionReply(const QByteArray &reply);

// The number that a text begins with, after white space; 0 when it begins with none, clamped to 32 bits.
qint32 leadingNumber(QStringView text);

} // namespace ReplyParsers

} // namespace cvtamber
