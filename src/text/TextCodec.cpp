// SPDX-License-Identifier: GPL-3.0-or-later
#include "text/TextCodec.h"

#include "text/DeviceTables.h"
#include "text/TextComposition.h"
#include "text/TextTables.h"

#include <QChar>

#include <algorithm>
#include <bitset>
#include <cstring>

namespace cvtamber::TextCodec {

namespace {

constexpr quint8 unchanged(quint8 byte)
{
    return byte;
}

constexpr quint8 frenchOut(quint8 byte)
{
    using namespace DeviceByteMaps;
    return byte == FrenchLigatureInPage ? FrenchLigatureOnDevice : WesternOut(byte);
}

constexpr quint8 westernIn(quint8 byte)
{
    using namespace DeviceByteMaps;
    return byte == SharpSOnDevice ? SharpSInPage : WesternIn(byte);
}

constexpr quint8 frenchIn(quint8 byte)
{
    using namespace DeviceByteMaps;
    if (byte == FrenchLigatureOnDevice)
        return FrenchLigatureInPage;
    return byte == FrenchSmallLigature ? byte : westernIn(byte);
}

constexpr quint8 greekIn(quint8 byte)
{
    using namespace DeviceByteMaps;
    return byte >= GreekAccentsIn.first ? GreekAccentsIn(byte) : GreekIn(byte);
}

constexpr CodePages::UpperHalf noUpperHalf()
{
    CodePages::UpperHalf page{};
    page.fill(CodePages::Undefined);
    return page;
}

// Both directions of one device language or one bare code page.
struct Tables
{
    EncodeTable out;
    DecodeTable in;
};

template<typename OutMap, typename InMap>
constexpr Tables makeTables(const CodePages::UpperHalf &page, OutMap outMap, InMap inMap)
{
    return {EncodeTable::make(page, outMap), makeDecodeTable(page, inMap)};
}

constexpr Tables Western = makeTables(CodePages::Windows1252, DeviceByteMaps::WesternOut, westernIn);
constexpr Tables French = makeTables(CodePages::Windows1252, frenchOut, frenchIn);
constexpr Tables Greek = makeTables(CodePages::Windows1253, DeviceByteMaps::GreekOut, greekIn);
constexpr Tables BareAscii = makeTables(noUpperHalf(), unchanged, unchanged);
constexpr Tables Bare1250 = makeTables(CodePages::Windows1250, unchanged, unchanged);
constexpr Tables Bare1252 = makeTables(CodePages::Windows1252, unchanged, unchanged);
constexpr Tables Bare1253 = makeTables(CodePages::Windows1253, unchanged, unchanged);
constexpr Tables Bare1256 = makeTables(CodePages::Windows1256, unchanged, unchanged);

const Tables &tablesFor(int language)
{
    switch (language) {
    case DeviceLanguage::French:
        return French;
    case DeviceLanguage::Greek:
        return Greek;
    case DeviceLanguage::Polish: // the device uses the code page itself
        return Bare1250;
    case DeviceLanguage::Arabic:
        return Bare1256;
    default:
        return Western;
    }
}

const Tables &tablesFor(StringEncoding encoding)
{
    switch (encoding) {
    case StringEncoding::Ascii:
        break;
    case StringEncoding::WindowsCP1250:
        return Bare1250;
    case StringEncoding::WindowsCP1252:
        return Bare1252;
    case StringEncoding::WindowsCP1253:
        return Bare1253;
    case StringEncoding::WindowsCP1256:
        return Bare1256;
    }
    return BareAscii;
}

// Characters handled at a time: a size that compilers turn into vector instructions.
constexpr int BlockSize = 16;

// What becomes of a character that the page lacks.
enum class Lacking { BaseLetter, QuestionMark };

// One text on its way out. Writes at most one byte a UTF-16 unit.
class Encoder
{
public:
    Encoder(QStringView text, const EncodeTable &table, Lacking lacking, uchar *out)
        : _table(table)
        , _keepsBase(lacking == Lacking::BaseLetter)
        , _begin(text.utf16())
        , _end(_begin + text.size())
        , _in(_begin)
        , _out(out)
    {}

