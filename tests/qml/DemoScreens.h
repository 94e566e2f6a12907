// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TableViewController.h"

#include <functional>
#include <vector>

namespace cvtamber {

// A table of given cells that writes down what a person did.
class DemoTable : public TableViewController
{
public:
    struct Section
    {
        QString header;
        std::vector<TableCell> cells;
    };

    DemoTable(Presenter &presenter, const QString &title)
        : TableViewController(presenter)
    {
        setTitle(title);
    }

    std::vector<Section> sections;
    bool isDeletable = false;
    bool isSelectable = true;
    QString footer;
    QString empty;
    QStringList done;
    std::function<void(IndexPath)> onSelect;
    std::function<void(IndexPath, int, bool)> onControl;

    int numberOfSections() const override { return static_cast<int>(sections.size()); }
    int numberOfRows(int section) const override { return static_cast<int>(cells(section).size()); }
    TableCell cellForRow(IndexPath path) const override
    {
        return cells(path.section)[static_cast<size_t>(path.row)];
    }
    QString titleForHeader(int section) const override
    {
        return sections[static_cast<size_t>(section)].header;
    }
    QString footerButtonTitle() const override { return footer; }
    QString emptyText() const override { return empty; }
    bool allowsSelection() const override { return isSelectable; }
    quintptr rowIdentity(IndexPath path) const override { return qHash(cellForRow(path).text) | 1U; }
    EditingStyle editingStyle(IndexPath) const override
    {
        return isDeletable ? EditingStyle::Delete : EditingStyle::None;
    }

    void insertCell(IndexPath path, const TableCell &cell)
    {
        auto &cells = sections[static_cast<size_t>(path.section)].cells;
        cells.insert(cells.begin() + path.row, cell);
        insertRow(path);
    }
    void changed() { reloadData(); }

protected:
    void didSelectRow(IndexPath path) override
    {
        note(u"select", path);
        if (onSelect)
            onSelect(path);
    }
    void accessoryButtonTapped(IndexPath path) override { note(u"detail", path); }
    void commitDelete(IndexPath path) override
    {
        note(u"delete", path);
        auto &cells = sections[static_cast<size_t>(path.section)].cells;
        cells.erase(cells.begin() + path.row);
        deleteRow(path);
    }
    void controlActivated(IndexPath path, int control, bool on) override
    {
        done.append(QStringLiteral("control %1 %2").arg(control).arg(on ? 1 : 0));
        if (onControl)
            onControl(path, control, on);
    }
    void footerButtonActivated() override { done.append(QStringLiteral("footer")); }

private:
    const std::vector<TableCell> &cells(int section) const
    {
        return sections[static_cast<size_t>(section)].cells;
    }
    void note(QStringView what, IndexPath path)
    {
        done.append(QStringLiteral("%1 %2.%3").arg(what).arg(path.section).arg(path.row));
    }
};

inline TableCell demoCell(TableCell::Style style, const QString &text, const QString &detail = {})
{
    TableCell cell;
    cell.style = style;
    cell.text = text;
    cell.detail = detail;
    return cell;
}

inline CellControl demoButton(int id, const QString &title, const QString &accessibleName)
{
    CellControl control;
    control.id = id;
    control.title = title;
    control.accessibleName = accessibleName;
    return control;
}

} // namespace cvtamber
