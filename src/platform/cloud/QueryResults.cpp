// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/QueryResults.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

bool QueryResults::apply(const std::vector<MetadataItem> &items, const std::vector<FileURL> &removed)
{
    bool isDifferent = remove(removed);
    for (const MetadataItem &item : items)
        isDifferent |= put(item);
    return isDifferent;
}

void QueryResults::clear()
{
    _items.clear();
    _places.clear();
}

bool QueryResults::put(const MetadataItem &item)
{
    const auto [place, isNew] = _places.try_emplace(item.url, _items.size());
    if (isNew) {
        _items.append(item);
        return true;
    }
    if (std::as_const(_items)[place->second] == item)
        return false;
    _items[place->second] = item;
    return true;
}

bool QueryResults::remove(const std::vector<FileURL> &removed)
{
    const size_t before = _places.size();
    for (const FileURL &url : removed)
        _places.erase(url);
    if (_places.size() == before)
        return false;
    QList<MetadataItem> kept;
    kept.reserve(static_cast<qsizetype>(_places.size()));
    for (const MetadataItem &item : std::as_const(_items)) {
        const auto place = _places.find(item.url);
        if (place == _places.end())
            continue;
        place->second = kept.size();
        kept.append(item);
    }
    _items = kept;
    return true;
}

} // namespace cvtamber
