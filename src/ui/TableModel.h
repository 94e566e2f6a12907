// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/RowDifference.h"
#include "ui/TableViewController.h"

#include <QAbstractListModel>

#include <optional>

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
    // The views' names stand behind. Style and accessory are TableCell's, as numbers.
    enum Role {
        StyleRole = Qt::UserRole + 1, // style
        TextRole,                     // text, also the display role
        DetailRole,                   // detail
        DetailToneRole,               // detailTone: TableCell's, as a number
        ImageRole,                    // image
        AccessoryRole,                // accessory
        AccessoryNameRole,            // accessoryName
        ControlsRole,                 // controls: a list of CellControl
        EnabledRole,                  // cellEnabled, since every item has an `enabled` of its own
        HighlightRole,                // canHighlight
        OpenRole,                     // isOpen
        AccessibleNameRole,           // accessibleName
        SectionRole,                  // section
        RowRole,                      // row, in its section
        CountRole,                    // count of the rows in the section
        HeaderRole,                   // header of the section
        DeletableRole,                // deletable
        PlaceRole,                    // place: of the row among those of the section that are shown
        SearchTextRole,               // for RowFilter alone
    };
    Q_ENUM(Role)

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
    // Of this model; -1 for a row that is not shown.
    int rowOf(IndexPath path) const;
    // Of the row that is shown there; nothing outside.
    std::optional<quintptr> identityOf(IndexPath path) const;

private:
    template<typename List> static auto at(List &list, int index) { return list.begin() + index; }

    // Where a shown section's rows are in the table's answers; -1: no longer there.
    struct Place
    {
        int section = 0;
        // Empty: every row at its own place.
        std::vector<int> rows;
    };

    RowIdentities answeredRows(int section) const;
    std::vector<RowIdentities> answers() const;
    int shownRows(int section) const
    {
        return static_cast<int>(_sections[static_cast<size_t>(section)].size());
    }
    int firstRow(int section) const;
    // Where the row of the model stands in the answers; {-1, -1} when it is no longer there.
    IndexPath answeredPath(int row) const;
    const TableCell *cellAt(int row) const;
    QVariant cellData(const TableCell &cell, int role) const;
    QVariant placeData(int row, int role) const;
    // Whether the answers have so many rows and sections more than what is shown, and are else of the same size.
    bool fitsRows(IndexPath path, int more) const;
    bool fitsSections(int section, int more) const;
    void notFitting(const char *change);

    void tell(int section, const RowIdentities &now, std::vector<int> places, bool isReordered);
    void startTelling();
    void changeSection(int section, const RowIdentities &now);
    void removeSection(int section);
    void addSection(int section, const RowIdentities &rows);
    void dropRows(int section, int first, int count);
    void addRows(int section, int first, const RowIdentities &now, int count);
    void order(int section);
    void moveRow(int section, int from, int to);
    void permute(int section);
    void changed(int first, int count, const QList<int> &roles = {});

    const TableViewController &_table;
    bool _isFilled = false;
    // What is shown.
    std::vector<RowIdentities> _sections;
    // As long as _sections while a change is told, else empty.
    std::vector<Place> _places;
    mutable int _cachedRow = -1;
    mutable TableCell _cachedCell;
};

} // namespace cvtamber
