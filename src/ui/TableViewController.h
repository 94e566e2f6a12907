// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TableCell.h"
#include "ui/ViewController.h"

#include <QAbstractListModel>

#include <vector>

namespace cvtamber {

class RowFilter;
class TableModel;

struct IndexPath
{
    int section = 0;
    int row = 0;

    bool operator==(const IndexPath &) const = default;
};

// Numbered for the views: 0 to 3.
enum class RowAnimation { None, Automatic, Fade, Top };

// A screen that is a table: sections with rows.
//
// A subclass answers the questions (how many, which cell) from its own data at any time, and says what has changed
// (insertRow, deleteRow, reloadRow, insertSection, deleteSection, reloadData); the model() turns that into model
// signals. reloadData compares what is shown with what the answers are now, and emits only the difference: rows that
// are the same stay, moved rows move, so a screen reader is not thrown out of the list. Rows are told apart by
// rowIdentity. A change that does not fit the answers (an insertion after which the count is another) is turned
// into the difference and a warning; one that fits in number while other rows have moved into the new order.
// The table is first asked after viewDidLoad; changes told before that are dropped.
//
// A person may filter a long table. That changes what is shown alone: every IndexPath is a place in the answers.
// Thread: main thread.
class TableViewController : public cvtamber::ViewController
{
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel *model READ modelPointer NOTIFY filteringChanged)
    Q_PROPERTY(bool allowsSelection READ allowsSelection CONSTANT)
    Q_PROPERTY(int rowAnimation READ rowAnimationNumber NOTIFY rowAnimationChanged)
    Q_PROPERTY(QString footerButtonTitle READ footerButtonTitle NOTIFY contentChanged)
    Q_PROPERTY(QString emptyText READ shownEmptyText NOTIFY contentChanged)
    Q_PROPERTY(bool filterable READ isFilterable NOTIFY contentChanged)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY contentChanged)
    Q_PROPERTY(QString filterResult READ filterResult NOTIFY contentChanged)

public:
    enum class EditingStyle { None, Delete };

    explicit TableViewController(Presenter &presenter);
    ~TableViewController() override;

    // All rows.
    TableModel &model() const { return *_model; }
    // The rows that are shown: all, or those that the filter leaves.
    QAbstractItemModel *modelPointer() const;

    // How the change that is told now, or was told last, is to be shown.
    RowAnimation rowAnimation() const { return _rowAnimation; }
    int rowAnimationNumber() const { return static_cast<int>(_rowAnimation); }

    virtual int numberOfSections() const { return 1; }
    virtual int numberOfRows(int section) const = 0;
    virtual TableCell cellForRow(IndexPath path) const = 0;
    // Null for none.
    Q_INVOKABLE virtual QString titleForHeader(int section) const;
    // A button under the table; empty for none.
    virtual QString footerButtonTitle() const { return {}; }
    // Something that stays the same while the row is the same thing: the document's, user's or folder's address.
    // 0: the row is known by its place.
    virtual quintptr rowIdentity(IndexPath path) const;
    virtual EditingStyle editingStyle(IndexPath) const { return EditingStyle::None; }
    virtual bool allowsSelection() const { return true; }
    // A message for people over an empty table that says what to do; empty for none.
    virtual QString emptyText() const { return {}; }
    QString shownEmptyText() const;

    // Whether a person may look for rows here at all.
    virtual bool mayBeFiltered() const { return true; }
    // What a filter looks into; null for a row that is no entry and always stays. Text and detail at first.
    virtual QString searchText(IndexPath path) const;
    // There are more rows than are found at a glance, or some are filtered away already.
    bool isFilterable() const;
    QString filter() const;
    // Says how many entries are left. Empty: all rows are shown again.
    void setFilter(const QString &text);
    // How many entries are left, for people; empty without a filter.
    QString filterResult() const;
    // Where the row stands in modelPointer(); -1 when it is not shown.
    Q_INVOKABLE int shownRow(int section, int row) const;

    // What a person does, through the view: to the row that is shown there. Where that is not the row of the answers now,
    // the table is read again and nothing is done. A row that is not shown or may not be highlighted is ignored.
    Q_INVOKABLE void rowClicked(int section, int row);
    Q_INVOKABLE void accessoryClicked(int section, int row);
    Q_INVOKABLE void deleteClicked(int section, int row);
    Q_INVOKABLE void renameClicked(int section, int row);
    // `on` is what a switch shows now.
    Q_INVOKABLE void controlClicked(int section, int row, int control, bool on);
    Q_INVOKABLE void footerButtonClicked();

    void setEditing(bool editing) override;

signals:
    void rowAnimationChanged();
    // After every change that was told: the rows, the footer button or the empty text may be others.
    void contentChanged();
    // The filter begins or ends, which makes modelPointer() another.
    void filteringChanged();

protected:
    void viewLoaded() override;

    virtual void didSelectRow(IndexPath) {}
    virtual void accessoryButtonTapped(IndexPath) {}
    virtual void commitDelete(IndexPath) {}
    // By key, whether the table is edited or not.
    virtual void commitRename(IndexPath) {}
    virtual void controlActivated(IndexPath, int /*control*/, bool /*on*/) {}
    virtual void footerButtonActivated() {}

    void insertRow(IndexPath path, RowAnimation animation = RowAnimation::Automatic);
    void deleteRow(IndexPath path, RowAnimation animation = RowAnimation::Automatic);
    void reloadRow(IndexPath path);
    void insertSection(int section, RowAnimation animation = RowAnimation::Automatic);
    void deleteSection(int section, RowAnimation animation = RowAnimation::Automatic);
    void reloadData();

private:
    bool hasRow(IndexPath path) const;
    void performOnRow(IndexPath path, std::function<void()> action);
    // Whether a change is to be told at all; keeps its animation for the view.
    bool startChange(RowAnimation animation);

    RowAnimation _rowAnimation = RowAnimation::None;
    std::unique_ptr<TableModel> _model;
    std::unique_ptr<RowFilter> _filter;
};

} // namespace cvtamber
