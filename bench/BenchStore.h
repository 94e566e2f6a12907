// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "base/NullLog.h"
#include "store/FileCoordinator.h"
#include "store/StoreContext.h"
#include "store/StoreProblems.h"
#include "store/Trash.h"
#include "support/ManualRunLoop.h"
#include "support/ScriptedCloud.h"

namespace cvtamber {

// Says that everything has been done and does nothing: what is left is the store's own work.
class IdleCoordinator final : public FileCoordinator
{
public:
    explicit IdleCoordinator(RunLoop &runLoop)
        : _runLoop(runLoop)
    {}

    void read(const FileURL &, Completion<ReadResult> completion) override { answer(std::move(completion)); }
    void create(const FileURL &, const QByteArray &, Completion<WriteResult> completion) override
    {
        answer(std::move(completion));
    }
    void replace(const FileURL &, const QByteArray &, const FileStamp &, StoreDisk::OtherVersion,
                 Completion<WriteResult> completion) override
    {
        answer(std::move(completion));
    }
    void remove(const FileURL &, Completion<FileResult> completion) override
    {
        answer(std::move(completion));
    }
    void move(const FileURL &, const FileURL &, Completion<FileResult> completion) override
    {
        answer(std::move(completion));
    }
    void sweep(const FileURL &, const QStringList &) override {}
    bool isBusy(const FileURL &) const override { return false; }

private:
    template<typename Result> void answer(Completion<Result> completion)
    {
        if (completion)
            _runLoop.performAfter({}, [completion = std::move(completion)] { completion(Result{}); });
    }

    RunLoop &_runLoop;
};

class NoTrash final : public Trash
{
public:
    FileResult moveToTrash(const FileURL &) override { return {FileResult::Outcome::Failed, QString()}; }
};

// What a store is given in a benchmark: the real disk for what is read, nothing for what is written.
struct BenchStore
{
    explicit BenchStore(const QString &cloudFolder = QStringLiteral("/nowhere"))
        : cloud(runLoop, FileURL::directory(cloudFolder))
    {}

    ManualRunLoop runLoop;
    StoreDisk disk{FileOperations::system()};
    IdleCoordinator coordinator{runLoop};
    ScriptedCloud cloud;
    NoTrash trash;
    NotificationCenter notifications;
    StoreProblems problems;
    NullLog log;
    StoreContext context{runLoop, disk, coordinator, cloud, trash, notifications, problems, log};
};

} // namespace cvtamber
