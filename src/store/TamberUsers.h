// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "base/Observers.h"
#include "store/CloudRouting.h"
#include "store/ContainerList.h"
#include "store/FileResult.h"
#include "store/OrphanedItems.h"
#include "store/StoreContext.h"
#include "store/TamberUbiquitousFolderMonitorDelegate.h"

#include <memory>
#include <vector>

namespace cvtamber {

class TamberStorage;
class TamberUbiquitousFolderMonitor;
class TamberUser;

// Posted by the registry when a user has been listed, or was told as leaving and has stayed; userInfo "user" holds a
// std::shared_ptr<TamberUser>.
inline constexpr QStringView TamberUsersUserAddedNotification = u"TamberUsersUserAddedNotification";

// Hears what happens to a registry's users. Main thread.
class TamberUsersDelegate : public InterfaceBase
{
public:
    using User = std::shared_ptr<TamberUser>;
    // Never called by the registry itself: screens call it when they hear the notification.
    virtual void userAdded(const User &user) = 0;
    // Before the user leaves the list; also before a move that then fails.
    virtual void userWillDelete(const User &user) = 0;
    // Null when the record of a user that is not known has changed.
    virtual void dataChangedForUser(const User &user) = 0;
    virtual void contentGathered() = 0;
};

// One list of users, active or archived: a directory below the storage's root.
//
// Local: the users are listed when the registry is made, a notification each, and changed by the operations here.
// In the cloud: the list is what the monitor reports; contentGathered() turns true once, at its first complete
// listing. The list is in the order of coming. Thread: main thread. Owner: the storage, and screens; the registry owns
// the storage, a ring that TamberStorage::close() opens.
class TamberUsers final : public TamberDiskLocation,
                          public TamberUbiquitousFolderMonitorDelegate,
                          public std::enable_shared_from_this<TamberUsers>
{
public:
    using User = std::shared_ptr<TamberUser>;
    using Item = std::shared_ptr<TamberUbiquitousItem>;

    static std::shared_ptr<TamberUsers> withTamberStorage(StoreContext &context,
                                                          const std::shared_ptr<TamberStorage> &storage,
                                                          const QString &folderName);
    ~TamberUsers() override;

    const std::vector<User> &users() const { return _users.items(); }
    std::shared_ptr<TamberUsersDelegate> delegate() const { return _listeners.delegate(); }
    void setDelegate(std::weak_ptr<TamberUsersDelegate> delegate)
    {
        _listeners.setDelegate(std::move(delegate));
    }
    // Hears what the delegate hears, after it; removed before it goes. Screens observe, since several may show one registry.
    void addObserver(TamberUsersDelegate &observer) { _listeners.observers().add(observer); }
    void removeObserver(TamberUsersDelegate &observer) { _listeners.observers().remove(observer); }
    // To the delegate and the observers.
    void tellUserWillDelete(const User &user) const;
    bool isUbiquitous() const;
    const std::shared_ptr<TamberStorage> &storage() const { return _storage; }
    bool contentGathered() const { return _contentGathered; }
    FileURL url() const override;

    void loadFromStorage();
    // Another storage: every user leaves, then it is loaded.
    void setStorage(const std::shared_ptr<TamberStorage> &storage);
    void startQuery();
    void stopQuery();
    void enableQuery() {}
    void disableQuery() {}

    // Asks for every save of a record that is scheduled, before the storage's place changes.
    void saveScheduledChanges();
    void addUser(const User &user);
    void addUserWithFirstName(const QString &firstName, const QString &lastName, const QString &displayName);
    void deleteUser(const User &user);
    void moveUser(const User &user, const std::shared_ptr<TamberUsers> &target);
    // Without a notification.
    void loadUserFromURL(const FileURL &userDirectory);
    // Null when the directory yields no user.
    User loadUserFromFolderAndNotifyDelegate(const QString &folderName);
    // Null when unknown.
    User findUserWithURL(const FileURL &url) const;
    TamberUbiquitousItems orphanedItemsForUser(const TamberUser &user) const;
    void postUserAddedNotification(const User &user);
    // One that still holds anything goes to the trash.
    void delayedDeleteFolder(const FileURL &url);

    void ubiquitousMonitorItemAdded(TamberUbiquitousFolderMonitor &monitor, const Item &item) override;
    void ubiquitousMonitorItemDeleted(TamberUbiquitousFolderMonitor &monitor, const Item &item) override;
    void ubiquitousMonitorItemDownloaded(TamberUbiquitousFolderMonitor &monitor, const Item &item) override;
    void ubiquitousMonitorItemDownloadedAgain(TamberUbiquitousFolderMonitor &monitor,
                                              const Item &item) override;
    void ubiquitousMonitorContentGathered(TamberUbiquitousFolderMonitor &monitor,
                                          const TamberUbiquitousItems &items) override;

private:
    struct Report
    {
        CloudReport kind;
        Item item;
        // Null when the user of the directory is not listed.
        User user;
        FileURL directory;
    };

    TamberUsers(StoreContext &context, std::shared_ptr<TamberStorage> storage, const QString &folderName);

    void loadLocalUsers();
    void watchCloud();
    User openAndNotify(const QString &folderName);
    void userMoved(const FileResult &result, const User &user, const FileURL &to,
                   const std::shared_ptr<TamberUsers> &target);
    void handleReport(CloudReport report, const Item &item);
    void takeStep(RegistryStep step, const Report &report);
    void loadReportedUser(const QString &folderName);
    void removeReportedUser(const User &user);
    void keepItemsBelow(const FileURL &directory);
    void restoreRecordsOf(const FileURL &item);
    void downloadRecord(const FileURL &record);

    StoreContext &_context;
    std::shared_ptr<TamberStorage> _storage;
    QString _folderName;
    ContainerList<TamberUser> _users;
    std::shared_ptr<TamberUbiquitousFolderMonitor> _ubiquitousMonitor;
    OrphanedItems _orphanedItems;
    bool _contentGathered = false;
    Listeners<TamberUsersDelegate> _listeners;
};

} // namespace cvtamber
