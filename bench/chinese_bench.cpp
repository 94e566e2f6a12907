// SPDX-License-Identifier: GPL-3.0-or-later
// Hanzi to what a Chinese device is sent, and what it sends to marks, next to ICU's transliterators for the same texts.
// Both directions count Hanzi: about five letters of pinyin each.
#include "chat/text/ChineseText.h"

#include <QString>

#include <benchmark/benchmark.h>
#include <unicode/utrans.h>

#include <algorithm>
#include <memory>
#include <random>

namespace {

using namespace cvtamber;

constexpr int64_t Line = 1'000;
constexpr int64_t Million = 1'000'000;

// Any of the 20,902 Hanzi, so that the table's rows come from all over it, and a sign after each tenth.
QString hanziText(int64_t size)
{
    std::minstd_rand random(1);
    std::uniform_int_distribution<int> hanzi(0x4E00, 0x9FA5);
    QString text;
    for (int64_t i = 0; i < size; ++i)
        text += i % 11 == 10 ? QChar(0x3002) : QChar(static_cast<char16_t>(hanzi(random)));
    return text;
}

QString symbolsText(int64_t size)
{
    QString symbols = toneSymbolsForPinyin(pinyinForText(hanziText(size)));
    symbols.chop(1);
    return symbols;
}

void setCharacters(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void hanziToSymbols(benchmark::State &state)
{
    const QString text = hanziText(state.range(0));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(toneSymbolsForPinyin(pinyinForText(text)));
    setCharacters(state);
}

void symbolsToMarks(benchmark::State &state)
{
    const QString text = symbolsText(state.range(0));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(marksForToneSymbols(text));
    setCharacters(state);
}

struct TransliteratorCloser
{
    void operator()(UTransliterator *transliterator) const { utrans_close(transliterator); }
};

// ICU works in place: the text is copied into a room that is large enough.
void icuTransliterate(benchmark::State &state, const QString &id, const QString &text)
{
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UTransliterator, TransliteratorCloser> transliterator(
        utrans_openU(reinterpret_cast<const UChar *>(id.utf16()), static_cast<int32_t>(id.size()),
                     UTRANS_FORWARD, nullptr, 0, nullptr, &error));
    QString room(8 * text.size(), Qt::Uninitialized);
    while (state.KeepRunning()) {
        std::copy(text.cbegin(), text.cend(), room.begin());
        auto length = static_cast<int32_t>(text.size());
        int32_t limit = length;
        utrans_transUChars(transliterator.get(), reinterpret_cast<UChar *>(room.data()), &length,
                           static_cast<int32_t>(room.size()), 0, &limit, &error);
        if (U_FAILURE(error))
            state.SkipWithError(u_errorName(error));
        benchmark::DoNotOptimize(room);
    }
    setCharacters(state);
}

void icuHanLatin(benchmark::State &state)
{
    icuTransliterate(state, QStringLiteral("Han-Latin"), hanziText(state.range(0)));
}

// With the numbers of the tones, as ICU writes them, in place of the symbols.
void icuNumbersToMarks(benchmark::State &state)
{
    QString text = symbolsText(state.range(0));
    const QString symbols = QStringLiteral("$%^&");
    for (qsizetype tone = 0; tone < symbols.size(); ++tone)
        text.replace(symbols.at(tone), QChar(static_cast<char16_t>(u'1' + tone)));
    icuTransliterate(state, QStringLiteral("NumericPinyin-Latin"), text);
}

// ICU replaces inside the whole text, so that a long one would cost it more a character: it gets a line.
BENCHMARK(hanziToSymbols)->Arg(Line)->Arg(Million);
BENCHMARK(icuHanLatin)->Arg(Line);
BENCHMARK(symbolsToMarks)->Arg(Line)->Arg(Million);
BENCHMARK(icuNumbersToMarks)->Arg(Line);

} // namespace
