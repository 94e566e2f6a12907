// SPDX-License-Identifier: GPL-3.0-or-later
// Any UTF-16 text, also a broken one, as pinyin and as what a Chinese device is sent, in any room.
#include "Require.h"
#include "chat/text/ChineseText.h"
#include "chat/text/Pinyin.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

using namespace cvtamber;

namespace {

bool isMarked(char32_t c)
{
    return std::u32string_view(U"āáǎàēéěèīíǐìōóǒòūúǔù").find(c) != std::u32string_view::npos;
}

bool isHanzi(QChar c)
{
    return c.unicode() >= 0x4E00 && c.unicode() <= 0x9FA5;
}

void checkPinyin(const QString &text, const QString &pinyin)
{
    require(std::none_of(pinyin.begin(), pinyin.end(), isHanzi), "every Hanzi has a reading");
    require(pinyin.size() >= text.size() && pinyin.size() <= 7 * text.size(),
            "at most six letters and a space");
}

// The same text into a room of any size: the beginning of the whole.
void checkRoom(const std::u32string &source, const std::u32string &whole, qsizetype capacity)
{
    const auto room = std::make_unique<char32_t[]>(static_cast<size_t>(std::max<qsizetype>(capacity, 1)));
    const qsizetype written = pinyinMarksToToneSymbols(source.data(), static_cast<qsizetype>(source.size()),
                                                       room.get(), capacity, ToneSymbols);
    require(written == std::clamp<qsizetype>(capacity, 0, static_cast<qsizetype>(whole.size())),
            "all that there is room for");
    if (written > 0)
        require(room[static_cast<size_t>(written) - 1] == 0, "a zero at the end");
    for (qsizetype i = 0; i + 1 < written; ++i)
        require(room[static_cast<size_t>(i)] == whole[static_cast<size_t>(i)], "the beginning of the whole");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    QString text(static_cast<qsizetype>((size - 1) / 2), Qt::Uninitialized);
    if (!text.isEmpty())
        std::memcpy(text.data(), data + 1, static_cast<size_t>(text.size()) * 2);

    const QString pinyin = pinyinForText(text);
    checkPinyin(text, pinyin);
    const std::u32string sent = toneSymbolsForPinyin(pinyin).toStdU32String();
    require(!sent.empty() && sent.back() == 0, "a zero at the end of what is sent");
    require(std::none_of(sent.begin(), sent.end(), isMarked), "no mark is sent");
    const std::u32string source = pinyin.toStdU32String();
    require(sent.size() > source.size() && sent.size() <= 2 * source.size() + 1,
            "nothing but symbols is added");
    checkRoom(source, sent, data[0] - 4);
    checkRoom(source, sent, static_cast<qsizetype>(sent.size()) + data[0] - 128);
    return 0;
}