    // The end of what was written.
    uchar *run()
    {
        while (_end - _in >= BlockSize) {
            if (narrowBlock() || lookUpBlock()) {
                _in += BlockSize;
                _out += BlockSize;
                continue;
            }
            const char16_t *const blockEnd = _in + BlockSize;
            while (_in < blockEnd)
                encodeOne();
        }
        while (_in < _end)
            encodeOne();
        return _out;
    }

    qsizetype replaced() const { return _replaced; }

private:
    // A character that was written, and the marks that stand on it. A mark that did not compose keeps later ones of
    // its class from composing, as in Unicode's composition.
    struct Cluster
    {
        char16_t base = u'\0'; // 0: nothing composes with it
        uchar *out = nullptr;
        std::bitset<256> staying;
        bool isCounted = false;
    };

    // Both work on local copies: the compiler must take a byte that is stored for a possible change of any
    // member. A block given up leaves bytes behind that are written again.

    // False when the block is not all ASCII.
    bool narrowBlock()
    {
        const char16_t *const in = _in;
        unsigned seen = 0;
        for (int i = 0; i < BlockSize; ++i)
            seen |= in[i];
        if (seen >= 128)
            return false;
        std::array<uchar, BlockSize> bytes{};
        for (size_t i = 0; i < BlockSize; ++i)
            bytes[i] = static_cast<uchar>(in[i]);
        std::memcpy(_out, bytes.data(), BlockSize);
        return true;
    }

    // False when the block holds a character without a byte.
    bool lookUpBlock()
    {
        const EncodeTable &table = _table;
        const char16_t *const in = _in;
        uchar *const out = _out;
        unsigned seen = 0;
        for (int i = 0; i < BlockSize; ++i) {
            const unsigned entry = table[in[i]];
            seen |= entry;
            out[i] = static_cast<uchar>(entry);
        }
        return (seen & EncodeTable::Lacking) == 0;
    }

    char32_t next() const
    {
        const bool isPair = QChar::isHighSurrogate(*_in) && _end - _in > 1 && QChar::isLowSurrogate(_in[1]);
        return isPair ? QChar::surrogateToUcs4(_in[0], _in[1]) : *_in;
    }

    void encodeOne()
    {
        const quint16 entry = _table[*_in];
        if (entry < EncodeTable::Lacking) {
            *_out++ = static_cast<uchar>(entry);
            ++_in;
        } else if (const char32_t c = next(); _in > _begin && TextComposition::isMark(c)) {
            encodeMarks();
        } else {
            encodeLacking(c);
        }
    }

    // Takes the marks from the first one that the page lacks to the last, and composes those it can with the
    // character they stand on, which has been written already.
    void encodeMarks()
    {
        Cluster cluster;
        const char16_t *starter = _in;
        while (starter > _begin && TextComposition::isMark(*--starter))
            cluster.staying.set(QChar::combiningClass(*starter));
        // One byte a unit since the starter: a unit without a byte would have brought us here before.
        cluster.out = _out - (_in - starter);
        cluster.base = *starter;
        takeMarks(cluster);
    }

    // Both spellings of a text give the same bytes: the parts of a composed character are taken like those that
    // were written apart.
    void encodeLacking(char32_t c)
    {
        const QString parts = _keepsBase ? TextComposition::canonicalParts(c) : QString();
        const char16_t base = parts.isEmpty() ? u'\0' : parts.front().unicode();
        const quint16 entry = parts.isEmpty() ? quint16{EncodeTable::Lacking} : _table[base];
        Cluster cluster;
        cluster.out = _out++;
        if (entry < EncodeTable::Lacking) {
            cluster.base = base;
            *cluster.out = static_cast<uchar>(entry);
        } else {
            lose(cluster);
        }
        // At most one of the parts has a byte of its own.
        for (qsizetype i = 1; i < parts.size(); ++i)
            takeMark(cluster, parts[i].unicode());
        _in += QChar::requiresSurrogates(c) ? 2 : 1;
        takeMarks(cluster);
    }

    void takeMarks(Cluster &cluster)
    {
        while (_in < _end) {
            const char32_t c = next();
            if (!TextComposition::isMark(c))
                break;
            takeMark(cluster, c);
            _in += QChar::requiresSurrogates(c) ? 2 : 1;
        }
    }

