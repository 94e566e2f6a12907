// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreContext.h"
#include "store/TamberUbiquitousFolderMonitorDelegate.h"

#include <memory>
#include <stdexcept>
#include <unordered_map>

namespace cvtamber {

class MetadataQuery;

// Thrown where a monitor is made for a directory outside the cloud container: a mistake in the program.
class TamberUbiquitousFolderMonitorException : public std::logic_error
{
public:
    TamberUbiquitousFolderMonitorException()
        : std::logic_error("parent property must be an ubiquitous item")
    {}
    static const char *name() { return "TamberUbiquitousFolderMonitor exception"; }
};

// Watches the items below one directory of the cloud container and tells its delegate what became of each.
//
// An item: unknown -> added -> downloaded (the first time) -> a newer version on its way (silent) ->
// downloaded again ... -> deleted and forgotten. One that is downloaded when first seen starts as such: its
// next download is "again". An added item is never reported as downloaded in the same pass; its state tells.
// In one pass additions and downloads come first, in the query's order, deletions after them, the newest item
// first. The monitor: made -> started -> gathered (never reset) -> stopped.
// The work of a pass is linear in the items. Thread: main thread. Owner: the registry. The delegate is weak,
// and may stop or drop the monitor while it hears a report.
class TamberUbiquitousFolderMonitor : public std::enable_shared_from_this<TamberUbiquitousFolderMonitor>
{
public:
    // Throws TamberUbiquitousFolderMonitorException for a directory outside the container.
    TamberUbiquitousFolderMonitor(StoreContext &context, const FileURL &parentFolder, const QString &filter);
    TamberUbiquitousFolderMonitor(const TamberUbiquitousFolderMonitor &) = delete;
    TamberUbiquitousFolderMonitor &operator=(const TamberUbiquitousFolderMonitor &) = delete;
    ~TamberUbiquitousFolderMonitor();

    const QString &filter() const { return _filter; }
    void setFilter(const QString &filter) { _filter = filter; }
    void setDelegate(std::weak_ptr<TamberUbiquitousFolderMonitorDelegate> delegate);
    // In order of first sight.
    const TamberUbiquitousItems &items() const;
    bool contentGathered() const { return _contentGathered; }

    // Starting a started monitor changes nothing; the query is made at the first start.
    void startMonitoring();
    void stopMonitoring();
    // Null when unknown.
    std::shared_ptr<TamberUbiquitousItem> findItemWithURL(const FileURL &url) const;
    // Reports the item as deleted when nothing is at its path; it stays in items().
    void checkIfDeleted(const std::shared_ptr<TamberUbiquitousItem> &item);

private:
    class Pass;
    using Delegate = TamberUbiquitousFolderMonitorDelegate;
    using Report = void (Delegate::*)(TamberUbiquitousFolderMonitor &,
                                      const std::shared_ptr<TamberUbiquitousItem> &);

    void makeQuery();
    void handleReport(bool isGathered);
    // False when the monitor was stopped or dropped meanwhile.
    bool handleQueryResults();
    void report(Report what, const std::shared_ptr<TamberUbiquitousItem> &item);
    void closeGaps() const;

    StoreContext &_context;
    QString _filter;
    std::unique_ptr<MetadataQuery> _query;
    FileURL _parent;
    // Deleted ones leave gaps until the list is asked for or the pass ends: closing each by itself would not be linear.
    mutable TamberUbiquitousItems _items;
    mutable bool _hasGaps = false;
    std::unordered_map<FileURL, std::shared_ptr<TamberUbiquitousItem>> _itemsByURL;
    // Counts stops, so that a pass notices one.
    quint64 _run = 0;
    bool _contentGathered = false;
    std::weak_ptr<Delegate> _delegate;
};

} // namespace cvtamber
