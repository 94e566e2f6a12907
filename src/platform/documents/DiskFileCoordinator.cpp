// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/documents/DiskFileCoordinator.h"

#include "base/TaskRunner.h"
#include "store/Trash.h"

#include <atomic>
#include <utility>

namespace cvtamber {

struct DiskFileCoordinator::Job
{
    std::function<void()> work;
    std::function<void()> complete; // on the main thread; none once the coordinator has gone
    std::shared_ptr<PathQueue::Ticket> ticket;
    bool hasBegun = false;
};

// What is left to do when the coordinator goes: done by the last who lets go, the coordinator itself or one of
// the tasks that the pool has.
struct DiskFileCoordinator::Remainder
{
    void letGo()
    {
        if (holders.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return;
        for (const auto &job : jobs)
            job->work();
    }

    std::atomic<size_t> holders = 1;
    Jobs jobs;
};

namespace {

FileResult removeOrTrash(const StoreDisk &disk, Trash &trash, const FileURL &url)
{
    FileResult removed = disk.remove(url);
    const bool isInFolder = disk.isFolder(url.deletingLastPathComponent());
    if (removed.ok() || !isInFolder || !disk.isFolder(url) || disk.isEmptyFolder(url))
        return removed;
    return trash.moveToTrash(url);
}

} // namespace

DiskFileCoordinator::DiskFileCoordinator(TaskRunner &tasks, StoreDisk &disk, Trash &trash)
    : _tasks(tasks)
    , _disk(disk)
    , _trash(trash)
    , _remainder(std::make_shared<Remainder>())
{}

DiskFileCoordinator::~DiskFileCoordinator()
{
    // Completions are never run now, and belong to this thread.
    for (const auto &job : _jobs)
        job->complete = nullptr;
    _jobs.remove_if([](const std::shared_ptr<Job> &job) { return job->hasBegun; });
    _remainder->jobs = std::move(_jobs);
    _remainder->letGo();
}

template<typename Result, typename Work>
void DiskFileCoordinator::submit(const std::vector<FileURL> &urls, Work work, Completion<Result> completion)
{
    const auto job = std::make_shared<Job>();
    const auto result = std::make_shared<Result>();
    job->work = [result, work = std::move(work)] { *result = work(); };
    std::vector<QString> paths;
    paths.reserve(urls.size());
    for (const FileURL &url : urls)
        paths.push_back(url.path());
    const auto place = _jobs.insert(_jobs.end(), job);
    job->complete = [this, place, result, completion = std::move(completion)] {
        finish(place);
        if (completion)
            completion(*result);
    };
    job->ticket = _queue.join(paths, [this, place] { begin(place); });
}

void DiskFileCoordinator::begin(Jobs::iterator place)
{
    const std::shared_ptr<Job> &job = *place;
    job->hasBegun = true;
    _remainder->holders.fetch_add(1, std::memory_order_relaxed);
    auto work = [job, remainder = _remainder] {
        job->work();
        remainder->letGo();
    };
    _tasks.run(std::move(work), [job] {
        if (const auto complete = std::exchange(job->complete, nullptr))
            complete();
    });
}

void DiskFileCoordinator::finish(Jobs::iterator place)
{
    const auto ticket = std::move((*place)->ticket);
    _jobs.erase(place);
    _queue.finish(ticket);
}

void DiskFileCoordinator::read(const FileURL &url, Completion<ReadResult> completion)
{
    submit<ReadResult>(
        {url}, [&disk = _disk, url] { return disk.read(url); }, std::move(completion));
}

void DiskFileCoordinator::create(const FileURL &url, const QByteArray &bytes,
                                 Completion<WriteResult> completion)
{
    submit<WriteResult>(
        {url}, [&disk = _disk, url, bytes] { return disk.create(url, bytes); }, std::move(completion));
}

void DiskFileCoordinator::replace(const FileURL &url, const QByteArray &bytes, const FileStamp &known,
                                  StoreDisk::OtherVersion otherVersion, Completion<WriteResult> completion)
{
    auto work = [&disk = _disk, url, bytes, known, otherVersion] {
        return disk.replace(url, bytes, known, otherVersion);
    };
    submit<WriteResult>({url}, std::move(work), std::move(completion));
}

void DiskFileCoordinator::remove(const FileURL &url, Completion<FileResult> completion)
{
    auto work = [&disk = _disk, &trash = _trash, url] { return removeOrTrash(disk, trash, url); };
    submit<FileResult>({url}, std::move(work), std::move(completion));
}

void DiskFileCoordinator::move(const FileURL &from, const FileURL &to, Completion<FileResult> completion)
{
    submit<FileResult>(
        {from, to}, [&disk = _disk, from, to] { return disk.move(from, to); }, std::move(completion));
}

void DiskFileCoordinator::sweep(const FileURL &directory, const QStringList &leftovers)
{
    auto work = [&disk = _disk, &trash = _trash, directory, leftovers] {
        const QStringList found = leftovers.isEmpty() ? disk.list(directory).leftovers : leftovers;
        for (const QString &name : disk.oldLeftovers(directory, found))
            trash.moveToTrash(directory.appendingFile(name));
        return FileResult();
    };
    submit<FileResult>({directory}, std::move(work), nullptr);
}

bool DiskFileCoordinator::isBusy(const FileURL &url) const
{
    return _queue.isBusy(url.path());
}

} // namespace cvtamber
