// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberUsers.h"

#include "base/NotificationCenter.h"
#include "base/SystemLog.h"
#include "store/ContainerDisk.h"
#include "store/FileCoordinator.h"
#include "store/StoreDisk.h"
#include "store/TamberStorage.h"
#include "store/TamberUbiquitousFolderMonitor.h"
#include "store/TamberUser.h"
#include "store/UserDirectories.h"

#include <utility>

namespace cvtamber {

TamberUsers::TamberUsers(StoreContext &context, std::shared_ptr<TamberStorage> storage,
                         const QString &folderName)
    : _context(context)
    , _storage(std::move(storage))
    , _folderName(folderName)
{}

TamberUsers::~TamberUsers()
{
    _context.log.info(QStringLiteral("TamberUsers::dealloc"));
}

std::shared_ptr<TamberUsers> TamberUsers::withTamberStorage(StoreContext &context,
                                                            const std::shared_ptr<TamberStorage> &storage,
                                                            const QString &folderName)
{
    std::shared_ptr<TamberUsers> users(new TamberUsers(context, storage, folderName));
    users->loadFromStorage();
    return users;
}

bool TamberUsers::isUbiquitous() const
{
    return _storage && _storage->isUbiquitous();
}

FileURL TamberUsers::url() const
{
    return _storage ? _storage->storeURL().appendingDirectory(_folderName) : FileURL();
}

void TamberUsers::loadFromStorage()
{
    if (isUbiquitous()) {
        watchCloud();
        return;
    }
    loadLocalUsers();
    _contentGathered = true;
}

void TamberUsers::loadLocalUsers()
{
    const StoreDisk::Listing listing = _context.disk.list(url());
    logProblem(_context, StoreProblem::What::List, url(), listing);
    if (!listing.leftovers.isEmpty())
        _context.coordinator.sweep(url(), listing.leftovers);
    for (const StoreDisk::Entry &entry : listing.entries) {
        if (entry.kind == FileStatus::Kind::Folder)
            openAndNotify(entry.name);
        else if (entry.kind == FileStatus::Kind::Unknown)
            loadUserFromFolderAndNotifyDelegate(entry.name);
    }
}

void TamberUsers::watchCloud()
{
    _ubiquitousMonitor = std::make_shared<TamberUbiquitousFolderMonitor>(_context, url(), registryFilter());
    _ubiquitousMonitor->setDelegate(weak_from_this());
    _context.coordinator.sweep(url(), {});
}

void TamberUsers::startQuery()
{
    if (_ubiquitousMonitor)
        _ubiquitousMonitor->startMonitoring();
}

void TamberUsers::stopQuery()
{
    if (_ubiquitousMonitor)
        _ubiquitousMonitor->stopMonitoring();
}

void TamberUsers::tellUserWillDelete(const User &user) const
{
    _listeners.tell(&TamberUsersDelegate::userWillDelete, user);
}

void TamberUsers::saveScheduledChanges()
{
    for (const User &user : users())
        user->saveScheduledChanges();
}

void TamberUsers::addUser(const User &user)
{
    _users.append(user);
}

void TamberUsers::addUserWithFirstName(const QString &firstName, const QString &lastName,
                                       const QString &displayName)
{
    const auto user = std::make_shared<TamberUser>(_context, firstName, lastName, displayName);
    user->storeInUsers(shared_from_this(), {});
    if (isUbiquitous())
        return;
    addUser(user);
    postUserAddedNotification(user);
}

void TamberUsers::deleteUser(const User &user)
{
    _context.log.info(QStringLiteral("TamberUsers::deleteUser"));
    tellUserWillDelete(user);
    user->deleteStorageWithCompletion([registry = shared_from_this(), user](bool) {
        registry->_users.remove(user.get());
        registry->_context.log.info(QStringLiteral("User storage deleted!"));
    });
}

void TamberUsers::moveUser(const User &user, const std::shared_ptr<TamberUsers> &target)
{
    const FileURL from = user->url();
    const FileURL to = target->url().appendingDirectory(user->folder());
    if (isUbiquitous()) {
        user->prepareToMove();
        ContainerDisk(_context).move(ContainerDisk::MoveKind::Coordinated, from, to, user->documents(),
                                     [&context = _context, from](const FileResult &result) {
                                         tellProblem(context, StoreProblem::What::Move, from, result);
                                     });
        return;
    }
    tellUserWillDelete(user);
    user->prepareToMove();
    ContainerDisk(_context).move(ContainerDisk::MoveKind::AtOnce, from, to, user->documents(),
                                 [registry = shared_from_this(), user, to, target](const FileResult &result) {
                                     registry->userMoved(result, user, to, target);
                                 });
}

void TamberUsers::userMoved(const FileResult &result, const User &user, const FileURL &to,
                            const std::shared_ptr<TamberUsers> &target)
{
    logProblem(_context, StoreProblem::What::Move, user->url(), result);
    if (!ContainerDisk(_context).hasMoved(user->url(), to, result)) {
        // It was told as leaving before the move.
        postUserAddedNotification(user);
        return;
    }
    _users.remove(user.get());
    target->openAndNotify(to.lastPathComponent());
}

void TamberUsers::loadUserFromURL(const FileURL &userDirectory)
{
    const QString &folderName = userDirectory.lastPathComponent();
    if (!_context.disk.isFolder(url().appendingDirectory(folderName)))
        return;
    if (const User user = TamberUser::withFolder(_context, folderName, shared_from_this()))
        addUser(user);
}

TamberUsers::User TamberUsers::loadUserFromFolderAndNotifyDelegate(const QString &folderName)
{
    return _context.disk.isFolder(url().appendingDirectory(folderName)) ? openAndNotify(folderName) : nullptr;
}

TamberUsers::User TamberUsers::openAndNotify(const QString &folderName)
{
    User user = TamberUser::withFolder(_context, folderName, shared_from_this());
    if (user) {
        addUser(user);
        postUserAddedNotification(user);
    }
    return user;
}

TamberUsers::User TamberUsers::findUserWithURL(const FileURL &url) const
{
    TamberUser *const user = url.isNil() ? nullptr : _users.itemOfURL(url);
    return user ? std::static_pointer_cast<TamberUser>(user->shared_from_this()) : nullptr;
}

void TamberUsers::postUserAddedNotification(const User &user)
{
    _context.notifications.post({TamberUsersUserAddedNotification.toString(),
                                 this,
                                 {{QStringLiteral("user"), QVariant::fromValue(user)}}});
}

} // namespace cvtamber
