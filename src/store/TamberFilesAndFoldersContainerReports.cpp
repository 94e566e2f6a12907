// SPDX-License-Identifier: GPL-3.0-or-later
// What a container with folders does when the cloud reports an item.
#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/KnownRecords.h"
#include "store/StoreNames.h"
#include "store/TamberFilesAndFoldersContainer.h"

#include <algorithm>

namespace cvtamber {

void TamberFilesAndFoldersContainer::folderAddedWithFileURL(const FileURL &url)
{
    openReportedFolder(url.deletingLastPathComponent().lastPathComponent());
}

void TamberFilesAndFoldersContainer::openReportedFolder(const QString &folderName)
{
    const FolderPointer folder = openFolder(folderName, [container = self()](const FolderPointer &opened) {
        container->listReportedFolder(opened);
    });
    _foldersBeingOpened.emplace(folder->url(), folder.get());
}

void TamberFilesAndFoldersContainer::listReportedFolder(const FolderPointer &folder)
{
    const auto [from, to] = _foldersBeingOpened.equal_range(folder->url());
    const auto opening =
        std::find_if(from, to, [&](const auto &entry) { return entry.second == folder.get(); });
    if (opening == to)
        return;
    _foldersBeingOpened.erase(opening);
    if (const FolderPointer listed = folderAtIndex(_folders.indexOfURL(folder->url()))) {
        // It was moved here before its record was reported; two rows would share one directory.
        reloadFolder(listed);
        return;
    }
    const StoreIndex index = _folders.insertSorted(folder);
    for (const Item &item : _orphanedItems.takeWithPathPrefix(folder->url().path()))
        folder->ubiquotusItemAdded(item);
    _folders.tellAdded(index);
}

void TamberFilesAndFoldersContainer::unlistFolder(const FileURL &folderURL)
{
    _foldersBeingOpened.erase(folderURL);
    const FolderPointer folder = folderAtIndex(_folders.indexOfURL(folderURL));
    if (!folder)
        return;
    keepDocumentsOf(*folder);
    _folders.removeAndTell(folder.get());
    restoreRecordOf(folderURL);
}

void TamberFilesAndFoldersContainer::restoreRecordOf(const FileURL &folder)
{
    KnownRecords::restoreWhereDocumentsStay(context(), folder.appendingFile(FolderRecordName.toString()));
}

// They are not reported a second time, and the folder may come back.
void TamberFilesAndFoldersContainer::keepDocumentsOf(const TamberDataFolder &folder)
{
    for (const FilePointer &file : folder.files())
        _orphanedItems.add(std::make_shared<TamberUbiquitousItem>(file->url()));
}

void TamberFilesAndFoldersContainer::reloadFolder(const FolderPointer &folder)
{
    folder->reloadWithCompletion([container = self(), folder](bool success) {
        const StoreIndex index = container->_folders.indexOf(folder.get());
        if (success && index != NotFound)
            container->_folders.tell(&TamberFoldersContainerDelegate::folderUpdatedAtIndex, index);
    });
}

void TamberFilesAndFoldersContainer::startDownloading(const FileURL &url)
{
    logProblem(context(), StoreProblem::What::Download, url, context().cloud.startDownloading(url));
}

ReportedItem TamberFilesAndFoldersContainer::reportedItem(const TamberUbiquitousItem &item,
                                                          const FileURL &folderURL,
                                                          const FolderPointer &folder) const
{
    return {.isFolderRecord = item.url().lastPathComponent() == FolderRecordName,
            .isDownloaded = item.isDownloaded(),
            .isDirectChild = isDirectChild(item),
            .isFolderListed = folder != nullptr,
            .isFolderBeingOpened = _foldersBeingOpened.contains(folderURL)};
}

void TamberFilesAndFoldersContainer::handleReport(CloudReport report, const Item &item)
{
    const FileURL folderURL = item->url().deletingLastPathComponent();
    const FolderPointer folder = folderAtIndex(_folders.indexOfURL(folderURL));
    if (item->url().lastPathComponent() == FolderRecordName)
        _folders.noteReport(folderURL);
    if (!folder && report != CloudReport::Deleted && !isDirectChild(*item))
        restoreRecordOf(folderURL);
    switch (stepFor(report, reportedItem(*item, folderURL, folder))) {
    case CloudStep::Nothing:
        if (report == CloudReport::DownloadedAgain && folder)
            folder->ubiquotusItemDownloadedAgain(item);
        else if (report == CloudReport::DownloadedAgain)
            TamberFilesContainer::ubiquotusItemDownloadedAgain(item);
        break;
    case CloudStep::ListDocument:
        TamberFilesContainer::ubiquotusItemAdded(item);
        break;
    case CloudStep::UnlistDocument:
        TamberFilesContainer::ubiquotusItemDeleted(item);
        break;
    case CloudStep::HandToFolder:
        if (report == CloudReport::Added)
            folder->ubiquotusItemAdded(item);
        else
            folder->ubiquotusItemDeleted(item);
        break;
    case CloudStep::KeepAsOrphan:
        _orphanedItems.add(item);
        break;
    case CloudStep::ForgetOrphan:
        _orphanedItems.remove(item->url());
        break;
    case CloudStep::OpenFolder:
        folderAddedWithFileURL(item->url());
        break;
    case CloudStep::UnlistFolder:
        unlistFolder(folderURL);
        break;
    case CloudStep::ReloadFolder:
        reloadFolder(folder);
        break;
    case CloudStep::StartDownload:
        startDownloading(item->url());
        break;
    }
}

void TamberFilesAndFoldersContainer::ubiquotusItemAdded(const Item &item)
{
    handleReport(CloudReport::Added, item);
}

void TamberFilesAndFoldersContainer::ubiquotusItemDeleted(const Item &item)
{
    handleReport(CloudReport::Deleted, item);
}

void TamberFilesAndFoldersContainer::ubiquotusItemDownloaded(const Item &item)
{
    handleReport(CloudReport::Downloaded, item);
}

void TamberFilesAndFoldersContainer::ubiquotusItemDownloadedAgain(const Item &item)
{
    handleReport(CloudReport::DownloadedAgain, item);
}

} // namespace cvtamber
