// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberFilesContainer.h"

#include "base/RunLoop.h"
#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/CloudRouting.h"
#include "store/ContainerDisk.h"
#include "store/FileCoordinator.h"
#include "store/StoreNames.h"

#include <algorithm>
#include <unordered_set>

namespace cvtamber {

using namespace Qt::StringLiterals;
using Outcome = FileResult::Outcome;

namespace {

// The directory is not known any more.
void refuseSaving(StoreContext &context, std::function<void(const FileResult &)> saved)
{
    const FileResult refusal{Outcome::Missing, u"its folder is gone"_s};
    tellProblem(context, StoreProblem::What::Save, {}, refusal);
    if (saved)
        context.runLoop.performAfter({}, [saved, refusal] { saved(refusal); });
}

} // namespace

// One removal of all documents: how much of it is under way.
struct TamberFilesContainer::StorageDeletion
{
    size_t remaining = 0;
    bool hasFailed = false;
    StorageCompletion completion;

    void report(bool success) const
    {
        if (completion)
            completion(success);
    }
};

TamberFilesContainer::TamberFilesContainer(StoreContext &context)
    : _context(context)
{}

TamberFilesContainer::~TamberFilesContainer() = default;

std::shared_ptr<TamberFilesContainer>
TamberFilesContainer::withFolder(StoreContext &context, const QString &folderName,
                                 const std::shared_ptr<TamberDiskLocation> &parent)
{
    auto container = std::make_shared<TamberFilesContainer>(context);
    container->initWithFolder(folderName, parent);
    return container;
}

ContainerListing TamberFilesContainer::initWithFolder(const QString &folderName,
                                                      const std::shared_ptr<TamberDiskLocation> &parent)
{
    const FileURL parentURL = parent->url();
    const FileURL directory = parentURL.appendingDirectory(folderName);
    _isUbiquitous = _context.cloud.isUbiquitousItem(parentURL);
    _parent = parent;
    _folderName = folderName;
    if (directory.isNil())
        return {};
    if (!_isUbiquitous)
        return readDocuments(directory);
    // Nobody lists this directory here, so nobody has met them.
    _context.coordinator.sweep(directory, {});
    return {};
}

FileURL TamberFilesContainer::url() const
{
    const auto location = parent();
    return location ? location->url().appendingDirectory(_folderName) : FileURL();
}

void TamberFilesContainer::setDelegate(std::weak_ptr<TamberFilesContainerDelegate> delegate)
{
    _files.listeners().setDelegate(std::move(delegate));
}

ContainerListing TamberFilesContainer::readDocuments(const FileURL &directory)
{
    ContainerListing listing = ContainerDisk(_context).read(directory);
    for (const QString &name : listing.documents)
        _files.append(std::make_shared<TamberDocument>(_context, directory.appendingFile(name)));
    return listing;
}

void TamberFilesContainer::refresh()
{
    if (!_isUbiquitous)
        refreshDocuments();
}

ContainerListing TamberFilesContainer::refreshDocuments()
{
    const ContainerDisk disk(_context);
    ContainerListing listing = disk.read(url());
    if (!listing.isWhole)
        return listing;
    const std::unordered_set<QString> there(listing.documents.begin(), listing.documents.end());
    for (const FilePointer &file : std::vector(files())) {
        if (there.count(file->fileURL().lastPathComponent()) == 0 && disk.isSettled(*file))
            _files.removeAndTell(file.get());
    }
    for (const QString &name : listing.documents) {
        if (!_context.coordinator.isBusy(url().appendingFile(name)))
            loadFileWithFilename(name);
    }
    return listing;
}

TamberFilesContainer::FilePointer
TamberFilesContainer::addFileWithName(const QString &name, const QString &content,
                                      std::function<void(const FileResult &)> saved)
{
    _context.log.info(
        u"-(TamberDocument*)addFileWithName:(NSString*)name andTextContent:(NSString*)content"_s);
    saveWhatIsOwed();
    const FileURL fileURL = url().appendingFile(documentFileName(name));
    auto file = std::make_shared<TamberDocument>(_context, fileURL);
    file->setText(content);
    if (fileURL.isNil()) {
        refuseSaving(_context, std::move(saved));
        return file;
    }
    file->saveToURL(fileURL, Document::SaveOperation::ForCreating,
                    [self = shared_from_this(), document = file.get(), saved = std::move(saved)](bool) {
                        const StoreIndex index = self->_files.indexOf(document);
                        if (index != NotFound)
                            self->_files.tell(&TamberFilesContainerDelegate::fileUpdatedAtIndex, index);
                        if (saved)
                            saved(document->lastResult());
                    });
    // Asked for now, so that it comes before whatever a screen asks of the document.
    file->closeWithCompletionHandler({});
    if (!_isUbiquitous)
        listAddedFile(file);
    return file;
}

TamberFilesContainer::FilePointer
TamberFilesContainer::saveUnderFreeTitle(const QString &title, const QString &content,
                                         std::function<void(const QString &title, const FileResult &)> saved)
{
    std::unordered_set<QString> listed;
    for (const FilePointer &file : files())
        listed.insert(comparableName(file->fileURL().nameWithoutExtension()));
    // The disk too: a container in the cloud lists a document only when it has been reported.
    const auto isTaken = [&](const QString &wanted) {
        const FileURL file = url().appendingFile(documentFileName(wanted));
        // Where the disk does not answer, the save finds out.
        return listed.contains(comparableName(repairedTitle(wanted))) ||
               (_context.disk.status(file).kind != FileStatus::Kind::Unknown && _context.disk.exists(file));
    };
    const QString free = nextFreeTitle(title, isTaken);
    return addFileWithName(free, content, [free, saved = std::move(saved)](const FileResult &result) {
        if (saved)
            saved(free, result);
    });
}

void TamberFilesContainer::listAddedFile(const FilePointer &file)
{
    _context.log.info(u"[self.delegate fileAddedAtIndex:index]"_s);
    _context.log.info(u"self.delegate == "_s % (filesDelegate() ? u"<delegate>"_s : u"(null)"_s));
    _files.insertAndTell(file);
}

void TamberFilesContainer::deleteFileAtIndex(StoreIndex index)
{
    if (!_files.holds(index))
        return;
    const FilePointer file = _files.at(index);
    ContainerDisk(_context).removeDocument(file, [self = shared_from_this(), file](const FileResult &result) {
        self->_context.log.info(u"File deleted: "_s % QString::number(int(result.ok())));
        // A document that is not there any more is what was wanted.
        if (result.outcome != Outcome::Missing)
            tellProblem(self->_context, StoreProblem::What::Delete, file->fileURL(), result);
        if (!self->_isUbiquitous)
            self->_files.removeAndTell(file.get());
        else if (result.ok() || result.outcome == Outcome::Missing)
            self->_files.removeUnreported(file.get());
    });
}

void TamberFilesContainer::deleteFile(const FilePointer &file)
{
    deleteFileAtIndex(indexOfFile(file));
}

void TamberFilesContainer::renameFileAtIndex(StoreIndex index, const QString &newName)
{
    if (!_files.holds(index) || newName.isEmpty())
        return;
    const FilePointer file = _files.at(index);
    const FileURL from = file->fileURL();
    const FileURL to = from.deletingLastPathComponent().appendingFile(documentFileName(newName));
    if (from == to || newName == from.nameWithoutExtension())
        return;
    const auto done = [self = shared_from_this(), file, to](const FileResult &result) {
        self->finishRenaming(file, to, result);
    };
    ContainerDisk(_context).move(_isUbiquitous ? ContainerDisk::MoveKind::Quiet
                                               : ContainerDisk::MoveKind::AtOnce,
                                 from, to, {file}, done);
}

void TamberFilesContainer::finishRenaming(const FilePointer &file, const FileURL &newURL,
                                          const FileResult &result)
{
    logProblem(_context, StoreProblem::What::Rename, file->fileURL(), result);
    if (!ContainerDisk(_context).hasMoved(file->fileURL(), newURL, result))
        return;
    if (_isUbiquitous)
        _files.removeUnreported(file.get());
    else if (_files.removeAndTell(file.get()))
        _files.insertAndTell(std::make_shared<TamberDocument>(_context, newURL));
}

void TamberFilesContainer::moveFile(const FilePointer &file,
                                    const std::shared_ptr<TamberFilesContainer> &target)
{
    if (!file || !target)
        return;
    const FileURL to = target->url().appendingFile(file->name());
    if (to.isNil()) {
        _context.problems.tell({StoreProblem::What::Move, file->fileURL(), {}, {}});
        return;
    }
    target->saveWhatIsOwed();
    if (target->fileExists(to.nameWithoutExtension())) {
        _context.problems.tell(
            {StoreProblem::What::Move, file->fileURL(), u"this title is in use there"_s, {}});
        return;
    }
    ContainerDisk(_context).move(ContainerDisk::MoveKind::Coordinated, file->fileURL(), to, {file},
                                 [self = shared_from_this(), file, target, to](const FileResult &result) {
                                     self->finishMoving(file, to, target, result);
                                 });
}

void TamberFilesContainer::finishMoving(const FilePointer &file, const FileURL &to,
                                        const std::shared_ptr<TamberFilesContainer> &target,
                                        const FileResult &result)
{
    _context.log.info(u"success: "_s % QString::number(int(result.ok())));
    tellProblem(_context, StoreProblem::What::Move, file->fileURL(), result);
    const bool hasMoved = ContainerDisk(_context).hasMoved(file->fileURL(), to, result);
    // Where the whole folder is away, or was meanwhile, it may come back.
    const bool isGone = result.outcome == Outcome::Missing && _context.disk.isFolder(url()) &&
                        !_context.disk.exists(file->fileURL());
    if (hasMoved || isGone)
        _files.removeAndTell(file.get());
    if (_isUbiquitous)
        _files.expectReport(file->fileURL());
    if (hasMoved)
        target->loadFileWithFilename(to.lastPathComponent());
}

void TamberFilesContainer::loadFileWithFilename(const QString &fileName)
{
    const FileURL fileURL = url().appendingFile(fileName);
    if (fileURL.isNil())
        return;
    if (_isUbiquitous)
        _files.expectReport(fileURL);
    _files.insertAndTell(std::make_shared<TamberDocument>(_context, fileURL));
}

StoreIndex TamberFilesContainer::indexOfFile(const FilePointer &file) const
{
    return _files.indexOf(file.get());
}

bool TamberFilesContainer::fileExists(const QString &title) const
{
    const QString wanted = comparableName(repairedTitle(title));
    return std::any_of(files().begin(), files().end(), [&](const FilePointer &file) {
        return comparableName(file->fileURL().nameWithoutExtension()) == wanted;
    });
}

void TamberFilesContainer::sortFiles()
{
    _files.sort();
}

void TamberFilesContainer::deleteStorageWithCompletion(StorageCompletion completion)
{
    if (_files.isEmpty()) {
        if (_isUbiquitous)
            ContainerDisk(_context).removeStrayDocuments(url());
        if (completion)
            completion(true);
        return;
    }
    // From the last to the first.
    const std::vector<FilePointer> files(_files.items().rbegin(), _files.items().rend());
    const auto deletion =
        std::make_shared<StorageDeletion>(StorageDeletion{files.size(), false, std::move(completion)});
    for (const FilePointer &file : files)
        ContainerDisk(_context).removeDocument(
            file, [self = shared_from_this(), deletion, file](const FileResult &result) {
                // What is not there any more is what was wanted.
                const bool isGone = result.ok() || result.outcome == Outcome::Missing;
                if (!isGone)
                    tellProblem(self->_context, StoreProblem::What::Delete, file->fileURL(), result);
                self->storedFileRemoved(*deletion, *file, isGone);
            });
}

void TamberFilesContainer::storedFileRemoved(StorageDeletion &deletion, const TamberDocument &file,
                                             bool success)
{
    --deletion.remaining;
    if (!success) {
        deletion.hasFailed = true;
        deletion.report(false);
        return;
    }
    // Reports from the cloud change the list meanwhile: it is not always the last that has gone, and the list
    // may be empty before the last has gone.
    _files.removeQuietly(&file);
    if (_files.isEmpty() && deletion.remaining == 0 && !deletion.hasFailed)
        deletion.report(true);
}

bool TamberFilesContainer::isDirectChild(const TamberUbiquitousItem &item) const
{
    return isDirectChildByLength(url(), item.url());
}

void TamberFilesContainer::ubiquotusItemAdded(const Item &item)
{
    if (!isDirectChild(*item))
        return;
    _files.noteReport(item->url());
    _files.insertAndTell(std::make_shared<TamberDocument>(_context, item->url()));
}

void TamberFilesContainer::ubiquotusItemDeleted(const Item &item)
{
    _files.noteReport(item->url());
    const StoreIndex index = _files.indexOfURL(item->url());
    if (index != NotFound)
        _files.removeAndTell(_files.at(index).get());
}

void TamberFilesContainer::ubiquotusItemDownloaded(const Item &) {}

// Another version has come where a document was that has been moved away.
void TamberFilesContainer::ubiquotusItemDownloadedAgain(const Item &item)
{
    if (_files.isReportExpected(item->url()))
        TamberFilesContainer::ubiquotusItemAdded(item);
}

} // namespace cvtamber
