// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

namespace cvtamber {

// One line of comma-separated text, split into its fields; what the device sends is such text.
//
// Never fails: an empty line has one empty field. A comma right after a closing quote only ends the
// quotation, and the field goes on to the next comma: `"a",b,c` has the fields `a",b` and `c`. The devices'
// lines rely on it, so it stays. Any thread.
class CVCSVRecord
{
public:
    explicit CVCSVRecord(QStringView line);
    static CVCSVRecord recordFromString(QStringView line);

    const QStringList &fields() const { return _fields; }

    static QStringList makeFieldsArrayFromString(QStringView line);
    // Of a text that begins with a double quote: without the double quotes at both ends, and with each pair
    // of them inside made one. Any other text stays.
    static QString unquoteString(QStringView text);

private:
    QStringList _fields;
};

} // namespace cvtamber
