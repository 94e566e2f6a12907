// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/StoreRig.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <array>

#include <fcntl.h>
#include <sys/stat.h>

namespace cvtamber {

StoreRig::StoreRig(Place place, FileOperations &operations, const QString &parentFolder)
    : _folder(parentFolder + QStringLiteral("/store-XXXXXX"))
    , _localRoot(FileURL::directory(_folder.filePath(QStringLiteral("Documents"))))
    , _cloudRoot(FileURL::directory(_folder.filePath(QStringLiteral("Cloud/Documents"))))
    , _root(place == Place::Local ? _localRoot : _cloudRoot)
    , disk(operations)
    , trash(_folder.filePath(QStringLiteral("Trash")))
    , cloud(loop, FileURL::directory(_folder.filePath(QStringLiteral("Cloud"))))
    , context{loop, disk, coordinator, cloud, trash, notifications, problems, log}
{
    problems.setObserver(told);
    for (const FileURL &url : {_localRoot, _cloudRoot})
        QDir().mkpath(url.path());
}

StoreRig::~StoreRig() = default;

void StoreRig::settle()
{
    do {
        tasks.runAll();
        loop.advance({});
    } while (tasks.waiting() > 0);
}

QString StoreRig::path(const QString &relative) const
{
    return relative.isEmpty() ? _root.path() : QString(_root.path() % u'/' % relative);
}

void StoreRig::put(const QString &relative, const QByteArray &bytes) const
{
    QDir().mkpath(file(relative).deletingLastPathComponent().path());
    QFile file(path(relative));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("The test's own file could not be written");
}

void StoreRig::makeFolder(const QString &relative) const
{
    QDir().mkpath(path(relative));
}

void StoreRig::erase(const QString &relative) const
{
    if (!QFile::remove(path(relative)))
        QDir(path(relative)).removeRecursively();
}

void StoreRig::age(const QString &relative) const
{
    const timespec then{::time(nullptr) - 3700, 0};
    const std::array<timespec, 2> times{then, then};
    QStringList paths{path(relative)};
    QDirIterator below(path(relative), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (below.hasNext())
        paths.append(below.next());
    for (const QString &aged : paths)
        if (::utimensat(AT_FDCWD, QFile::encodeName(aged).constData(), times.data(), AT_SYMLINK_NOFOLLOW) !=
            0)
            qFatal("The test's own file could not be made older");
}

QByteArray StoreRig::bytes(const QString &relative) const
{
    QFile file(path(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool StoreRig::has(const QString &relative) const
{
    return QFileInfo::exists(path(relative));
}

QStringList StoreRig::names(const QString &relative) const
{
    return QDir(path(relative))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace cvtamber
