// SPDX-License-Identifier: GPL-3.0-or-later
// What a registry does with the reports of its monitor.
#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/FileCoordinator.h"
#include "store/KnownRecords.h"
#include "store/StoreContext.h"
#include "store/StoreNames.h"
#include "store/TamberUbiquitousFolderMonitor.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "store/UserDirectories.h"

namespace cvtamber {

void TamberUsers::ubiquitousMonitorItemAdded(TamberUbiquitousFolderMonitor & /*monitor*/, const Item &item)
{
    handleReport(CloudReport::Added, item);
}

void TamberUsers::ubiquitousMonitorItemDeleted(TamberUbiquitousFolderMonitor & /*monitor*/, const Item &item)
{
    _context.log.info(QStringLiteral("ubiquitousItemDeleted"));
    handleReport(CloudReport::Deleted, item);
}

void TamberUsers::ubiquitousMonitorItemDownloaded(TamberUbiquitousFolderMonitor & /*monitor*/,
                                                  const Item &item)
{
    handleReport(CloudReport::Downloaded, item);
}

void TamberUsers::ubiquitousMonitorItemDownloadedAgain(TamberUbiquitousFolderMonitor & /*monitor*/,
                                                       const Item &item)
{
    handleReport(CloudReport::DownloadedAgain, item);
}

void TamberUsers::ubiquitousMonitorContentGathered(TamberUbiquitousFolderMonitor & /*monitor*/,
                                                   const TamberUbiquitousItems & /*items*/)
{
    _context.log.debug(QStringLiteral("-(void)ubiquitousMonitor:(TamberUbiquitousFolderMonitor *)monitor "
                                      "contentGathered:(NSArray *)items"));
    _contentGathered = true;
    _listeners.tell(&TamberUsersDelegate::contentGathered);
}

void TamberUsers::handleReport(CloudReport report, const Item &item)
{
    const FileURL &url = item->url();
    const bool isRecord = url.lastPathComponent() == UserRecordName;
    const FileURL directory =
        isRecord ? url.deletingLastPathComponent() : userDirectoryOfItem(url, this->url().pathLength());
    if (directory.isNil())
        return;
    const User user = findUserWithURL(directory);
    if (!user && !isRecord && report != CloudReport::Deleted)
        restoreRecordsOf(url);
    const RegistryStep step = registryStep({report, isRecord, item->isDownloaded(), user != nullptr});
    takeStep(step, {report, item, user, directory});
}

void TamberUsers::takeStep(RegistryStep step, const Report &report)
{
    switch (step) {
    case RegistryStep::Ignore:
        break;
    case RegistryStep::PassToUser:
        report.user->handleReport(report.kind, report.item);
        break;
    case RegistryStep::KeepAsOrphan:
        _orphanedItems.add(report.item);
        break;
    case RegistryStep::ForgetOrphan:
        _context.log.debug(QStringLiteral("ERROR!!!"));
        _orphanedItems.remove(report.item->url());
        break;
    case RegistryStep::LoadUser:
        loadReportedUser(report.directory.lastPathComponent());
        break;
    case RegistryStep::DownloadRecord:
        downloadRecord(report.item->url());
        break;
    case RegistryStep::RemoveUser:
        removeReportedUser(report.user);
        break;
    case RegistryStep::TellDataChanged:
        _listeners.tell(&TamberUsersDelegate::dataChangedForUser, report.user);
        break;
    }
}

void TamberUsers::loadReportedUser(const QString &folderName)
{
    // One that cannot be looked at now is not told a second time.
    const auto kind = _context.disk.status(url().appendingDirectory(folderName)).kind;
    const bool mayBeFolder = kind == FileStatus::Kind::Folder || kind == FileStatus::Kind::Unknown;
    const User user = mayBeFolder ? openAndNotify(folderName) : nullptr;
    if (!user)
        return;
    for (const Item &item : _orphanedItems.takeWithPathPrefix(user->url().path()))
        user->ubiquotusItemAdded(item);
}

void TamberUsers::removeReportedUser(const User &user)
{
    const FileURL directory = user->url();
    tellUserWillDelete(user);
    _users.remove(user.get());
    user->stopSaving();
    _context.log.info(loggedURL(directory));
    if (holdsDocuments(_context.disk, directory)) {
        keepItemsBelow(directory);
        return;
    }
    _context.coordinator.remove(directory, [&context = _context](const FileResult &result) {
        if (!result.ok())
            context.log.error(result.message);
    });
}

// The monitor does not report them a second time, and the record may come back.
void TamberUsers::keepItemsBelow(const FileURL &directory)
{
    if (!_ubiquitousMonitor)
        return;
    const QString prefix = directory.path() + u'/';
    const FileURL record = directory.appendingFile(UserRecordName.toString());
    for (const Item &item : _ubiquitousMonitor->items()) {
        if (item->url() != record && item->url().path().startsWith(prefix)) {
            _orphanedItems.add(item);
            restoreRecordsOf(item->url());
        }
    }
}

// The user's, and the folder's that the item lies in.
void TamberUsers::restoreRecordsOf(const FileURL &item)
{
    const FileURL user = userDirectoryOfItem(item, url().pathLength());
    const FileURL holder = item.deletingLastPathComponent();
    KnownRecords::restoreWhereDocumentsStay(_context, user.appendingFile(UserRecordName.toString()));
    if (holder != user)
        KnownRecords::restoreWhereDocumentsStay(_context, holder.appendingFile(FolderRecordName.toString()));
}

void TamberUsers::downloadRecord(const FileURL &record)
{
    logProblem(_context, StoreProblem::What::Download, record.deletingLastPathComponent(),
               _context.cloud.startDownloading(record));
}

} // namespace cvtamber
