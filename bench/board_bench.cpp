// SPDX-License-Identifier: GPL-3.0-or-later
// A key on the whiteboard's page, beside the same key in a bare string and in a text document without a page.
#include "chat/text/UIMyTextView.h"

#include <QTextCursor>
#include <QTextDocument>

#include <benchmark/benchmark.h>

namespace {

using namespace cvtamber;

class Sender final : public UIMyTextViewDelegate
{
public:
    void newTextReady(const QString &text) override { units += text.size(); }

    qsizetype units = 0;
};

QString textOf(int64_t size)
{
    return QStringLiteral("Some words of a lesson in a line.\n").repeated(size / 34 + 1).left(size);
}

// Words of five letters, each sent with its space.
QString keyOf(int number)
{
    return QString(number % 6 == 5 ? u' ' : u'a');
}

// Whether what stands before the keys is fixed or unsent.
void keyOnPage(benchmark::State &state, bool isFixed)
{
    UIMyTextView page;
    Sender sender;
    page.setDelegate(&sender);
    if (isFixed)
        page.insertCorvaneText(textOf(state.range(0)));
    else
        page.paste(textOf(state.range(0)));
    page.setHoldsBack(!isFixed);
    page.setSelectedRange({page.fixedTextEnd(), 0});
    qsizetype told = 0;
    QObject::connect(
        &page, &UIMyTextView::textChanged,
        [&](qsizetype, qsizetype removed, const QString &inserted) { told += inserted.size() - removed; });
    int number = 0;
    while (state.KeepRunning()) {
        page.insertText(keyOf(number++));
        // As long as it was: what is measured is a key at this size.
        if (!isFixed)
            page.deleteBackward();
    }
    benchmark::DoNotOptimize(told + sender.units);
}

void deviceTextOnPage(benchmark::State &state)
{
    UIMyTextView page;
    page.insertCorvaneText(textOf(state.range(0) / 2));
    page.paste(textOf(state.range(0) / 2));
    while (state.KeepRunning())
        page.insertCorvaneText(QStringLiteral("a"));
}

void keyInString(benchmark::State &state)
{
    QString text = textOf(state.range(0));
    int number = 0;
    while (state.KeepRunning()) {
        text.insert(text.size(), keyOf(number++));
        benchmark::DoNotOptimize(text.data());
    }
}

void keyInDocument(benchmark::State &state)
{
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    document.setPlainText(textOf(state.range(0)));
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    int number = 0;
    while (state.KeepRunning())
        cursor.insertText(keyOf(number++));
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    // Not so often that the page grows much.
    benchmark->Arg(100'000)->Iterations(2000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(keyOnPage, fixed, true)->Apply(sizes);
BENCHMARK_CAPTURE(keyOnPage, unsent, false)->Apply(sizes);
BENCHMARK(deviceTextOnPage)->Apply(sizes);
BENCHMARK(keyInString)->Apply(sizes);
BENCHMARK(keyInDocument)->Apply(sizes);

} // namespace
