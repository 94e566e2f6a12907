// SPDX-License-Identifier: GPL-3.0-or-later
// Any line from a Chinese device with its tones put back, in any room, next to a plain reading of the rule.
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

constexpr std::u32string_view Vowels = U"aeiou";
constexpr std::u32string_view Marked[] = {U"āáǎà", U"ēéěè", U"īíǐì", U"ōóǒò", U"ūúǔù"};

bool isInsideWord(const std::u32string &text, size_t at)
{
    return at >= 2 && std::u32string_view(U"\n\r ").find(text[at - 2]) == std::u32string_view::npos;
}

// Looks back over the whole text for each tone.
bool place(std::u32string &text, size_t tone)
{
    for (size_t at = text.size(); at-- > 0;) {
        const char32_t c = text[at];
        if (Vowels.find(c) == std::u32string_view::npos)
            continue;
        const char32_t partner = c == U'i' || c == U'o' ? U'a' : c == U'u' ? U'o' : U'\0';
        const size_t target = partner != 0 && isInsideWord(text, at) && text[at - 1] == partner ? at - 1 : at;
        text[target] = Marked[Vowels.find(text[target])][tone];
        return true;
    }
    return false;
}

std::u32string plainReading(std::u32string_view line, size_t room)
{
    constexpr auto None = std::u32string_view::npos;
    std::u32string text;
    size_t tone = None;
    for (const char32_t c : line) {
        if (text.size() >= room || c == 0)
            break;
        const size_t symbol = std::u32string_view(ToneSymbols, 4).find(c);
        if (symbol == None && tone == None) {
            text += c;
            continue;
        }
        tone = symbol == None ? tone : symbol;
        if (place(text, tone))
            tone = None;
    }
    return text;
}

void checkRoom(const std::u32string &line, qsizetype capacity)
{
    const auto room = std::make_unique<char32_t[]>(static_cast<size_t>(std::max<qsizetype>(capacity, 1)));
    const qsizetype written = pinyinToneSymbolsToMarks(line.c_str(), room.get(), capacity, ToneSymbols);
    const auto most = static_cast<size_t>(std::max<qsizetype>(capacity - 1, 0));
    require(std::u32string_view(room.get(), static_cast<size_t>(written)) == plainReading(line, most),
            "as the rule says");
    require(room[static_cast<size_t>(written)] == 0, "a zero at the end");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    // Bytes, as the device sends them, and UTF-16.
    QString line =
        QString::fromLatin1(reinterpret_cast<const char *>(data) + 1, static_cast<qsizetype>(size) - 1);
    if ((data[0] & 1U) != 0) {
        line.resize(static_cast<qsizetype>((size - 1) / 2));
        if (!line.isEmpty())
            std::memcpy(line.data(), data + 1, static_cast<size_t>(line.size()) * 2);
    }

    const std::u32string source = line.toStdU32String();
    require(marksForToneSymbols(line).toStdU32String() == plainReading(source, source.size()),
            "the whole line");
    checkRoom(source, data[0] / 2 - 4);
    checkRoom(source, static_cast<qsizetype>(source.size()) + data[0] / 2 - 64);
    return 0;
}
