// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace cvtamber {

// Text as the device's bytes and back, for each of its languages (numbers as in DeviceTables.h).
//
// A language selects a Windows code page (1250 for Polish, 1253 for Greek, 1256 for Arabic, 1252 for all
// others) and maps from that page's upper half to the device's own codes and back. The two directions are not
// inverse to each other; the maps are the device's. Bytes below 128 are the same everywhere. A text's composed and its
// decomposed spelling give the same bytes. Pure and without state; any thread. Cost is linear in the text, memory is
// the result once.

struct EncodedText
{
    QByteArray bytes;
    // Characters, each with the marks that stand on it, of which the code page lacks something. A letter keeps its
    // base ("s" for U+0219), all else becomes "?"; in a bare code page all become "?".
    qsizetype replaced = 0;
};

struct DecodedText
{
    QString text; // never null
    // Bytes that the code page does not define: U+FFFD each.
    qsizetype undefined = 0;
};

// The platform-independent numbers under which code pages for undecoded replies are kept.
enum class StringEncoding : quint64 {
    Ascii = 1,
    WindowsCP1252 = 12,
    WindowsCP1253 = 13,
    WindowsCP1250 = 15,
    WindowsCP1256 = 0x80000506,
};

namespace TextCodec {

EncodedText encode(QStringView text, int language);
DecodedText decode(QByteArrayView bytes, int language);
// The code page that a language selects.
StringEncoding codePageOf(int language);

// A reply in a code page alone, without the device's map. ASCII defines the bytes 0 to 127.
DecodedText decodeRaw(QByteArrayView bytes, StringEncoding encoding);
// What the bare code page makes of the text, "?" for what it lacks.
EncodedText encodeRaw(QStringView text, StringEncoding encoding);

} // namespace TextCodec

} // namespace cvtamber
