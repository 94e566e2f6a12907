// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileOperations.h"

#include "base/FileSync.h"
#include "base/PathBytes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cvtamber {

namespace {

using Kind = FileStatus::Kind;
using Stat = struct stat;

// A text that is larger than this is none, and would not fit into memory on a phone.
constexpr off_t LargestFile = off_t{512} * 1024 * 1024;

std::error_code errorOf(int number)
{
    return {number, std::generic_category()};
}

std::error_code resultOf(int returned)
{
    return returned == 0 ? std::error_code() : errorOf(errno);
}

bool isUnsupported(int number)
{
    // ENOTSUP and EOPNOTSUPP are one number on Linux only.
    constexpr std::array numbers{EINVAL, ENOSYS, ENOTSUP, EOPNOTSUPP};
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

std::error_code supportedResultOf(int returned)
{
    if (returned != 0 && isUnsupported(errno))
        return std::make_error_code(std::errc::operation_not_supported);
    return resultOf(returned);
}

// A call on the bytes of one path, or of two.
template<typename Call> std::error_code onPath(const QString &path, Call call)
{
    const QByteArray bytes = bytesOfPath(path);
    return bytes.isEmpty() ? errorOf(EINVAL) : call(bytes.constData());
}

template<typename Call> std::error_code onPaths(const QString &one, const QString &other, Call call)
{
    return onPath(one, [&](const char *first) {
        return onPath(other, [&](const char *second) { return call(first, second); });
    });
}

Kind kindOf(const Stat &status)
{
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        return Kind::File;
    case S_IFDIR:
        return Kind::Folder;
    case S_IFLNK:
        return Kind::Link;
    default:
        return Kind::Other;
    }
}

FileStamp stampOf(const Stat &status)
{
#ifdef Q_OS_DARWIN
    const timespec &modified = status.st_mtimespec;
#else
    const timespec &modified = status.st_mtim;
#endif
    return {static_cast<quint64>(status.st_dev), static_cast<quint64>(status.st_ino),
            static_cast<qint64>(status.st_size), qint64{modified.tv_sec} * 1000000000 + modified.tv_nsec};
}

class Descriptor
{
public:
    Descriptor(const char *path, int flags, mode_t mode = 0)
    {
        do
            _number = ::open(path, flags | O_NOFOLLOW | O_CLOEXEC, mode);
        while (_number < 0 && errno == EINTR);
    }
    Descriptor(Descriptor &&other) noexcept
        : _number(other.release())
    {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (_number >= 0)
            ::close(_number);
    }

    bool isOpen() const { return _number >= 0; }
    int number() const { return _number; }
    int release() { return std::exchange(_number, -1); }

private:
    int _number = -1;
};

class PosixFile final : public WritableFile
{
public:
    explicit PosixFile(Descriptor descriptor)
        : _descriptor(std::move(descriptor))
    {}

    std::error_code write(const QByteArray &bytes) override
    {
        const char *next = bytes.constData();
        auto left = static_cast<size_t>(bytes.size());
        while (left > 0) {
            const ssize_t written = ::write(_descriptor.number(), next, left);
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                return errorOf(written < 0 ? errno : EIO);
            next += written;
            left -= static_cast<size_t>(written);
        }
        return {};
    }

    std::error_code sync() override
    {
        return syncToDisk(_descriptor.number()) ? std::error_code() : errorOf(errno);
    }

    void takeOverPermissions(const QString &path) override
    {
        Stat status = {};
        Stat own = {};
        if (onPath(path, [&](const char *bytes) { return resultOf(::lstat(bytes, &status)); }) ||
            !S_ISREG(status.st_mode) || ::fstat(_descriptor.number(), &own) != 0)
            return;
        const bool ownerDiffers = own.st_uid != status.st_uid || own.st_gid != status.st_gid;
        // Only the superuser may give a file away; for everyone else it becomes theirs.
        [[maybe_unused]] const int refused =
            ownerDiffers ? ::fchown(_descriptor.number(), status.st_uid, status.st_gid) : 0;
        if ((own.st_mode & 0777) != (status.st_mode & 0777))
            ::fchmod(_descriptor.number(), status.st_mode & 0777);
    }

