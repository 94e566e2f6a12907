// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/TamberFilesAndFoldersContainer.h"

namespace cvtamber {

class MetadataQuery;
class TamberUsers;

// One user: the record "user.txt" and the documents and folders beside it.
class TamberUser final : public TamberFilesAndFoldersContainer
{
public:
    using Completion = std::function<void()>;

    // Not yet on the disk.
    TamberUser(StoreContext &context, const QString &firstName, const QString &lastName,
               const QString &displayName);
    ~TamberUser() override;

    // Opens an existing one; null when its directory has no record. A local directory without one is removed, or goes to
    // the trash when it holds anything; only when it is certain that there is no record.
    static std::shared_ptr<TamberUser> withFolder(StoreContext &context, const QString &folderName,
                                                  const std::shared_ptr<TamberUsers> &users);

    const QString &firstName() const { return _firstName; }
    const QString &lastName() const { return _lastName; }
    const QString &displayName() const { return _displayName; }
    // A name that differs is saved at the end of this turn of the main loop, several of them in one write.
    void setFirstName(const QString &name);
    void setLastName(const QString &name);
    void setDisplayName(const QString &name);
    std::shared_ptr<TamberUsers> users() const { return _users.lock(); }
    const QString &folder() const { return _folderName; }
    // Display name, first and last name: "%@ (%@ %@)".
    QString description() const;
    FileURL url() const override;
    FileURL fileURL() const;
    // The record's text.
    QString userFileData() const;
    // Made at the first call, over the data of the cloud container.
    MetadataQuery &foldersQuery();
    MetadataQuery &filesQuery();

    // Reads the record and the folders.
    void load();
    void loadFromURL(const FileURL &userDirectory);
    void parseUserFileData(const QString &text);
    // The completion runs only when the record could be read.
    void reloadDataWitCompletionHandler(const Completion &completion);
    // Makes the directory in the registry's and writes the record. The completion is never called.
    void storeInUsers(const std::shared_ptr<TamberUsers> &users, const Completion &completion);
    void saveUserData();
    void scheduleSave();
    void deleteStorageWithCompletion(StorageCompletion completion) override;

private:
    void readRecord(const FileURL &fileURL);
    void setNamePart(QString &part, const QString &name);

    QString _folderName;
    std::unique_ptr<MetadataQuery> _foldersQuery;
    std::unique_ptr<MetadataQuery> _filesQuery;
    QString _firstName;
    QString _lastName;
    QString _displayName;
    bool _saveScheduled = false;
    std::weak_ptr<TamberUsers> _users;
};

// The name that screens show: the display name, else first and last name, else the one that there is, else
// the empty display name. Null for no user.
QString userDisplayName(const TamberUser *user);

} // namespace cvtamber
