// SPDX-License-Identifier: GPL-3.0-or-later
#include "StoreTree.h"

#include <QDir>
#include <QFile>

#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace cvtamber {

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

qint64 walkFrom(int parent, const char *name)
{
    const int descriptor = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *folder = descriptor < 0 ? nullptr : ::fdopendir(descriptor);
    if (!folder)
        return 0;
    qint64 count = 0;
    while (const dirent *entry = ::readdir(folder)) {
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
            continue;
        ++count;
        if (entry->d_type == DT_DIR)
            count += walkFrom(descriptor, entry->d_name);
    }
    ::closedir(folder);
    return count;
}

} // namespace

StoreTree::StoreTree(int users, int documentsPerUser)
    : _isComplete(fill(_folder.path(), users, documentsPerUser))
{}

bool StoreTree::fill(const QString &root, int users, int documentsPerUser)
{
    const QString active = root + u"/ActiveUsers/";
    bool isComplete = QDir().mkpath(active) && QDir().mkpath(root + u"/ArchivedUsers");
    for (int user = 0; user < users && isComplete; ++user) {
        const QString folder = QString(active % userFolder(user) % u'/');
        isComplete = QDir().mkpath(folder) &&
                     writeFile(QString(folder % QLatin1String("user.txt")), "Ada\nLovelace\nAda L.\n");
        for (int number = 0; number < documentsPerUser && isComplete; ++number)
            isComplete = writeFile(QString(folder % documentName(number)), "A short text.\n");
    }
    return isComplete;
}

QString StoreTree::userFolder(int number)
{
    return QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 16, QLatin1Char('0')).toUpper();
}

QString StoreTree::documentName(int number)
{
    return QStringLiteral("Homework %1.tamber").arg(number, 5, 10, QLatin1Char('0'));
}

qint64 bareWalk(const QString &path)
{
    return walkFrom(AT_FDCWD, QFile::encodeName(path).constData());
}

} // namespace cvtamber
