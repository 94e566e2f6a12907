// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/NavigationController.h"
#include "ui/TabBarController.h"
#include "ui/TableModel.h"
#include "ui/TableViewController.h"

#include <QAbstractItemModel>
#include <QtQml/qqml.h>

// The vocabulary of screens under the names that the views know it by. Views are given objects of these types and make none.
namespace cvtamber {

struct ViewControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::ViewController)
    QML_NAMED_ELEMENT(ViewController)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct TableViewControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::TableViewController)
    QML_NAMED_ELEMENT(TableViewController)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct NavigationControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::NavigationController)
    QML_NAMED_ELEMENT(NavigationController)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct TabBarControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::TabBarController)
    QML_NAMED_ELEMENT(TabBarController)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct TableModelType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::TableModel)
    QML_NAMED_ELEMENT(TableModel)
    QML_UNCREATABLE("A table makes its model.")
};

struct BarButtonItemType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::BarButtonItem)
    QML_VALUE_TYPE(barButtonItem)
};

struct BarButtonItemListType
{
    Q_GADGET
    QML_FOREIGN(QList<cvtamber::BarButtonItem>)
    QML_ANONYMOUS
    QML_SEQUENTIAL_CONTAINER(cvtamber::BarButtonItem)
};

struct CellControlType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::CellControl)
    QML_VALUE_TYPE(cellControl)
};

struct CellControlListType
{
    Q_GADGET
    QML_FOREIGN(QList<cvtamber::CellControl>)
    QML_ANONYMOUS
    QML_SEQUENTIAL_CONTAINER(cvtamber::CellControl)
};

// The enumerations of the value types.
namespace BarButtonItemEnums {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(cvtamber::BarButtonItem)
QML_NAMED_ELEMENT(BarButtonItem)
} // namespace BarButtonItemEnums

namespace CellControlEnums {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(cvtamber::CellControl)
QML_NAMED_ELEMENT(CellControl)
} // namespace CellControlEnums

namespace TableCellEnums {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(cvtamber::TableCell)
QML_NAMED_ELEMENT(TableCell)
} // namespace TableCellEnums

} // namespace cvtamber
