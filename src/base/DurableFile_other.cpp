// SPDX-License-Identifier: GPL-3.0-or-later
// For systems without POSIX calls. Folders cannot be synced there; the system's journal keeps the names.
#include "base/DurableFile.h"

#include "base/FileSync.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

namespace cvtamber {

namespace {

using Outcome = DurableFileResult::Outcome;

DurableFileResult notAFileName()
{
    return {Outcome::Failed, QStringLiteral("this is not the name of a file")};
}

bool isFileName(const QString &path)
{
    return !path.isEmpty() && !path.endsWith(u'/') && !path.endsWith(u'\\') && !path.contains(QChar(u'\0'));
}

DurableFileResult alreadyExists()
{
    return {Outcome::AlreadyExists, QStringLiteral("a file of this name exists already")};
}

} // namespace

DurableFileResult writeNewFile(const QString &path, const QByteArray &bytes)
{
    if (!isFileName(path))
        return notAFileName();
    const QFileInfo target(path);
    if (target.exists() || target.isSymbolicLink())
        return alreadyExists();
    QTemporaryFile file(target.path() + QStringLiteral("/.cvtamber-XXXXXX"));
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush() || !syncToDisk(file.handle()))
        return {Outcome::Failed, file.errorString()};
    // QFile's rename takes no name that is in use, QTemporaryFile's would.
    file.setAutoRemove(false);
    const QString hiddenPath = file.fileName();
    file.close();
    QFile hidden(hiddenPath);
    if (hidden.rename(path))
        return {};
    const QString reason = hidden.errorString();
    hidden.remove();
    if (QFileInfo::exists(path))
        return alreadyExists();
    return {Outcome::Failed, reason};
}

DurableFileResult replaceFile(const QString &path, const QByteArray &bytes)
{
    if (!isFileName(path))
        return notAFileName();
    const QFileInfo target(path);
    if ((target.exists() && !target.isFile()) || (target.isSymbolicLink() && !target.exists()))
        return {Outcome::Failed, QStringLiteral("what has this name is not an ordinary file")};
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return {Outcome::Failed, file.errorString()};
    return {};
}

} // namespace cvtamber
