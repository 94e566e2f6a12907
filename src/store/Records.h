// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace cvtamber {

// The two small records of the store. Reading takes any bytes; writing gives UTF-8 with "\n" at each line's
// end, and a null value is an empty line. Pure functions; any thread.

// "user.txt": three lines. A field that is not there is null when the whole text is (no file, no UTF-8), else
// empty.
struct UserRecord
{
    QString firstName;
    QString lastName;
    QString displayName;

    bool operator==(const UserRecord &) const = default;

    // Of the record's text; CR before a line end and a byte-order mark are dropped. Null text: null fields.
    static UserRecord fromText(const QString &text);
    QString toText() const;
};

// "folder.dat": the first line is the folder's name; what follows is ignored. Null when it is not UTF-8.
QString folderNameFromBytes(const QByteArray &bytes);
QByteArray folderNameToBytes(const QString &name);

// Null when the bytes are not UTF-8; a byte-order mark at the start is dropped.
QString textFromUtf8(const QByteArray &bytes);
// Lossy: a lone surrogate becomes the replacement character.
QByteArray utf8FromText(const QString &text);

} // namespace cvtamber
