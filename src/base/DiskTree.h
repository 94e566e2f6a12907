// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileOperations.h"

#include <QString>

#include <vector>

namespace cvtamber {

// A file or folder and everything below it, as it was found. Links are taken for what they are and never
// entered. Any thread. The operations outlive it.
class DiskTree
{
public:
    struct Item
    {
        QString path;
        FileStatus status;
    };

    DiskTree(FileOperations &operations, const QString &path);

    // Each folder before what lies in it; the first is the item itself.
    const std::vector<Item> &items() const { return _items; }
    // The first error; the items are then not all there are.
    const std::error_code &error() const { return _error; }
    // When one of them was changed last, in nanoseconds since 1970.
    qint64 latestChange() const;
    // As much as can be removed; the first error.
    std::error_code remove() const;

private:
    FileOperations &_operations;
    std::vector<Item> _items;
    std::error_code _error;
};

} // namespace cvtamber
