// SPDX-License-Identifier: GPL-3.0-or-later
// Text to device bytes and back, next to ICU's bare code page conversion of the same text.
#include "text/DeviceTables.h"
#include "text/TextCodec.h"

#include <QByteArray>
#include <QString>

#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>

#include <memory>

namespace {

using namespace cvtamber;

constexpr int64_t MegaByte = 1'000'000;

// About one letter in ten is outside ASCII, as in French or Spanish prose.
QString westernText(qsizetype size)
{
    const QString sentence = QStringLiteral(
        "L'\u00E9t\u00E9 dernier, nous avons \u00E9t\u00E9 \u00E0 la mer; le gar\u00E7on \u00E9tait "
        "tr\u00E8s content. \u00A9 Ma\u00F1ana ser\u00E1 otro d\u00EDa, d\u00E9j\u00E0 vu.\n");
    return sentence.repeated(size / sentence.size() + 1).left(size);
}

QString greekText(qsizetype size)
{
    const QString sentence =
        QStringLiteral("\u0397 \u03B8\u03AC\u03BB\u03B1\u03C3\u03C3\u03B1 \u03B5\u03AF\u03BD\u03B1\u03B9 "
                       "\u03BC\u03C0\u03BB\u03B5. "
                       "\u03A4\u03BF \u03C0\u03B1\u03B9\u03B4\u03AF \u03C0\u03B1\u03AF\u03B6\u03B5\u03B9.\n");
    return sentence.repeated(size / sentence.size() + 1).left(size);
}

// Only characters that the code page has, so that both sides do the same work.
QString textFor(int language, int64_t size)
{
    return language == DeviceLanguage::Greek ? greekText(size) : westernText(size);
}

struct ConverterCloser
{
    void operator()(UConverter *converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

Converter converterFor(int language)
{
    UErrorCode error = U_ZERO_ERROR;
    return Converter(ucnv_open(language == DeviceLanguage::Greek ? "windows-1253" : "windows-1252", &error));
}

void setBytes(benchmark::State &state)
{
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void encodeText(benchmark::State &state, int language)
{
    const QString text = textFor(language, state.range(0));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(TextCodec::encode(text, language));
    setBytes(state);
}

void decodeText(benchmark::State &state, int language)
{
    const QByteArray bytes = TextCodec::encode(textFor(language, state.range(0)), language).bytes;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(TextCodec::decode(bytes, language));
    setBytes(state);
}

// The controls allocate their result as we do: once, uninitialised.
void icuFromUnicode(benchmark::State &state, int language)
{
    const QString text = textFor(language, state.range(0));
    const Converter converter = converterFor(language);
    while (state.KeepRunning()) {
        UErrorCode error = U_ZERO_ERROR;
        QByteArray bytes(text.size(), Qt::Uninitialized);
        const auto *units = reinterpret_cast<const UChar *>(text.utf16());
        ucnv_fromUChars(converter.get(), bytes.data(), static_cast<int32_t>(bytes.size()), units,
                        static_cast<int32_t>(text.size()), &error);
        if (U_FAILURE(error))
            state.SkipWithError("ICU failed");
        benchmark::DoNotOptimize(bytes);
    }
    setBytes(state);
}

void icuToUnicode(benchmark::State &state, int language)
{
    const StringEncoding page =
        language == DeviceLanguage::Greek ? StringEncoding::WindowsCP1253 : StringEncoding::WindowsCP1252;
    const QByteArray bytes = TextCodec::encodeRaw(textFor(language, state.range(0)), page).bytes;
    const Converter converter = converterFor(language);
    while (state.KeepRunning()) {
        UErrorCode error = U_ZERO_ERROR;
        QString text(bytes.size(), Qt::Uninitialized);
        auto *units = reinterpret_cast<UChar *>(text.data());
        ucnv_toUChars(converter.get(), units, static_cast<int32_t>(text.size()), bytes.constData(),
                      static_cast<int32_t>(bytes.size()), &error);
        if (U_FAILURE(error))
            state.SkipWithError("ICU failed");
        benchmark::DoNotOptimize(text);
    }
    setBytes(state);
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(MegaByte)->Arg(10 * MegaByte)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(encodeText, western, DeviceLanguage::Unknown)->Apply(sizes);
BENCHMARK_CAPTURE(icuFromUnicode, western, DeviceLanguage::Unknown)->Apply(sizes);
BENCHMARK_CAPTURE(decodeText, western, DeviceLanguage::Unknown)->Apply(sizes);
BENCHMARK_CAPTURE(icuToUnicode, western, DeviceLanguage::Unknown)->Apply(sizes);
BENCHMARK_CAPTURE(encodeText, greek, DeviceLanguage::Greek)->Apply(sizes);
BENCHMARK_CAPTURE(icuFromUnicode, greek, DeviceLanguage::Greek)->Apply(sizes);
BENCHMARK_CAPTURE(decodeText, greek, DeviceLanguage::Greek)->Apply(sizes);
BENCHMARK_CAPTURE(icuToUnicode, greek, DeviceLanguage::Greek)->Apply(sizes);

} // namespace
