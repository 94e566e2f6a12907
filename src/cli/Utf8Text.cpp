// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Utf8Text.h"

#include <QStringDecoder>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// How a well-formed character that begins with this byte goes on (Unicode, table 3-7): its length, and the
// range of its second byte. Length 0: no character begins so.
struct Sequence
{
    int length;
    unsigned char secondFrom = 0x80;
    unsigned char secondTo = 0xBF;
};

Sequence sequenceFor(unsigned char first)
{
    if (first < 0x80)
        return {1};
    if (first < 0xC2)
        return {0};
    if (first < 0xE0)
        return {2};
    if (first < 0xF0)
        return {3, static_cast<unsigned char>(first == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(first == 0xED ? 0x9F : 0xBF)};
    if (first < 0xF5)
        return {4, static_cast<unsigned char>(first == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(first == 0xF4 ? 0x8F : 0xBF)};
    return {0};
}

bool isWellFormed(QByteArrayView bytes, const Sequence &sequence)
{
    if (sequence.length == 0 || bytes.size() < sequence.length)
        return false;
    for (int i = 1; i < sequence.length; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const bool fits =
            i == 1 ? byte >= sequence.secondFrom && byte <= sequence.secondTo : (byte & 0xC0U) == 0x80U;
        if (!fits)
            return false;
    }
    return true;
}

} // namespace

std::optional<qsizetype> badUtf8Offset(QByteArrayView bytes)
{
    qsizetype at = 0;
    while (at < bytes.size()) {
        const Sequence sequence = sequenceFor(static_cast<unsigned char>(bytes[at]));
        if (!isWellFormed(bytes.sliced(at), sequence))
            return at;
        at += sequence.length;
    }
    return std::nullopt;
}

Utf8Text readUtf8(QByteArrayView bytes)
{
    if (const auto offset = badUtf8Offset(bytes))
        return {{}, u"This is no UTF-8 text: the byte at offset %1 does not belong in one."_s.arg(*offset)};
    if (bytes.startsWith(QByteArrayView("\xEF\xBB\xBF")))
        bytes = bytes.sliced(3);
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom);
    return {decoder(bytes), {}};
}

} // namespace cvtamber
