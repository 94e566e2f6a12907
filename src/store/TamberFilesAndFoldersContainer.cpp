// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberFilesAndFoldersContainer.h"

#include "base/SystemLog.h"
#include "store/ContainerDisk.h"
#include "store/FileCoordinator.h"
#include "store/StoreNames.h"

#include <QSet>

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

TamberFilesAndFoldersContainer::TamberFilesAndFoldersContainer(StoreContext &context)
    : TamberFilesContainer(context)
{}

TamberFilesAndFoldersContainer::~TamberFilesAndFoldersContainer() = default;

std::shared_ptr<TamberFilesAndFoldersContainer> TamberFilesAndFoldersContainer::self()
{
    return std::static_pointer_cast<TamberFilesAndFoldersContainer>(shared_from_this());
}

std::shared_ptr<TamberFilesAndFoldersContainer>
TamberFilesAndFoldersContainer::withFolder(StoreContext &context, const QString &folderName,
                                           const std::shared_ptr<TamberDiskLocation> &parent)
{
    auto container = std::make_shared<TamberFilesAndFoldersContainer>(context);
    container->initWithFolder(folderName, parent);
    return container;
}

void TamberFilesAndFoldersContainer::initWithFolder(const QString &folderName,
                                                    const std::shared_ptr<TamberDiskLocation> &parent)
{
    ContainerListing listing = TamberFilesContainer::initWithFolder(folderName, parent);
    if (!isUbiquitous())
        _listingAtOpening = std::move(listing);
}

void TamberFilesAndFoldersContainer::setDelegate(
    std::weak_ptr<TamberFilesAndFoldersContainerDelegate> delegate)
{
    TamberFilesContainer::setDelegate(delegate);
    _folders.listeners().setDelegate(std::move(delegate));
}

void TamberFilesAndFoldersContainer::addObserver(TamberFilesAndFoldersContainerDelegate &observer)
{
    TamberFilesContainer::addObserver(observer);
    _folders.listeners().observers().add(observer);
}

void TamberFilesAndFoldersContainer::removeObserver(TamberFilesAndFoldersContainerDelegate &observer)
{
    TamberFilesContainer::removeObserver(observer);
    _folders.listeners().observers().remove(observer);
}

TamberFilesAndFoldersContainer::FolderPointer
TamberFilesAndFoldersContainer::folderAtIndex(StoreIndex index) const
{
    return _folders.holds(index) ? _folders.at(index) : nullptr;
}

StoreIndex TamberFilesAndFoldersContainer::indexOfFolder(const FolderPointer &folder) const
{
    return _folders.indexOf(folder.get());
}

StoreIndex TamberFilesAndFoldersContainer::indexOfFolderWithURL(const FileURL &url) const
{
    return _folders.indexOfURL(url);
}

TamberFilesAndFoldersContainer::FolderPointer
TamberFilesAndFoldersContainer::openFolder(const QString &folderName, FolderHandler opened)
{
    const auto opening = std::make_shared<std::weak_ptr<TamberDataFolder>>();
    FolderPointer folder =
        TamberDataFolder::withFolder(context(), folderName, self(), [opening, opened = std::move(opened)] {
            if (const FolderPointer ready = opening->lock())
                opened(ready);
        });
    *opening = folder;
    return folder;
}

void TamberFilesAndFoldersContainer::loadContent()
{
    if (!isUbiquitous())
        scanFolders();
}

void TamberFilesAndFoldersContainer::scanFolders()
{
    const ContainerListing listing =
        _listingAtOpening ? *std::move(_listingAtOpening) : ContainerDisk(context()).read(url());
    _listingAtOpening.reset();
    context().log.info(listing.toLog());
    // In the listing's order, whichever record is read first.
    struct Opened
    {
        std::vector<FolderPointer> folders;
        size_t appended = 0;
    };
    const auto opened = std::make_shared<Opened>();
    opened->folders.resize(static_cast<size_t>(listing.folders.size()));
    for (size_t place = 0; place < opened->folders.size(); ++place)
        openFolder(listing.folders[static_cast<qsizetype>(place)], [container = self(), opened,
                                                                    place](const FolderPointer &folder) {
            opened->folders[place] = folder;
            while (opened->appended < opened->folders.size() && opened->folders[opened->appended]) {
                const FolderPointer next = std::exchange(opened->folders[opened->appended++], nullptr);
                if (container->_folders.indexOfURL(next->url()) == NotFound)
                    container->_folders.append(next);
            }
        });
}

void TamberFilesAndFoldersContainer::refresh()
{
    const ContainerListing listing = isUbiquitous() ? ContainerListing() : refreshDocuments();
    if (!listing.isWhole)
        return;
    const auto isBusy = [this](const FileURL &folder) { return context().coordinator.isBusy(folder); };
    const QSet<QString> there(listing.folders.begin(), listing.folders.end());
    for (const FolderPointer &folder : std::vector(folders())) {
        if (!there.contains(folder->storageName()) && !isBusy(folder->url()))
            _folders.removeAndTell(folder.get());
    }
    for (const QString &name : listing.folders) {
        const FileURL folder = url().appendingDirectory(name);
        if (indexOfFolderWithURL(folder) == NotFound && !isBusy(folder))
            loadLocalFolderWithUrl(folder);
    }
}

