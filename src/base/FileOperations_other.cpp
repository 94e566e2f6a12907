// SPDX-License-Identifier: GPL-3.0-or-later
// For systems without POSIX calls. Folders cannot be synced there; the system's journal keeps the names.
#include "base/FileOperations.h"

#include "base/FileSync.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace cvtamber {

namespace {

namespace fs = std::filesystem;
using Kind = FileStatus::Kind;

// A text that is larger than this is none.
constexpr qint64 LargestFile = qint64{512} * 1024 * 1024;

fs::path pathOf(const QString &path)
{
    return {path.toStdU16String()};
}

std::error_code errorOf(std::errc error)
{
    return std::make_error_code(error);
}

Kind kindOf(fs::file_type type)
{
    switch (type) {
    case fs::file_type::not_found:
        return Kind::Missing;
    case fs::file_type::regular:
        return Kind::File;
    case fs::file_type::directory:
        return Kind::Folder;
    case fs::file_type::symlink:
        return Kind::Link;
    case fs::file_type::none:
    case fs::file_type::unknown:
        return Kind::Unknown;
    default:
        return Kind::Other;
    }
}

FileStamp stampOf(const QString &path)
{
    const QFileInfo info(path);
    return {0, 0, info.size(), info.lastModified().toMSecsSinceEpoch() * 1000000};
}

std::error_code errorOf(const QFile &file)
{
    switch (file.error()) {
    case QFile::NoError:
        return {};
    case QFile::PermissionsError:
        return errorOf(std::errc::permission_denied);
    default:
        break;
    }
    std::error_code unknown;
    const fs::space_info space = fs::space(pathOf(QFileInfo(file).path()), unknown);
    if (file.error() == QFile::WriteError && !unknown && space.available == 0)
        return errorOf(std::errc::no_space_on_device);
    return errorOf(std::errc::io_error);
}

class OtherFile final : public WritableFile
{
public:
    explicit OtherFile(const QString &path)
        : _file(path)
    {}

    std::error_code create()
    {
        if (_file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return {};
        return QFileInfo::exists(_file.fileName()) ? errorOf(std::errc::file_exists) : errorOf(_file);
    }

    std::error_code write(const QByteArray &bytes) override
    {
        return _file.write(bytes) == bytes.size() && _file.flush() ? std::error_code() : errorOf(_file);
    }
    std::error_code sync() override
    {
        if (!_file.flush())
            return errorOf(_file);
        return syncToDisk(_file.handle()) ? std::error_code() : errorOf(std::errc::io_error);
    }
    void takeOverPermissions(const QString &path) override { _file.setPermissions(QFile::permissions(path)); }
    FileStamp stamp() const override { return stampOf(_file.fileName()); }

private:
    QFile _file;
};

class OtherFileOperations final : public FileOperations
{
public:
    FileStatus status(const QString &path) override
    {
        FileStatus result;
        result.kind = kindOf(fs::symlink_status(pathOf(path), result.error).type());
        if (result.kind == Kind::Missing)
            result.error.clear();
        else if (result.kind != Kind::Unknown)
            result.stamp = stampOf(path);
        return result;
    }

    std::error_code list(const QString &folder, QList<FolderEntry> &entries) override
    {
        std::error_code error;
        if (status(folder).kind == Kind::Link)
            return errorOf(std::errc::not_a_directory);
        for (fs::directory_iterator it(pathOf(folder), error), end; !error && it != end;
             it.increment(error)) {
            std::error_code unknown;
            const Kind kind = kindOf(it->symlink_status(unknown).type());
            entries.append({QString::fromStdU16String(it->path().filename().u16string()), kind});
        }
        return error;
    }

    std::error_code read(const QString &path, QByteArray &bytes, FileStamp &stamp) override
    {
        const FileStatus found = status(path);
        if (found.kind != Kind::File)
            return errorOf(found.kind == Kind::Missing ? std::errc::no_such_file_or_directory
                                                       : std::errc::invalid_argument);
        if (found.stamp.size > LargestFile)
            return errorOf(std::errc::file_too_large);
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return errorOf(file);
        stamp = found.stamp;
        bytes = file.readAll();
        return errorOf(file);
    }

    std::unique_ptr<WritableFile> createFile(const QString &path, std::error_code &error) override
    {
        auto file = std::make_unique<OtherFile>(path);
        error = file->create();
        return error ? nullptr : std::move(file);
    }

    std::error_code makeFolder(const QString &path) override
    {
        std::error_code error;
        const bool made = fs::create_directory(pathOf(path), error);
        return made || error ? error : errorOf(std::errc::file_exists);
    }

    std::error_code rename(const QString &from, const QString &to) override
    {
        std::error_code error;
        fs::rename(pathOf(from), pathOf(to), error);
        return error;
    }

    std::error_code renameToNewName(const QString &from, const QString &to) override
    {
#ifdef Q_OS_WIN
        // Takes a free name only; one that differs in letter case alone is free.
        if (MoveFileExW(pathOf(from).c_str(), pathOf(to).c_str(), MOVEFILE_WRITE_THROUGH))
            return {};
        return {static_cast<int>(GetLastError()), std::system_category()};
#else
        if (status(to).kind != Kind::Missing)
            return errorOf(std::errc::file_exists);
        return rename(from, to);
#endif
    }

    std::error_code exchange(const QString &, const QString &) override
    {
        return errorOf(std::errc::operation_not_supported);
    }

    std::error_code link(const QString &from, const QString &to) override
    {
        std::error_code error;
        fs::create_hard_link(pathOf(from), pathOf(to), error);
        if (error && error != std::errc::file_exists && error != std::errc::no_such_file_or_directory)
            return errorOf(std::errc::operation_not_supported);
        return error;
    }

    std::error_code removeFile(const QString &path) override
    {
        if (status(path).kind == Kind::Folder)
            return errorOf(std::errc::is_a_directory);
        return remove(path);
    }

    std::error_code removeFolder(const QString &path) override
    {
        if (status(path).kind != Kind::Folder)
            return errorOf(std::errc::not_a_directory);
        return remove(path);
    }

    std::error_code syncFolder(const QString &) override
    {
        return {};
    }

private:
    static std::error_code remove(const QString &path)
    {
        std::error_code error;
        const bool removed = fs::remove(pathOf(path), error);
        return removed || error ? error : errorOf(std::errc::no_such_file_or_directory);
    }
};

} // namespace

FileOperations &FileOperations::system()
{
    static OtherFileOperations operations;
    return operations;
}

} // namespace cvtamber
