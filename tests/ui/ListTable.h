// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TableModel.h"
#include "ui/TableViewController.h"

#include <QStringList>

#include <vector>

namespace cvtamber {

// A table over lists of words. A word is its own identity; one that begins with "0" is known by its place.
class ListTable final : public TableViewController
{
public:
    using TableViewController::deleteRow;
    using TableViewController::deleteSection;
    using TableViewController::insertRow;
    using TableViewController::insertSection;
    using TableViewController::reloadData;
    using TableViewController::reloadRow;
    using TableViewController::TableViewController;

    std::vector<QStringList> sections;
    QStringList actions;
    mutable int askedIdentities = 0;
    mutable int askedCells = 0;

    // "ab cd" is two sections of two rows, for words of one letter.
    void setLetters(const QString &text)
    {
        sections.clear();
        for (const auto &letters : text.split(QLatin1Char(' ')))
            sections.push_back(letters.split(QString(), Qt::SkipEmptyParts));
    }

    const QString &word(IndexPath path) const
    {
        return sections.at(static_cast<size_t>(path.section)).at(path.row);
    }

    int numberOfSections() const override { return static_cast<int>(sections.size()); }
    int numberOfRows(int section) const override
    {
        return static_cast<int>(sections.at(static_cast<size_t>(section)).size());
    }
    quintptr rowIdentity(IndexPath path) const override
    {
        ++askedIdentities;
        const auto &text = word(path);
        return text.startsWith(QLatin1Char('0')) ? 0 : qHash(text, 1);
    }
    TableCell cellForRow(IndexPath path) const override
    {
        ++askedCells;
        TableCell cell;
        cell.text = word(path);
        cell.isEnabled = cell.text != QLatin1String("disabled");
        cell.canHighlight = cell.text != QLatin1String("waiting");
        if (cell.text == QLatin1String("detailed"))
            cell.accessory = TableCell::Accessory::DetailDisclosure;
        if (cell.text == QLatin1String("switched")) {
            cell.controls = {{1, CellControl::Kind::Switch, {}, {}, true, false},
                             {2, CellControl::Kind::Button, {}, {}, false, false},
                             {3, CellControl::Kind::ActivityIndicator, {}, {}, true, false}};
        }
        return cell;
    }
    EditingStyle editingStyle(IndexPath path) const override
    {
        return isEditing() && word(path) != QLatin1String("fixed") ? EditingStyle::Delete
                                                                   : EditingStyle::None;
    }
    QString titleForHeader(int section) const override { return QString::number(section); }
    bool allowsSelection() const override { return selectable; }
    QString footerButtonTitle() const override { return footer; }

    bool selectable = true;
    QString footer;

protected:
    void didSelectRow(IndexPath path) override { actions.append(QStringLiteral("select ") + word(path)); }
    void accessoryButtonTapped(IndexPath path) override
    {
        actions.append(QStringLiteral("detail ") + word(path));
    }
    void commitDelete(IndexPath path) override { actions.append(QStringLiteral("delete ") + word(path)); }
    void controlActivated(IndexPath, int control, bool on) override
    {
        actions.append(QStringLiteral("control %1 %2").arg(control).arg(on));
    }
    void footerButtonActivated() override { actions.append(QStringLiteral("footer")); }
};

} // namespace cvtamber
