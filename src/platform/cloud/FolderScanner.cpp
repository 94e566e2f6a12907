// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/FolderScanner.h"

#include "base/HiddenFile.h"
#include "store/CloudNames.h"
#include "store/StoreNames.h"

#include <QSet>

#include <algorithm>
#include <tuple>

namespace cvtamber {

namespace {

using Kind = FileStatus::Kind;

// The document that a download in progress is for (".Letter.tamber.~1a2b3c4d"); null where the name does not
// tell. Only programs that also make placeholders name theirs so.
QString nameBehindDownload(const QString &name)
{
    const qsizetype mark = name.lastIndexOf(QLatin1String(".~"));
    return name.startsWith(u'.') && mark > 1 ? name.sliced(1, mark - 1) : QString();
}

// Another version of a user's or a folder's record, which nobody reads.
bool isCopyOfRecord(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString title = dot > 0 ? titleBehindConflictCopy(name.first(dot)) : QString();
    if (title.isNull())
        return false;
    const QString record = title % name.sliced(dot);
    return record == UserRecordName || record == FolderRecordName;
}

bool isHeldBack(const QString &folderName)
{
    return folderName.startsWith(u'.') || isSyncTemporary(folderName);
}

bool isKnown(const ScanRequest::Folder &folder, const QString &name)
{
    return std::binary_search(folder.knownFolders.begin(), folder.knownFolders.end(), name);
}

} // namespace

// What the names of one listing say, before any file is looked at.
struct FolderScanner::Names
{
    struct Document
    {
        QString name;
        // As it is on the disk.
        QString fileName;
        bool isPlaceholder = false;
    };

    // Of the folder below the root, with a separator at its end; empty for the root.
    QString below;
    std::vector<Document> documents;
    QSet<QString> downloads;
};

FolderScanner::FolderScanner(FileOperations &operations, std::shared_ptr<FolderWatches> watches,
                             ScanRequest request)
    : _operations(operations)
    , _watches(std::move(watches))
    , _request(std::move(request))
{}

void FolderScanner::run()
{
    for (const ScanRequest::Folder &folder : _request.folders)
        scanFrom(folder);
}

void FolderScanner::scanFrom(const ScanRequest::Folder &start)
{
    // The last is the next.
    std::vector<FileURL> waiting{start.url};
    while (!waiting.empty() && !_isCancelled) {
        const FileURL url = waiting.back();
        waiting.pop_back();
        if (!_seen.insert(url).second)
            continue;
        if (url == _request.root)
            _scan.rootDevice = _operations.status(url.path()).stamp.device;
        const ScannedFolder &folder = _scan.folders.emplace_back(look(url));
        const auto before = static_cast<std::ptrdiff_t>(waiting.size());
        for (const QString &name : folder.folders) {
            if (url != start.url || !isKnown(start, name))
                waiting.push_back(url.appendingDirectory(name));
        }
        std::reverse(waiting.begin() + before, waiting.end());
    }
}

ScannedFolder FolderScanner::look(const FileURL &folder)
{
    ScannedFolder scanned;
    scanned.url = folder;
    QList<FolderEntry> entries;
    scanned.isWhole = listWatched(folder, entries);
    Names names;
    if (folder != _request.root)
        names.below = folder.path().sliced(_request.root.pathLength() + 1) % u'/';
    sortOut(std::move(entries), scanned, names);
    measure(scanned, names);
    return scanned;
}

// Watched first and listed then, so that nothing happens unseen in between.
bool FolderScanner::listWatched(const FileURL &folder, QList<FolderEntry> &entries)
{
    bool isWatchedNow = isWatched(folder);
    std::error_code error = _operations.list(folder.path(), entries);
    if (!error && !isWatchedNow) {
        // It may have come between the two.
        isWatchedNow = isWatched(folder);
        entries.clear();
        error = _operations.list(folder.path(), entries);
    }
    if (!error && !isWatchedNow)
        _scan.isWatchMissing = true;
    return !error;
}

bool FolderScanner::isWatched(const FileURL &folder)
{
    // Whoever watches gives up once one is missing; asking for ten thousand more changes nothing.
    if (_scan.isWatchMissing)
        return true;
    const auto result = _watches->add(folder);
    if (result == FolderWatches::Result::LimitReached)
        _scan.isWatchMissing = true;
    return result != FolderWatches::Result::Failed;
}

void FolderScanner::sortOut(QList<FolderEntry> &&entries, ScannedFolder &folder, Names &names) const
{
    for (FolderEntry &entry : entries) {
        if (entry.kind == Kind::Unknown) {
            entry.kind = _operations.status(folder.url.appendingFile(entry.name).path()).kind;
            if (entry.kind == Kind::Unknown)
                folder.isWhole = false;
            else if (entry.kind == Kind::Missing)
                folder.isChanging = true;
        }
        if (entry.kind == Kind::Folder && !isHeldBack(entry.name))
            folder.folders.append(entry.name);
        else if (entry.kind == Kind::File)
            addFile(entry.name, names);
    }
    folder.folders.sort();
}

void FolderScanner::addFile(const QString &name, Names &names) const
{
    if (isHiddenName(name))
        return;
    if (isSyncTemporary(name)) {
        if (const QString behind = nameBehindDownload(name); !behind.isNull())
            names.downloads.insert(behind);
        return;
    }
    const QString behind = nameBehindPlaceholder(name);
    const QString &document = behind.isNull() ? name : behind;
    // No title begins with a dot: it is what some program keeps for itself, or writes before it gets its name.
    if (!document.startsWith(u'.') && !isCopyOfRecord(document) &&
        isLike(QString(names.below % document), _request.filter))
        names.documents.push_back({document, name, !behind.isNull()});
}

void FolderScanner::measure(ScannedFolder &folder, const Names &names) const
{
    auto documents = names.documents;
    // A real file stands before its placeholder and wins.
    std::sort(documents.begin(), documents.end(), [](const auto &one, const auto &other) {
        return std::tie(one.name, one.isPlaceholder) < std::tie(other.name, other.isPlaceholder);
    });
    const auto end = std::unique(documents.begin(), documents.end(),
                                 [](const auto &one, const auto &other) { return one.name == other.name; });
    folder.files.reserve(static_cast<size_t>(end - documents.begin()));
    for (auto document = documents.begin(); document != end && !_isCancelled; ++document) {
        const FileURL url = folder.url.appendingFile(document->fileName);
        const FileStatus status = _operations.status(url.path());
        if (status.kind == Kind::Unknown)
            folder.isWhole = false;
        else if (status.kind == Kind::Missing)
            folder.isChanging = true;
        if (status.kind != Kind::File)
            continue;
        ScannedFile file;
        file.name = document->name;
        file.isPlaceholder = document->isPlaceholder;
        file.size = file.isPlaceholder ? 0 : status.stamp.size;
        file.modified = status.stamp.modified;
        file.isDownloading = file.isPlaceholder && names.downloads.contains(file.name);
        file.isConflictCopy = isConflictCopy(file.name);
        folder.files.push_back(std::move(file));
    }
}

} // namespace cvtamber
