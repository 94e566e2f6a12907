// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/OrphanedItems.h"

#include <algorithm>

namespace cvtamber {

namespace {

using Numbered = std::pair<quint64, std::shared_ptr<TamberUbiquitousItem>>;

TamberUbiquitousItems lastAddedFirst(std::vector<Numbered> numbered)
{
    std::sort(numbered.begin(), numbered.end(),
              [](const Numbered &one, const Numbered &other) { return one.first > other.first; });
    TamberUbiquitousItems items;
    items.reserve(numbered.size());
    for (Numbered &entry : numbered)
        items.push_back(std::move(entry.second));
    return items;
}

} // namespace

void OrphanedItems::add(const std::shared_ptr<TamberUbiquitousItem> &item)
{
    _items.emplace(Key{item->url().path(), ++_lastNumber}, item);
}

TamberUbiquitousItems OrphanedItems::withPathPrefix(const QString &path) const
{
    std::vector<Numbered> found;
    // Paths that begin alike stand side by side, the shortest first.
    for (auto it = _items.lower_bound({path, 0}); it != _items.end() && it->first.first.startsWith(path);
         ++it)
        found.emplace_back(it->first.second, it->second);
    return lastAddedFirst(std::move(found));
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
