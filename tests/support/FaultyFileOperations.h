// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileOperations.h"

#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace cvtamber {

// File operations over others that fail where a test says. Any thread; faults are set while nothing runs.
class FaultyFileOperations final : public FileOperations
{
public:
    enum class Call {
        Status,
        List,
        Read,
        CreateFile,
        Write,
        Sync,
        MakeFolder,
        Rename,
        RenameToNewName,
        Exchange,
        Link,
        RemoveFile,
        RemoveFolder,
        SyncFolder
    };

    // Which calls fail: those of the kind and on the path, where they are given, from the first to the last one
    // counted from 1. A failing write writes half of its bytes; a failing listing tells half of its entries.
    struct Fault
    {
        std::error_code error;
        std::optional<Call> call = {};
        QString path = {};
        int first = 1;
        int last = std::numeric_limits<int>::max();
    };

    explicit FaultyFileOperations(FileOperations &operations = FileOperations::system())
        : _operations(operations)
    {}

    void add(const Fault &fault) { _faults.push_back({fault, 0}); }
    void failCall(int number, std::errc error) { add({std::make_error_code(error), {}, {}, number, number}); }
    void failEvery(Call call, std::errc error) { add({std::make_error_code(error), call}); }
    void failPath(const QString &path, std::errc error) { add({std::make_error_code(error), {}, path}); }
    // Runs before each call that is carried out, on its thread: another program's chance to come in between.
    void setBefore(std::function<void(Call, const QString &path)> before) { _before = std::move(before); }
    void clear()
    {
        _faults.clear();
        _before = nullptr;
        _calls = 0;
    }
    // Since the last clear(), the failed ones too.
    int calls() const { return _calls; }

    FileStatus status(const QString &path) override
    {
        if (const auto error = fault(Call::Status, path))
            return {FileStatus::Kind::Unknown, {}, error};
        return _operations.status(path);
    }
    std::error_code list(const QString &folder, QList<FolderEntry> &entries) override
    {
        const auto error = fault(Call::List, folder);
        const auto listed = _operations.list(folder, entries);
        if (error)
            entries.resize(entries.size() / 2);
        return error ? error : listed;
    }
    std::error_code read(const QString &path, QByteArray &bytes, FileStamp &stamp) override
    {
        const auto error = fault(Call::Read, path);
        return error ? error : _operations.read(path, bytes, stamp);
    }
    std::unique_ptr<WritableFile> createFile(const QString &path, std::error_code &error) override
    {
        error = fault(Call::CreateFile, path);
        auto file = error ? nullptr : _operations.createFile(path, error);
        return file ? std::make_unique<File>(*this, path, std::move(file)) : nullptr;
    }
    std::error_code makeFolder(const QString &path) override
    {
        const auto error = fault(Call::MakeFolder, path);
        return error ? error : _operations.makeFolder(path);
    }
    std::error_code rename(const QString &from, const QString &to) override
    {
        const auto error = fault(Call::Rename, from, to);
        return error ? error : _operations.rename(from, to);
    }
    std::error_code renameToNewName(const QString &from, const QString &to) override
    {
        const auto error = fault(Call::RenameToNewName, from, to);
        return error ? error : _operations.renameToNewName(from, to);
    }
    std::error_code exchange(const QString &one, const QString &other) override
    {
        const auto error = fault(Call::Exchange, one, other);
        return error ? error : _operations.exchange(one, other);
    }
    std::error_code link(const QString &from, const QString &to) override
    {
        const auto error = fault(Call::Link, from, to);
        return error ? error : _operations.link(from, to);
    }
    std::error_code removeFile(const QString &path) override
    {
        const auto error = fault(Call::RemoveFile, path);
        return error ? error : _operations.removeFile(path);
    }
    std::error_code removeFolder(const QString &path) override
    {
        const auto error = fault(Call::RemoveFolder, path);
        return error ? error : _operations.removeFolder(path);
    }
    std::error_code syncFolder(const QString &path) override
    {
        const auto error = fault(Call::SyncFolder, path);
        return error ? error : _operations.syncFolder(path);
    }

private:
    struct CountedFault
    {
        Fault fault;
        int met = 0;
    };

    class File final : public WritableFile
    {
    public:
        File(FaultyFileOperations &owner, QString path, std::unique_ptr<WritableFile> file)
            : _owner(owner)
            , _path(std::move(path))
            , _file(std::move(file))
        {}

        std::error_code write(const QByteArray &bytes) override
        {
            const auto error = _owner.fault(Call::Write, _path);
            const auto written = _file->write(error ? bytes.first(bytes.size() / 2) : bytes);
            return error ? error : written;
        }
        std::error_code sync() override
        {
            const auto error = _owner.fault(Call::Sync, _path);
            return error ? error : _file->sync();
        }
        void takeOverPermissions(const QString &path) override { _file->takeOverPermissions(path); }
        FileStamp stamp() const override { return _file->stamp(); }

    private:
        FaultyFileOperations &_owner;
        QString _path;
        std::unique_ptr<WritableFile> _file;
    };

    std::error_code fault(Call call, const QString &path, const QString &other = {})
    {
        {
            const std::lock_guard lock(_mutex);
            ++_calls;
            for (CountedFault &counted : _faults) {
                const Fault &fault = counted.fault;
                const bool isMeant = (!fault.call || fault.call == call) &&
                                     (fault.path.isEmpty() || fault.path == path || fault.path == other);
                if (isMeant && ++counted.met >= fault.first && counted.met <= fault.last)
                    return fault.error;
            }
        }
        if (_before)
            _before(call, path);
        return {};
    }

    FileOperations &_operations;
    std::mutex _mutex;
    std::vector<CountedFault> _faults;
    std::function<void(Call, const QString &)> _before;
    int _calls = 0;
};

} // namespace cvtamber
