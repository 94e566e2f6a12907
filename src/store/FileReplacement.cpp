// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/FileReplacement.h"

#include "store/CloudNames.h"

#include "base/HiddenFile.h"

#include <utility>

namespace cvtamber {

namespace {

using Kind = FileStatus::Kind;
using OtherVersion = StoreDisk::OtherVersion;

// Another program can come between a few times; one that does so again and again is at fault.
constexpr int MostTries = 10;

// What stood there has changed since it was looked at.
constexpr auto TryAgain = std::errc::resource_unavailable_try_again;

constexpr int MostConflictCopies = 1000;

// Gives another program's version of the document a name beside it: calls `take` with one path after the other
// until it does not say that the name is in use. `kept` is then where the version is. Any thread.
template<typename Take>
std::error_code takeConflictCopyName(const FileURL &document, FileURL &kept, const Take &take)
{
    std::error_code error;
    for (int number = 1; number <= MostConflictCopies; ++number) {
        const FileURL url = document.deletingLastPathComponent().appendingFile(
            conflictCopyName(document.lastPathComponent(), number));
        error = take(url.path());
        if (!error)
            kept = url;
        if (error != std::errc::file_exists)
            break;
    }
    return error;
}

} // namespace

FileReplacement::FileReplacement(FileOperations &operations, FileURL url, QByteArray bytes, FileStamp known,
                                 OtherVersion otherVersion)
    : _operations(operations)
    , _url(std::move(url))
    , _path(_url.path())
    , _folder(_url.deletingLastPathComponent().path())
    , _bytes(std::move(bytes))
    , _known(known)
    , _otherVersion(otherVersion)
{}

WriteResult FileReplacement::run()
{
    WriteResult result;
    HiddenFile file(_operations, _folder);
    std::error_code error = file.make(_bytes, _path);
    for (int tries = 0; tries == 0 || (error == TryAgain && tries < MostTries); ++tries) {
        if (!error || error == TryAgain)
            error = place(file);
    }
    if (error) {
        forgetCopy();
        static_cast<FileResult &>(result) = resultOf(error);
        result.outcome = FileResult::Outcome::Failed;
        return result;
    }
    result.keptOther = _kept;
    result.stamp = file.stamp();
    error = _operations.syncFolder(_folder);
    if (error)
        static_cast<FileResult &>(result) = notSynced(error);
    return result;
}

std::error_code FileReplacement::place(HiddenFile &file)
{
    const FileStatus there = _operations.status(_path);
    std::error_code error;
    switch (there.kind) {
    case Kind::Missing:
        error = file.moveToNewName(_path);
        return error == std::errc::file_exists ? std::make_error_code(TryAgain) : error;
    case Kind::File:
        if (_otherVersion == OtherVersion::Replace)
            return file.replace(_path);
        error = placeOver(file, there.stamp);
        // It has gone since.
        return error == std::errc::no_such_file_or_directory ? std::make_error_code(TryAgain) : error;
    case Kind::Unknown:
        return there.error;
    default:
        return std::make_error_code(std::errc::invalid_argument);
    }
}

std::error_code FileReplacement::placeOver(HiddenFile &file, const FileStamp &there)
{
    std::error_code error;
    if (there != _known)
        error = keepWhatStandsThere();
    if (error)
        return error;
    error = file.exchangeWith(_path);
    if (!error)
        return keepWhatCameOut(file);
    if (error != std::errc::operation_not_supported)
        return error;
    if (_operations.status(_path).stamp != _known)
        return std::make_error_code(TryAgain);
    return file.replace(_path);
}

std::error_code FileReplacement::keepWhatCameOut(HiddenFile &file)
{
    const FileStatus out = _operations.status(file.path());
    if (out.kind == Kind::File && out.stamp == _known)
        return {};
    std::error_code error = out.error ? out.error : std::make_error_code(std::errc::invalid_argument);
    if (out.kind == Kind::File)
        error =
            takeConflictCopyName(_url, _kept, [&](const QString &path) { return file.moveToNewName(path); });
    // What has no other name goes back to its own, or else stays where it is.
    if (error && file.exchangeWith(_path))
        file.keep();
    return error;
}

std::error_code FileReplacement::keepWhatStandsThere()
{
    QByteArray bytes;
    FileStamp stamp;
    const std::error_code unreadable = _operations.read(_path, bytes, stamp);
    if (!unreadable && bytes == _bytes) {
        _known = stamp;
        return {};
    }
    std::error_code error = linkToFreeName();
    if (error == std::errc::operation_not_supported && !unreadable) {
        error = copyToFreeName(bytes);
        _known = stamp;
    }
    // The other version has its name on the disk before the new one takes its place.
    return error ? error : _operations.syncFolder(_folder);
}

// The other version still has its own name: the next try keeps it once more.
void FileReplacement::forgetCopy()
{
    if (!_kept.isNil() && _operations.status(_path).stamp == _known)
        _operations.removeFile(_kept.path());
}

std::error_code FileReplacement::linkToFreeName()
{
    return takeConflictCopyName(_url, _kept, [this](const QString &path) {
        if (const std::error_code error = _operations.link(_path, path))
            return error;
        const FileStatus linked = _operations.status(path);
        _known = linked.stamp;
        return linked.error;
    });
}

std::error_code FileReplacement::copyToFreeName(const QByteArray &bytes)
{
    HiddenFile copy(_operations, _folder);
    if (const std::error_code error = copy.make(bytes, _path))
        return error;
    return takeConflictCopyName(_url, _kept, [&](const QString &path) { return copy.moveToNewName(path); });
}

} // namespace cvtamber
