// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"
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

    // Opens the one in that directory, which is one, not a link; null when it has no record. A local directory
    // without one is removed, or goes to the trash when it holds anything; only when it is certain that there
    // is no record.
    static std::shared_ptr<TamberUser> withFolder(StoreContext &context, const QString &folderName,
                                                  const std::shared_ptr<TamberUsers> &users);

    const QString &firstName() const { return _firstName; }
    const QString &lastName() const { return _lastName; }
    const QString &displayName() const { return _displayName; }
    // By which a list would be sorted; the registry's never is.
    const QString &name() const { return _displayName; }
    // A name that differs is saved at the next turn of the main loop, several of them in one write.
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
    // The completion runs only when the record could be read. Names that are not saved yet stay: they are newer.
    void reloadDataWitCompletionHandler(const Completion &completion);
    // Makes the directory in the registry's and writes the record. The completion is never called.
    void storeInUsers(const std::shared_ptr<TamberUsers> &users, const Completion &completion);
    // In the background; nothing for a user without a directory, and after stopSaving(). A record that could not be written
    // is tried again: every five seconds, before anything is added to the user, and at the end of the program.
    void saveUserData();
    void scheduleSave();
    // Asks for the scheduled save now, before the directory goes elsewhere.
    void saveScheduledChanges();
    // The same; and a local record that has gone is written anew, so that the user is found at the other place.
    void prepareToMove();
    // All that is open to change below the directory.
    DocumentGroup documents() const;
    // The record has gone for good: what is scheduled is dropped and no name is saved any more.
    void stopSaving();
    // Documents, folders, the record, then a local directory: it goes to the trash when it holds anything that
    // nobody listed. Without a completion the directory stays. The completion hears how the record's removal
    // ended, and never when a document could not be removed.
    void deleteStorageWithCompletion(StorageCompletion completion) override;

private:
    std::shared_ptr<TamberUser> self();
    bool openRecord();
    // Of a local user whose directory is there.
    bool isRecordLost() const;
    // False when there is no text to be had, which is logged.
    bool takeRecord(const ReadResult &record);
    void setNamePart(QString &part, const QString &name);
    bool cancelScheduledSave();
    void recordSaved(const WriteResult &result);
    void keepTrying(const WriteResult &failed);
    void saveLater(std::chrono::nanoseconds delay);
    void saveWhatIsOwed() override;
    void removeRecord(const StorageCompletion &completion);
    void recordRemoved(const FileResult &result, const StorageCompletion &completion);

    QString _folderName;
    std::unique_ptr<MetadataQuery> _foldersQuery;
    std::unique_ptr<MetadataQuery> _filesQuery;
    QString _firstName;
    QString _lastName;
    QString _displayName;
    RunLoop::CallId _scheduledSave = RunLoop::CallId::None;
    // Writes of the record that are asked for and not done.
    int _savesUnderWay = 0;
    bool _isSavingStopped = false;
    // The last write of the record has failed.
    bool _isRecordOwed = false;
    bool _isDirectoryOwed = false;
    // It could not be read, for another reason than being absent.
    bool _isRecordDoubtful = false;
    std::vector<std::function<void(bool isSaved)>> _waitForRecord;
    std::weak_ptr<TamberUsers> _users;
};

// The name that screens show: the display name, else first and last name, else the one that there is, else
// the empty display name. Null for no user.
QString userDisplayName(const TamberUser *user);

} // namespace cvtamber
