// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TableModel.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace cvtamber {

TableModel::TableModel(const TableViewController &table)
    : _table(table)
{}

int TableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : firstRow(static_cast<int>(_sections.size()));
}

QHash<int, QByteArray> TableModel::roleNames() const
{
    return {
        {StyleRole, "style"},
        {TextRole, "text"},
        {DetailRole, "detail"},
        {DetailToneRole, "detailTone"},
        {ImageRole, "image"},
        {AccessoryRole, "accessory"},
        {AccessoryNameRole, "accessoryName"},
        {ControlsRole, "controls"},
        {EnabledRole, "cellEnabled"},
        {HighlightRole, "canHighlight"},
        {OpenRole, "isOpen"},
        {AccessibleNameRole, "accessibleName"},
        {SectionRole, "section"},
        {RowRole, "row"},
        {CountRole, "count"},
        {HeaderRole, "header"},
        {DeletableRole, "deletable"},
        {PlaceRole, "place"},
    };
}

QVariant TableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    if (role >= SectionRole && role <= SearchTextRole)
        return placeData(index.row(), role);
    if (role != Qt::DisplayRole && (role < StyleRole || role > AccessibleNameRole))
        return {};
    const auto *cell = cellAt(index.row());
    return cell ? cellData(*cell, role) : QVariant();
}

QVariant TableModel::cellData(const TableCell &cell, int role) const
{
    switch (role) {
    case StyleRole:
        return static_cast<int>(cell.style);
    case Qt::DisplayRole:
    case TextRole:
        return cell.text;
    case DetailRole:
        return cell.detail;
    case DetailToneRole:
        return static_cast<int>(cell.detailTone);
    case ImageRole:
        return cell.image;
    case AccessoryRole:
        return static_cast<int>(cell.accessory);
    case AccessoryNameRole:
        return cell.accessoryName;
    case ControlsRole:
        return QVariant::fromValue(cell.controls);
    case EnabledRole:
        return cell.isEnabled;
    case HighlightRole:
        return cell.canHighlight;
    case OpenRole:
        return cell.isOpen;
    case AccessibleNameRole:
        return cell.accessibleName;
    default:
        return {};
    }
}

QVariant TableModel::placeData(int row, int role) const
{
    const auto shown = pathOf(row);
    const auto path = answeredPath(row);
    switch (role) {
    case SectionRole:
        return shown.section;
    case RowRole:
    case PlaceRole:
        return shown.row;
    case CountRole:
        return shownRows(shown.section);
    case HeaderRole:
        return path.section < 0 ? QString() : _table.titleForHeader(path.section);
    case DeletableRole:
        return path.section >= 0 && _table.editingStyle(path) == TableViewController::EditingStyle::Delete;
    case SearchTextRole:
        return path.section < 0 ? QString() : _table.searchText(path);
    default:
        return {};
    }
}

IndexPath TableModel::pathOf(int row) const
{
    if (row < 0)
        return {-1, -1};
    for (int section = 0; section < static_cast<int>(_sections.size()); ++section) {
        if (row < shownRows(section))
            return {section, row};
        row -= shownRows(section);
    }
    return {-1, -1};
}

int TableModel::rowOf(IndexPath path) const
{
    const auto isShown = path.section >= 0 && path.section < static_cast<int>(_sections.size()) &&
                         path.row >= 0 && path.row < shownRows(path.section);
    return isShown ? firstRow(path.section) + path.row : -1;
}

std::optional<quintptr> TableModel::identityOf(IndexPath path) const
{
    return rowOf(path) < 0 ? std::nullopt : std::optional(*at(*at(_sections, path.section), path.row));
}

int TableModel::firstRow(int section) const
{
    return std::accumulate(
        _sections.begin(), at(_sections, section), 0,
        [](int sum, const RowIdentities &rows) { return sum + static_cast<int>(rows.size()); });
}

IndexPath TableModel::answeredPath(int row) const
{
    auto path = pathOf(row);
    if (path.section >= 0 && !_places.empty()) {
        const auto &place = *at(_places, path.section);
        path = {place.section, place.rows.empty() ? path.row : *at(place.rows, path.row)};
    }
    // What the table has not told yet may have made it shorter.
    const auto isAnswered = path.section >= 0 && path.row >= 0 && path.section < _table.numberOfSections() &&
                            path.row < _table.numberOfRows(path.section);
    return isAnswered ? path : IndexPath{-1, -1};
}

const TableCell *TableModel::cellAt(int row) const
{
    // A view asks for the roles of one row after the other, and a cell may cost a look at the disk.
    if (row == _cachedRow)
        return &_cachedCell;
    const auto path = answeredPath(row);
    if (path.section < 0)
        return nullptr;
    _cachedCell = _table.cellForRow(path);
    _cachedRow = row;
    return &_cachedCell;
}

RowIdentities TableModel::answeredRows(int section) const
{
    RowIdentities rows(static_cast<size_t>(std::max(0, _table.numberOfRows(section))));
    for (int row = 0; row < static_cast<int>(rows.size()); ++row)
        *at(rows, row) = _table.rowIdentity({section, row});
    return rows;
}

std::vector<RowIdentities> TableModel::answers() const
{
    std::vector<RowIdentities> sections(static_cast<size_t>(std::max(0, _table.numberOfSections())));
    for (int section = 0; section < static_cast<int>(sections.size()); ++section)
        *at(sections, section) = answeredRows(section);
    return sections;
}

bool TableModel::fitsRows(IndexPath path, int more) const
{
    const auto sections = static_cast<int>(_sections.size());
    if (path.section < 0 || path.section >= sections || _table.numberOfSections() != sections)
        return false;
    for (int section = 0; section < sections; ++section) {
        if (_table.numberOfRows(section) != shownRows(section) + (section == path.section ? more : 0))
            return false;
    }
    return path.row >= 0 && path.row < shownRows(path.section) + std::max(0, more);
}

