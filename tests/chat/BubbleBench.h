// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/BubbleTable/BubbleModel.h"
#include "chat/BubbleTable/UIBubbleTableView.h"

#include <QDateTime>

#include <algorithm>
#include <vector>

namespace cvtamber {

// Every UTF-16 unit is half as wide as the font is high, every line 1.2 times as high; counts what it measures.
class FixedWidthMeasurer final : public TextMeasurer
{
public:
    MeasuredText measure(const QString &text, double fontSize, QSizeF bounds) const override
    {
        ++count;
        const auto inLine = std::max<qsizetype>(1, static_cast<qsizetype>(bounds.width() / (fontSize / 2)));
        const auto lines = static_cast<qsizetype>(bounds.height() / (fontSize * 1.2));
        const auto shown = std::min(text.size(), lines * inLine);
        const auto used = std::max<qsizetype>(1, (shown + inLine - 1) / inLine);
        return {{static_cast<double>(std::min(shown, inLine)) * fontSize / 2,
                 static_cast<double>(used) * fontSize * 1.2},
                shown};
    }

    mutable int count = 0;
};

inline QDateTime second(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(1'400'000'000 + seconds, Qt::UTC);
}

inline NSBubblePtr bubbleAt(qint64 seconds, const QString &text = QStringLiteral("text"),
                            NSBubbleType type = NSBubbleType::Mine)
{
    return NSBubbleData::dataWithText(text, second(seconds), type);
}

// A table with its conversation and measurer.
struct BubbleBench final : UIBubbleTableViewDataSource
{
    std::vector<NSBubblePtr> bubbles;
    std::shared_ptr<FixedWidthMeasurer> measurer = std::make_shared<FixedWidthMeasurer>();
    UIBubbleTableView table;

    static std::shared_ptr<BubbleBench> create()
    {
        auto bench = std::make_shared<BubbleBench>();
        bench->table.setBubbleDataSource(std::weak_ptr<UIBubbleTableViewDataSource>(bench));
        bench->table.setTextMeasurer(bench->measurer);
        return bench;
    }
    int rowsForBubbleTable(const UIBubbleTableView &) override { return static_cast<int>(bubbles.size()); }
    NSBubblePtr bubbleTableViewDataForRow(const UIBubbleTableView &, int row) override
    {
        return bubbles[static_cast<size_t>(row)];
    }
    // What a screen reader says for each row.
    QStringList spoken()
    {
        QStringList rows;
        for (int row = 0; row < table.model().rowCount(); ++row)
            rows.append(value(row, BubbleModel::SpokenRole).toString());
        return rows;
    }
    QVariant value(int row, int role) { return table.model().data(table.model().index(row), role); }
};

} // namespace cvtamber
