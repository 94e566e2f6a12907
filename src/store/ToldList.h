// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Observers.h"
#include "store/ContainerList.h"

namespace cvtamber {

// A container's list with the delegate and the observers that hear of its changes: each change is told once it has been
// made. The delegate is weak; whoever hears may change the list.
template<typename Item, typename Delegate, void (Delegate::*Added)(StoreIndex),
         void (Delegate::*Deleted)(StoreIndex)>
class ToldList final : public ContainerList<Item>
{
public:
    using Pointer = typename ContainerList<Item>::Pointer;

    void setDelegate(std::weak_ptr<Delegate> delegate) { _delegate = std::move(delegate); }
    std::shared_ptr<Delegate> delegate() const { return _delegate.lock(); }

    void addObserver(Delegate &observer) { _observers.add(observer); }
    void removeObserver(Delegate &observer) { _observers.remove(observer); }

    // Nothing for an URL that is listed: two rows would share one file, and a deletion of either would take it.
    void insertAndTell(const Pointer &item)
    {
        if (this->indexOfURL(item->url()) == NotFound)
            tellAdded(this->insertSorted(item));
    }
    void tellAdded(StoreIndex index) const { tell(Added, index); }
    void tell(void (Delegate::*change)(StoreIndex), StoreIndex index) const
    {
        if (const auto delegate = _delegate.lock())
            ((*delegate).*change)(index);
        _observers.tell(change, index);
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

    // The delegate is not told, only the observers.
    void removeQuietly(const Item *item)
    {
        const StoreIndex index = this->remove(item);
        if (index != NotFound)
            _observers.tell(Deleted, index);
    }

private:
    std::weak_ptr<Delegate> _delegate;
    Observers<Delegate> _observers;
};

} // namespace cvtamber
