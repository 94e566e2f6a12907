// SPDX-License-Identifier: GPL-3.0-or-later
// Any UTF-16 text, also a broken one, as bytes for any language and any bare code page.
#include "Require.h"
#include "text/DeviceTables.h"
#include "text/TextCodec.h"
#include "text/TextComposition.h"
#include "text/TextForDevice.h"

#include <algorithm>
#include <cstring>

using namespace cvtamber;

namespace {

qsizetype surrogatePairs(QStringView text)
{
    qsizetype pairs = 0;
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i].isHighSurrogate() && text[i + 1].isLowSurrogate()) {
            ++pairs;
            ++i;
        }
    }
    return pairs;
}

qsizetype marks(QStringView text)
{
    const auto codePoints = text.toUcs4();
    return std::count_if(codePoints.begin(), codePoints.end(),
                         [](uint c) { return TextComposition::isMark(c); });
}

// Control bytes that the device's own maps give to characters which it has.
bool isMappedControl(char16_t c, int language)
{
    return language == DeviceLanguage::Greek
               ? c == 0x03AA || c == 0x03AB || c == 0x03B0 || c == 0x1FE3 // the same with another accent
               : c == 0xA7 || c == 0xB6;
}

void checkControls(QStringView text, const QByteArray &bytes, int language)
{
    // A mark can turn its base into a mapped character, so each mark may bring one more.
    qsizetype allowed = marks(text);
    for (const QChar c : text)
        allowed += c.unicode() < 32 || c.unicode() == 127 || isMappedControl(c.unicode(), language) ? 1 : 0;
    qsizetype found = 0;
    for (const char byte : bytes)
        found += static_cast<uchar>(byte) < 32 || byte == 127 ? 1 : 0;
    require(found <= allowed, "no control byte that the text does not have");
}

void checkEncoded(QStringView text, const EncodedText &encoded)
{
    const qsizetype longest = text.size() - surrogatePairs(text);
    require(encoded.bytes.size() <= longest, "at most one byte a character");
    require(encoded.bytes.size() >= longest - marks(text), "only marks are taken into their letters");
    require(encoded.bytes.count('?') <= text.count(u'?') + encoded.replaced,
            "each replacement is at most one question mark");
}

void checkBarePage(QStringView text, StringEncoding encoding)
{
    const EncodedText encoded = TextCodec::encodeRaw(text, encoding);
    checkEncoded(text, encoded);
    const DecodedText back = TextCodec::decodeRaw(encoded.bytes, encoding);
    require(back.undefined == 0, "only defined bytes are sent");
    const EncodedText again = TextCodec::encodeRaw(back.text, encoding);
    require(again.bytes == encoded.bytes && again.replaced == 0, "what came back goes out the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const int language = data[0] % (DeviceLanguage::Count + 1);
    QString text(static_cast<qsizetype>((size - 1) / 2), Qt::Uninitialized);
    if (!text.isEmpty())
        std::memcpy(text.data(), data + 1, static_cast<size_t>(text.size()) * 2);

    const EncodedText encoded = TextCodec::encode(text, language);
    checkEncoded(text, encoded);
    checkControls(text, encoded.bytes, language);
    const PlainText plain = plainForDevice(text, language, language);
    require(TextCodec::encode(plain.text, language).replaced == 0, "the device has all of a plain text");
    require(plain.text.count(u'{') <= text.count(u'{') && plain.text.count(u'}') <= text.count(u'}'),
            "no brace that the text does not have");
    for (const auto encoding :
         {StringEncoding::Ascii, StringEncoding::WindowsCP1250, StringEncoding::WindowsCP1252,
          StringEncoding::WindowsCP1253, StringEncoding::WindowsCP1256})
        checkBarePage(text, encoding);
    return 0;
}
