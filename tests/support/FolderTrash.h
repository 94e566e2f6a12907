// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Trash.h"

#include <QDir>
#include <QList>

#include <mutex>

namespace cvtamber {

// A trash that is a folder: each item gets a folder of its own in it, "1", "2" ... What it tells is read while nothing
// runs.
class FolderTrash final : public Trash
{
public:
    explicit FolderTrash(const QString &folder)
        : _folder(folder)
    {}

    FileResult moveToTrash(const FileURL &url) override
    {
        const std::lock_guard lock(_mutex);
        if (!failure.ok())
            return failure;
        const QString place = _folder + u'/' + QString::number(items.size() + 1);
        if (!QDir().mkpath(place) || !QDir().rename(url.path(), place + u'/' + url.lastPathComponent()))
            return {FileResult::Outcome::Failed, QStringLiteral("cannot be moved")};
        items.append(url);
        return {};
    }

    // Where the items stood.
    QList<FileURL> items;
    // Anything but Ok: nothing goes to the trash.
    FileResult failure;

private:
    std::mutex _mutex;
    QString _folder;
};

} // namespace cvtamber
