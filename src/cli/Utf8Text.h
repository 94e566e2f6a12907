// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace cvtamber {

// Where strict UTF-8 ends: the offset of the first byte that begins no well-formed character (overlong
// forms, surrogates and what lies above U+10FFFF are none), or nothing.
std::optional<qsizetype> badUtf8Offset(QByteArrayView bytes);

struct Utf8Text
{
    QString text;
    QString error; // a sentence with the offset; empty when all bytes are text
};

// A local text, without the byte order mark that it may begin with.
Utf8Text readUtf8(QByteArrayView bytes);

} // namespace cvtamber
