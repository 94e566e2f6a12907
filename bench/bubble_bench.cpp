// SPDX-License-Identifier: GPL-3.0-or-later
// A line more in a long conversation: told to the list, grouped and measured, and all that with the row that is made for
// it. The control is a bare list model that takes one more string and measures it with a bare text layout.
#include "chat/BubbleTable/BubbleModel.h"
#include "chat/BubbleTable/UIBubbleTableView.h"
#include "qml/BubbleImageProvider.h"
#include "qml/QtTextMeasurer.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTextLayout>

#include <cmath>
#include <memory>
#include <vector>

extern void qml_register_types_CVTamber();

namespace {

using namespace cvtamber;

constexpr int Added = 200;
constexpr double Width = 220;
constexpr int FontSize = 17;
constexpr QSize Phone(390, 700);

QString lineOf(int number)
{
    return QStringLiteral("Line %1 of a long conversation between two people who have much to say.")
        .arg(number);
}

struct Conversation final : UIBubbleTableViewDataSource
{
    std::vector<NSBubblePtr> bubbles;
    UIBubbleTableView table;

    static std::shared_ptr<Conversation> create(int64_t lines)
    {
        auto conversation = std::make_shared<Conversation>();
        conversation->table.setBubbleDataSource(std::weak_ptr<UIBubbleTableViewDataSource>(conversation));
        conversation->table.setSnapInterval(std::chrono::seconds(60));
        conversation->table.setTextMeasurer(std::make_shared<QtTextMeasurer>(QGuiApplication::font()));
        while (static_cast<int64_t>(conversation->bubbles.size()) < lines)
            conversation->add();
        return conversation;
    }
    void add()
    {
        const auto number = static_cast<int>(bubbles.size());
        // A new section every fifth line.
        const auto date =
            QDateTime::fromSecsSinceEpoch(1'400'000'000 + number * 20 + number / 5 * 100, Qt::UTC);
        bubbles.push_back(NSBubbleData::dataWithText(
            lineOf(number), date, number % 2 ? NSBubbleType::Mine : NSBubbleType::SomeoneElse));
    }
    // As the screen does it.
    void say()
    {
        add();
        table.takeNewBubbles();
        const int section = table.numberOfSections() - 1;
        table.scrollToRow({section, table.numberOfRows(section) - 1},
                          UIBubbleTableView::ScrollPosition::Bottom, true);
    }
    double measureLast(int rows)
    {
        double height = 0;
        for (int row = table.model().rowCount() - rows; row < table.model().rowCount(); ++row)
            height += table.model().data(table.model().index(row), BubbleModel::HeightRole).toDouble();
        return height;
    }
    int rowsForBubbleTable(const UIBubbleTableView &) override { return static_cast<int>(bubbles.size()); }
    NSBubblePtr bubbleTableViewDataForRow(const UIBubbleTableView &, int row) override
    {
        return bubbles[static_cast<size_t>(row)];
    }
};

class BareModel final : public QAbstractListModel
{
public:
    int rowCount(const QModelIndex & = {}) const override { return static_cast<int>(_lines.size()); }
    QVariant data(const QModelIndex &index, int) const override
    {
        return _lines[static_cast<size_t>(index.row())];
    }
    void append(const QString &line)
    {
        beginInsertRows({}, rowCount(), rowCount());
        _lines.push_back(line);
        endInsertRows();
    }

private:
    std::vector<QString> _lines;
};

double bareHeight(const QString &text)
{
    auto font = QGuiApplication::font();
    font.setPixelSize(FontSize);
    QTextLayout layout(text, font);
    layout.beginLayout();
    double height = 0;
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(Width);
        height += line.height();
    }
    layout.endLayout();
    return std::ceil(height);
}

void addBubble(benchmark::State &state)
{
    const auto conversation = Conversation::create(state.range(0));
    conversation->table.reloadData();
    while (state.KeepRunning()) {
        conversation->say();
        benchmark::DoNotOptimize(conversation->measureLast(1));
    }
}

void bareAppend(benchmark::State &state)
{
    BareModel model;
    while (model.rowCount() < state.range(0))
        model.append(lineOf(model.rowCount()));
    while (state.KeepRunning()) {
        model.append(lineOf(model.rowCount()));
        benchmark::DoNotOptimize(bareHeight(model.data(model.index(model.rowCount() - 1), 0).toString()));
    }
}

// With the rows that a phone shows at once.
void openConversation(benchmark::State &state)
{
    const auto conversation = Conversation::create(state.range(0));
    while (state.KeepRunning()) {
        UIBubbleTableView table;
        table.setBubbleDataSource(std::weak_ptr<UIBubbleTableViewDataSource>(conversation));
        table.setTextMeasurer(std::make_shared<QtTextMeasurer>(QGuiApplication::font()));
        table.reloadData();
        double height = 0;
        for (int row = table.model().rowCount() - 1; height < Phone.height(); --row)
            height += table.model().data(table.model().index(row), BubbleModel::HeightRole).toDouble();
        benchmark::DoNotOptimize(height);
    }
}

// The view of a conversation, laid out but not drawn.
class View
{
public:
    explicit View(UIBubbleTableView &table)
    {
        qml_register_types_CVTamber();
        _engine.addImageProvider(QStringLiteral("bubbles"), new BubbleImageProvider);
        QQmlEngine::setObjectOwnership(&table, QQmlEngine::CppOwnership);
        QQmlComponent component(&_engine,
                                QUrl(QStringLiteral("qrc:/qt-project.org/imports/CVTamber/BubbleTable.qml")));
        _item.reset(qobject_cast<QQuickItem *>(
            component.createWithInitialProperties({{QStringLiteral("table"), QVariant::fromValue(&table)},
                                                   {QStringLiteral("width"), Phone.width()},
                                                   {QStringLiteral("height"), Phone.height()}})));
        _window.resize(Phone);
        if (_item)
            _item->setParentItem(_window.contentItem());
        _window.show();
        for (auto *child : _item ? _item->childItems() : QList<QQuickItem *>()) {
            if (child->inherits("QQuickListView"))
                _list = child;
        }
    }
    bool isSound() const { return _list != nullptr; }
    void layOut() const { QMetaObject::invokeMethod(_list, "forceLayout"); }
    QQuickItem *list() const { return _list; }

private:
    QQmlEngine _engine;
    std::unique_ptr<QQuickItem> _item;
    QQuickWindow _window;
    QQuickItem *_list = nullptr;
};

void addBubbleToView(benchmark::State &state)
{
    const auto conversation = Conversation::create(state.range(0));
    conversation->table.reloadData();
    const View view(conversation->table);
    if (!view.isSound()) {
        state.SkipWithError("No view");
        return;
    }
    while (state.KeepRunning()) {
        conversation->say();
        view.layOut();
    }
    if (view.list()->property("count").toInt() != conversation->table.model().rowCount())
        state.SkipWithError("The view has other rows");
}

void openView(benchmark::State &state)
{
    const auto conversation = Conversation::create(state.range(0));
    while (state.KeepRunning()) {
        conversation->table.reloadData();
        const View view(conversation->table);
        if (!view.isSound())
            state.SkipWithError("No view");
        view.layOut();
        state.PauseTiming();
        // Grouped anew the next time.
        conversation->table.setSnapInterval(conversation->table.snapInterval() + std::chrono::seconds(1));
        state.ResumeTiming();
    }
}

constexpr int Long = 10'000;
constexpr int VeryLong = 100'000;
BENCHMARK(addBubble)->Arg(Long)->Arg(VeryLong)->Iterations(Added)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareAppend)->Arg(Long)->Arg(VeryLong)->Iterations(Added)->Unit(benchmark::kMicrosecond);
BENCHMARK(addBubbleToView)->Arg(Long)->Arg(VeryLong)->Iterations(Added)->Unit(benchmark::kMicrosecond);
BENCHMARK(openConversation)->Arg(VeryLong)->Unit(benchmark::kMillisecond);
BENCHMARK(openView)->Arg(VeryLong)->Iterations(2)->Unit(benchmark::kMillisecond);

} // namespace
