// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as text of any language and any bare code page.
#include "Require.h"
#include "text/DeviceTables.h"
#include "text/TextCodec.h"

using namespace cvtamber;

namespace {

void checkDecoded(QByteArrayView bytes, const DecodedText &decoded)
{
    require(!decoded.text.isNull(), "the text is never null");
    require(decoded.text.size() == bytes.size(), "one character a byte");
    require(decoded.text.count(QChar::ReplacementCharacter) == decoded.undefined,
            "each undefined byte is told");
    for (const QChar c : decoded.text)
        require(!c.isSurrogate(), "no surrogates");
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<uchar>(bytes[i]);
        require((byte < 128) == (decoded.text[i].unicode() < 128),
                "ASCII is ASCII, and nothing else becomes it");
    }
}

void checkBarePage(QByteArrayView bytes, StringEncoding encoding)
{
    const DecodedText decoded = TextCodec::decodeRaw(bytes, encoding);
    checkDecoded(bytes, decoded);
    const EncodedText back = TextCodec::encodeRaw(decoded.text, encoding);
    require(back.replaced == decoded.undefined, "only undefined bytes are lost");
    require(back.bytes.size() == bytes.size(), "one byte a character");
    for (qsizetype i = 0; i < bytes.size(); ++i)
        require(decoded.text[i] == QChar::ReplacementCharacter || back.bytes[i] == bytes[i],
                "defined bytes come back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const int language = data[0] % (DeviceLanguage::Count + 1);
    const QByteArrayView bytes(data + 1, static_cast<qsizetype>(size) - 1);
    checkDecoded(bytes, TextCodec::decode(bytes, language));
    for (const auto encoding :
         {StringEncoding::Ascii, StringEncoding::WindowsCP1250, StringEncoding::WindowsCP1252,
          StringEncoding::WindowsCP1253, StringEncoding::WindowsCP1256})
        checkBarePage(bytes, encoding);
    return 0;
}
