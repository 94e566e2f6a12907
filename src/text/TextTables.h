// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "text/CodePages.h"
#include "text/DeviceByteMaps.h"

#include <QtGlobal>

#include <array>

namespace cvtamber {

// Characters to bytes in two steps of one look-up each: a block for the upper byte of the UTF-16 unit, then
// the entry for the lower one. Small enough to stay in the first-level cache.
class EncodeTable
{
public:
    // Set in the entry of a character that has no byte; the lower eight bits are then "?".
    static constexpr quint16 Lacking = 0x100;

    // `outMap` gives the byte that is sent for a byte of the code page.
    template<typename OutMap>
    static constexpr EncodeTable make(const CodePages::UpperHalf &page, OutMap outMap)
    {
        EncodeTable table;
        for (auto &block : table._blocks)
            block.fill(Lacking | u'?');
        table._blockOf[0] = 1;
        for (char16_t c = 0; c < 128; ++c)
            table._blocks[1][c] = c;
        quint8 used = 2;
        for (size_t i = 0; i < page.size(); ++i) {
            const char16_t c = page[i];
            if (c == CodePages::Undefined)
                continue;
            quint8 &block = table._blockOf[c >> 8];
            if (block == 0)
                block = used++;
            table._blocks[block][c & 0xFF] = outMap(static_cast<quint8>(128 + i));
        }
        return table;
    }

    constexpr quint16 operator[](char16_t c) const { return _blocks[_blockOf[c >> 8]][c & 0xFF]; }

private:
    static constexpr size_t MaxBlocks = 8; // block 0 is that of upper bytes without any character

    std::array<quint8, 256> _blockOf{};
    std::array<std::array<quint16, 256>, MaxBlocks> _blocks{};
};

// Bytes to characters; U+FFFD for a byte that is not defined.
using DecodeTable = std::array<char16_t, 256>;

// `inMap` gives the byte of the code page for a byte that was received.
template<typename InMap> constexpr DecodeTable makeDecodeTable(const CodePages::UpperHalf &page, InMap inMap)
{
    DecodeTable table{};
    for (size_t i = 0; i < table.size(); ++i) {
        const quint8 byte = inMap(static_cast<quint8>(i));
        table[i] = byte < 128 ? byte : page[byte - 128U];
    }
    return table;
}

} // namespace cvtamber
