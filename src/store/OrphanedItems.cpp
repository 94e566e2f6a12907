// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/OrphanedItems.h"

#include <functional>

namespace cvtamber {

void OrphanedItems::add(const std::shared_ptr<TamberUbiquitousItem> &item)
{
    _items.emplace(Key{item->url().path(), ++_lastNumber}, item);
}

TamberUbiquitousItems OrphanedItems::withPathPrefix(const QString &path) const
{
    std::map<quint64, std::shared_ptr<TamberUbiquitousItem>, std::greater<>> lastAddedFirst;
    // Paths that begin alike stand side by side, the shortest first.
    for (auto it = _items.lower_bound({path, 0}); it != _items.end() && it->first.first.startsWith(path);
         ++it)
        lastAddedFirst.emplace(it->first.second, it->second);
    TamberUbiquitousItems items;
    for (const auto &[number, item] : lastAddedFirst)
        items.push_back(item);
    return items;
}

TamberUbiquitousItems OrphanedItems::takeWithPathPrefix(const QString &path)
{
    TamberUbiquitousItems taken = withPathPrefix(path);
    const auto from = _items.lower_bound({path, 0});
    _items.erase(from, std::next(from, static_cast<std::ptrdiff_t>(taken.size())));
    return taken;
}

void OrphanedItems::remove(const FileURL &url)
{
    const QString path = url.path();
    for (auto it = _items.lower_bound({path, 0}); it != _items.end() && it->first.first == path;)
        it = it->second->url() == url ? _items.erase(it) : std::next(it);
}

} // namespace cvtamber
