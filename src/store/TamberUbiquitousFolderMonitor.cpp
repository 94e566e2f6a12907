// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberUbiquitousFolderMonitor.h"

#include "base/RunLoop.h"
#include "store/CloudContainer.h"
#include "store/MetadataQuery.h"
#include "store/StoreDisk.h"

#include <unordered_set>

namespace cvtamber {

namespace {

qint32 stateOf(const MetadataItem &result)
{
    using State = TamberUbiquitousItem::State;
    return (result.isDownloaded ? State::Downloaded : 0) | (result.isUploaded ? State::Uploaded : 0) |
           (result.isDownloading ? State::Downloading : 0) | (result.isUploading ? State::Uploading : 0) |
           (result.hasUnresolvedConflicts ? State::HasConflicts : 0);
}

void store(const MetadataItem &result, TamberUbiquitousItem &item)
{
    item.setState(stateOf(result));
    item.setSize(static_cast<quint64>(result.size));
    item.setDateChanged(result.contentChangeDate);
}

} // namespace

// One look at the query's results. It ends early when the delegate stops or drops the monitor; what was not
// come to is found again by the next pass.
class TamberUbiquitousFolderMonitor::Pass
{
public:
    explicit Pass(TamberUbiquitousFolderMonitor &monitor)
        : _monitor(monitor)
        , _run(monitor._run)
        , _results(monitor._query->results())
    {
        _monitor._query->disableUpdates();
    }
    Pass(const Pass &) = delete;
    Pass &operator=(const Pass &) = delete;
    ~Pass()
    {
        _monitor.closeGaps();
        _monitor._query->enableUpdates();
    }

    // False when it ended early.
    bool run()
    {
        for (const MetadataItem &result : _results) {
            take(result);
            if (isOver())
                return false;
        }
        for (size_t i = _monitor._items.size(); i-- > 0;) {
            if (_current.count(_monitor._items[i].get()) == 0)
                reportDeleted(i);
            if (isOver())
                return false;
        }
        return true;
    }

private:
    // While a report runs, only the query's handler holds a monitor that nobody wants any more.
    bool isOver() const { return _monitor._run != _run || _monitor.weak_from_this().use_count() == 1; }

    void take(const MetadataItem &result)
    {
        const auto known = _monitor._itemsByURL.find(result.url);
        if (known == _monitor._itemsByURL.end())
            return add(result);
        const auto item = known->second;
        _current.insert(item.get());
        const bool wasHere = item->isDownloaded();
        store(result, *item);
        if (wasHere || !result.isDownloaded)
            return;
        _monitor.report(item->wasDownloaded() ? &Delegate::ubiquitousMonitorItemDownloadedAgain
                                              : &Delegate::ubiquitousMonitorItemDownloaded,
                        item);
        item->setWasDownloaded(true);
    }

    void add(const MetadataItem &result)
    {
        const auto item = std::make_shared<TamberUbiquitousItem>(result.url);
        store(result, *item);
        item->setWasDownloaded(result.isDownloaded);
        _monitor._items.push_back(item);
        _monitor._itemsByURL.emplace(result.url, item);
        _current.insert(item.get());
        _monitor.report(&Delegate::ubiquitousMonitorItemAdded, item);
    }

    void reportDeleted(size_t index)
    {
        const auto item = _monitor._items[index];
        _monitor.report(&Delegate::ubiquitousMonitorItemDeleted, item);
        _monitor._itemsByURL.erase(item->url());
        _monitor._items[index].reset();
        _monitor._hasGaps = true;
    }

    TamberUbiquitousFolderMonitor &_monitor;
    const quint64 _run;
    const QList<MetadataItem> _results;
    std::unordered_set<const TamberUbiquitousItem *> _current;
};

TamberUbiquitousFolderMonitor::TamberUbiquitousFolderMonitor(StoreContext &context,
                                                             const FileURL &parentFolder,
                                                             const QString &filter)
    : _context(context)
    , _filter(filter)
    , _parent(parentFolder)
{
    if (!context.cloud.isUbiquitousItem(parentFolder))
        throw TamberUbiquitousFolderMonitorException();
}

TamberUbiquitousFolderMonitor::~TamberUbiquitousFolderMonitor()
{
    stopMonitoring();
}

void TamberUbiquitousFolderMonitor::setDelegate(std::weak_ptr<TamberUbiquitousFolderMonitorDelegate> delegate)
{
    _delegate = std::move(delegate);
}

const TamberUbiquitousItems &TamberUbiquitousFolderMonitor::items() const
{
    closeGaps();
    return _items;
}

void TamberUbiquitousFolderMonitor::startMonitoring()
{
    if (_query && _query->isStarted())
        return;
    if (!_query)
        makeQuery();
    _query->setPredicate(_parent, _filter);
    _query->start();
}

void TamberUbiquitousFolderMonitor::stopMonitoring()
{
    ++_run;
    if (_query && _query->isStarted())
        _query->stop();
}

void TamberUbiquitousFolderMonitor::makeQuery()
{
    const FileURL documents = _context.cloud.url().appendingDirectory(QStringLiteral("Documents"));
    const bool isInDocuments = !documents.isNil() && _parent.path().startsWith(documents.path());
    _query = _context.cloud.makeQuery();
    _query->setSearchScope(isInDocuments ? MetadataQuery::Scope::Documents : MetadataQuery::Scope::Data);
    const auto handler = [self = weak_from_this()](bool isGathered) {
        const auto monitor = self.lock();
        if (!monitor)
            return;
        monitor->handleReport(isGathered);
        // Nobody wants it any more, but a query must not go while it reports.
        if (monitor.use_count() == 1) {
            monitor->stopMonitoring();
            monitor->_context.runLoop.performAfter({}, [monitor] {});
        }
    };
    _query->setHandlers({[handler] { handler(true); }, [handler] { handler(false); }});
}

void TamberUbiquitousFolderMonitor::handleReport(bool isGathered)
{
    if (!handleQueryResults() || !isGathered)
        return;
    _contentGathered = true;
    if (const auto delegate = _delegate.lock())
        delegate->ubiquitousMonitorContentGathered(*this, items());
}

bool TamberUbiquitousFolderMonitor::handleQueryResults()
{
    return Pass(*this).run();
}

void TamberUbiquitousFolderMonitor::report(Report what, const std::shared_ptr<TamberUbiquitousItem> &item)
{
    if (const auto delegate = _delegate.lock())
        ((*delegate).*what)(*this, item);
}

void TamberUbiquitousFolderMonitor::closeGaps() const
{
    if (_hasGaps)
        std::erase(_items, nullptr);
    _hasGaps = false;
}

} // namespace cvtamber
