// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TableViewController.h"

#include "ui/RowFilter.h"
#include "ui/TableModel.h"
#include "ui/Texts.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

// So many rows are found without looking for them.
constexpr int MostUnfilteredRows = 10;

} // namespace

TableViewController::TableViewController(Presenter &presenter)
    : ViewController(presenter)
    , _model(std::make_unique<TableModel>(*this))
    , _filter(std::make_unique<RowFilter>(*_model))
{}

TableViewController::~TableViewController() = default;

QAbstractItemModel *TableViewController::modelPointer() const
{
    return _filter->isActive() ? static_cast<QAbstractItemModel *>(_filter.get()) : _model.get();
}

QString TableViewController::searchText(IndexPath path) const
{
    const TableCell cell = cellForRow(path);
    const bool isEntry = cell.style != TableCell::Style::Action && cell.style != TableCell::Style::Wait &&
                         cell.style != TableCell::Style::Centered;
    return isEntry ? QString(cell.text % u'\n' % cell.detail) : QString();
}

bool TableViewController::isFilterable() const
{
    return mayBeFiltered() && (_filter->isActive() || _model->rowCount() > MostUnfilteredRows);
}

QString TableViewController::filter() const
{
    return _filter->text();
}

void TableViewController::setFilter(const QString &text)
{
    if (text == filter() || !isFilterable())
        return;
    const bool wasActive = _filter->isActive();
    if (text.isEmpty()) {
        // The view leaves the rows of the filter before they go.
        const auto ended = std::exchange(_filter, std::make_unique<RowFilter>(*_model));
        emit filteringChanged();
    } else {
        _filter->setText(text);
        if (!wasActive)
            emit filteringChanged();
    }
    emit contentChanged();
    presenter().announce(text.isEmpty() ? localized("All rows are shown") : filterResult());
}

QString TableViewController::filterResult() const
{
    if (!_filter->isActive())
        return {};
    const QString left = QString::number(_filter->shownEntryCount());
    return localized("%1 of %2 left").arg(left, QString::number(_filter->entryCount()));
}

QString TableViewController::shownEmptyText() const
{
    return _filter->isActive() ? localized("No row has what you look for.") : emptyText();
}

int TableViewController::shownRow(int section, int row) const
{
    const int inAll = _model->rowOf({section, row});
    return !_filter->isActive() || inAll < 0 ? inAll : _filter->mapFromSource(_model->index(inAll)).row();
}

QString TableViewController::titleForHeader(int) const
{
    return {};
}

quintptr TableViewController::rowIdentity(IndexPath) const
{
    return 0;
}

void TableViewController::viewLoaded()
{
    reloadData();
}

bool TableViewController::hasRow(IndexPath path) const
{
    return path.section >= 0 && path.section < numberOfSections() && path.row >= 0 &&
           path.row < numberOfRows(path.section);
}

// A press is on the row that is shown. Where the table has another thing in its place by now, nothing is done and the
// table is read again.
void TableViewController::performOnRow(IndexPath path, std::function<void()> action)
{
    const auto shown = _model->identityOf(path);
    if (!shown || shownRow(path.section, path.row) < 0)
        return;
    perform([this, path, identity = *shown, action = std::move(action)] {
        if (hasRow(path) && rowIdentity(path) == identity)
            action();
        else
            reloadData();
    });
}

void TableViewController::rowClicked(int section, int row)
{
    const IndexPath path{section, row};
    performOnRow(path, [this, path] {
        const auto cell = cellForRow(path);
        if (allowsSelection() && cell.isEnabled && cell.canHighlight)
            didSelectRow(path);
    });
}

void TableViewController::accessoryClicked(int section, int row)
{
    const IndexPath path{section, row};
    performOnRow(path, [this, path] {
        if (cellForRow(path).accessory == TableCell::Accessory::DetailDisclosure)
            accessoryButtonTapped(path);
    });
}

void TableViewController::deleteClicked(int section, int row)
{
    const IndexPath path{section, row};
    performOnRow(path, [this, path] {
        if (editingStyle(path) == EditingStyle::Delete)
            commitDelete(path);
    });
}

void TableViewController::renameClicked(int section, int row)
{
    const IndexPath path{section, row};
    performOnRow(path, [this, path] { commitRename(path); });
}

void TableViewController::controlClicked(int section, int row, int control, bool on)
{
    const IndexPath path{section, row};
    performOnRow(path, [this, path, control, on] {
        const auto controls = cellForRow(path).controls;
        const auto found =
            std::find_if(controls.begin(), controls.end(),
                         [control](const CellControl &candidate) { return candidate.id == control; });
        if (found != controls.end() && found->isEnabled &&
            found->kind != CellControl::Kind::ActivityIndicator)
            controlActivated(path, control, on);
    });
}

void TableViewController::footerButtonClicked()
{
    perform([this] {
        if (!footerButtonTitle().isEmpty())
            footerButtonActivated();
    });
}

void TableViewController::setEditing(bool editing)
{
    if (editing == isEditing())
        return;
    ViewController::setEditing(editing);
    _model->editingChanged();
}

bool TableViewController::startChange(RowAnimation animation)
{
    if (!isViewLoaded())
        return false;
    if (std::exchange(_rowAnimation, animation) != animation)
        emit rowAnimationChanged();
    return true;
}

void TableViewController::insertRow(IndexPath path, RowAnimation animation)
{
    if (!startChange(animation))
        return;
    _model->insertRow(path);
    emit contentChanged();
}

void TableViewController::deleteRow(IndexPath path, RowAnimation animation)
{
    if (!startChange(animation))
        return;
    _model->deleteRow(path);
    emit contentChanged();
}

void TableViewController::reloadRow(IndexPath path)
{
    if (!startChange(RowAnimation::Automatic))
        return;
    _model->reloadRow(path);
    emit contentChanged();
}

void TableViewController::insertSection(int section, RowAnimation animation)
{
    if (!startChange(animation))
        return;
    _model->insertSection(section);
    emit contentChanged();
}

void TableViewController::deleteSection(int section, RowAnimation animation)
{
    if (!startChange(animation))
        return;
    _model->deleteSection(section);
    emit contentChanged();
}

void TableViewController::reloadData()
{
    if (!startChange(RowAnimation::None))
        return;
    _model->reload();
    emit contentChanged();
}

} // namespace cvtamber
