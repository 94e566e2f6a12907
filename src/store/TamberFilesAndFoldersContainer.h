// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/CloudRouting.h"
#include "store/OrphanedItems.h"
#include "store/TamberDataFolder.h"
#include "store/TamberFilesContainer.h"

#include <optional>
#include <unordered_map>

namespace cvtamber {

// The documents of one directory and its folders, one level deep.
//
// A local container takes every directory in its own for a folder, with or without "folder.dat". In the cloud a folder is
// listed once its "folder.dat" is here; what is reported below one that is not listed yet waits as an orphan.
class TamberFilesAndFoldersContainer : public TamberFilesContainer
{
public:
    using FolderPointer = std::shared_ptr<TamberDataFolder>;

    explicit TamberFilesAndFoldersContainer(StoreContext &context);
    ~TamberFilesAndFoldersContainer() override;

    static std::shared_ptr<TamberFilesAndFoldersContainer>
    withFolder(StoreContext &context, const QString &folderName,
               const std::shared_ptr<TamberDiskLocation> &parent);

    // One delegate for both lists, and observers of both.
    void setDelegate(std::weak_ptr<TamberFilesAndFoldersContainerDelegate> delegate);
    void addObserver(TamberFilesAndFoldersContainerDelegate &observer);
    void removeObserver(TamberFilesAndFoldersContainerDelegate &observer);

    const std::vector<FolderPointer> &folders() const { return _folders.items(); }
    StoreIndex foldersCount() const { return _folders.size(); }
    // Null outside the list.
    FolderPointer folderAtIndex(StoreIndex index) const;
    StoreIndex indexOfFolder(const FolderPointer &folder) const;
    StoreIndex indexOfFolderWithURL(const FileURL &url) const;
    void sortFolders();
    // Local only: lists the directories and opens each; a folder appears when its record has been read.
    void loadContent();
    void scanFolders();
    void refresh() override;

    // Null when the folder cannot be made.
    FolderPointer addFolderWithName(const QString &name);
    void deleteFolderAtIndex(StoreIndex index);
    void deleteFolder(const FolderPointer &folder);
    void moveFolder(const FolderPointer &folder,
                    const std::shared_ptr<TamberFilesAndFoldersContainer> &target);
    void loadLocalFolderWithUrl(const FileURL &url);
    // The URL of a "folder.dat".
    void folderAddedWithFileURL(const FileURL &url);
    TamberUbiquitousItems orphanedItemsForFolder(const TamberDataFolder &folder) const;
    // A name that nothing in the directory has.
    static QString uniqueUserFolderName(const StoreContext &context, const FileURL &directory);

    void deleteStorageWithCompletion(StorageCompletion completion) override;
    void startQuery() override;
    void stopQuery() override;

    void ubiquotusItemAdded(const Item &item) override;
    void ubiquotusItemDeleted(const Item &item) override;
    void ubiquotusItemDownloaded(const Item &item) override;
    void ubiquotusItemDownloadedAgain(const Item &item) override;
    // The four above in one.
    void handleReport(CloudReport report, const Item &item);

    // A folder has another name now; it keeps its place until the next insertion.
    void folderNameChanged() { _folders.nameChanged(); }

protected:
    void initWithFolder(const QString &folderName, const std::shared_ptr<TamberDiskLocation> &parent);

private:
    using FolderHandler = std::function<void(const FolderPointer &)>;
    using FoldersList = ToldList<TamberDataFolder, TamberFoldersContainerDelegate,
                                 &TamberFoldersContainerDelegate::folderAddedAtIndex,
                                 &TamberFoldersContainerDelegate::folderDeletedAtIndex>;

    std::shared_ptr<TamberFilesAndFoldersContainer> self();
    // The handler runs once the record has been read.
    FolderPointer openFolder(const QString &folderName, FolderHandler opened);
    // The same, and the folder is listed then, with the orphans that wait for it.
    void openReportedFolder(const QString &folderName);
    void listReportedFolder(const FolderPointer &folder);
    void unlistFolder(const FileURL &folderURL);
    void keepDocumentsOf(const TamberDataFolder &folder);
    void restoreRecordOf(const FileURL &folder);
    void reloadFolder(const FolderPointer &folder);
    void startDownloading(const FileURL &url);
    void deleteFolders(const StorageCompletion &completion);
    void finishMovingFolder(const FolderPointer &folder, const FileURL &newURL,
                            const std::shared_ptr<TamberFilesAndFoldersContainer> &target);

    ReportedItem reportedItem(const TamberUbiquitousItem &item, const FileURL &folderURL,
                              const FolderPointer &folder) const;

    FoldersList _folders;
    // What was found when the container was opened, until its folders are scanned.
    std::optional<ContainerListing> _listingAtOpening;
    OrphanedItems _orphanedItems;
    // Reported and not listed yet, by URL; one that is reported as deleted meanwhile is dropped from here.
    std::unordered_multimap<FileURL, const TamberDataFolder *> _foldersBeingOpened;
};

} // namespace cvtamber
