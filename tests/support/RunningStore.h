// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/EventRunLoop.h"
#include "base/NotificationCenter.h"
#include "base/NullLog.h"
#include "base/ThreadPoolTaskRunner.h"
#include "platform/documents/DiskFileCoordinator.h"
#include "store/StoreContext.h"
#include "store/StoreDisk.h"
#include "store/StoreProblems.h"
#include "store/TamberStorage.h"
#include "support/FolderTrash.h"
#include "support/ScriptedCloud.h"

#include <QEventLoop>

#include <functional>
#include <memory>

namespace cvtamber {

// A store as a program runs it, with the real loop, pool and disk, in a folder that exists.
class RunningStore
{
public:
    // Called before the store is loaded; what the cloud is made of stands by then.
    using CloudMaker = std::function<std::unique_ptr<CloudContainer>(RunningStore &store)>;

    // Without a cloud; the trash is the folder "Trash" beside the registries.
    explicit RunningStore(const QString &root)
        : RunningStore(root + QStringLiteral("/Trash"), FileOperations::system(), &noCloud)
    {
        load(root);
    }
    // With one; load() is left to the caller.
    RunningStore(const QString &trashFolder, FileOperations &operations, const CloudMaker &makeCloud)
        : disk(operations)
        , trash(trashFolder)
        , cloud(makeCloud(*this))
    {}
    RunningStore(const RunningStore &) = delete;
    RunningStore &operator=(const RunningStore &) = delete;
    ~RunningStore()
    {
        if (storage)
            storage->close();
        // What is under way holds on to what is about to go.
        waitUntilAtRest();
        storage.reset();
    }

    // Opens the folder anew; users are known at once, folders come from the background.
    void load(const QString &root)
    {
        if (storage)
            storage->close();
        storage = TamberStorage::withURL(context, FileURL::directory(root));
        if (!storage)
            return;
        storage->activeUsers();
        storage->archivedUsers();
    }
    // Calls back once nothing is being done in the background and what was done has come through: each step of
    // it takes a turn of the loop.
    void whenAtRest(const std::function<void()> &then, int quietTurns = 0)
    {
        loop.performAfter({}, [this, then, quietTurns] {
            if (quietTurns == TurnsOfRest)
                then();
            else
                whenAtRest(then,
                           coordinator.isBusy(FileURL::directory(QStringLiteral("/"))) ? 0 : quietTurns + 1);
        });
    }
    void waitUntilAtRest()
    {
        QEventLoop waiting;
        whenAtRest([&waiting] { waiting.quit(); });
        waiting.exec();
    }

    // In the order in which they need each other.
    NullLog log;
    EventRunLoop loop;
    NotificationCenter notifications;
    StoreProblems problems;
    StoreDisk disk;
    FolderTrash trash;
    ThreadPoolTaskRunner pool;
    std::unique_ptr<CloudContainer> cloud;
    DiskFileCoordinator coordinator{pool, disk, trash};
    StoreContext context{loop, disk, coordinator, *cloud, trash, notifications, problems, log};
    std::shared_ptr<TamberStorage> storage;

private:
    static constexpr int TurnsOfRest = 10;

    static std::unique_ptr<CloudContainer> noCloud(RunningStore &store)
    {
        return std::make_unique<ScriptedCloud>(store.loop, FileURL::directory(QStringLiteral("/nowhere")));
    }
};

} // namespace cvtamber
