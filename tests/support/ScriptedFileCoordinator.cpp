// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ScriptedFileCoordinator.h"

#include "base/RunLoop.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cvtamber {

namespace {

bool liesIn(const FileURL &url, const FileURL &other)
{
    const QString path = url.path();
    const QString folder = other.path();
    return path == folder || path.startsWith(QString(folder % u'/'));
}

bool concerns(const FileURL &one, const FileURL &other)
{
    return !one.isNil() && (liesIn(one, other) || liesIn(other, one));
}

} // namespace

ScriptedFileCoordinator::ScriptedFileCoordinator(RunLoop &runLoop, const StoreDisk *disk)
    : _runLoop(runLoop)
    , _disk(disk)
{}

size_t ScriptedFileCoordinator::count(Kind kind) const
{
    return static_cast<size_t>(std::count_if(
        _requests.begin(), _requests.end(), [kind](const Request &request) { return request.kind == kind; }));
}

void ScriptedFileCoordinator::answer(const FileResult &result, size_t index)
{
    const Waiting waiting = take(index);
    switch (waiting.request.kind) {
    case Kind::Read: {
        ReadResult read;
        static_cast<FileResult &>(read) = result;
        complete(waiting, waiting.whenRead, read);
        break;
    }
    case Kind::Create:
    case Kind::Replace: {
        WriteResult written;
        static_cast<FileResult &>(written) = result;
        complete(waiting, waiting.whenWritten, written);
        break;
    }
    default:
        complete(waiting, waiting.whenDone, result);
    }
}

void ScriptedFileCoordinator::answerRead(const ReadResult &result, size_t index)
{
    const Waiting waiting = take(index);
    complete(waiting, waiting.whenRead, result);
}

void ScriptedFileCoordinator::answerWrite(const WriteResult &result, size_t index)
{
    const Waiting waiting = take(index);
    complete(waiting, waiting.whenWritten, result);
}

void ScriptedFileCoordinator::carryOut(size_t index)
{
    const Waiting waiting = take(index);
    const Request &request = waiting.request;
    switch (request.kind) {
    case Kind::Read:
        complete(waiting, waiting.whenRead, _disk->read(request.url));
        break;
    case Kind::Create:
        complete(waiting, waiting.whenWritten, _disk->create(request.url, request.bytes));
        break;
    case Kind::Replace:
        complete(waiting, waiting.whenWritten,
                 _disk->replace(request.url, request.bytes, request.known, request.otherVersion));
        break;
    case Kind::Remove:
        complete(waiting, waiting.whenDone, _disk->remove(request.url));
        break;
    case Kind::Move:
        complete(waiting, waiting.whenDone, _disk->move(request.url, request.to));
        break;
    case Kind::Sweep:
        break;
    }
}

void ScriptedFileCoordinator::carryOutAll()
{
    while (!_waiting.empty())
        carryOut();
}

ReadResult ScriptedFileCoordinator::contents(const QByteArray &bytes, const FileStamp &stamp)
{
    ReadResult result;
    result.bytes = bytes;
    result.stamp = stamp;
    return result;
}

WriteResult ScriptedFileCoordinator::written(const FileStamp &stamp, const FileURL &keptOther)
{
    WriteResult result;
    result.stamp = stamp;
    result.keptOther = keptOther;
    return result;
}

FileResult ScriptedFileCoordinator::failure(FileResult::Outcome outcome, const QString &message)
{
    return {outcome, message};
}

void ScriptedFileCoordinator::read(const FileURL &url, Completion<ReadResult> completion)
{
    Waiting waiting{{Kind::Read, url}};
    waiting.whenRead = std::move(completion);
    add(std::move(waiting));
}

void ScriptedFileCoordinator::create(const FileURL &url, const QByteArray &bytes,
                                     Completion<WriteResult> completion)
{
    Waiting waiting{{Kind::Create, url, {}, bytes}};
    waiting.whenWritten = std::move(completion);
    add(std::move(waiting));
}

void ScriptedFileCoordinator::replace(const FileURL &url, const QByteArray &bytes, const FileStamp &known,
                                      StoreDisk::OtherVersion otherVersion,
                                      Completion<WriteResult> completion)
{
    Waiting waiting{{Kind::Replace, url, {}, bytes, known, otherVersion}};
    waiting.whenWritten = std::move(completion);
    add(std::move(waiting));
}

void ScriptedFileCoordinator::remove(const FileURL &url, Completion<FileResult> completion)
{
    Waiting waiting{{Kind::Remove, url}};
    waiting.whenDone = std::move(completion);
    add(std::move(waiting));
}

void ScriptedFileCoordinator::move(const FileURL &from, const FileURL &to, Completion<FileResult> completion)
{
    Waiting waiting{{Kind::Move, from, to}};
    waiting.whenDone = std::move(completion);
    add(std::move(waiting));
}

void ScriptedFileCoordinator::sweep(const FileURL &directory, const QStringList &leftovers)
{
    Request request{Kind::Sweep, directory};
    request.leftovers = leftovers;
    _requests.push_back(request);
}

bool ScriptedFileCoordinator::isBusy(const FileURL &url) const
{
    return std::any_of(_waiting.begin(), _waiting.end(),
                       [&](const Waiting &waiting) {
                           return concerns(waiting.request.url, url) || concerns(waiting.request.to, url);
                       }) ||
           std::any_of(_completing.begin(), _completing.end(),
                       [&](const FileURL &completing) { return concerns(completing, url); });
}

void ScriptedFileCoordinator::add(Waiting waiting)
{
    _requests.push_back(waiting.request);
    _waiting.push_back(std::move(waiting));
    if (_isAutomatic)
        carryOut(_waiting.size() - 1);
}

ScriptedFileCoordinator::Waiting ScriptedFileCoordinator::take(size_t index)
{
    Waiting waiting = _waiting.at(index);
    _waiting.erase(_waiting.begin() + static_cast<std::ptrdiff_t>(index));
    return waiting;
}

template<typename Result>
void ScriptedFileCoordinator::complete(const Waiting &waiting, const Completion<Result> &completion,
                                       const Result &result)
{
    const auto url = _completing.insert(_completing.end(), waiting.request.url);
    const auto to = _completing.insert(_completing.end(), waiting.request.to);
    _runLoop.performAfter(std::chrono::nanoseconds{0}, [this, url, to, completion, result] {
        _completing.erase(url);
        _completing.erase(to);
        if (completion)
            completion(result);
    });
}

} // namespace cvtamber
