// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/DurableFile.h"

#include "base/FileSync.h"

#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cvtamber {

namespace {

using Outcome = DurableFileResult::Outcome;

DurableFileResult failure(Outcome outcome, int error)
{
    return {outcome, QString::fromLocal8Bit(std::strerror(error))};
}

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/") : path.first(slash);
}

// The hidden file beside the target; it is gone with this object unless it was moved away.
class HiddenFile
{
public:
    explicit HiddenFile(const QByteArray &folder)
    {
        // A name of its own rather than mkstemp, so that the system applies the person's umask.
        for (int tries = 0; tries < 100 && _descriptor < 0; ++tries) {
            const auto number = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
            _path = folder + "/.cvtamber-" + number;
            _descriptor = ::open(_path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (_descriptor < 0 && errno != EEXIST)
                return;
        }
    }
    HiddenFile(const HiddenFile &) = delete;
    HiddenFile &operator=(const HiddenFile &) = delete;
    ~HiddenFile()
    {
        if (_descriptor < 0)
            return;
        ::close(_descriptor);
        if (!_moved)
            ::unlink(_path.constData());
    }

    bool isOpen() const { return _descriptor >= 0; }
    int descriptor() const { return _descriptor; }
    const char *path() const { return _path.constData(); }
    void setMoved() { _moved = true; }

    // False with errno set.
    bool writeAndSync(const QByteArray &bytes)
    {
        const char *next = bytes.constData();
        auto left = static_cast<size_t>(bytes.size());
        while (left > 0) {
            const ssize_t written = ::write(_descriptor, next, left);
            if (written < 0 && errno == EINTR)
                continue;
            if (written < 0)
                return false;
            next += written;
            left -= static_cast<size_t>(written);
        }
        return syncToDisk(_descriptor);
    }

private:
    QByteArray _path;
    int _descriptor = -1;
    bool _moved = false;
};

// 0, or the error number. Never replaces what has the name.
int moveToNewName(HiddenFile &file, const char *target)
{
#if defined(RENAME_NOREPLACE)
    if (::renameat2(AT_FDCWD, file.path(), AT_FDCWD, target, RENAME_NOREPLACE) == 0) {
        file.setMoved();
        return 0;
    }
    // Some file systems, those of a network above all, know only links.
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return errno;
#endif
    // The hidden name goes with the object.
    return ::link(file.path(), target) == 0 ? 0 : errno;
}

DurableFileResult syncFolder(const QByteArray &folder)
{
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    // A folder that may be written but not read cannot be synced, nor does it have to fail for that.
    if (descriptor < 0 && errno == EACCES)
        return {};
    const bool synced = descriptor >= 0 && syncToDisk(descriptor);
    const int error = errno;
    if (descriptor >= 0)
        ::close(descriptor);
    if (synced)
        return {};
    auto result = failure(Outcome::Failed, error);
    result.message.prepend(QStringLiteral("the file is in place, but its folder could not be synced: "));
    return result;
}

// Nothing when the path can be used as it is.
std::optional<DurableFileResult> refusal(const QString &path)
{
    if (path.isEmpty() || path.endsWith(u'/') || path.contains(QChar(u'\0')))
        return DurableFileResult{Outcome::Failed, QStringLiteral("this is not the name of a file")};
    return std::nullopt;
}

// The target with all links followed; empty with errno set when it points nowhere.
QByteArray withLinksFollowed(const QByteArray &target)
{
    struct stat status = {};
    if (::lstat(target.constData(), &status) != 0 || !S_ISLNK(status.st_mode))
        return target;
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(target.constData(), nullptr),
                                                               &std::free);
    return QByteArray(resolved.get());
}

// 0, or the error number.
int takeOverPermissions(const HiddenFile &file, const struct stat &status)
{
    struct stat own = {};
    if (::fstat(file.descriptor(), &own) != 0)
        return errno;
    const bool ownerDiffers = own.st_uid != status.st_uid || own.st_gid != status.st_gid;
    // Only the superuser may give a file away; for everyone else it becomes theirs.
    if (ownerDiffers && ::fchown(file.descriptor(), status.st_uid, status.st_gid) != 0 && errno != EPERM)
        return errno;
    return ::fchmod(file.descriptor(), status.st_mode & 0777) == 0 ? 0 : errno;
}

} // namespace

DurableFileResult writeNewFile(const QString &path, const QByteArray &bytes)
{
    if (const auto refused = refusal(path))
        return *refused;
    const QByteArray target = QFile::encodeName(path);
    const QByteArray folder = folderOf(target);
    struct stat status = {};
    if (::lstat(target.constData(), &status) == 0)
        return failure(Outcome::AlreadyExists, EEXIST);
    {
        HiddenFile file(folder);
        if (!file.isOpen() || !file.writeAndSync(bytes))
            return failure(Outcome::Failed, errno);
        if (const int error = moveToNewName(file, target.constData()))
            return failure(error == EEXIST ? Outcome::AlreadyExists : Outcome::Failed, error);
    }
    return syncFolder(folder);
}

DurableFileResult replaceFile(const QString &path, const QByteArray &bytes)
{
    if (const auto refused = refusal(path))
        return *refused;
    const QByteArray target = withLinksFollowed(QFile::encodeName(path));
    if (target.isEmpty())
        return failure(Outcome::Failed, errno);
    struct stat status = {};
    const bool exists = ::lstat(target.constData(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode))
        return {Outcome::Failed, QStringLiteral("what has this name is not an ordinary file")};
    const QByteArray folder = folderOf(target);
    HiddenFile file(folder);
    if (!file.isOpen())
        return failure(Outcome::Failed, errno);
    if (const int error = exists ? takeOverPermissions(file, status) : 0)
        return failure(Outcome::Failed, error);
    if (!file.writeAndSync(bytes) || ::rename(file.path(), target.constData()) != 0)
        return failure(Outcome::Failed, errno);
    file.setMoved();
    return syncFolder(folder);
}

} // namespace cvtamber
