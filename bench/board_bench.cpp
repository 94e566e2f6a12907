// SPDX-License-Identifier: GPL-3.0-or-later
// A key on the whiteboard's page, beside the same key in a bare string and in a text document without a page; and a key
// and the device's text on the whiteboard's screen, in processor time of the window's thread until they are drawn.
#include "chat/ChatViewController.h"
#include "chat/text/UIMyTextView.h"
#include "device_ui/ConnectedBench.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTextCursor>
#include <QTextDocument>

#include <benchmark/benchmark.h>

#include <ctime>

extern void qml_register_types_CVTamber();

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

// The screen

constexpr QSize Phone(390, 700);
constexpr int PageSize = 1'000'000;

double threadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// The whiteboard of a connected device in a window, with a screen reader listening.
class Board
{
public:
    explicit Board(const QString &text)
    {
        qml_register_types_CVTamber();
        QAccessible::setActive(true);
        ChatViewController::forgetTextView();
        page().insertCorvaneText(text);
        page().setSelectedRange({page().fixedTextEnd(), 0});
        page().setHoldsBack(false);
        QQmlComponent component(
            &_engine, QUrl(QStringLiteral("qrc:/qt-project.org/imports/CVTamber/WhiteboardScreen.qml")));
        _item.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(
            {{QStringLiteral("controller"), QVariant::fromValue(_board.get())},
             {QStringLiteral("width"), Phone.width()},
             {QStringLiteral("height"), Phone.height()}})));
        if (!_item)
            qFatal("%s", qUtf8Printable(component.errorString()));
        _window.resize(Phone);
        _item->setParentItem(_window.contentItem());
        QObject::connect(&_window, &QQuickWindow::frameSwapped, [this] { ++_frames; });
        _window.show();
        _window.requestActivate();
        QMetaObject::invokeMethod(_item.get(), "takeFocus");
        frame();
        frame();
    }
    UIMyTextView &page() const { return *_board->page(); }
    void comes(const QString &text) { _board->CV_newDataReceived(text); }
    void type(QChar unit)
    {
        for (const auto kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(kind, unit == u' ' ? Qt::Key_Space : Qt::Key_A, {}, QString(unit));
            QCoreApplication::sendEvent(&_window, &event);
        }
        // What is sent reaches the device, in the device's own time.
        _bench.advance(std::chrono::milliseconds(1));
    }
    // Until the next one is drawn.
    void frame()
    {
        _window.update();
        for (const int before = _frames; _frames == before;)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    ConnectedBench _bench{{}, false, 2};
    std::shared_ptr<ChatViewController> _board = std::make_shared<ChatViewController>(_bench.context);
    QQmlEngine _engine;
    std::unique_ptr<QQuickItem> _item;
    QQuickWindow _window;
    int _frames = 0;
};

// As lines, as one paragraph, as one word, and as line ends alone.
QString pageOf(int64_t kind)
{
    if (kind == 3)
        return QString(PageSize, u'\n');
    QString text = textOf(PageSize);
    if (kind > 0)
        text.replace(u'\n', u' ');
    if (kind > 1)
        text.replace(u' ', u'x');
    return text;
}

void keyOnScreen(benchmark::State &state)
{
    Board board(pageOf(state.range(0)));
    int number = 0;
    while (state.KeepRunning()) {
        const double start = threadSeconds();
        board.type(number++ % 6 == 5 ? u' ' : u'a');
        board.frame();
        state.SetIterationTime(threadSeconds() - start);
    }
}

// A burst of pieces, some of them between two frames, in front of unsent text.
void deviceTextOnScreen(benchmark::State &state)
{
    constexpr int PiecesOfFrame = 4;
    Board board(pageOf(state.range(0)));
    board.page().paste(QStringLiteral("Words that are not sent yet"));
    int number = 0;
    while (state.KeepRunning()) {
        const double start = threadSeconds();
        board.comes(textOf(20));
        if (++number % PiecesOfFrame == 0)
            board.frame();
        state.SetIterationTime(threadSeconds() - start);
    }
}

void onScreen(benchmark::internal::Benchmark *benchmark)
{
    benchmark->DenseRange(0, 3)->Iterations(100)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(keyOnScreen)->Apply(onScreen);
BENCHMARK(deviceTextOnScreen)->Apply(onScreen);

} // namespace
