// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/documents/DesktopTrash.h"

#include "store/StoreDisk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace cvtamber {

using Outcome = FileResult::Outcome;

namespace {

// Where the person's trash cannot be made, Qt 6.4 moves the item to a folder "files" in the current one.
bool isDesktopTrashThere()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString trash = data + QStringLiteral("/Trash");
    return !data.isEmpty() && QDir().mkpath(trash) && QFileInfo(trash).isWritable();
#else
    return true;
#endif
}

constexpr int MostNames = 10000;

QString numberedName(const FileURL &url, int number)
{
    if (number == 1)
        return url.lastPathComponent();
    const QString extension = url.pathExtension();
    const QString name = url.nameWithoutExtension() % u' ' % QString::number(number);
    return extension.isEmpty() ? name : QString(name % u'.' % extension);
}

} // namespace

DesktopTrash::DesktopTrash(const StoreDisk &disk, FileURL recoveredFolder)
    : _disk(disk)
    , _recoveredFolder(std::move(recoveredFolder))
{}

FileResult DesktopTrash::moveToTrash(const FileURL &url)
{
    const QString path = url.path();
    // Qt would take a name with odd bytes for another one.
    const bool isQtName = path.isValidUtf16() && _disk.status(url).kind != FileStatus::Kind::Missing;
    if (isQtName && isDesktopTrashThere() && QFile::moveToTrash(path))
        return {};
    return moveToRecoveredFolder(url);
}

FileResult DesktopTrash::moveToRecoveredFolder(const FileURL &url) const
{
    FileResult result = _disk.makeFolders(_recoveredFolder);
    for (int number = 1; result.ok() && number <= MostNames; ++number) {
        const QString name = numberedName(url, number);
        FileResult moved = _disk.move(url, url.isDirectory() ? _recoveredFolder.appendingDirectory(name)
                                                             : _recoveredFolder.appendingFile(name));
        if (moved.outcome != Outcome::AlreadyExists)
            return moved;
        if (number == MostNames)
            result = moved;
    }
    return result;
}

} // namespace cvtamber
