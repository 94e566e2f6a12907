// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/ReplyParsers.h"

#include "text/TextCodec.h"

#include <QList>

#include <algorithm>
#include <limits>

namespace cvtamber::ReplyParsers {

std::optional<int> linkCode(const QByteArray &reply)
{
    const QByteArrayView searched(reply.constData(),
                                  static_cast<qsizetype>(qstrnlen(reply.constData(), reply.size())));
    for (const QByteArrayView word : {QByteArrayView("{PC"), QByteArrayView("{pc")}) {
        const qsizetype found = searched.indexOf(word);
        if (found < 0)
            continue;
        const qsizetype code = found + word.size();
        return code < searched.size() ? static_cast<quint8>(searched[code]) : 0;
    }
    return std::nullopt;
}

LinkKind linkKind(int linkCode)
{
    const bool doubleBraces = linkCode == 0 || linkCode == 17 || linkCode == 26;
    switch (linkCode) {
    case 32:
    case 42:
        return {6, doubleBraces};
    case 33:
    case 43:
        return {5, doubleBraces};
    case 34:
    case 44:
        return {3, doubleBraces};
    case 35:
    case 45:
        return {4, doubleBraces};
    case 46:
    case 47:
        return {2, true};
    default:
        return {1, doubleBraces};
    }
}

std::optional<StateReply> stateReply(const QString &reply)
{
    const QList<QStringView> pieces = QStringView(reply).split(QStringLiteral(", "));
    if (pieces.size() < DeviceStateRecord::FieldCount)
        return std::nullopt;
    const auto isOn = [&pieces](int field) { return pieces[field] != QStringLiteral("0"); };
    StateReply result{{}, isOn(DeviceStateRecord::EmbosserOutput), isOn(DeviceStateRecord::AdvancedMode)};
    for (int field = 0; field < DeviceStateRecord::FieldCount; ++field)
        result.record[field] = leadingNumber(pieces[field]);
    return result;
}

VersionReply versionReply(const QByteArray &reply)
{
    // One character a byte, so that positions hold whatever the bytes are.
    const QString text = TextCodec::decodeRaw(reply.left(17), StringEncoding::Ascii).text;
    const auto character = [&text](qsizetype index) -> std::optional<char16_t> {
        return index < text.size() ? std::optional<char16_t>(text[index].unicode()) : std::nullopt;
    };
    VersionReply result;
    if (text.size() >= 7)
        result.firmwareVersion = text.left(7);
    if (text.size() >= 15)
        result.serialNumber = text.mid(7, 8);
    result.modelDigit = character(7);
    result.modelLetter = character(15);
    if (const auto digit = character(16))
        result.dipSwitch = static_cast<quint8>(static_cast<unsigned>(*digit) - 48U);
    return result;
}

qint32 leadingNumber(QStringView text)
{
    text = text.trimmed();
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        text = text.mid(1);
    constexpr qint64 most = std::numeric_limits<qint32>::max();
    qint64 value = 0;
    for (const QChar digit : text) {
        if (digit < u'0' || digit > u'9')
            break;
        value = std::min(value * 10 + (digit.unicode() - u'0'), most + 1);
    }
    return static_cast<qint32>(negative ? -value : std::min(value, most));
}

} // namespace cvtamber::ReplyParsers
