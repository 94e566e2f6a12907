// SPDX-License-Identifier: GPL-3.0-or-later
// Names of the store's contract that nothing in these programs calls: kept for whoever links the library.
// The inline ones: TamberUsers::enableQuery and disableQuery, TamberFilesContainer::startLoadFromURL.
#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/ContainerDisk.h"
#include "store/MetadataQuery.h"
#include "store/Records.h"
#include "store/StoreNames.h"
#include "store/TamberUbiquitousFolderMonitor.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"

namespace cvtamber {

namespace {

const QString OtherMonitor = QStringLiteral("x-x-x-x-x-x-x");

// A query over the data of the cloud container, made at the first call.
MetadataQuery &queryIn(std::unique_ptr<MetadataQuery> &query, CloudContainer &cloud)
{
    if (!query) {
        query = cloud.makeQuery();
        query->setSearchScope(MetadataQuery::Scope::Data);
    }
    return *query;
}

} // namespace

void TamberUsers::setStorage(const std::shared_ptr<TamberStorage> &storage)
{
    if (storage == _storage)
        return;
    saveScheduledChanges();
    while (!_users.isEmpty()) {
        const User user = users().back();
        tellUserWillDelete(user);
        _users.remove(user.get());
    }
    _ubiquitousMonitor.reset();
    _orphanedItems = {};
    _storage = storage;
    loadFromStorage();
}

TamberUbiquitousItems TamberUsers::orphanedItemsForUser(const TamberUser &user) const
{
    return _orphanedItems.withPathPrefix(user.url().path());
}

void TamberUsers::delayedDeleteFolder(const FileURL &url)
{
    ContainerDisk(_context).coordinatedRemoveItemAtURL(
        url, [&context = _context, url](const FileResult &result) {
            tellProblem(context, StoreProblem::What::Delete, url, result);
        });
}

MetadataQuery &TamberUser::foldersQuery()
{
    return queryIn(_foldersQuery, context().cloud);
}

MetadataQuery &TamberUser::filesQuery()
{
    return queryIn(_filesQuery, context().cloud);
}

void TamberUser::load()
{
    loadFromURL(url());
}

void TamberUser::loadFromURL(const FileURL &userDirectory)
{
    if (!takeRecord(context().disk.read(userDirectory.appendingFile(UserRecordName.toString()))))
        parseUserFileData({});
    loadContent();
}

void TamberFilesContainer::scanForFiles(const QString &folderName)
{
    if (const auto location = parent())
        readDocuments(location->url().appendingDirectory(folderName));
}

StoreIndex TamberFilesContainer::indexOfFileWithURL(const FileURL &url) const
{
    return _files.indexOfURL(url);
}

// The registry's monitor reports to the registry, which passes on what is a container's; no container has a monitor of its
// own.
void TamberFilesContainer::ubiquitousMonitorItemAdded(TamberUbiquitousFolderMonitor &, const Item &item)
{
    _context.log.info(OtherMonitor);
    TamberFilesContainer::ubiquotusItemAdded(item);
}

void TamberFilesContainer::ubiquitousMonitorItemDeleted(TamberUbiquitousFolderMonitor &, const Item &item)
{
    _context.log.info(OtherMonitor);
    TamberFilesContainer::ubiquotusItemDeleted(item);
}

void TamberFilesContainer::ubiquitousMonitorItemDownloaded(TamberUbiquitousFolderMonitor &, const Item &)
{
    _context.log.info(OtherMonitor);
}

void TamberFilesContainer::ubiquitousMonitorItemDownloadedAgain(TamberUbiquitousFolderMonitor &, const Item &)
{
    _context.log.info(OtherMonitor);
}

void TamberFilesContainer::ubiquitousMonitorContentGathered(TamberUbiquitousFolderMonitor &,
                                                            const TamberUbiquitousItems &)
{}

void TamberFilesAndFoldersContainer::sortFolders()
{
    _folders.sort();
}

TamberUbiquitousItems
TamberFilesAndFoldersContainer::orphanedItemsForFolder(const TamberDataFolder &folder) const
{
    return _orphanedItems.withPathPrefix(folder.url().path());
}

std::shared_ptr<TamberDataFolder> TamberDataFolder::withURL(StoreContext &context, const FileURL &url)
{
    auto folder = std::make_shared<TamberDataFolder>(context);
    folder->place(url.deletingLastPathComponent(), url.lastPathComponent());
    const ReadResult record = context.disk.read(folder->_folderDocument->fileURL());
    if (!record.ok()) {
        context.log.error(record.message);
        return nullptr;
    }
    folder->_folderDocument->setInitialName(folderNameFromBytes(record.bytes));
    folder->setUbiquitous(context.cloud.isUbiquitousItem(folder->_parentURL));
    if (!folder->isUbiquitous())
        folder->readDocuments(folder->url());
    return folder;
}

std::shared_ptr<TamberDataFolder> TamberDataFolder::withURL(StoreContext &context, const FileURL &url,
                                                            Completion completion)
{
    auto folder = withURL(context, url);
    if (folder)
        folder->openRecord(std::move(completion));
    return folder;
}

std::shared_ptr<TamberUbiquitousItem> TamberUbiquitousFolderMonitor::findItemWithURL(const FileURL &url) const
{
    const auto found = _itemsByURL.find(url);
    return found == _itemsByURL.end() ? nullptr : found->second;
}

void TamberUbiquitousFolderMonitor::checkIfDeleted(const std::shared_ptr<TamberUbiquitousItem> &item)
{
    if (!_context.disk.exists(item->url()))
        report(&Delegate::ubiquitousMonitorItemDeleted, item);
}

} // namespace cvtamber
