// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberDataFolder.h"

#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/ContainerDisk.h"
#include "store/Records.h"
#include "store/StoreNames.h"
#include "store/TamberFilesAndFoldersContainer.h"
#include "store/UserDirectories.h"

namespace cvtamber {

namespace {

void writeFirst(TamberDataFolderDocument &record, const QString &name)
{
    record.setInitialName(name);
    record.saveToURL(record.fileURL(), Document::SaveOperation::ForCreating, {});
    record.closeWithCompletionHandler({});
}

} // namespace

TamberDataFolder::TamberDataFolder(StoreContext &context)
    : TamberFilesContainer(context)
{}

TamberDataFolder::~TamberDataFolder()
{
    context().log.info(QStringLiteral("TamberDataFolder::dealloc"));
}

std::shared_ptr<TamberDataFolder> TamberDataFolder::self()
{
    return std::static_pointer_cast<TamberDataFolder>(shared_from_this());
}

void TamberDataFolder::place(const FileURL &parentURL, const QString &storageName)
{
    _parentURL = parentURL;
    _storageName = storageName;
    _folderDocument = std::make_shared<TamberDataFolderDocument>(
        context(), url().appendingFile(FolderRecordName.toString()));
}

FileURL TamberDataFolder::url() const
{
    return _parentURL.appendingDirectory(_storageName);
}

FileURL TamberDataFolder::makeUniqueURL()
{
    FileURL folder = ContainerDisk(context()).makeUniqueFolder(_parentURL);
    _storageName = folder.lastPathComponent();
    return folder;
}

std::shared_ptr<TamberDataFolder> TamberDataFolder::withName(StoreContext &context, const QString &name,
                                                             const FileURL &parentURL)
{
    auto folder = std::make_shared<TamberDataFolder>(context);
    folder->_parentURL = parentURL;
    const FileURL url = folder->makeUniqueURL();
    if (url.isNil())
        return nullptr;
    folder->place(parentURL, folder->_storageName);
    writeFirst(*folder->_folderDocument, name);
    return folder;
}

std::shared_ptr<TamberDataFolder>
TamberDataFolder::withFolder(StoreContext &context, const QString &folderName,
                             const std::shared_ptr<TamberFilesAndFoldersContainer> &user,
                             Completion completion)
{
    auto folder = std::make_shared<TamberDataFolder>(context);
    folder->initWithFolder(folderName, user);
    folder->_user = user;
    folder->place(user->url(), folderName);
    folder->openRecord(std::move(completion));
    return folder;
}

void TamberDataFolder::openRecord(Completion completion)
{
    _folderDocument->openWithCompletionHandler([folder = self(), completion = std::move(completion)](bool) {
        folder->_folderDocument->closeWithCompletionHandler([folder, completion](bool) {
            if (completion)
                completion();
        });
    });
}

void TamberDataFolder::setName(const QString &name)
{
    _folderDocument->setName(name);
    nameHasChanged();
}

void TamberDataFolder::nameHasChanged() const
{
    if (const auto container = user())
        container->folderNameChanged();
}

void TamberDataFolder::saveWhatIsOwed()
{
    if (const std::shared_ptr<TamberFilesContainer> container = user())
        container->saveWhatIsOwed();
}

void TamberDataFolder::writeLostRecord(const FileURL &directory) const
{
    const auto record = std::make_shared<TamberDataFolderDocument>(
        context(), directory.appendingFile(FolderRecordName.toString()));
    if (!name().isNull() && context().disk.isFolder(directory) &&
        isCertainlyAbsent(context().disk, record->fileURL()))
        writeFirst(*record, name());
}

DocumentGroup TamberDataFolder::documents() const
{
    DocumentGroup all(files().begin(), files().end());
    all.push_back(_folderDocument);
    return all;
}

void TamberDataFolder::reloadWithCompletion(StorageCompletion completion)
{
    _folderDocument->openWithCompletionHandler(
        [folder = self(), completion = std::move(completion)](bool success) {
            folder->nameHasChanged();
            if (success)
                folder->_folderDocument->closeWithCompletionHandler(completion);
            else if (completion)
                completion(false);
        });
}

void TamberDataFolder::deleteStorageWithCompletion(StorageCompletion completion)
{
    TamberFilesContainer::deleteStorageWithCompletion(
        [folder = self(), completion = std::move(completion)](bool success) {
            if (success)
                folder->removeRecord(completion);
        });
}

void TamberDataFolder::removeRecord(const StorageCompletion &completion)
{
    const auto report = [folder = self(), completion](const FileResult &result) {
        tellProblem(folder->context(), StoreProblem::What::Delete, folder->url(), result);
        if (completion)
            completion(result.ok());
    };
    ContainerDisk(context()).removeDocument(
        _folderDocument, [folder = self(), report](const FileResult &result) {
            // A crash can leave a folder without its record, which must be deletable.
            if (result.ok() || result.outcome == FileResult::Outcome::Missing)
                ContainerDisk(folder->context()).coordinatedRemoveItemAtURL(folder->url(), report);
            else
                report(result);
        });
}

} // namespace cvtamber
