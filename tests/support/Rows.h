// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

namespace cvtamber {

// The columns of a test's data, in order.
template<typename... Types, typename... Names> void columns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

// One data row of a test; the values in the order of the columns.
template<typename... Values> void row(const char *name, const Values &...values)
{
    auto &data = QTest::newRow(name);
    (data << ... << values);
}

} // namespace cvtamber
