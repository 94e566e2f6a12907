// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/DiskTree.h"

#include <algorithm>

namespace cvtamber {

using Kind = FileStatus::Kind;

DiskTree::DiskTree(FileOperations &operations, const QString &path)
    : _operations(operations)
{
    _items.push_back({path, operations.status(path)});
    for (size_t next = 0; next < _items.size(); ++next) {
        if (_items[next].status.kind == Kind::Unknown && !_error)
            _error = _items[next].status.error;
        if (_items[next].status.kind != Kind::Folder)
            continue;
        const QString folder = _items[next].path;
        QList<FolderEntry> entries;
        const std::error_code error = operations.list(folder, entries);
        if (error && !_error)
            _error = error;
        for (const FolderEntry &entry : entries) {
            const QString child = folder % u'/' % entry.name;
            _items.push_back({child, operations.status(child)});
        }
    }
}

qint64 DiskTree::latestChange() const
{
    const auto latest =
        std::max_element(_items.begin(), _items.end(), [](const Item &one, const Item &other) {
            return one.status.stamp.modified < other.status.stamp.modified;
        });
    return latest->status.stamp.modified;
}

std::error_code DiskTree::remove() const
{
    std::error_code first;
    for (size_t i = _items.size(); i-- > 0;) {
        const Item &item = _items[i];
        const std::error_code error = item.status.kind == Kind::Folder ? _operations.removeFolder(item.path)
                                                                       : _operations.removeFile(item.path);
        if (error && error != std::errc::no_such_file_or_directory && !first)
            first = error;
    }
    return first;
}

} // namespace cvtamber
