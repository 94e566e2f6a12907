// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/TamberDataFolderDocument.h"
#include "store/TamberFilesContainer.h"

namespace cvtamber {

class TamberFilesAndFoldersContainer;

// One folder of a user: documents, and a record with the folder's name.
class TamberDataFolder final : public TamberFilesContainer
{
public:
    using Completion = std::function<void()>;

    explicit TamberDataFolder(StoreContext &context);
    ~TamberDataFolder() override;

    // Makes a new folder on the disk, under a fresh UUID; null when it cannot be made. The record is written in the
    // background. Such a folder has no parent and counts as local, also in the cloud.
    static std::shared_ptr<TamberDataFolder> withName(StoreContext &context, const QString &name,
                                                      const FileURL &parentURL);
    // Opens an existing one; the completion runs once its record has been read and closed again, also when it
    // could not be read: the name is null then.
    static std::shared_ptr<TamberDataFolder>
    withFolder(StoreContext &context, const QString &folderName,
               const std::shared_ptr<TamberFilesAndFoldersContainer> &user, Completion completion);
    // Opens an existing one at once, without a user; null when its record cannot be read.
    static std::shared_ptr<TamberDataFolder> withURL(StoreContext &context, const FileURL &url);
    // The same; then opens and closes the record and calls the completion.
    static std::shared_ptr<TamberDataFolder> withURL(StoreContext &context, const FileURL &url,
                                                     Completion completion);

    const QString &name() const { return _folderDocument->name(); }
    // Writes the record; nobody is told.
    void setName(const QString &name);
    void rename(const QString &name) { setName(name); }
    const QString &description() const { return name(); }
    std::shared_ptr<TamberFilesAndFoldersContainer> user() const { return _user.lock(); }
    void setUser(const std::shared_ptr<TamberFilesAndFoldersContainer> &user) { _user = user; }
    // The directory's name, a UUID.
    const QString &storageName() const { return _storageName; }
    FileURL url() const override;

    // Into the directory, when it is there without one: another program has taken the record away, and without it nobody would
    // find the documents.
    void writeLostRecord(const FileURL &directory) const;
    // Reads the record again.
    void reloadWithCompletion(StorageCompletion completion);
    void deleteStorageWithCompletion(StorageCompletion completion) override;

    // The record and the documents.
    DocumentGroup documents() const;

private:
    // Makes the directory; nil when that cannot be done at all.
    FileURL makeUniqueURL();
    void place(const FileURL &parentURL, const QString &storageName);
    void openRecord(Completion completion);
    void removeRecord(const StorageCompletion &completion);
    void nameHasChanged() const;
    std::shared_ptr<TamberDataFolder> self();
    void saveWhatIsOwed() override;

    FileURL _parentURL;
    std::shared_ptr<TamberDataFolderDocument> _folderDocument;
    QString _storageName;
    std::weak_ptr<TamberFilesAndFoldersContainer> _user;
};

} // namespace cvtamber
