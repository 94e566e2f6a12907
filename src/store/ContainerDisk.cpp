// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ContainerDisk.h"

#include "base/RunLoop.h"
#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/CloudNames.h"
#include "store/FileCoordinator.h"
#include "store/StoreNames.h"
#include "store/Trash.h"

#include <algorithm>

namespace cvtamber {

using Outcome = FileResult::Outcome;

namespace {

// It could not be created because its name was in use: what stands at its URL is another document.
bool isNotOnDisk(const Document &document)
{
    return (document.documentState() & Document::Closed) != 0 &&
           document.lastResult().outcome == Outcome::AlreadyExists;
}

bool mustSettleFirst(const std::shared_ptr<Document> &document)
{
    return document->hasUnsavedChanges() || isNotOnDisk(*document);
}

// Several closings that end together.
struct Settling
{
    size_t remaining = 0;
    FileResult first;
    FileCompletion settled;

    void closed(const Document &document, bool success)
    {
        if (!success && first.ok()) {
            first = document.lastResult();
            if (first.ok())
                first.outcome = Outcome::Failed;
        }
        if (--remaining == 0)
            settled(first);
    }
};

} // namespace

ContainerListing ContainerDisk::read(const FileURL &directory) const
{
    const StoreDisk::Listing listing = _context.disk.list(directory);
    if (!listing.ok())
        _context.log.error(loggedURL(directory) % QStringLiteral(" - ") % listing.message);
    tellProblem(_context, StoreProblem::What::List, directory, listing);
    if (!listing.leftovers.isEmpty())
        _context.coordinator.sweep(directory, listing.leftovers);
    return ContainerListing::of(listing);
}

bool ContainerDisk::isSettled(const Document &document) const
{
    const bool isClosed = (document.documentState() & Document::Closed) != 0;
    return isClosed && !document.hasUnsavedChanges() && !_context.coordinator.isBusy(document.fileURL());
}

// At once when all are settled.
void ContainerDisk::settle(const DocumentGroup &documents, FileCompletion settled) const
{
    DocumentGroup open;
    std::copy_if(documents.begin(), documents.end(), std::back_inserter(open),
                 [&](const auto &document) { return !isSettled(*document); });
    if (open.empty()) {
        settled({});
        return;
    }
    const auto settling = std::make_shared<Settling>(Settling{open.size(), {}, std::move(settled)});
    for (const auto &document : open)
        document->closeWithCompletionHandler([settling, weak = std::weak_ptr<Document>(document)](bool ok) {
            // The document lives until it has been closed.
            if (const auto closing = weak.lock())
                settling->closed(*closing, ok);
        });
}

void ContainerDisk::removeDocument(const std::shared_ptr<Document> &document, FileCompletion completion) const
{
    if (!isSettled(*document))
        document->updateChangeCount(Document::ChangeKind::Cleared);
    settle({document}, [disk = *this, document, done = std::move(completion)](const FileResult &) {
        if (isNotOnDisk(*document))
            disk._context.runLoop.performAfter({}, [done] { done({}); });
        else
            disk.coordinatedRemoveItemAtURL(document->fileURL(), done);
    });
}

void ContainerDisk::move(MoveKind kind, const FileURL &from, const FileURL &to,
                         const DocumentGroup &documents, const FileCompletion &completion) const
{
    if (kind == MoveKind::AtOnce && !_context.coordinator.isBusy(from) && !_context.coordinator.isBusy(to) &&
        std::none_of(documents.begin(), documents.end(), &mustSettleFirst)) {
        // Closing has nothing to write here; it only ends what the old document could still write later.
        settle(documents, [](const FileResult &) {});
        completion(_context.disk.move(from, to));
        return;
    }
    settle(documents, [disk = *this, kind, from, to, documents, completion](const FileResult &settled) {
        const auto notOnDisk = std::find_if(documents.begin(), documents.end(), [&](const auto &document) {
            return document->fileURL() == from && isNotOnDisk(*document);
        });
        const FileResult refusal = notOnDisk == documents.end() ? settled : (*notOnDisk)->lastResult();
        if (!refusal.ok())
            disk._context.runLoop.performAfter({}, [completion, refusal] { completion(refusal); });
        else if (kind == MoveKind::Coordinated)
            disk.coordinatedMoveItemAtURL(from, to, completion);
        else
            disk._context.coordinator.move(from, to, completion);
    });
}

void ContainerDisk::coordinatedMoveItemAtURL(const FileURL &from, const FileURL &to,
                                             FileCompletion completion) const
{
    _context.log.info(loggedURL(from));
    _context.log.info(loggedURL(to));
    _context.coordinator.move(from, to, logged(from, std::move(completion)));
}

void ContainerDisk::coordinatedRemoveItemAtURL(const FileURL &url, FileCompletion completion) const
{
    _context.log.info(u"[fm removeItemAtURL:" % loggedURL(url) % u']');
    _context.coordinator.remove(url, logged(url, std::move(completion)));
}

FileCompletion ContainerDisk::logged(const FileURL &url, FileCompletion completion) const
{
    return [&log = _context.log, url, done = std::move(completion)](const FileResult &result) {
        if (!result.ok())
            log.error(loggedURL(url) % u" - " % result.message);
        if (done)
            done(result);
    };
}

bool ContainerDisk::hasMoved(const FileURL &from, const FileURL &to, const FileResult &result) const
{
    return result.ok() || (!_context.disk.exists(from) && _context.disk.exists(to));
}

void ContainerDisk::removeStrayDocuments(const FileURL &directory) const
{
    for (const StoreDisk::Entry &entry : _context.disk.list(directory).entries) {
        const QString behind = nameBehindPlaceholder(entry.name);
        const QString &name = behind.isNull() ? entry.name : behind;
        if (entry.kind != FileStatus::Kind::File || !hasDocumentExtension(name))
            continue;
        if (behind.isNull())
            _context.trash.moveToTrash(directory.appendingFile(name));
        else
            _context.disk.remove(directory.appendingFile(name));
    }
}

void ContainerDisk::removeStrayFolderRecords(const FileURL &directory) const
{
    for (const FileURL &file : _context.disk.walk(directory).files) {
        if (file.lastPathComponent() != FolderRecordName)
            continue;
        _context.log.info(loggedURL(file));
        _context.disk.remove(file);
    }
}

QString ContainerDisk::unusedName(const StoreContext &context, const FileURL &directory)
{
    // What cannot be looked at counts as free: whoever makes the directory finds out.
    const auto isTaken = [&](const QString &name) {
        const auto kind = context.disk.status(directory.appendingDirectory(name)).kind;
        return kind != FileStatus::Kind::Missing && kind != FileStatus::Kind::Unknown;
    };
    QString name = freshUuidName();
    while (isTaken(name))
        name = freshUuidName();
    return name;
}

FileResult ContainerDisk::makeFolders(const FileURL &directory) const
{
    if (_context.cloud.isUbiquitousItem(directory) && _context.cloud.url().isNil())
        return {Outcome::Failed, QStringLiteral("the cloud folder is not there")};
    return _context.disk.makeFolders(directory);
}

FileURL ContainerDisk::makeUniqueFolder(const FileURL &parent) const
{
    FileResult result = makeFolders(parent);
    while (result.ok() || result.outcome == Outcome::AlreadyExists) {
        FileURL folder = parent.appendingDirectory(freshUuidName());
        result = _context.disk.makeFolder(folder);
        if (result.ok())
            return folder;
    }
    logProblem(_context, StoreProblem::What::Create, parent, result);
    return {};
}

} // namespace cvtamber
