// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSortFilterProxyModel>

namespace cvtamber {

class TableModel;

// The text with what a search does not look at taken away: case, accents, strokes through letters.
QString foldedForSearch(const QString &text);

// Those rows of a table that hold what a person looks for. Rows that are no entries (a button, what an empty list says)
// always stay.
//
// A row keeps the section and the row of the table, which a press names: only its place and the count, which are spoken,
// are those among the rows that are left. Before it has a text it has no rows, and costs nothing.
// Owner: the table, with the model. Thread: main thread.
class RowFilter final : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    // The model outlives the filter.
    explicit RowFilter(TableModel &rows);

    bool isActive() const { return !_text.isEmpty(); }
    const QString &text() const { return _text; }
    // Not empty; a filter that ends is thrown away.
    void setText(const QString &text);

    // Of the table's entries, and of those that are left.
    int entryCount() const;
    int shownEntryCount() const;

    QVariant data(const QModelIndex &index, int role) const override;

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    // The first row of the section that the row is in, and the row after its last.
    std::pair<int, int> sectionAround(int row) const;
    void tellPlaces();

    TableModel &_rows;
    QString _text;
    QString _searched;
    bool _isTelling = false;
};

} // namespace cvtamber
