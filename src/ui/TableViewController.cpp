// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TableViewController.h"

#include "ui/TableModel.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

TableViewController::TableViewController(Presenter &presenter)
    : ViewController(presenter)
    , _model(std::make_unique<TableModel>(*this))
{}

TableViewController::~TableViewController() = default;

QAbstractItemModel *TableViewController::modelPointer() const
{
    return _model.get();
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
    if (!shown)
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
