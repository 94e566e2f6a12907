// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/PathBytes.h"

#include <QStringConverter>
#include <QUtf8StringView>

namespace cvtamber {

namespace {

constexpr char16_t SurrogateOfByte = 0xDC00;

bool standsForByte(QChar sign)
{
    return sign.unicode() >= SurrogateOfByte + 0x80 && sign.unicode() <= SurrogateOfByte + 0xFF;
}

QByteArray bytesOfOddPath(const QString &path)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < path.size(); ++i) {
        const QStringView rest = QStringView(path).sliced(i);
        if (!rest.front().isSurrogate()) {
            bytes += rest.first(1).toUtf8();
        } else if (rest.size() > 1 && rest.front().isHighSurrogate() && rest[1].isLowSurrogate()) {
            bytes += rest.first(2).toUtf8();
            ++i;
        } else if (standsForByte(rest.front())) {
            bytes += static_cast<char>(rest.front().unicode() - SurrogateOfByte);
        } else {
            return {};
        }
    }
    return bytes;
}

// The length that the first byte of a UTF-8 sequence announces.
qsizetype sequenceLength(char first)
{
    const auto byte = static_cast<unsigned char>(first);
    if (byte < 0xC0)
        return 1;
    if (byte < 0xE0)
        return 2;
    return byte < 0xF0 ? 3 : 4;
}

QString pathOfOddBytes(QByteArrayView bytes)
{
    QString path;
    while (!bytes.isEmpty()) {
        const QByteArrayView sequence = bytes.first(std::min(sequenceLength(bytes[0]), bytes.size()));
        if (QUtf8StringView(sequence.data(), sequence.size()).isValidUtf8()) {
            QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
            path += QString(decode(sequence));
            bytes = bytes.sliced(sequence.size());
        } else {
            path += QChar(static_cast<char16_t>(SurrogateOfByte + static_cast<unsigned char>(bytes[0])));
            bytes = bytes.sliced(1);
        }
    }
    return path;
}

} // namespace

QByteArray bytesOfPath(const QString &path)
{
    if (path.contains(QChar(u'\0')))
        return {};
    return path.isValidUtf16() ? path.toUtf8() : bytesOfOddPath(path);
}

QString pathOfBytes(QByteArrayView bytes)
{
    QString path = QString::fromUtf8(bytes);
    // Qt drops a byte-order mark and replaces what is not UTF-8.
    if (bytes.startsWith("\xEF\xBB\xBF") || path.contains(QChar(QChar::ReplacementCharacter)))
        return pathOfOddBytes(bytes);
    return path;
}

} // namespace cvtamber