TamberFilesAndFoldersContainer::FolderPointer
TamberFilesAndFoldersContainer::addFolderWithName(const QString &name)
{
    saveWhatIsOwed();
    FolderPointer folder = TamberDataFolder::withName(context(), name, url());
    if (!folder)
        return nullptr;
    folder->setUser(self());
    if (!isUbiquitous())
        _folders.insertAndTell(folder);
    return folder;
}

void TamberFilesAndFoldersContainer::deleteFolderAtIndex(StoreIndex index)
{
    const FolderPointer folder = folderAtIndex(index);
    if (!folder)
        return;
    folder->deleteStorageWithCompletion([container = self(), folder](bool success) {
        if (success && container->isUbiquitous())
            container->_folders.removeUnreported(folder.get());
        else if (success)
            container->_folders.removeAndTell(folder.get());
    });
}

void TamberFilesAndFoldersContainer::deleteFolder(const FolderPointer &folder)
{
    deleteFolderAtIndex(indexOfFolder(folder));
}

void TamberFilesAndFoldersContainer::moveFolder(const FolderPointer &folder,
                                                const std::shared_ptr<TamberFilesAndFoldersContainer> &target)
{
    if (!folder || !target)
        return;
    target->saveWhatIsOwed();
    const FileURL from = folder->url();
    const FileURL to = target->url().appendingDirectory(folder->storageName());
    const auto done = [container = self(), folder, to, target](const FileResult &result) {
        tellProblem(container->context(), StoreProblem::What::Move, folder->url(), result);
        if (container->isUbiquitous())
            container->context().log.info(u"success: "_s % QString::number(int(result.ok())));
        else if (!result.ok())
            container->context().log.error(result.message);
        if (ContainerDisk(container->context()).hasMoved(folder->url(), to, result))
            container->finishMovingFolder(folder, to, target);
    };
    if (to.isNil())
        context().problems.tell({StoreProblem::What::Move, from, {}, {}});
    else
        ContainerDisk(context()).move(isUbiquitous() ? ContainerDisk::MoveKind::Coordinated
                                                     : ContainerDisk::MoveKind::AtOnce,
                                      from, to, folder->documents(), done);
}

void TamberFilesAndFoldersContainer::finishMovingFolder(
    const FolderPointer &folder, const FileURL &newURL,
    const std::shared_ptr<TamberFilesAndFoldersContainer> &target)
{
    if (_folders.removeAndTell(folder.get()) && isUbiquitous())
        keepDocumentsOf(*folder);
    folder->writeLostRecord(newURL);
    target->loadLocalFolderWithUrl(newURL);
}

void TamberFilesAndFoldersContainer::loadLocalFolderWithUrl(const FileURL &url)
{
    if (!isUbiquitous()) {
        openFolder(url.lastPathComponent(), [container = self()](const FolderPointer &folder) {
            container->_folders.insertAndTell(folder);
        });
        return;
    }
    // The cloud may report the folder and what is in it before or after.
    const FileURL folderURL = this->url().appendingDirectory(url.lastPathComponent());
    if (_folders.indexOfURL(folderURL) != NotFound || _foldersBeingOpened.contains(folderURL))
        return;
    _folders.expectReport(folderURL);
    openReportedFolder(folderURL.lastPathComponent());
}

QString TamberFilesAndFoldersContainer::uniqueUserFolderName(const StoreContext &context,
                                                             const FileURL &directory)
{
    return ContainerDisk::unusedName(context, directory);
}

void TamberFilesAndFoldersContainer::deleteStorageWithCompletion(StorageCompletion completion)
{
    TamberFilesContainer::deleteStorageWithCompletion(
        [container = self(), completion = std::move(completion)](bool success) {
            if (success)
                container->deleteFolders(completion);
        });
}

void TamberFilesAndFoldersContainer::deleteFolders(const StorageCompletion &completion)
{
    if (_folders.isEmpty()) {
        if (isUbiquitous())
            ContainerDisk(context()).removeStrayFolderRecords(url());
        if (completion)
            completion(true);
        return;
    }
    // From the last to the first.
    const std::vector<FolderPointer> folders(_folders.items().rbegin(), _folders.items().rend());
    const auto remaining = std::make_shared<size_t>(folders.size());
    for (const FolderPointer &folder : folders)
        folder->deleteStorageWithCompletion(
            [container = self(), folder, completion, remaining](bool success) {
                FoldersList &list = container->_folders;
                // Reports from the cloud change the list meanwhile: it is not always the last that has gone, and
                // the list may be empty before the last has gone.
                list.removeQuietly(folder.get());
                if (--*remaining == 0 && list.isEmpty() && completion)
                    completion(success);
            });
}

void TamberFilesAndFoldersContainer::startQuery()
{
    if (isUbiquitous())
        TamberFilesContainer::startQuery();
}

void TamberFilesAndFoldersContainer::stopQuery()
{
    if (isUbiquitous())
        TamberFilesContainer::stopQuery();
}

} // namespace cvtamber
