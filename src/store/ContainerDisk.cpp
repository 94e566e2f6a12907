// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ContainerDisk.h"

#include "base/RunLoop.h"
#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/CloudNames.h"
#include "store/FileCoordinator.h"
#include "store/StoreNames.h"

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

// Moves once the documents are settled, or says why not.
template<typename Move>
void moveSettled(const StoreContext &context, const FileURL &from, const DocumentGroup &documents,
                 const Move &move, const FileCompletion &completion)
{
    settleDocuments(
        context, documents, [&context, from, documents, move, completion](const FileResult &settled) {
            const auto notOnDisk =
                std::find_if(documents.begin(), documents.end(), [&](const auto &document) {
                    return document->fileURL() == from && isNotOnDisk(*document);
                });
            const FileResult refusal = notOnDisk == documents.end() ? settled : (*notOnDisk)->lastResult();
            if (refusal.ok())
                move(completion);
            else
                context.runLoop.performAfter({}, [completion, refusal] { completion(refusal); });
        });
}

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

void ContainerDisk::removeDocument(const std::shared_ptr<Document> &document, FileCompletion completion) const
{
    abandonDocument(_context, document, [&context = _context, document, done = std::move(completion)] {
        if (isNotOnDisk(*document))
            context.runLoop.performAfter({}, [done] { done({}); });
        else
            coordinatedRemoveItemAtURL(context, document->fileURL(), done);
    });
}

void ContainerDisk::move(const FileURL &from, const FileURL &to, const DocumentGroup &documents,
                         const FileCompletion &completion) const
{
    moveSettled(
        _context, from, documents,
        [&context = _context, from, to](const FileCompletion &done) {
            coordinatedMoveItemAtURL(context, from, to, done);
        },
        completion);
}

void ContainerDisk::moveQuietly(const FileURL &from, const FileURL &to, const DocumentGroup &documents,
                                const FileCompletion &completion) const
{
    moveSettled(
        _context, from, documents,
        [&context = _context, from, to](const FileCompletion &done) {
            context.coordinator.move(from, to, done);
        },
        completion);
}

void ContainerDisk::moveAtOnce(const FileURL &from, const FileURL &to, const DocumentGroup &documents,
                               const FileCompletion &completion) const
{
    const bool isBusy = _context.coordinator.isBusy(from) || _context.coordinator.isBusy(to);
    if (isBusy || std::any_of(documents.begin(), documents.end(), &mustSettleFirst)) {
        moveQuietly(from, to, documents, completion);
        return;
    }
    // Closing has nothing to write here; it only ends what the old document could still write later.
    settleDocuments(_context, documents, [](const FileResult &) {});
    completion(_context.disk.move(from, to));
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
        if (entry.kind == FileStatus::Kind::File && hasDocumentExtension(name))
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
    _context.log.error(result.message);
    tellProblem(_context, StoreProblem::What::Create, parent, result);
    return {};
}

} // namespace cvtamber
