// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/UserDirectories.h"

#include "base/SystemLog.h"
#include "store/CloudNames.h"
#include "store/ContainerListing.h"
#include "store/FileCoordinator.h"
#include "store/StoreContext.h"
#include "store/StoreDisk.h"
#include "store/StoreNames.h"
#include "store/StoreProblems.h"
#include "store/Trash.h"

#include <algorithm>

namespace cvtamber {

namespace {

bool isDocumentOrOnItsWay(const FileURL &file)
{
    const QString &name = file.lastPathComponent();
    const QString hidden = nameBehindPlaceholder(name);
    const QString &real = hidden.isNull() ? name : hidden;
    return real.endsWith(QChar(u'.') + DocumentExtension.toString(), Qt::CaseInsensitive) ||
           isSyncTemporary(name) || name.startsWith(u'.');
}

void moveDirectoryToTrash(StoreContext &context, const FileURL &directory)
{
    const FileResult result = context.trash.moveToTrash(directory);
    const auto what = result.ok() ? StoreProblem::What::MovedToTrash : StoreProblem::What::NotMovedToTrash;
    if (result.ok())
        context.log.info(u"Directory without a user moved to the trash: " + loggedURL(directory));
    else
        context.log.error(loggedURL(directory) + u" - " + result.message);
    context.problems.tell({what, directory, result.message, {}});
}

void clearNow(StoreContext &context, const FileURL &directory)
{
    // A young one may still be on its way: copied in, or made by another program.
    if (!context.disk.isFolder(directory) || context.disk.isYoung(directory))
        return;
    if (context.disk.isEmptyFolder(directory)) {
        const FileResult removed = context.disk.remove(directory);
        if (!removed.ok())
            context.log.error(loggedURL(directory) + u" - " + removed.message);
        return;
    }
    if (context.disk.list(directory).ok())
        moveDirectoryToTrash(context, directory);
}

} // namespace

bool isCertainlyAbsent(const StoreDisk &disk, const FileURL &record)
{
    return disk.status(record).kind == FileStatus::Kind::Missing && !disk.exists(record);
}

bool holdsDocuments(const StoreDisk &disk, const FileURL &directory)
{
    const StoreDisk::Walk walk = disk.walk(directory);
    if (!walk.ok())
        return walk.outcome != FileResult::Outcome::Missing;
    return std::any_of(walk.files.begin(), walk.files.end(), &isDocumentOrOnItsWay);
}

void clearDirectoryWithoutRecord(StoreContext &context, const FileURL &directory)
{
    if (!context.coordinator.isBusy(directory)) {
        clearNow(context, directory);
        return;
    }
    // What is under way may be the record's first write: this reads after it.
    const FileURL record = directory.appendingFile(UserRecordName.toString());
    context.coordinator.read(record, [&context, record, directory](const ReadResult &) {
        if (isCertainlyAbsent(context.disk, record))
            clearNow(context, directory);
    });
}

} // namespace cvtamber