    FileStamp stamp() const override
    {
        Stat status = {};
        return ::fstat(_descriptor.number(), &status) == 0 ? stampOf(status) : FileStamp();
    }

private:
    Descriptor _descriptor;
};

// Only in one step; EINVAL or the like where the system or the file system cannot.
std::error_code renameWithFlag(const char *from, const char *to, bool exchange)
{
#if defined(Q_OS_DARWIN)
    return supportedResultOf(::renamex_np(from, to, exchange ? RENAME_SWAP : RENAME_EXCL));
#elif defined(RENAME_NOREPLACE)
    return supportedResultOf(
        ::renameat2(AT_FDCWD, from, AT_FDCWD, to, exchange ? RENAME_EXCHANGE : RENAME_NOREPLACE));
#else
    Q_UNUSED(from)
    Q_UNUSED(to)
    Q_UNUSED(exchange)
    return std::make_error_code(std::errc::operation_not_supported);
#endif
}

// Both names are one item, as where letter case is folded, and not two links to one file.
bool isSameItem(const char *from, const char *to)
{
    Stat source = {};
    Stat target = {};
    return std::strcmp(from, to) != 0 && ::lstat(from, &source) == 0 && ::lstat(to, &target) == 0 &&
           source.st_dev == target.st_dev && source.st_ino == target.st_ino &&
           (S_ISDIR(source.st_mode) || source.st_nlink == 1);
}

// Where a rename cannot refuse to replace: a link and a folder that is made take a free name only.
std::error_code renameByReserving(const char *from, const char *to)
{
    Stat source = {};
    if (::lstat(from, &source) != 0)
        return errorOf(errno);
    if (S_ISDIR(source.st_mode)) {
        if (::mkdir(to, 0700) != 0)
            return errorOf(errno);
        if (::rename(from, to) == 0)
            return {};
        const int number = errno;
        ::rmdir(to);
        return errorOf(number);
    }
    if (::linkat(AT_FDCWD, from, AT_FDCWD, to, 0) == 0)
        return resultOf(::unlink(from));
    if (errno == EEXIST || errno == EXDEV || errno == ENOENT)
        return errorOf(errno);
    // Without links there is only a look beforehand.
    Stat target = {};
    if (::lstat(to, &target) == 0)
        return errorOf(EEXIST);
    return resultOf(::rename(from, to));
}

class PosixFileOperations final : public FileOperations
{
public:
    FileStatus status(const QString &path) override
    {
        FileStatus result;
        Stat status = {};
        result.error = onPath(path, [&](const char *bytes) { return resultOf(::lstat(bytes, &status)); });
        if (!result.error) {
            result.kind = kindOf(status);
            result.stamp = stampOf(status);
        } else if (result.error == std::errc::no_such_file_or_directory ||
                   result.error == std::errc::not_a_directory ||
                   result.error == std::errc::filename_too_long) {
            result.error.clear();
        } else {
            result.kind = Kind::Unknown;
        }
        return result;
    }

    std::error_code list(const QString &folder, QList<FolderEntry> &entries) override
    {
        return onPath(folder, [&](const char *path) { return listBytes(path, entries); });
    }

