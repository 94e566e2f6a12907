// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberStorage.h"

#include "base/Locations.h"
#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/ContainerDisk.h"
#include "store/StoreDisk.h"
#include "store/StoreNames.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"

#include <QFileInfo>

namespace cvtamber {

namespace {

// A person may keep the folder elsewhere behind a link; below the root the store follows none.
FileURL resolved(const FileURL &root)
{
    const QString path = root.isNil() ? QString() : QFileInfo(root.path()).canonicalFilePath();
    return path.isEmpty() ? root : FileURL::directory(path);
}

} // namespace

std::shared_ptr<TamberStorage> TamberStorage::withURL(StoreContext &context, const FileURL &url)
{
    if (url.isNil() || !context.disk.isFolder(url))
        return nullptr;
    std::shared_ptr<TamberStorage> storage(new TamberStorage(context));
    return storage->openRoot(url) ? storage : nullptr;
}

TamberStorage::~TamberStorage()
{
    _context.log.info(QStringLiteral("TamberStorage::dealloc"));
}

FileURL TamberStorage::localStorageURL(Locations &locations)
{
    return resolved(FileURL::directory(locations.documentsFolder()));
}

FileURL TamberStorage::ubiquotusStorageURL(const CloudContainer &cloud)
{
    return resolved(cloud.url().appendingDirectory(QStringLiteral("Documents")));
}

bool TamberStorage::openRoot(const FileURL &url)
{
    _storeURL = FileURL::directory(url.path());
    _isUbiquitous = _context.cloud.isUbiquitousItem(_storeURL);
    if (!createSubfolder(ActiveUsersName.toString()) || !createSubfolder(ArchivedUsersName.toString()))
        return false;
    if (_isUbiquitous)
        _context.cloud.storeOpened();
    return true;
}

bool TamberStorage::createSubfolder(const QString &name)
{
    const FileURL folder = _storeURL.appendingDirectory(name);
    if (folder.isNil())
        return false;
    const FileResult made = _context.disk.makeFolders(folder);
    if (_context.disk.isFolder(folder))
        return true;
    _context.problems.tell({StoreProblem::What::Create, folder, made.message, {}});
    return false;
}

void TamberStorage::setStoreURL(const FileURL &url)
{
    if (FileURL::directory(url.path()) == _storeURL)
        return;
    close();
    if (!openRoot(url))
        _context.log.error(QStringLiteral("TamberStorage::createSubfolder failed"));
}

void TamberStorage::close()
{
    for (auto *registry : {&_activeUsers, &_archivedUsers}) {
        if (*registry)
            (*registry)->saveScheduledChanges();
        registry->reset();
    }
}

const std::shared_ptr<TamberUsers> &TamberStorage::activeUsers()
{
    if (!_activeUsers)
        _activeUsers =
            TamberUsers::withTamberStorage(_context, shared_from_this(), ActiveUsersName.toString());
    return _activeUsers;
}

const std::shared_ptr<TamberUsers> &TamberStorage::archivedUsers()
{
    if (!_archivedUsers)
        _archivedUsers =
            TamberUsers::withTamberStorage(_context, shared_from_this(), ArchivedUsersName.toString());
    return _archivedUsers;
}

void TamberStorage::moveUser(const std::shared_ptr<TamberUser> &user,
                             const std::shared_ptr<TamberUsers> &target)
{
    if (const auto registry = user->users())
        registry->tellUserWillDelete(user);
    user->prepareToMove();
    const FileURL from = user->url();
    const FileURL to = target->url().appendingDirectory(user->folder());
    const auto done = [&context = _context, from, to, target](const FileResult &result) {
        if (result.ok()) {
            target->loadUserFromURL(to);
            return;
        }
        context.log.error(u"Error: " + result.message);
        tellProblem(context, StoreProblem::What::Move, from, result);
    };
    ContainerDisk(_context).move(ContainerDisk::MoveKind::Quiet, from, to, user->documents(), done);
}

} // namespace cvtamber
