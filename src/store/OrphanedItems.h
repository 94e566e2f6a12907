// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/TamberUbiquitousFolderMonitorDelegate.h"

#include <map>

namespace cvtamber {

// Cloud items that were reported before the user or the folder that they belong to.
//
// Finding those below a directory costs what is found, not what is kept. Thread: main thread.
class OrphanedItems
{
public:
    void add(const std::shared_ptr<TamberUbiquitousItem> &item);
    // The items whose path begins with the path, the last added first.
    TamberUbiquitousItems withPathPrefix(const QString &path) const;
    // As withPathPrefix; they are dropped.
    TamberUbiquitousItems takeWithPathPrefix(const QString &path);
    // Every item with that URL.
    void remove(const FileURL &url);
    bool isEmpty() const { return _items.empty(); }

private:
    // By path, then by the order of adding.
    using Key = std::pair<QString, quint64>;

    quint64 _lastNumber = 0;
    std::map<Key, std::shared_ptr<TamberUbiquitousItem>> _items;
};

} // namespace cvtamber
