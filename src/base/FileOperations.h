// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <system_error>

namespace cvtamber {

// Tells one version of a file from the next without reading it.
struct FileStamp
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = -1;
    // Nanoseconds since 1970, as the file system keeps them.
    qint64 modified = 0;

    // False for the stamp of a file that nobody has looked at yet.
    bool isKnown() const { return size >= 0; }
    bool operator==(const FileStamp &) const = default;
};

struct FileStatus
{
    // Unknown: the file system would not say, so nothing may be concluded. A link is never followed.
    enum class Kind { Missing, File, Folder, Link, Other, Unknown };

    Kind kind = Kind::Missing;
    FileStamp stamp;
    // Why, for Unknown.
    std::error_code error;
};

struct FolderEntry
{
    QString name;
    // Unknown where the listing does not tell and a look at the entry failed.
    FileStatus::Kind kind = FileStatus::Kind::Unknown;
};

// A file that is being made. Destroying it closes it; its bytes are on the disk only after sync().
class WritableFile : public InterfaceBase
{
public:
    // All of the bytes, or an error.
    virtual std::error_code write(const QByteArray &bytes) = 0;
    virtual std::error_code sync() = 0;
    // Takes over the permissions and the owner of what has that path, as far as the system lets it: some file systems have
    // none to give.
    virtual void takeOverPermissions(const QString &path) = 0;
    // As the file is now; unknown when the system does not say.
    virtual FileStamp stamp() const = 0;
};

// The file system, one call for each thing that it does: the place where a test records, refuses or replays.
//
// A path is absolute and names exactly what it says: no call follows a symbolic link in the last component.
// A file name that is not valid UTF-8 keeps its odd bytes as lone low surrogates (U+DC80 to U+DCFF), so that
// what was listed can be opened again. An empty error code is success; a call that fails has changed nothing
// unless it says so. Any thread. Owner: system() lives as long as the process.
class FileOperations : public InterfaceBase
{
public:
    // The real one.
    static FileOperations &system();

    // A name that is too long for the file system is Missing.
    virtual FileStatus status(const QString &path) = 0;
    // Appends every entry but "." and "..", in the file system's order. With an error the list may be cut
    // short.
    virtual std::error_code list(const QString &folder, QList<FolderEntry> &entries) = 0;
    // An ordinary file, whole; anything else is an error, and so is one of more than 512 MB.
    virtual std::error_code read(const QString &path, QByteArray &bytes, FileStamp &stamp) = 0;

    // Fails when anything has the name already. Null with the error set.
    virtual std::unique_ptr<WritableFile> createFile(const QString &path, std::error_code &error) = 0;
    virtual std::error_code makeFolder(const QString &path) = 0;
    // Replaces what has the new name.
    virtual std::error_code rename(const QString &from, const QString &to) = 0;
    // A file or a folder; file_exists when anything has the new name, cross_device_link between file systems.
    // A change of letter case alone works also where the file system folds it.
    virtual std::error_code renameToNewName(const QString &from, const QString &to) = 0;
    // Two names change places in one step; operation_not_supported where the file system cannot.
    virtual std::error_code exchange(const QString &one, const QString &other) = 0;
    // A second name for a file, which must be new; operation_not_supported where there are none.
    virtual std::error_code link(const QString &from, const QString &to) = 0;
    virtual std::error_code removeFile(const QString &path) = 0;
    // An empty one.
    virtual std::error_code removeFolder(const QString &path) = 0;
    // Returns when the names in the folder have reached the disk. Success where the system cannot sync one.
    virtual std::error_code syncFolder(const QString &path) = 0;
};

} // namespace cvtamber
