// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreDisk.h"

#include "base/DiskTree.h"
#include "store/CloudNames.h"
#include "store/CrossDeviceMove.h"
#include "store/FileReplacement.h"
#include "store/StoreNames.h"

#include "base/ErrorText.h"
#include "base/HiddenFile.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

namespace cvtamber {

using Kind = FileStatus::Kind;
using Outcome = FileResult::Outcome;

namespace {

constexpr qint64 NanosecondsPerMillisecond = 1000000;
constexpr qint64 YoungAge = qint64{60} * 60 * 1000 * NanosecondsPerMillisecond;

FileResult missing()
{
    return resultOfFinding(std::make_error_code(std::errc::no_such_file_or_directory));
}

FileResult notDownloaded()
{
    return {Outcome::NotDownloaded, QStringLiteral("it has not been downloaded yet")};
}

FileURL parentOf(const FileURL &url)
{
    return url.deletingLastPathComponent();
}

// Not Ok for what nothing may be changed at: a folder that is a link leads out of the store.
FileResult refusal(FileOperations &operations, const FileURL &url)
{
    if (url.isNil())
        return failedBecause(QStringLiteral("this is not the name of a file"));
    if (operations.status(parentOf(url).path()).kind == Kind::Link)
        return failedBecause(QStringLiteral("its folder is a symbolic link"));
    return {};
}

// The placeholder of an item that is there; nil when there is none.
FileURL placeholderOf(FileOperations &operations, const FileURL &item)
{
    const QStringList names = placeholderNames(item.lastPathComponent());
    for (const QString &name : names) {
        FileURL url = parentOf(item).appendingFile(name);
        if (operations.status(url.path()).kind != Kind::Missing)
            return url;
    }
    return {};
}

// The same kind of placeholder for an item of another name; nil when that would be too long.
FileURL placeholderLike(const FileURL &placeholder, const FileURL &item, const FileURL &otherItem)
{
    QString name = placeholder.lastPathComponent();
    name.replace(name.indexOf(item.lastPathComponent()), item.lastPathComponent().size(),
                 otherItem.lastPathComponent());
    return placeholderNames(otherItem.lastPathComponent()).contains(name)
               ? parentOf(otherItem).appendingFile(name)
               : FileURL();
}

// No error when neither the item nor a placeholder of it is there. One that is the source of a move itself is
// not in the way: only the letter case of its name is to change.
std::error_code whyNotFree(FileOperations &operations, const FileURL &url, const FileStamp &source = {})
{
    QStringList names = placeholderNames(url.lastPathComponent());
    names.prepend(url.lastPathComponent());
    for (const QString &name : std::as_const(names)) {
        const FileStatus there = operations.status(parentOf(url).appendingFile(name).path());
        const bool isSource =
            source.inode != 0 && there.stamp.device == source.device && there.stamp.inode == source.inode;
        if (there.kind == Kind::Unknown)
            return there.error;
        if (there.kind != Kind::Missing && !isSource)
            return std::make_error_code(std::errc::file_exists);
    }
    return {};
}

FileResult removeFolder(FileOperations &operations, const FileURL &url)
{
    const std::error_code notEmpty = std::make_error_code(std::errc::directory_not_empty);
    QList<FolderEntry> entries;
    if (const std::error_code error = operations.list(url.path(), entries))
        return resultOfFinding(error);
    if (!std::all_of(entries.cbegin(), entries.cend(),
                     [](const auto &entry) { return isHiddenName(entry.name); }))
        return resultOf(notEmpty);
    for (const FolderEntry &entry : entries)
        DiskTree(operations, url.path() % u'/' % entry.name).remove();
    const std::error_code error = operations.removeFolder(url.path());
    // Some systems say so where something has come in between.
    return resultOfFinding(error == std::errc::file_exists ? notEmpty : error);
}

} // namespace

StoreDisk::Listing StoreDisk::list(const FileURL &directory) const
{
    Listing listing;
    QList<FolderEntry> found;
    const std::error_code error = _operations.list(directory.path(), found);
    static_cast<FileResult &>(listing) = resultOfFinding(error);
    listing.entries.reserve(static_cast<size_t>(found.size()));
    for (FolderEntry &entry : found) {
        if (isHiddenName(entry.name))
            listing.leftovers.append(entry.name);
        else if (entry.kind != Kind::Link && entry.kind != Kind::Other)
            listing.entries.push_back({std::move(entry.name), entry.kind});
    }
    std::sort(listing.entries.begin(), listing.entries.end(), [](const Entry &one, const Entry &other) {
        const int order = one.name.compare(other.name, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : one.name < other.name;
    });
    return listing;
}

bool StoreDisk::isFolder(const FileURL &url) const
{
    return !url.isNil() && status(url).kind == Kind::Folder;
}

bool StoreDisk::exists(const FileURL &url) const
{
    return !url.isNil() && (status(url).kind != Kind::Missing || !placeholderOf(_operations, url).isNil());
}

ReadResult StoreDisk::read(const FileURL &url) const
{
    ReadResult result;
    const std::error_code error = _operations.read(url.path(), result.bytes, result.stamp);
    if (error) {
        result.bytes.clear();
        result.stamp = {};
    }
    static_cast<FileResult &>(result) = resultOfFinding(error);
    if (result.outcome == Outcome::Missing && !placeholderOf(_operations, url).isNil())
        static_cast<FileResult &>(result) = notDownloaded();
    return result;
}

WriteResult StoreDisk::create(const FileURL &url, const QByteArray &bytes) const
{
    WriteResult result;
    FileResult &outcome = result;
    outcome = refusal(_operations, url);
    if (outcome.ok())
        outcome = resultOf(whyNotFree(_operations, url));
    if (!outcome.ok())
        return result;
    const QString folder = parentOf(url).path();
    HiddenFile file(_operations, folder);
    std::error_code error = file.make(bytes);
    if (!error)
        error = file.moveToNewName(url.path());
    outcome = resultOf(error);
    if (error)
        return result;
    result.stamp = file.stamp();
    error = _operations.syncFolder(folder);
    if (error)
        outcome = notSynced(error);
    return result;
}

WriteResult StoreDisk::replace(const FileURL &url, const QByteArray &bytes, const FileStamp &known,
                               OtherVersion otherVersion) const
{
    WriteResult result;
    FileResult &outcome = result;
    outcome = refusal(_operations, url);
    if (!outcome.ok())
        return result;
    const FileStatus there = status(url);
    if (there.kind == Kind::Unknown)
        outcome = resultOf(there.error);
    else if (there.kind == Kind::Missing && !placeholderOf(_operations, url).isNil())
        outcome = notDownloaded();
    else if (there.kind != Kind::Missing && there.kind != Kind::File)
        outcome = failedBecause(QStringLiteral("what has this name is not an ordinary file"));
    else
        result = FileReplacement(_operations, url, bytes, known, otherVersion).run();
    return result;
}

FileResult StoreDisk::makeFolder(const FileURL &directory) const
{
    FileResult refused = refusal(_operations, directory);
    if (!refused.ok())
        return refused;
    if (const std::error_code error = _operations.makeFolder(directory.path()))
        return resultOf(error);
    const std::error_code error = _operations.syncFolder(parentOf(directory).path());
    return error ? notSynced(error) : FileResult();
}

FileResult StoreDisk::makeFolders(const FileURL &directory) const
{
    std::vector<FileURL> toMake;
    FileStatus there = status(directory);
    for (FileURL next = directory; there.kind == Kind::Missing && next != parentOf(next);) {
        toMake.push_back(next);
        next = parentOf(next);
        there = status(next);
    }
    if (there.error)
        return resultOf(there.error);
    for (size_t i = toMake.size(); i-- > 0;) {
        FileResult made = makeFolder(toMake[i]);
        if (!made.ok() && made.outcome != Outcome::AlreadyExists)
            return made;
    }
    there = status(directory);
    if (there.kind == Kind::Folder)
        return {};
    return there.error ? resultOf(there.error) : failedBecause(QStringLiteral("it is not a folder"));
}

FileResult StoreDisk::move(const FileURL &from, const FileURL &to) const
{
    for (const FileURL &url : {from, to}) {
        FileResult refused = refusal(_operations, url);
        if (!refused.ok())
            return refused;
    }
    FileURL source = from;
    FileURL target = to;
    if (status(from).kind == Kind::Missing) {
        source = placeholderOf(_operations, from);
        if (source.isNil())
            return missing();
        target = placeholderLike(source, from, to);
        if (target.isNil())
            return resultOf(std::make_error_code(std::errc::filename_too_long));
    }
    std::error_code error = whyNotFree(_operations, to, status(source).stamp);
    if (!error)
        error = _operations.renameToNewName(source.path(), target.path());
    if (error == std::errc::cross_device_link)
        return CrossDeviceMove(_operations, source, target).run();
    if (error)
        return status(source).kind == Kind::Missing ? resultOfFinding(error) : resultOf(error);
    for (const FileURL &folder : {parentOf(to), parentOf(from)}) {
        if (const std::error_code notOnDisk = _operations.syncFolder(folder.path()))
            return notSynced(notOnDisk);
        if (parentOf(from) == parentOf(to))
            break;
    }
    return {};
}

FileResult StoreDisk::remove(const FileURL &url) const
{
    FileResult refused = refusal(_operations, url);
    if (!refused.ok())
        return refused;
    const FileStatus there = status(url);
    if (there.kind == Kind::Folder)
        return removeFolder(_operations, url);
    if (there.kind == Kind::Unknown)
        return resultOf(there.error);
    if (there.kind != Kind::Missing)
        return resultOfFinding(_operations.removeFile(url.path()));
    const FileURL placeholder = placeholderOf(_operations, url);
    return placeholder.isNil() ? missing() : resultOfFinding(_operations.removeFile(placeholder.path()));
}

bool StoreDisk::isEmptyFolder(const FileURL &directory) const
{
    QList<FolderEntry> entries;
    return !_operations.list(directory.path(), entries) &&
           std::all_of(entries.cbegin(), entries.cend(),
                       [](const auto &entry) { return isHiddenName(entry.name); });
}

StoreDisk::Walk StoreDisk::walk(const FileURL &directory) const
{
    Walk result;
    std::vector<FileURL> folders = {directory};
    while (!folders.empty()) {
        const FileURL folder = folders.back();
        folders.pop_back();
        Listing listing = list(folder);
        // One that has gone since it was listed is no fault.
        const bool isGone = listing.outcome == Outcome::Missing && folder != directory;
        for (const Entry &entry : listing.entries) {
            if (entry.kind == Kind::Folder)
                folders.push_back(folder.appendingDirectory(entry.name));
            else if (entry.kind == Kind::File)
                result.files.push_back(folder.appendingFile(entry.name));
            else
                static_cast<FileResult &>(listing) = resultOf(std::make_error_code(std::errc::io_error));
        }
        if (result.ok() && !isGone)
            static_cast<FileResult &>(result) = static_cast<const FileResult &>(listing);
    }
    return result;
}

QStringList StoreDisk::oldLeftovers(const FileURL &directory, const QStringList &leftovers) const
{
    QStringList old;
    if (status(directory).kind != Kind::Folder)
        return old;
    for (const QString &name : leftovers) {
        const FileURL url = directory.appendingFile(name);
        if (!url.isNil() && isHiddenName(name) && !isYoung(url))
            old.append(name);
    }
    return old;
}

bool StoreDisk::isYoung(const FileURL &item) const
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch() * NanosecondsPerMillisecond;
    const DiskTree tree(_operations, item.path());
    return tree.error() || now - tree.latestChange() <= YoungAge;
}

} // namespace cvtamber
