// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QTemporaryDir>

namespace cvtamber {

// A store on the disk for a benchmark to open: users with documents, no folders. Goes with this object.
class StoreTree
{
public:
    StoreTree(int users, int documentsPerUser);
    // The same in a folder that is somebody else's; whether all of it could be written.
    static bool fill(const QString &root, int users, int documentsPerUser);

    bool isComplete() const { return _isComplete; }
    QString root() const { return _folder.path(); }
    // "XXXXXXXX-XXXX-..." of the n-th user.
    static QString userFolder(int number);
    static QString documentName(int number);

private:
    QTemporaryDir _folder;
    bool _isComplete = false;
};

// The control: opens every folder below the path and reads its entries, and nothing else. Returns how many.
qint64 bareWalk(const QString &path);

} // namespace cvtamber
