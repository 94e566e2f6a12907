// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace cvtamber {

struct DurableFileResult
{
    enum class Outcome { Ok, AlreadyExists, Failed };

    Outcome outcome = Outcome::Ok;
    // What went wrong, as a sentence part for a person ("no space left on device"); empty when Ok.
    QString message;

    bool ok() const { return outcome == Outcome::Ok; }
};

// Files that are on the disk whole, or not at all, when the call returns.
//
// The bytes go to a hidden file ".cvtamber-..." in the same folder first, which a power failure can leave
// behind. Ok means that file and folder have been synced. Failed leaves what was there before, with one
// exception that its message tells: the file is in place and the folder would not sync. Any thread; the file
// name is one that QFile takes.

// Makes a file with the permissions of a new file. Whatever has the name already, be it a link to nothing,
// stays untouched, also when it appears at the same moment.
DurableFileResult writeNewFile(const QString &path, const QByteArray &bytes);

// Makes the file or replaces its contents; its permissions stay, and its owner where the system lets them.
// A symbolic link is followed: what it points to is replaced. Only an ordinary file is: a folder, a device, a
// pipe or a link to nothing is refused.
DurableFileResult replaceFile(const QString &path, const QByteArray &bytes);

} // namespace cvtamber
