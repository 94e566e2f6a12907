// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ScriptedCloud.h"

#include "base/RunLoop.h"
#include "store/StoreNames.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace cvtamber {

struct ScriptedCloud::Shared
{
    void report(bool isUpdate);

    QList<MetadataItem> items;
    std::vector<Query *> queries;
    int queriesMade = 0;
    MetadataQuery::Scope lastScope = MetadataQuery::Scope::Data;
};

class ScriptedCloud::Query final : public MetadataQuery
{
public:
    Query(RunLoop &runLoop, std::shared_ptr<Shared> shared)
        : _runLoop(runLoop)
        , _shared(std::move(shared))
    {
        _shared->queries.push_back(this);
    }
    ~Query() override
    {
        stop();
        std::erase(_shared->queries, this);
    }

    void setSearchScope(Scope scope) override { _shared->lastScope = scope; }
    void setPredicate(const FileURL &directory, const QString &filter) override
    {
        _prefix = directory.path() + u'/';
        _filter = filter;
    }
    void setHandlers(Handlers handlers) override { _handlers = std::move(handlers); }
    void start() override { _isStarted = true; }
    void stop() override
    {
        _isStarted = _hasGathered = _isHeldBack = false;
        _runLoop.cancel(_heldBackReport);
    }
    bool isStarted() const override { return _isStarted; }
    void disableUpdates() override { ++_disabled; }
    void enableUpdates() override
    {
        --_disabled;
        if (_disabled > 0 || !std::exchange(_isHeldBack, false))
            return;
        _runLoop.cancel(_heldBackReport);
        _heldBackReport = _runLoop.performAfter({}, [this] { report(_hasGathered); });
    }
    const QList<MetadataItem> &results() const override { return _results; }

    bool hasGathered() const { return _hasGathered; }
    // Tells an update, or the first gathering.
    void report(bool isUpdate)
    {
        if (!_isStarted || isUpdate != _hasGathered)
            return;
        if (_disabled > 0) {
            _isHeldBack = true;
            return;
        }
        takeResults();
        _hasGathered = true;
        // A copy: the handler may stop and start the query.
        const auto handler = isUpdate ? _handlers.updated : _handlers.gathered;
        handler();
    }

private:
    void takeResults()
    {
        _results.clear();
        for (const MetadataItem &item : std::as_const(_shared->items)) {
            const QString path = item.url.path();
            if (path.startsWith(_prefix) && isLike(QStringView(path).sliced(_prefix.size()), _filter))
                _results.append(item);
        }
    }

    RunLoop &_runLoop;
    std::shared_ptr<Shared> _shared;
    QString _prefix;
    QString _filter;
    Handlers _handlers;
    QList<MetadataItem> _results;
    bool _isStarted = false;
    bool _hasGathered = false;
    int _disabled = 0;
    bool _isHeldBack = false;
    RunLoop::CallId _heldBackReport = RunLoop::CallId::None;
};

void ScriptedCloud::Shared::report(bool isUpdate)
{
    const auto all = queries;
    for (Query *query : all) {
        // Whoever hears of one query may drop another.
        if (std::find(queries.begin(), queries.end(), query) != queries.end())
            query->report(isUpdate);
    }
}

ScriptedCloud::ScriptedCloud(RunLoop &runLoop, FileURL url)
    : _runLoop(runLoop)
    , _url(std::move(url))
    , _shared(std::make_shared<Shared>())
{}

ScriptedCloud::~ScriptedCloud() = default;

MetadataItem &ScriptedCloud::setItem(const FileURL &url, qint32 state, qint64 size)
{
    using State = TamberUbiquitousItem::State;
    QList<MetadataItem> &items = _shared->items;
    auto item = std::find_if(items.begin(), items.end(), [&](const auto &one) { return one.url == url; });
    if (item == items.end())
        item = items.insert(items.end(), MetadataItem{});
    item->url = url;
    item->size = size;
    item->isDownloaded = (state & State::Downloaded) != 0;
    item->isUploaded = (state & State::Uploaded) != 0;
    item->isDownloading = (state & State::Downloading) != 0;
    item->isUploading = (state & State::Uploading) != 0;
    item->hasUnresolvedConflicts = (state & State::HasConflicts) != 0;
    return *item;
}

void ScriptedCloud::removeItem(const FileURL &url)
{
    _shared->items.removeIf([&](const MetadataItem &item) { return item.url == url; });
}

QList<MetadataItem> &ScriptedCloud::items()
{
    return _shared->items;
}

const QList<MetadataItem> &ScriptedCloud::items() const
{
    return _shared->items;
}

void ScriptedCloud::gather()
{
    _shared->report(false);
}

void ScriptedCloud::update()
{
    _shared->report(true);
}

int ScriptedCloud::queriesMade() const
{
    return _shared->queriesMade;
}

int ScriptedCloud::queriesStarted() const
{
    return static_cast<int>(std::count_if(_shared->queries.begin(), _shared->queries.end(),
                                          [](const Query *query) { return query->isStarted(); }));
}

MetadataQuery::Scope ScriptedCloud::scope() const
{
    return _shared->lastScope;
}

bool ScriptedCloud::isUbiquitousItem(const FileURL &url) const
{
    const QString path = url.path() + u'/';
    return !url.isNil() && path.startsWith(_url.path() + u'/');
}

FileResult ScriptedCloud::startDownloading(const FileURL &url)
{
    _downloads.append(url);
    return _downloadResult;
}

std::unique_ptr<MetadataQuery> ScriptedCloud::makeQuery()
{
    ++_shared->queriesMade;
    return std::make_unique<Query>(_runLoop, _shared);
}

} // namespace cvtamber
