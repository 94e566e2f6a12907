// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/documents/PathQueue.h"
#include "store/FileCoordinator.h"

#include <list>
#include <memory>

namespace cvtamber {

class TaskRunner;
class Trash;

// The store's disk work on the background pool.
//
// Work whose turn has come is handed to the pool; the rest waits here, on the main thread. When the coordinator
// goes first, what waits is done in the order of asking, once what the pool has of it is done; so the disk
// and the trash outlive the pool, and the pool this.
class DiskFileCoordinator final : public FileCoordinator
{
public:
    DiskFileCoordinator(TaskRunner &tasks, StoreDisk &disk, Trash &trash);
    ~DiskFileCoordinator() override;

    void read(const FileURL &url, Completion<ReadResult> completion) override;
    void create(const FileURL &url, const QByteArray &bytes, Completion<WriteResult> completion) override;
    void replace(const FileURL &url, const QByteArray &bytes, const FileStamp &known,
                 StoreDisk::OtherVersion otherVersion, Completion<WriteResult> completion) override;
    void remove(const FileURL &url, Completion<FileResult> completion) override;
    void move(const FileURL &from, const FileURL &to, Completion<FileResult> completion) override;
    void sweep(const FileURL &directory, const QStringList &leftovers) override;
    bool isBusy(const FileURL &url) const override;

private:
    struct Job;
    struct Remainder;
    using Jobs = std::list<std::shared_ptr<Job>>;

    template<typename Result, typename Work>
    void submit(const std::vector<FileURL> &urls, Work work, Completion<Result> completion);
    void begin(Jobs::iterator place);
    void finish(Jobs::iterator place);

    TaskRunner &_tasks;
    StoreDisk &_disk;
    Trash &_trash;
    PathQueue _queue;
    // In the order of asking, until they are completed.
    Jobs _jobs;
    std::shared_ptr<Remainder> _remainder;
};

} // namespace cvtamber
