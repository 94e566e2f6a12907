// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/DurableFile.h"

#include "base/ErrorText.h"
#include "base/HiddenFile.h"

#include <QDir>
#include <QFileInfo>

namespace cvtamber {

namespace {

using Outcome = DurableFileResult::Outcome;
using Kind = FileStatus::Kind;

DurableFileResult failure(const std::error_code &error)
{
    return {error == std::errc::file_exists ? Outcome::AlreadyExists : Outcome::Failed, errorText(error)};
}

bool isFileName(const QString &path)
{
    return !path.isEmpty() && !path.endsWith(u'/') && !path.endsWith(QDir::separator()) &&
           !path.contains(QChar(u'\0'));
}

// Where a file is to be, with the folder's links followed.
struct Place
{
    explicit Place(const QString &name)
        : folder(QFileInfo(QFileInfo(name).path()).canonicalFilePath())
        , path(folder % u'/' % QFileInfo(name).fileName())
    {}

    QString folder;
    QString path;
};

DurableFileResult syncFolder(const QString &folder)
{
    const std::error_code error = FileOperations::system().syncFolder(folder);
    if (!error)
        return {};
    return {Outcome::Failed,
            QStringLiteral("the file is in place, but its folder could not be synced: ") + errorText(error)};
}

DurableFileResult write(const QString &name, const QByteArray &bytes, bool replaces)
{
    if (!isFileName(name))
        return {Outcome::Failed, QStringLiteral("this is not the name of a file")};
    const Place place(name);
    if (place.folder.isEmpty())
        return failure(std::make_error_code(std::errc::no_such_file_or_directory));
    FileOperations &operations = FileOperations::system();
    const Kind kind = operations.status(place.path).kind;
    if (kind != Kind::Missing && kind != Kind::Unknown) {
        if (!replaces)
            return failure(std::make_error_code(std::errc::file_exists));
        if (kind != Kind::File)
            return {Outcome::Failed, QStringLiteral("what has this name is not an ordinary file")};
    }
    HiddenFile file(operations, place.folder);
    std::error_code error = file.make(bytes, kind == Kind::File ? place.path : QString());
    if (!error)
        error = replaces ? file.replace(place.path) : file.moveToNewName(place.path);
    return error ? failure(error) : syncFolder(place.folder);
}

} // namespace

DurableFileResult writeNewFile(const QString &path, const QByteArray &bytes)
{
    return write(path, bytes, false);
}

DurableFileResult replaceFile(const QString &path, const QByteArray &bytes)
{
    // A link to nothing stays what it is, and is refused.
    const QFileInfo target(path);
    const bool isLink = isFileName(path) && target.isSymbolicLink() && target.exists();
    return write(isLink ? target.canonicalFilePath() : path, bytes, true);
}

} // namespace cvtamber
