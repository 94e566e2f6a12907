// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Observers.h"
#include "store/ContainerDelegates.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace cvtamber {

// A list of documents, folders or users, kept in ascending order of their names without regard to letter case once it
// has been sorted; a list that was only appended to stays in the order of appending.
//
// Sorting: n log n when the list is not in order, else nothing. Inserting into a sorted list: a binary
// search and a move of the pointers behind it. Looking an URL up: constant, through an index of the URLs' last
// components, which the place of the store may change under, that is built at the first look. Item has url() and name().
// Thread: main thread.
template<typename Item> class ContainerList
{
public:
    using Pointer = std::shared_ptr<Item>;

    const std::vector<Pointer> &items() const { return _items; }
    StoreIndex size() const { return static_cast<StoreIndex>(_items.size()); }
    bool isEmpty() const { return _items.empty(); }
    bool holds(StoreIndex index) const { return index >= 0 && index < size(); }
    const Pointer &at(StoreIndex index) const { return _items[static_cast<size_t>(index)]; }

    void append(Pointer item)
    {
        _isSorted = false;
        remember(item);
        _items.push_back(std::move(item));
    }

    // Appends and sorts; the item's index after that.
    StoreIndex insertSorted(const Pointer &item)
    {
        sort();
        remember(item);
        const auto place = std::upper_bound(_items.begin(), _items.end(), item, &comesBefore);
        const StoreIndex index = place - _items.begin();
        _items.insert(place, item);
        return index;
    }

    void sort()
    {
        if (!_isSorted)
            std::sort(_items.begin(), _items.end(), &comesBefore);
        _isSorted = true;
    }

    // An item of the list has another name now.
    void nameChanged() { _isSorted = false; }

    void removeAt(StoreIndex index)
    {
        forget(at(index));
        _items.erase(_items.begin() + index);
    }

    // By identity, wherever it stands by now; the index that it had, NotFound when it has gone.
    StoreIndex remove(const Item *item)
    {
        const StoreIndex index = indexOf(item);
        if (index != NotFound)
            removeAt(index);
        return index;
    }

    // By identity; null is in no list.
    StoreIndex indexOf(const Item *item) const
    {
        const auto isIt = [item](const Pointer &one) { return one.get() == item; };
        const auto from = item && _isSorted ? firstNotBefore(*item) : _items.begin();
        auto found = std::find_if(from, _items.end(), isIt);
        if (found != _items.end())
            return found - _items.begin();
        // One whose name has changed without a word stands elsewhere.
        found = std::find_if(_items.begin(), from, isIt);
        return found == from ? NotFound : found - _items.begin();
    }

    // The first item of that URL; null, NotFound when there is none.
    Item *itemOfURL(const FileURL &url) const
    {
        indexAll();
        Item *first = nullptr;
        const auto [from, to] = _byFileName.equal_range(url.lastPathComponent());
        for (auto it = from; it != to; ++it) {
            Item *const item = it->second;
            if (item->url() == url && (!first || indexOf(item) < indexOf(first)))
                first = item;
        }
        return first;
    }
    StoreIndex indexOfURL(const FileURL &url) const
    {
        const Item *const item = itemOfURL(url);
        return item ? indexOf(item) : NotFound;
    }

private:
    static int compareNames(const Item &one, const Item &other)
    {
        return one.name().compare(other.name(), Qt::CaseInsensitive);
    }
    static bool comesBefore(const Pointer &one, const Pointer &other)
    {
        return compareNames(*one, *other) < 0;
    }

    auto firstNotBefore(const Item &item) const
    {
        return std::lower_bound(
            _items.begin(), _items.end(), item,
            [](const Pointer &one, const Item &other) { return compareNames(*one, other) < 0; });
    }

    void indexAll() const
    {
        if (_isIndexed)
            return;
        for (const Pointer &item : _items)
            _byFileName.emplace(item->url().lastPathComponent(), item.get());
        _isIndexed = true;
    }
    void remember(const Pointer &item)
    {
        if (_isIndexed)
            _byFileName.emplace(item->url().lastPathComponent(), item.get());
    }
    void forget(const Pointer &item)
    {
        if (!_isIndexed)
            return;
        const auto [from, to] = _byFileName.equal_range(item->url().lastPathComponent());
        const auto found =
            std::find_if(from, to, [&](const auto &entry) { return entry.second == item.get(); });
        if (found != to) {
            _byFileName.erase(found);
            return;
        }
        // Its URL has changed since: the index is built again at the next look.
        _byFileName.clear();
        _isIndexed = false;
    }

    std::vector<Pointer> _items;
    bool _isSorted = true;
    // Built at the first look-up, so that opening a store does not pay for it.
    mutable bool _isIndexed = false;
    mutable std::unordered_multimap<QString, Item *> _byFileName;
};

// A container's list with the delegate and the observers that hear of its changes: each change is told once it has been
// made. The delegate is weak; whoever hears may change the list.
template<typename Item, typename Delegate, void (Delegate::*Added)(StoreIndex),
         void (Delegate::*Deleted)(StoreIndex)>
class ToldList final : public ContainerList<Item>
{
public:
    using Pointer = typename ContainerList<Item>::Pointer;

    Listeners<Delegate> &listeners() { return _listeners; }
    const Listeners<Delegate> &listeners() const { return _listeners; }

    // Nothing for an URL that is listed: two rows would share one file, and a deletion of either would take it.
    void insertAndTell(const Pointer &item)
    {
        if (this->indexOfURL(item->url()) == NotFound)
            tellAdded(this->insertSorted(item));
    }
    void tellAdded(StoreIndex index) const { tell(Added, index); }
    void tell(void (Delegate::*change)(StoreIndex), StoreIndex index) const
    {
        _listeners.tell(change, index);
    }

    // Finds the item by identity, wherever it stands by now; false when it has gone.
    bool removeAndTell(const Item *item)
    {
        const StoreIndex index = this->remove(item);
        if (index == NotFound)
            return false;
        tell(Deleted, index);
        return true;
    }

    // In the cloud a move changes the lists before the reports do. What then comes or goes at that place before it has been
    // looked at is never reported as such. Nothing for what is listed.
    void expectReport(const FileURL &url)
    {
        if (this->indexOfURL(url) == NotFound)
            _unreported.insert(url);
    }
    bool isReportExpected(const FileURL &url) const { return _unreported.contains(url); }
    void noteReport(const FileURL &url) { _unreported.erase(url); }
    // It is not on the disk any more. Nothing for what has been reported.
    void removeUnreported(const Item *item)
    {
        if (_unreported.erase(item->url()) > 0)
            removeAndTell(item);
    }

    // The delegate is not told, only the observers.
    void removeQuietly(const Item *item)
    {
        const StoreIndex index = this->remove(item);
        if (index != NotFound)
            _listeners.observers().tell(Deleted, index);
    }

private:
    Listeners<Delegate> _listeners;
    std::unordered_set<FileURL> _unreported;
};

} // namespace cvtamber
