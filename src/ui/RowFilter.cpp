// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/RowFilter.h"

#include "ui/TableModel.h"

#include <utility>

namespace cvtamber {

namespace {

// Letters that are written with a stroke or joined, which no decomposition takes apart.
struct PlainLetter
{
    char16_t letter;
    const char *plain;
};

constexpr PlainLetter PlainLetters[] = {
    {u'\u00F8', "o"}, {u'\u0142', "l"},  {u'\u0111', "d"},  {u'\u0127', "h"},
    {u'\u0131', "i"}, {u'\u00E6', "ae"}, {u'\u0153', "oe"},
};

int countOfEntries(const QAbstractItemModel &model)
{
    int count = 0;
    for (int row = 0; row < model.rowCount(); ++row)
        count += model.index(row, 0).data(TableModel::SearchTextRole).toString().isNull() ? 0 : 1;
    return count;
}

} // namespace

QString foldedForSearch(const QString &text)
{
    QString folded;
    const QString parts = text.normalized(QString::NormalizationForm_KD).toCaseFolded();
    for (const QChar c : parts) {
        if (c.category() != QChar::Mark_NonSpacing)
            folded.append(c);
    }
    for (const PlainLetter &letter : PlainLetters)
        folded.replace(QChar(letter.letter), QLatin1String(letter.plain));
    return folded.simplified();
}

RowFilter::RowFilter(TableModel &rows)
    : _rows(rows)
{
    setFilterRole(TableModel::SearchTextRole);
    connect(this, &QAbstractItemModel::rowsInserted, this, &RowFilter::tellPlaces);
    connect(this, &QAbstractItemModel::rowsRemoved, this, &RowFilter::tellPlaces);
    connect(this, &QAbstractItemModel::layoutChanged, this, &RowFilter::tellPlaces);
}

void RowFilter::setText(const QString &text)
{
    _text = text;
    _searched = foldedForSearch(text);
    if (sourceModel())
        invalidateFilter();
    else
        setSourceModel(&_rows);
}

bool RowFilter::filterAcceptsRow(int row, const QModelIndex &) const
{
    const QString text = _rows.index(row, 0).data(TableModel::SearchTextRole).toString();
    return text.isNull() || foldedForSearch(text).contains(_searched);
}

int RowFilter::entryCount() const
{
    return countOfEntries(_rows);
}

int RowFilter::shownEntryCount() const
{
    return countOfEntries(*this);
}

std::pair<int, int> RowFilter::sectionAround(int row) const
{
    const auto sectionOf = [this](int other) {
        return index(other, 0).data(TableModel::SectionRole).toInt();
    };
    const int section = sectionOf(row);
    int first = row;
    while (first > 0 && sectionOf(first - 1) == section)
        --first;
    int end = row + 1;
    while (end < rowCount() && sectionOf(end) == section)
        ++end;
    return {first, end};
}

QVariant RowFilter::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != TableModel::PlaceRole && role != TableModel::CountRole))
        return QSortFilterProxyModel::data(index, role);
    const auto [first, end] = sectionAround(index.row());
    return role == TableModel::PlaceRole ? index.row() - first : end - first;
}

// From the loop: the view hears of the change itself after this does.
void RowFilter::tellPlaces()
{
    if (std::exchange(_isTelling, true))
        return;
    const auto tell = [this] {
        _isTelling = false;
        if (const int count = rowCount(); count > 0)
            emit dataChanged(index(0, 0), index(count - 1, 0),
                             {TableModel::PlaceRole, TableModel::CountRole});
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

} // namespace cvtamber