bool TableModel::fitsSections(int section, int more) const
{
    const auto shown = static_cast<int>(_sections.size());
    if (section < 0 || section >= shown + std::max(0, more) || _table.numberOfSections() != shown + more)
        return false;
    for (int old = 0; old < shown; ++old) {
        const auto isRemoved = more < 0 && old == section;
        const auto now = old < section ? old : old + more;
        if (!isRemoved && _table.numberOfRows(now) != shownRows(old))
            return false;
    }
    return true;
}

void TableModel::notFitting(const char *change)
{
    qWarning("A table has told %s that does not fit its rows", change);
    reload();
}

void TableModel::insertRow(IndexPath path)
{
    if (!_isFilled)
        return;
    if (!fitsRows(path, 1)) {
        notFitting("an insertion");
        return;
    }
    const auto now = answeredRows(path.section);
    const auto &shown = *at(_sections, path.section);
    const auto fits = std::equal(shown.begin(), at(shown, path.row), now.begin()) &&
                      std::equal(at(shown, path.row), shown.end(), at(now, path.row + 1));
    std::vector<int> places(shown.size());
    std::iota(places.begin(), at(places, path.row), 0);
    std::iota(at(places, path.row), places.end(), path.row + 1);
    tell(path.section, now, fits ? std::move(places) : placesOf(shown, now), !fits);
}

void TableModel::deleteRow(IndexPath path)
{
    if (!_isFilled)
        return;
    if (!fitsRows(path, -1)) {
        notFitting("a deletion");
        return;
    }
    const auto now = answeredRows(path.section);
    const auto &shown = *at(_sections, path.section);
    const auto fits = std::equal(shown.begin(), at(shown, path.row), now.begin()) &&
                      std::equal(at(shown, path.row + 1), shown.end(), at(now, path.row));
    std::vector<int> places(shown.size(), -1);
    std::iota(places.begin(), at(places, path.row), 0);
    std::iota(at(places, path.row + 1), places.end(), path.row);
    tell(path.section, now, fits ? std::move(places) : placesOf(shown, now), !fits);
}

void TableModel::reloadRow(IndexPath path)
{
    if (!_isFilled)
        return;
    if (!fitsRows(path, 0)) {
        notFitting("a change of a row");
        return;
    }
    auto &shown = *at(_sections, path.section);
    auto &identity = *at(shown, path.row);
    const auto old = std::exchange(identity, _table.rowIdentity(path));
    if (identity == old) {
        changed(firstRow(path.section) + path.row, 1);
        return;
    }
    // Another thing in the same place, unless others have moved as well.
    const auto now = answeredRows(path.section);
    if (now == shown) {
        changed(firstRow(path.section) + path.row, 1);
        return;
    }
    identity = old;
    tell(path.section, now, placesOf(shown, now), true);
}

void TableModel::insertSection(int section)
{
    if (!_isFilled)
        return;
    if (!fitsSections(section, 1)) {
        notFitting("an insertion of a section");
        return;
    }
    startTelling();
    for (int old = section; old < static_cast<int>(_places.size()); ++old)
        ++at(_places, old)->section;
    addSection(section, answeredRows(section));
    _places.clear();
    changed(firstRow(section), rowCount() - firstRow(section), {SectionRole, HeaderRole});
}

void TableModel::deleteSection(int section)
{
    if (!_isFilled)
        return;
    if (!fitsSections(section, -1)) {
        notFitting("a deletion of a section");
        return;
    }
    startTelling();
    at(_places, section)->section = -1;
    for (int old = section + 1; old < static_cast<int>(_places.size()); ++old)
        --at(_places, old)->section;
    removeSection(section);
    _places.clear();
    changed(firstRow(section), rowCount() - firstRow(section), {SectionRole, HeaderRole});
}

void TableModel::reload()
{
    _isFilled = true;
    const auto now = answers();
    const auto sections = sectionPlaces(_sections, now);
    startTelling();
    for (int section = 0; section < static_cast<int>(_places.size()); ++section) {
        auto &place = *at(_places, section);
        place.section = *at(sections, section);
        if (place.section >= 0 && *at(_sections, section) != *at(now, place.section))
            place.rows = placesOf(*at(_sections, section), *at(now, place.section));
    }
    for (int section = static_cast<int>(_places.size()) - 1; section >= 0; --section) {
        if (at(_places, section)->section < 0)
            removeSection(section);
    }
    for (int section = 0; section < static_cast<int>(now.size()); ++section) {
        const auto isShown =
            section < static_cast<int>(_places.size()) && at(_places, section)->section == section;
        if (isShown)
            changeSection(section, *at(now, section));
        else
            addSection(section, *at(now, section));
    }
    _places.clear();
    changed(0, rowCount());
}

void TableModel::editingChanged()
{
    changed(0, rowCount(), {DeletableRole});
}

void TableModel::tell(int section, const RowIdentities &now, std::vector<int> places, bool isReordered)
{
    startTelling();
    at(_places, section)->rows = std::move(places);
    changeSection(section, now);
    _places.clear();
    const auto roles = isReordered ? QList<int>() : QList<int>{RowRole, PlaceRole, CountRole, HeaderRole};
    changed(firstRow(section), shownRows(section), roles);
}

void TableModel::changed(int first, int count, const QList<int> &roles)
{
    _cachedRow = -1;
    if (count > 0)
        emit dataChanged(index(first), index(first + count - 1), roles);
}

} // namespace cvtamber
