// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TableViewController.h"

#include <QAbstractListModel>

namespace cvtamber {

// The rows of a table one after the other, for a list view; the section is a role, its header another. Holds no
// cells (but the last one asked for): each is asked for when it is drawn, so a list of 10,000 costs what is seen.
//
// While a change is told, a row that is still or already there answers for the thing that it stands for, although
// the table answers with the new places. A new order is told in row moves while they are few, else as one
// layout change (VerticalSortHint) with persistent indexes kept.
// Owner: its table. Thread: main thread.
class TableModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        StyleRole = Qt::UserRole + 1,
        TextRole,
        DetailRole,
        ImageRole,
        AccessoryRole,
        AccessoryNameRole,
        ControlsRole,
        EnabledRole,
        HighlightRole,
        AccessibleNameRole,
        SectionRole,
        RowRole,
        // Rows in the section.
        CountRole,
        HeaderRole,
        DeletableRole,
    };

    explicit TableModel(const TableViewController &table);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    void insertRow(IndexPath path);
    void deleteRow(IndexPath path);
    void reloadRow(IndexPath path);
    void insertSection(int section);
    void deleteSection(int section);
    // Emits the difference between what was shown and what the table answers now.
    void reload();
    void editingChanged();

    // Of a row of this model; {-1, -1} outside.
    IndexPath pathOf(int row) const;

private:
    // A section's rows by identity, as shown.
    using Section = std::vector<quintptr>;
    // Where a shown section's rows are in the table's answers; -1: no longer there.
    struct Place
    {
        int section = 0;
        // Empty: every row at its own place.
        std::vector<int> rows;
    };

    Section answeredRows(int section) const;
    std::vector<Section> answers() const;
    int firstRow(int section) const;
    int totalRows() const;
    // Where the row of the model stands in the answers; {-1, -1} when it is no longer there.
    IndexPath answeredPath(int row) const;
    const TableCell *cellAt(int row) const;
    QVariant layoutData(int row, int role) const;
    bool sameCounts(int section, int rows) const;
    bool sameSections(int from, int shownShift) const;
    void notFitting(const char *change);

    void changeSection(int section);
    void removeRows(int section, int first, int count);
    void insertRows(int section, int first, const Section &rows, int firstPlace);
    void order(int section, const std::vector<int> &wanted);
    void moveRow(int section, int from, int to);
    void permute(int section, const std::vector<int> &wanted);
    void changed(int first, int count, const QList<int> &roles = {});

    const TableViewController &_table;
    bool _isFilled = false;
    std::vector<Section> _sections;
    // As long as _sections while a change is told, else empty.
    std::vector<Place> _places;
    mutable int _cachedRow = -1;
    mutable TableCell _cachedCell;
};

} // namespace cvtamber
