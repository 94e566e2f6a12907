// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ListTable.h"

#include "support/ManualRunLoop.h"
#include "support/RecordingPresenter.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QtTest>

namespace cvtamber {

// What a view makes of the model's signals alone, and what it saw of them.
class Mirror : public QObject
{
public:
    explicit Mirror(TableModel &model)
        : _model(model)
    {
        connect(&model, &TableModel::rowsInserted, this, [this](const QModelIndex &, int first, int last) {
            for (int row = first; row <= last; ++row)
                rows.insert(row, textAt(row));
            note(QStringLiteral("insert %1-%2").arg(first).arg(last));
        });
        connect(&model, &TableModel::rowsRemoved, this, [this](const QModelIndex &, int first, int last) {
            rows.remove(first, last - first + 1);
            note(QStringLiteral("remove %1-%2").arg(first).arg(last));
        });
        connect(&model, &TableModel::rowsMoved, this,
                [this](const QModelIndex &, int first, int, const QModelIndex &, int to) {
                    rows.move(first, to > first ? to - 1 : to);
                    note(QStringLiteral("move %1>%2").arg(first).arg(to));
                });
        connect(&model, &TableModel::layoutAboutToBeChanged, this, [this] {
            _kept.clear();
            for (int row = 0; row < _model.rowCount(); ++row)
                _kept.append(_model.index(row));
        });
        connect(&model, &TableModel::layoutChanged, this, [this] {
            const auto old = rows;
            for (int row = 0; row < old.size(); ++row)
                rows[_kept.at(row).row()] = old.at(row);
            note(QStringLiteral("layout"));
        });
        connect(&model, &TableModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last, const QList<int> &roles) {
                    if (roles.isEmpty()) {
                        for (int row = first.row(); row <= last.row(); ++row)
                            rows[row] = textAt(row);
                    }
                    note((roles.isEmpty() ? QStringLiteral("data %1-%2") : QStringLiteral("places %1-%2"))
                             .arg(first.row())
                             .arg(last.row()));
                });
        connect(&model, &TableModel::modelReset, this, [this] { note(QStringLiteral("reset")); });
    }

    QStringList rows;
    QStringList signalsSeen;
    // Before a `data` signal had told the texts anew.
    QStringList rowsBeforeData;

private:
    QString textAt(int row) const { return _model.index(row).data(TableModel::TextRole).toString(); }
    void note(const QString &line)
    {
        signalsSeen.append(line);
        if (!line.startsWith(QLatin1String("data")))
            rowsBeforeData = rows;
    }

    TableModel &_model;
    QList<QPersistentModelIndex> _kept;
};

// A shown table with all that watches its model.
struct TableBench
{
    explicit TableBench(const QString &letters = {})
    {
        table->setLetters(letters);
        presenter.showRoot(table);
        clear();
    }

    void clear()
    {
        mirror.signalsSeen.clear();
        mirror.rowsBeforeData = mirror.rows;
    }
    QStringList words() const
    {
        QStringList all;
        for (const auto &section : table->sections)
            all += section;
        return all;
    }
    QVariant at(int row, int role) const { return table->model().index(row).data(role); }

    ManualRunLoop loop;
    RecordingPresenter presenter{loop};
    std::shared_ptr<ListTable> table = std::make_shared<ListTable>(presenter);
    QAbstractItemModelTester tester{&table->model(), QAbstractItemModelTester::FailureReportingMode::QtTest};
    Mirror mirror{table->model()};
};

} // namespace cvtamber