    std::error_code read(const QString &path, QByteArray &bytes, FileStamp &stamp) override
    {
        return onPath(path, [&](const char *name) -> std::error_code {
            // Opening a pipe would wait for its other end.
            const Descriptor file(name, O_RDONLY | O_NONBLOCK);
            Stat status = {};
            if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
                return errorOf(errno);
            if (!S_ISREG(status.st_mode))
                return errorOf(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
            if (status.st_size > LargestFile)
                return errorOf(EFBIG);
            stamp = stampOf(status);
            return readWhole(file.number(), status.st_size, bytes);
        });
    }

    std::unique_ptr<WritableFile> createFile(const QString &path, std::error_code &error) override
    {
        std::unique_ptr<WritableFile> made;
        error = onPath(path, [&](const char *bytes) {
            Descriptor descriptor(bytes, O_WRONLY | O_CREAT | O_EXCL, 0666);
            if (!descriptor.isOpen())
                return errorOf(errno);
            made = std::make_unique<PosixFile>(std::move(descriptor));
            return std::error_code();
        });
        return made;
    }

    std::error_code makeFolder(const QString &path) override
    {
        return onPath(path, [](const char *bytes) { return resultOf(::mkdir(bytes, 0777)); });
    }

    std::error_code rename(const QString &from, const QString &to) override
    {
        return onPaths(from, to, [](const char *a, const char *b) { return resultOf(::rename(a, b)); });
    }

    std::error_code renameToNewName(const QString &from, const QString &to) override
    {
        return onPaths(from, to, [](const char *source, const char *target) {
            auto error = renameWithFlag(source, target, false);
            if (error == std::errc::operation_not_supported)
                error = renameByReserving(source, target);
            if (error == std::errc::file_exists && isSameItem(source, target))
                error = resultOf(::rename(source, target));
            return error;
        });
    }

    std::error_code exchange(const QString &one, const QString &other) override
    {
        return onPaths(one, other, [](const char *a, const char *b) { return renameWithFlag(a, b, true); });
    }

    std::error_code link(const QString &from, const QString &to) override
    {
        return onPaths(from, to, [](const char *source, const char *target) {
            const int returned = ::linkat(AT_FDCWD, source, AT_FDCWD, target, 0);
            // EPERM: the file system knows no links, or the system lets one link only to one's own files.
            if (returned != 0 && (errno == EPERM || errno == EMLINK))
                return std::make_error_code(std::errc::operation_not_supported);
            return supportedResultOf(returned);
        });
    }

    std::error_code removeFile(const QString &path) override
    {
        return onPath(path, [](const char *bytes) { return resultOf(::unlink(bytes)); });
    }

    std::error_code removeFolder(const QString &path) override
    {
        return onPath(path, [](const char *bytes) { return resultOf(::rmdir(bytes)); });
    }

    std::error_code syncFolder(const QString &path) override
    {
        return onPath(path, [](const char *bytes) {
            const Descriptor folder(bytes, O_RDONLY | O_DIRECTORY);
            // A folder that may be written but not read cannot be synced, nor does it have to fail for that.
            if (!folder.isOpen())
                return errno == EACCES ? std::error_code() : errorOf(errno);
            return syncToDisk(folder.number()) ? std::error_code() : errorOf(errno);
        });
    }

private:
    static std::error_code listBytes(const char *path, QList<FolderEntry> &entries)
    {
        Descriptor descriptor(path, O_RDONLY | O_DIRECTORY);
        if (!descriptor.isOpen())
            return errorOf(errno);
        const std::unique_ptr<DIR, int (*)(DIR *)> folder(::fdopendir(descriptor.number()), &::closedir);
        if (!folder)
            return errorOf(errno);
        descriptor.release();
        errno = 0;
        while (const dirent *entry = ::readdir(folder.get())) {
            const char *name = entry->d_name;
            if (name[0] != '.' || (name[1] != '\0' && (name[1] != '.' || name[2] != '\0')))
                appendEntry(::dirfd(folder.get()), *entry, entries);
            errno = 0;
        }
        return errorOf(errno);
    }

    static void appendEntry(int folder, const dirent &entry, QList<FolderEntry> &entries)
    {
        Kind kind = Kind::Unknown;
        switch (entry.d_type) {
        case DT_REG:
            kind = Kind::File;
            break;
        case DT_DIR:
            kind = Kind::Folder;
            break;
        case DT_LNK:
            kind = Kind::Link;
            break;
        case DT_UNKNOWN: {
            Stat status = {};
            if (::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
                kind = kindOf(status);
            else if (errno == ENOENT)
                return;
            break;
        }
        default:
            kind = Kind::Other;
        }
        entries.append({pathOfBytes(entry.d_name), kind});
    }

    static std::error_code readWhole(int descriptor, off_t expected, QByteArray &bytes)
    {
        // One byte more than is expected, so that the usual file needs no second buffer.
        bytes.resize(expected + 1);
        qsizetype filled = 0;
        for (;;) {
            if (filled == bytes.size())
                bytes.resize(2 * filled);
            const ssize_t count =
                ::read(descriptor, bytes.data() + filled, static_cast<size_t>(bytes.size() - filled));
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0 || filled > LargestFile)
                return errorOf(count < 0 ? errno : EFBIG);
            if (count == 0)
                break;
            filled += count;
        }
        bytes.resize(filled);
        return {};
    }
};

} // namespace

FileOperations &FileOperations::system()
{
    static PosixFileOperations operations;
    return operations;
}

} // namespace cvtamber
