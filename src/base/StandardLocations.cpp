// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/StandardLocations.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace cvtamber {

namespace {

#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN) && !defined(Q_OS_ANDROID)

QString baseFolder(const char *variable, const QString &fallback)
{
    const QString value = qEnvironmentVariable(variable);
    return QDir::isAbsolutePath(value) ? QDir::cleanPath(value) : QDir::home().filePath(fallback);
}

QString dataFolder()
{
    return baseFolder("XDG_DATA_HOME", QStringLiteral(".local/share")) + QStringLiteral("/cvtamber");
}

QString statePath()
{
    return baseFolder("XDG_STATE_HOME", QStringLiteral(".local/state")) + QStringLiteral("/cvtamber");
}

#else

QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/cvtamber");
}

QString statePath()
{
    return dataFolder() + QStringLiteral("/State");
}

#endif

// Only what is made here is closed to others: a folder that somebody opened on purpose stays open.
void makePrivate(const QString &folder)
{
    if (QFileInfo::exists(folder) || !QDir().mkpath(QFileInfo(folder).path()))
        return;
    QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

QString StandardLocations::documentsFolder()
{
    const QString data = dataFolder();
    makePrivate(data);
    QString folder = data + QStringLiteral("/Documents");
    makePrivate(folder);
    return folder;
}

QString StandardLocations::stateFolder()
{
    QString folder = statePath();
    makePrivate(folder);
    return folder;
}

QString StandardLocations::temporaryFolder()
{
    if (!_temporary)
        _temporary.emplace(QDir::tempPath() + QStringLiteral("/cvtamber-XXXXXX"));
    return _temporary->isValid() ? _temporary->path() : QString();
}

} // namespace cvtamber