    void takeMark(Cluster &cluster, char32_t mark)
    {
        const auto markClass = QChar::combiningClass(mark);
        const auto unit = QChar::requiresSurrogates(mark) ? u'\0' : static_cast<char16_t>(mark);
        const char16_t composed =
            cluster.staying.test(markClass) ? u'\0' : TextComposition::compose(cluster.base, unit);
        if (composed != 0 && _table[composed] < EncodeTable::Lacking) {
            *cluster.out = static_cast<uchar>(_table[composed]);
            cluster.base = composed;
            return;
        }
        cluster.staying.set(markClass);
        if (unit != 0 && _table[unit] < EncodeTable::Lacking)
            *_out++ = static_cast<uchar>(_table[unit]);
        else
            lose(cluster);
    }

    // Something of the character has no byte.
    void lose(Cluster &cluster)
    {
        _replaced += cluster.isCounted ? 0 : 1;
        cluster.isCounted = true;
        if (_keepsBase && TextComposition::standsWithoutMarks(cluster.base))
            return;
        cluster.base = 0;
        *cluster.out = '?';
    }

    const EncodeTable &_table;
    const bool _keepsBase;
    const char16_t *const _begin;
    const char16_t *const _end;
    const char16_t *_in;
    uchar *_out;
    qsizetype _replaced = 0;
};

EncodedText encodeWith(QStringView text, const EncodeTable &table, Lacking lacking)
{
    EncodedText result{QByteArray(text.size(), Qt::Uninitialized)};
    auto *const begin = reinterpret_cast<uchar *>(result.bytes.data());
    Encoder encoder(text, table, lacking, begin);
    const qsizetype size = encoder.run() - begin;
    result.replaced = encoder.replaced();
    if (size != text.size()) {
        result.bytes.resize(size);
        result.bytes.squeeze();
    }
    return result;
}

bool isAsciiBlock(const uchar *in)
{
    std::array<quint64, BlockSize / sizeof(quint64)> words{};
    std::memcpy(words.data(), in, BlockSize);
    return ((words[0] | words[1]) & 0x8080808080808080U) == 0;
}

void decodeBlock(const uchar *in, char16_t *out, const DecodeTable &table)
{
    if (isAsciiBlock(in)) {
        std::array<char16_t, BlockSize> units{};
        for (size_t i = 0; i < BlockSize; ++i)
            units[i] = in[i];
        std::memcpy(out, units.data(), sizeof(units));
        return;
    }
    for (int i = 0; i < BlockSize; ++i)
        out[i] = table[in[i]];
}

DecodedText decodeWith(QByteArrayView bytes, const DecodeTable &table)
{
    // Counting is a loop of its own, over a stretch that is still in the cache, so that both loops are fast.
    constexpr qsizetype StretchSize = 4096;
    DecodedText result{QString(bytes.size(), Qt::Uninitialized)};
    auto *out = reinterpret_cast<char16_t *>(result.text.data());
    const auto *in = reinterpret_cast<const uchar *>(bytes.data());
    const auto *const end = in + bytes.size();
    while (in < end) {
        const qsizetype size = std::min(StretchSize, static_cast<qsizetype>(end - in));
        qsizetype done = 0;
        for (; size - done >= BlockSize; done += BlockSize)
            decodeBlock(in + done, out + done, table);
        for (; done < size; ++done)
            out[done] = table[in[done]];
        result.undefined += std::count(out, out + size, CodePages::Undefined);
        in += size;
        out += size;
    }
    return result;
}

} // namespace

EncodedText encode(QStringView text, int language)
{
    return encodeWith(text, tablesFor(language).out, Lacking::BaseLetter);
}

DecodedText decode(QByteArrayView bytes, int language)
{
    return decodeWith(bytes, tablesFor(language).in);
}

StringEncoding codePageOf(int language)
{
    switch (language) {
    case DeviceLanguage::Greek:
        return StringEncoding::WindowsCP1253;
    case DeviceLanguage::Polish:
        return StringEncoding::WindowsCP1250;
    case DeviceLanguage::Arabic:
        return StringEncoding::WindowsCP1256;
    default:
        return StringEncoding::WindowsCP1252;
    }
}

EncodedText encodeRaw(QStringView text, StringEncoding encoding)
{
    return encodeWith(text, tablesFor(encoding).out, Lacking::QuestionMark);
}

DecodedText decodeRaw(QByteArrayView bytes, StringEncoding encoding)
{
    return decodeWith(bytes, tablesFor(encoding).in);
}

} // namespace cvtamber::TextCodec
