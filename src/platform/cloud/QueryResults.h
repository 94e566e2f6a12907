// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/MetadataQuery.h"

#include <unordered_map>
#include <vector>

namespace cvtamber {

// The items of a query, each at its place until it is removed; new ones come last. Main thread.
class QueryResults
{
public:
    const QList<MetadataItem> &items() const { return _items; }
    // True when something is different now. Linear in what changes, and in all when something is removed.
    bool apply(const std::vector<MetadataItem> &items, const std::vector<FileURL> &removed);
    void clear();

private:
    bool put(const MetadataItem &item);
    bool remove(const std::vector<FileURL> &removed);

    QList<MetadataItem> _items;
    std::unordered_map<FileURL, qsizetype> _places;
};

} // namespace cvtamber
