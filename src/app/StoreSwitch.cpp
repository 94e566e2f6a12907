// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StoreSwitch.h"

#include "app/MGlobals.h"
#include "base/SystemLog.h"
#include "store/ContainerDisk.h"
#include "store/StoreNames.h"
#include "store/TamberStorage.h"
#include "store/TamberUsers.h"

#include <QStringList>

namespace cvtamber {

using namespace Qt::StringLiterals;

std::shared_ptr<TamberStorage> gTamberStorage;

namespace {

bool isOpen(StoreContext &context, const FileURL &root)
{
    return context.disk.isFolder(root.appendingDirectory(ActiveUsersName.toString())) &&
           context.disk.isFolder(root.appendingDirectory(ArchivedUsersName.toString()));
}

void moveFolderToCloud(StoreContext &context, const FileURL &from, const FileURL &to)
{
    const StoreDisk::Listing listing = context.disk.list(from);
    QStringList shown;
    for (const StoreDisk::Entry &entry : listing.entries)
        shown.append(loggedURL(from.appendingFile(entry.name)));
    context.log.info(u'(' % shown.join(u", "_s) % u')');
    // On a launch in the cloud the store has not been opened there yet.
    if (!listing.entries.empty())
        tellProblem(context, StoreProblem::What::Create, to, context.disk.makeFolders(to));
    for (const StoreDisk::Entry &entry : listing.entries) {
        const bool isFolder = entry.kind == FileStatus::Kind::Folder;
        const auto itemIn = [&](const FileURL &folder) {
            return isFolder ? folder.appendingDirectory(entry.name) : folder.appendingFile(entry.name);
        };
        const FileURL item = itemIn(from);
        ContainerDisk(context).coordinatedMoveItemAtURL(
            item, itemIn(to), [&context, item](const FileResult &result) {
                if (result.ok())
                    return;
                context.log.info(u"Error"_s);
                tellProblem(context, StoreProblem::What::Move, item, result);
            });
    }
}

} // namespace

void makeStorage(StoreContext &context, const FileURL &url)
{
    gTamberStorage = TamberStorage::withURL(context, url);
    MGlobals::setTamberStorage(gTamberStorage);
}

void switchStorage(StoreContext &context, const FileURL &url)
{
    if (!gTamberStorage) {
        makeStorage(context, url);
        return;
    }
    if (context.disk.isFolder(url)) {
        gTamberStorage->setStoreURL(url);
        if (isOpen(context, url))
            return;
    }
    closeStorage();
}

void closeStorage()
{
    if (gTamberStorage)
        gTamberStorage->close();
    gTamberStorage.reset();
    MGlobals::setTamberStorage(nullptr);
}

void moveUsersToCloud(StoreContext &context, const FileURL &local, const FileURL &cloud)
{
    if (local.isNil() || cloud.isNil() || local == cloud)
        return;
    for (const QStringView name : {ActiveUsersName, ArchivedUsersName})
        moveFolderToCloud(context, local.appendingDirectory(name.toString()),
                          cloud.appendingDirectory(name.toString()));
}

} // namespace cvtamber
