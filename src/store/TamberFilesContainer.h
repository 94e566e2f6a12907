// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/ContainerDelegates.h"
#include "store/ContainerList.h"
#include "store/ContainerListing.h"
#include "store/StoreContext.h"
#include "store/TamberDocument.h"
#include "store/TamberUbiquitousFolderMonitorDelegate.h"

#include <functional>
#include <memory>

namespace cvtamber {

class TamberUbiquitousFolderMonitor;

// The text documents of one directory.
//
// A container is local or in the cloud for its whole life (isUbiquitous()). A local one scans its directory
// when it is opened and changes its list itself; one in the cloud starts empty and changes its list only when the cloud
// reports an item (the four ubiquotus... calls). Work in the background keeps the container alive until it is done.
// A scan leaves the list in the directory's order; the next insertion sorts it all.
// Thread: main thread. Owner: shared; the parent and the delegate are weak. Screens observe, since several may show one
// container; the role of the delegate is for one owner.
class TamberFilesContainer : public TamberDiskLocation,
                             public TamberUbiquitousFolderMonitorDelegate,
                             public std::enable_shared_from_this<TamberFilesContainer>
{
public:
    using Item = std::shared_ptr<TamberUbiquitousItem>;
    using FilePointer = std::shared_ptr<TamberDocument>;
    // Called as often as the operation says: more than once, or never.
    using StorageCompletion = std::function<void(bool success)>;

    // Empty, local and without a parent.
    explicit TamberFilesContainer(StoreContext &context);
    ~TamberFilesContainer() override;

    static std::shared_ptr<TamberFilesContainer>
    withFolder(StoreContext &context, const QString &folderName,
               const std::shared_ptr<TamberDiskLocation> &parent);

    const std::vector<FilePointer> &files() const { return _files.items(); }
    std::shared_ptr<TamberDiskLocation> parent() const { return _parent.lock(); }
    bool isUbiquitous() const { return _isUbiquitous; }
    void setDelegate(std::weak_ptr<TamberFilesContainerDelegate> delegate);
    // Hears what the delegate hears, after it; removed before it goes.
    void addObserver(TamberFilesContainerDelegate &observer) { _files.listeners().observers().add(observer); }
    void removeObserver(TamberFilesContainerDelegate &observer)
    {
        _files.listeners().observers().remove(observer);
    }
    // The parent's directory with the folder's name; nil when the parent has gone.
    FileURL url() const override;

    // Reads the directory of that name in the parent and appends what it holds.
    void scanForFiles(const QString &folderName);
    // The title is repaired where a file could not carry it; one that is in use makes the save fail, and a
    // local list has both: callers ask fileExists first. `saved` hears how the save ended, once. In a container
    // whose parent has gone nothing can be saved or listed.
    FilePointer addFileWithName(const QString &name, const QString &content,
                                std::function<void(const FileResult &)> saved = {});
    // Adds it under the title, or under the first one like it that neither the list nor the disk has ("Letter 2"). `saved`
    // hears under which, once the save has ended. Linear in the documents.
    FilePointer saveUnderFreeTitle(const QString &title, const QString &content,
                                   std::function<void(const QString &title, const FileResult &)> saved);
    // The list changes also when the removal failed. An index outside the list is ignored, here and in a rename.
    void deleteFileAtIndex(StoreIndex index);
    // Nothing for a document that is not in the list.
    void deleteFile(const FilePointer &file);
    // Nothing for an empty title and for the one that it has.
    void renameFileAtIndex(StoreIndex index, const QString &newName);
    // Nothing but a told problem where the target has the title already. The lists change once the file has moved; where
    // it could not be, the document stays, or goes when its file has gone.
    void moveFile(const FilePointer &file, const std::shared_ptr<TamberFilesContainer> &target);
    void loadFileWithFilename(const QString &fileName);
    // Local: the lists become what the directory holds now, but for what is open, not saved or being worked on. Nothing for a
    // container in the cloud, which hears of every change. Linear in what the directory holds.
    virtual void refresh();
    StoreIndex indexOfFile(const FilePointer &file) const;
    StoreIndex indexOfFileWithURL(const FileURL &url) const;
    // Without regard to letter case and Unicode normal form; the title as it would be repaired.
    bool fileExists(const QString &title) const;
    void sortFiles();
    // With documents: NO for each that could not be removed or was missing, YES when all are gone. Without any:
    // YES.
    virtual void deleteStorageWithCompletion(StorageCompletion completion);
    // Before something is added: a record without which it would be taken for an orphan later is tried again.
    virtual void saveWhatIsOwed() {}
    virtual void startQuery() {}
    virtual void stopQuery() {}
    void startLoadFromURL(const FileURL &) {}

    virtual void ubiquotusItemAdded(const Item &item);
    virtual void ubiquotusItemDeleted(const Item &item);
    virtual void ubiquotusItemDownloaded(const Item &item);
    virtual void ubiquotusItemDownloadedAgain(const Item &item);

    void ubiquitousMonitorItemAdded(TamberUbiquitousFolderMonitor &monitor, const Item &item) override;
    void ubiquitousMonitorItemDeleted(TamberUbiquitousFolderMonitor &monitor, const Item &item) override;
    void ubiquitousMonitorItemDownloaded(TamberUbiquitousFolderMonitor &monitor, const Item &item) override;
    void ubiquitousMonitorItemDownloadedAgain(TamberUbiquitousFolderMonitor &monitor,
                                              const Item &item) override;
    void ubiquitousMonitorContentGathered(TamberUbiquitousFolderMonitor &monitor,
                                          const TamberUbiquitousItems &items) override;

protected:
    // Opens the directory of that name in the parent; what is in it, when it is local.
    ContainerListing initWithFolder(const QString &folderName,
                                    const std::shared_ptr<TamberDiskLocation> &parent);
    // Appends what the directory holds.
    ContainerListing readDocuments(const FileURL &directory);
    ContainerListing refreshDocuments();
    // The parent of a container that is being made; its place does not say whether it is in the cloud.
    void setParent(const std::shared_ptr<TamberDiskLocation> &parent) { _parent = parent; }
    void setUbiquitous(bool isUbiquitous) { _isUbiquitous = isUbiquitous; }
    // Only the lengths of the two paths are compared.
    bool isDirectChild(const TamberUbiquitousItem &item) const;
    StoreContext &context() const { return _context; }
    std::shared_ptr<TamberFilesContainerDelegate> filesDelegate() const
    {
        return _files.listeners().delegate();
    }

private:
    struct StorageDeletion;
    using FilesList = ToldList<TamberDocument, TamberFilesContainerDelegate,
                               &TamberFilesContainerDelegate::fileAddedAtIndex,
                               &TamberFilesContainerDelegate::fileDeletedAtIndex>;

    void listAddedFile(const FilePointer &file);
    void finishMoving(const FilePointer &file, const FileURL &to,
                      const std::shared_ptr<TamberFilesContainer> &target, const FileResult &result);
    void finishRenaming(const FilePointer &file, const FileURL &newURL, const FileResult &result);
    void storedFileRemoved(StorageDeletion &deletion, const TamberDocument &file, bool success);

    StoreContext &_context;
    bool _isUbiquitous = false;
    std::weak_ptr<TamberDiskLocation> _parent;
    QString _folderName;
    FilesList _files;
};

} // namespace cvtamber
