// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CrossDeviceMove.h"

#include "base/DiskTree.h"
#include "store/StoreNames.h"

#include "base/ErrorText.h"
#include "base/HiddenFile.h"

#include <utility>

namespace cvtamber {

using Kind = FileStatus::Kind;

CrossDeviceMove::CrossDeviceMove(FileOperations &operations, FileURL from, FileURL to)
    : _operations(operations)
    , _from(std::move(from))
    , _to(std::move(to))
    , _hiddenPath(freshHiddenPath(_to.deletingLastPathComponent().path()))
{}

FileResult CrossDeviceMove::run()
{
    std::error_code error = copy();
    if (!error)
        error = _operations.renameToNewName(_hiddenPath, _to.path());
    if (error) {
        DiskTree(_operations, _hiddenPath).remove();
        return resultOf(error);
    }
    error = _operations.syncFolder(_to.deletingLastPathComponent().path());
    if (error)
        return notSynced(error);
    const QString why = removeSource();
    if (why.isEmpty())
        return {};
    return failedBecause(QStringLiteral("it is in its new place, but the original is not all removed: ") +
                         why);
}

std::error_code CrossDeviceMove::copy()
{
    const DiskTree tree(_operations, _from.path());
    std::error_code error = tree.error();
    const qsizetype start = _from.pathLength();
    for (const DiskTree::Item &item : tree.items()) {
        // What is ours and half made is of no use elsewhere; nor is what lies in such a folder.
        const auto below = QStringView(item.path).sliced(start).split(u'/');
        const bool isOurs = std::any_of(below.begin(), below.end(), &isHiddenName);
        if (!error && !isOurs)
            error = copyItem(item.path, item.status.kind);
    }
    return error ? error : syncFolders();
}

std::error_code CrossDeviceMove::copyItem(const QString &source, Kind kind)
{
    const QString target = _hiddenPath % QStringView(source).sliced(_from.pathLength());
    switch (kind) {
    case Kind::Missing:
        return {};
    case Kind::File:
        return copyFile(source, target);
    case Kind::Folder:
        _folders.push_back(source);
        return _operations.makeFolder(target);
    default:
        return std::make_error_code(std::errc::operation_not_supported);
    }
}

std::error_code CrossDeviceMove::copyFile(const QString &source, const QString &target)
{
    QByteArray bytes;
    FileStamp stamp;
    std::error_code error = _operations.read(source, bytes, stamp);
    if (error)
        return error;
    const auto file = _operations.createFile(target, error);
    if (!file)
        return error;
    file->takeOverPermissions(source);
    error = file->write(bytes);
    if (!error)
        error = file->sync();
    _files.push_back({source, stamp});
    return error;
}

std::error_code CrossDeviceMove::syncFolders()
{
    for (size_t i = _folders.size(); i-- > 0;) {
        const QString copied = _hiddenPath % QStringView(_folders[i]).sliced(_from.pathLength());
        if (const std::error_code error = _operations.syncFolder(copied))
            return error;
    }
    return {};
}

QString CrossDeviceMove::removeSource()
{
    QString first;
    const auto note = [&first](const std::error_code &error) {
        if (error && first.isEmpty())
            first = errorText(error);
    };
    for (const CopiedFile &file : _files) {
        const FileStatus now = _operations.status(file.source);
        if (now.kind == Kind::Missing)
            continue;
        if (now.error || now.stamp == file.stamp)
            note(now.error ? now.error : _operations.removeFile(file.source));
        else
            first = QStringLiteral("another program has changed it");
    }
    for (size_t i = _folders.size(); i-- > 0;) {
        const QString &folder = _folders[i];
        QList<FolderEntry> entries;
        note(_operations.list(folder, entries));
        for (const FolderEntry &entry : entries) {
            if (isHiddenName(entry.name))
                note(DiskTree(_operations, folder % u'/' % entry.name).remove());
        }
        note(_operations.removeFolder(folder));
    }
    return first;
}

} // namespace cvtamber
