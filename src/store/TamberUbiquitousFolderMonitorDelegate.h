// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "store/TamberUbiquitousItem.h"

#include <memory>
#include <vector>

namespace cvtamber {

class TamberUbiquitousFolderMonitor;
using TamberUbiquitousItems = std::vector<std::shared_ptr<TamberUbiquitousItem>>;

// Hears what happens to the items that a monitor watches. Main thread.
class TamberUbiquitousFolderMonitorDelegate : public InterfaceBase
{
public:
    using Item = std::shared_ptr<TamberUbiquitousItem>;
    virtual void ubiquitousMonitorItemAdded(TamberUbiquitousFolderMonitor &monitor, const Item &item) = 0;
    virtual void ubiquitousMonitorItemDeleted(TamberUbiquitousFolderMonitor &monitor, const Item &item) = 0;
    virtual void ubiquitousMonitorItemDownloaded(TamberUbiquitousFolderMonitor &monitor,
                                                 const Item &item) = 0;
    virtual void ubiquitousMonitorItemDownloadedAgain(TamberUbiquitousFolderMonitor &monitor,
                                                      const Item &item) = 0;
    virtual void ubiquitousMonitorContentGathered(TamberUbiquitousFolderMonitor &monitor,
                                                  const TamberUbiquitousItems &items) = 0;
};

} // namespace cvtamber
