// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileCoordinator.h"

#include <deque>
#include <list>
#include <vector>

namespace cvtamber {

class RunLoop;

// A file coordinator whose work is done when the test says so, in any order, and as the test says.
//
// Every request is recorded. The test answers one that waits with a result of its own, or lets it be carried
// out on a disk; its completion then comes from the loop. A coordinator that is automatic carries out each
// request as it is asked for. A folder that still holds something is not removed: there is no trash here.
class ScriptedFileCoordinator final : public FileCoordinator
{
public:
    enum class Kind { Read, Create, Replace, Remove, Move, Sweep };
    struct Request
    {
        Kind kind = Kind::Read;
        FileURL url = {};
        // Of a move.
        FileURL to = {};
        QByteArray bytes = {};
        FileStamp known = {};
        StoreDisk::OtherVersion otherVersion = StoreDisk::OtherVersion::Keep;
        QStringList leftovers = {};
    };

    // Without a disk nothing can be carried out, only answered.
    explicit ScriptedFileCoordinator(RunLoop &runLoop, const StoreDisk *disk = nullptr);

    void setAutomatic(bool isAutomatic) { _isAutomatic = isAutomatic; }
    // All that were ever asked for; sweeps too, which nobody answers.
    const std::vector<Request> &requests() const { return _requests; }
    // How many of a kind were ever asked for.
    size_t count(Kind kind) const;
    size_t waitingCount() const { return _waiting.size(); }
    const Request &waiting(size_t index = 0) const { return _waiting.at(index).request; }

    // Of the request that waits at the index. A read or write gets the outcome with no bytes and no stamp.
    void answer(const FileResult &result, size_t index = 0);
    void answerRead(const ReadResult &result, size_t index = 0);
    void answerWrite(const WriteResult &result, size_t index = 0);
    void carryOut(size_t index = 0);
    // In the order in which they were asked for.
    void carryOutAll();

    static ReadResult contents(const QByteArray &bytes, const FileStamp &stamp);
    static WriteResult written(const FileStamp &stamp, const FileURL &keptOther = {});
    static FileResult failure(FileResult::Outcome outcome, const QString &message);

    void read(const FileURL &url, Completion<ReadResult> completion) override;
    void create(const FileURL &url, const QByteArray &bytes, Completion<WriteResult> completion) override;
    void replace(const FileURL &url, const QByteArray &bytes, const FileStamp &known,
                 StoreDisk::OtherVersion otherVersion, Completion<WriteResult> completion) override;
    void remove(const FileURL &url, Completion<FileResult> completion) override;
    void move(const FileURL &from, const FileURL &to, Completion<FileResult> completion) override;
    void sweep(const FileURL &directory, const QStringList &leftovers) override;
    bool isBusy(const FileURL &url) const override;

private:
    struct Waiting
    {
        Request request;
        // Only the one of the request's kind.
        Completion<ReadResult> whenRead = {};
        Completion<WriteResult> whenWritten = {};
        Completion<FileResult> whenDone = {};
    };

    void add(Waiting waiting);
    Waiting take(size_t index);
    template<typename Result>
    void complete(const Waiting &waiting, const Completion<Result> &completion, const Result &result);

    RunLoop &_runLoop;
    const StoreDisk *_disk;
    bool _isAutomatic = false;
    std::vector<Request> _requests;
    std::deque<Waiting> _waiting;
    // Answered, and the completion still to come.
    std::list<FileURL> _completing;
};

} // namespace cvtamber
