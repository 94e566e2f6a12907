// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileOperations.h"

#include <vector>

namespace cvtamber {

// One call that changed the disk, or asked for what was changed to be durable. Paths are relative to the root.
struct RecordedCall
{
    enum class What {
        CreateFile,
        Write,
        SyncFile,
        MakeFolder,
        Rename,
        Exchange,
        Link,
        RemoveFile,
        RemoveFolder,
        SyncFolder,
        // Whoever asked for the operation has been told that it is done.
        Done,
    };

    What what = What::Done;
    QString path;
    QString other;
    // Tells the files apart that were created; what is written to one stays its own under any name.
    int file = 0;
    QByteArray bytes;
};

// File operations that another carries out, and that are written down when they worked. For one thread.
class RecordingFileOperations final : public FileOperations
{
public:
    explicit RecordingFileOperations(FileOperations &operations)
        : _operations(operations)
    {}

    const std::vector<RecordedCall> &calls() const { return _calls; }
    // From here on, what happens below the root.
    void start(const QString &root)
    {
        _root = root;
        _calls.clear();
    }
    void noteDone() { note(RecordedCall::What::Done, _root); }
    // From here on the folder is a file system of its own.
    void setOtherFileSystem(const QString &folder) { _otherFileSystem = folder; }

    FileStatus status(const QString &path) override { return _operations.status(path); }
    std::error_code list(const QString &folder, QList<FolderEntry> &entries) override
    {
        return _operations.list(folder, entries);
    }
    std::error_code read(const QString &path, QByteArray &bytes, FileStamp &stamp) override
    {
        return _operations.read(path, bytes, stamp);
    }
    std::unique_ptr<WritableFile> createFile(const QString &path, std::error_code &error) override;
    std::error_code makeFolder(const QString &path) override;
    std::error_code rename(const QString &from, const QString &to) override;
    std::error_code renameToNewName(const QString &from, const QString &to) override;
    std::error_code exchange(const QString &one, const QString &other) override;
    std::error_code link(const QString &from, const QString &to) override;
    std::error_code removeFile(const QString &path) override;
    std::error_code removeFolder(const QString &path) override;
    std::error_code syncFolder(const QString &path) override;

private:
    friend class RecordedFile;
    void note(RecordedCall::What what, const QString &path, const QString &other = {}, int file = 0,
              const QByteArray &bytes = {});
    std::error_code noted(std::error_code error, RecordedCall::What what, const QString &path,
                          const QString &other = {});
    bool isBetweenFileSystems(const QString &one, const QString &other) const;

    FileOperations &_operations;
    QString _root;
    QString _otherFileSystem;
    std::vector<RecordedCall> _calls;
    int _lastFile = 0;
};

} // namespace cvtamber
