// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/SyncedFolderQuery.h"
#include "support/FaultyFileOperations.h"
#include "support/ManualRunLoop.h"
#include "support/ManualTaskRunner.h"
#include "support/RecordingLog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <set>

namespace cvtamber {

// What a test makes a watcher report, and what it was asked to watch.
struct WatcherScript
{
    class Watches final : public FolderWatches
    {
    public:
        Result add(const FileURL &folder) override
        {
            if (watched.size() >= limit)
                return Result::LimitReached;
            watched.insert(folder.path());
            return Result::Watched;
        }
        void remove(const FileURL &folder) override { watched.erase(folder.path()); }

        std::set<QString> watched;
        size_t limit = 1000;
    };

    class Watcher final : public FolderWatcher
    {
    public:
        explicit Watcher(WatcherScript &script)
            : _script(script)
        {}
        ~Watcher() override { _script.handlers = {}; }
        std::shared_ptr<FolderWatches> watches() override { return _script.watches; }

    private:
        WatcherScript &_script;
    };

    FolderWatcher::Factory factory()
    {
        return [this](FolderWatcher::Handlers given) {
            handlers = std::move(given);
            return std::make_unique<Watcher>(*this);
        };
    }

    FolderWatcher::Handlers handlers;
    std::shared_ptr<Watches> watches = std::make_shared<Watches>();
};

// "U/Letter.tamber here", in the query's order; with a size "=5", conflict "!", in the cloud "cloud", on its way
// "coming".
inline QStringList listingOf(const MetadataQuery &query, const QString &root)
{
    QStringList lines;
    for (const MetadataItem &item : query.results()) {
        QString line = item.url.path().sliced(root.size() + 1) + u' ';
        line += item.isDownloaded ? u"here" : item.isUploaded ? u"cloud" : u"";
        if (item.isDownloading)
            line += u"coming";
        if (item.hasUnresolvedConflicts)
            line += u'!';
        lines.append(line);
    }
    return lines;
}

// A query over a real folder whose time, background work and watching are the test's.
class SyncBench
{
public:
    SyncBench()
    {
        makeFolder({});
        query = std::make_unique<SyncedFolderQuery>(
            FolderFollower::Surroundings{loop, tasks, operations, log, watcher.factory()});
        query->setPredicate(FileURL::directory(path({})), QStringLiteral("*"));
        query->setHandlers({[this] { events += u'g'; }, [this] { events += u'u'; }});
    }

    QString path(const QString &relative) const
    {
        const QString root = folder.path() + QStringLiteral("/root");
        return relative.isEmpty() ? root : QString(root % u'/' % relative);
    }
    void makeFolder(const QString &relative) const { QDir().mkpath(path(relative)); }
    void put(const QString &relative, const QByteArray &bytes = "text") const
    {
        const int slash = static_cast<int>(relative.lastIndexOf(u'/'));
        if (slash > 0)
            makeFolder(relative.first(slash));
        QFile file(path(relative));
        if (file.open(QFile::WriteOnly))
            file.write(bytes);
    }
    void erase(const QString &relative) const { QFile::remove(path(relative)); }
    void changed(const QString &relative) { watcher.handlers.changed(FileURL::directory(path(relative))); }
    QStringList listing() const { return listingOf(*query, path({})); }

    // Lets time pass, with the background work that is asked for meanwhile.
    void pass(std::chrono::milliseconds time)
    {
        const auto end = loop.now() + time;
        const auto isTaskWaiting = [this] { return tasks.waiting() > 0; };
        do {
            tasks.runAll();
            if (!loop.advanceUntil(isTaskWaiting, end - loop.now()))
                loop.advance(end - loop.now());
        } while (isTaskWaiting());
    }
    void gather()
    {
        query->start();
        pass(std::chrono::milliseconds{1});
    }
    // What happened since the last time: "g" gathered, "u" updated.
    QString takeEvents() { return std::exchange(events, {}); }
    int lists(const QString &relative) const { return _lists.value(path(relative)); }
    // Counts listings of each folder from now on.
    void countLists()
    {
        _lists.clear();
        operations.setBefore([this](FaultyFileOperations::Call call, const QString &at) {
            if (call == FaultyFileOperations::Call::List)
                ++_lists[at];
        });
    }
    void fail(FaultyFileOperations::Call call, const QString &relative)
    {
        operations.add({std::make_error_code(std::errc::io_error), call, path(relative)});
    }

    QTemporaryDir folder;
    ManualRunLoop loop;
    ManualTaskRunner tasks{loop};
    FaultyFileOperations operations;
    RecordingLog log;
    WatcherScript watcher;
    QString events;
    std::unique_ptr<SyncedFolderQuery> query;

private:
    QHash<QString, int> _lists;
};

} // namespace cvtamber
