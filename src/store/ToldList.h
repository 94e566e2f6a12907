// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/ContainerList.h"

namespace cvtamber {

// A container's list with the delegate that hears of its changes: each change is told once it has been made.
// The delegate is weak and may change the list while it hears.
template<typename Item, typename Delegate, void (Delegate::*Added)(StoreIndex),
         void (Delegate::*Deleted)(StoreIndex)>
class ToldList final : public ContainerList<Item>
{
public:
    using Pointer = typename ContainerList<Item>::Pointer;

    void setDelegate(std::weak_ptr<Delegate> delegate) { _delegate = std::move(delegate); }
    std::shared_ptr<Delegate> delegate() const { return _delegate.lock(); }

    void insertAndTell(const Pointer &item) { tellAdded(this->insertSorted(item)); }
    void tellAdded(StoreIndex index) const
    {
        if (const auto delegate = _delegate.lock())
            ((*delegate).*Added)(index);
    }

    // Finds the item by identity, wherever it stands by now; false when it has gone.
    bool removeAndTell(const Item *item)
    {
        const StoreIndex index = this->remove(item);
        if (index == NotFound)
            return false;
        if (const auto delegate = _delegate.lock())
            ((*delegate).*Deleted)(index);
        return true;
    }

private:
    std::weak_ptr<Delegate> _delegate;
};

} // namespace cvtamber
