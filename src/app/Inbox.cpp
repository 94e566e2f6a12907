// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Inbox.h"

#include "app/StoreNotices.h"
#include "app/TextImport.h"
#include "base/Locations.h"
#include "base/PathBytes.h"
#include "base/SystemLog.h"
#include "base/TaskRunner.h"
#include "base/VisibleText.h"
#include "store/FileCoordinator.h"
#include "store/StoreNames.h"
#include "store/TamberStorage.h"
#include "ui/Texts.h"

#include <filesystem>
#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

constexpr int MostNamesTried = 100;

// The name without links in it; the path itself where there is no such file.
FileURL withoutLinks(const QString &path)
{
    // Qt cannot name what is not UTF-8.
    std::error_code error;
    const auto resolved = std::filesystem::canonical(bytesOfPath(path).toStdString(), error);
    return FileURL::file(error ? path : pathOfBytes(QByteArray::fromStdString(resolved.string())));
}

// Any thread. A file that is too large comes without bytes and with its size in the stamp.
ReadResult readOriginal(const StoreDisk &disk, const QString &path)
{
    ReadResult result;
    const FileURL url = withoutLinks(path);
    const FileStatus status = disk.status(url);
    result.stamp = status.stamp;
    if (status.kind == FileStatus::Kind::File && status.stamp.size > LargestImport)
        return result;
    if (status.kind == FileStatus::Kind::File || status.kind == FileStatus::Kind::Missing ||
        status.kind == FileStatus::Kind::Unknown)
        return disk.read(url);
    result.outcome = FileResult::Outcome::Failed;
    result.message = u"it is not a file"_s;
    return result;
}

// The name of a copy: one that the Inbox can hold whatever the original is called. The title that an import gets from it
// is the original's.
QString nameOfCopy(const QString &name, int attempt)
{
    const FileURL url = FileURL::file(u'/' % name);
    int asked = 0;
    const QString title =
        nextFreeTitle(url.nameWithoutExtension(), [&](const QString &) { return ++asked < attempt; });
    const QString extension = url.pathExtension();
    if (extension.isEmpty())
        return title.contains(u'.') ? QString(title % u".txt"_s) : title;
    const bool fits = extension.toUtf8().size() <= DocumentExtension.size();
    return title % u'.' % (fits ? extension : u"txt"_s);
}

} // namespace

Inbox::Inbox(StoreContext &store, TaskRunner &tasks, Locations &locations)
    : _store(store)
    , _tasks(tasks)
    , _folder(folder(locations))
{}

Inbox::~Inbox() = default;

FileURL Inbox::folder(Locations &locations)
{
    return TamberStorage::localStorageURL(locations).appendingDirectory(u"Inbox"_s);
}

void Inbox::removeAll(StoreContext &store, Locations &locations)
{
    const FileURL inbox = folder(locations);
    // What a link leads to was not put there by this program.
    if (!store.disk.isFolder(inbox))
        return;
    const StoreDisk::Listing listing = store.disk.list(inbox);
    for (const StoreDisk::Entry &entry : listing.entries) {
        const FileURL url = entry.kind == FileStatus::Kind::Folder ? inbox.appendingDirectory(entry.name)
                                                                   : inbox.appendingFile(entry.name);
        store.log.info(loggedURL(url));
        store.coordinator.remove(url, {});
    }
    store.coordinator.sweep(inbox, listing.leftovers);
}

void Inbox::handOver(const QStringList &paths)
{
    _waiting.insert(_waiting.end(), paths.begin(), paths.end());
    copyNext();
}

void Inbox::giveOut()
{
    while (!_copies.empty() && _receiver.isReady && _receiver.isReady()) {
        const FileURL copy = std::move(_copies.front());
        _copies.pop_front();
        _receiver.take(copy);
    }
}

void Inbox::copyNext()
{
    if (_copying || _waiting.empty())
        return;
    _copying = std::make_shared<const QString>(std::move(_waiting.front()));
    _waiting.pop_front();
    const auto read = std::make_shared<ReadResult>();
    _tasks.run([read, path = *_copying, &disk = _store.disk] { *read = readOriginal(disk, path); },
               [this, read, copying = std::weak_ptr(_copying)] {
                   if (!copying.expired())
                       fileRead(*read);
               });
}

void Inbox::fileRead(const ReadResult &read)
{
    const QString name = FileURL::file(*_copying).lastPathComponent();
    const QString shown = visibleText(name);
    if (std::max<qint64>(read.stamp.size, read.bytes.size()) > LargestImport)
        refuse(localizedFormat("%@ is larger than 5 MB and was not opened.", shown));
    else if (!read.ok())
        refuse(localizedFormat("%@ could not be opened.", shown), read);
    else if (const FileResult made = _store.disk.makeFolders(_folder); !made.ok())
        refuse(localizedFormat("%@ could not be taken over.", shown), made);
    else
        write(name, read.bytes, 1);
}

void Inbox::write(const QString &name, const QByteArray &bytes, int attempt)
{
    const FileURL copy = _folder.appendingFile(nameOfCopy(name, attempt));
    _store.coordinator.create(
        copy, bytes,
        [this, name, bytes, attempt, copy, copying = std::weak_ptr(_copying)](const WriteResult &result) {
            if (copying.expired())
                return;
            if (result.outcome == FileResult::Outcome::AlreadyExists && attempt < MostNamesTried) {
                write(name, bytes, attempt + 1);
                return;
            }
            if (!result.ok()) {
                refuse(localizedFormat("%@ could not be taken over.", visibleText(name)), result);
                return;
            }
            _copies.push_back(copy);
            copyEnded();
        });
}

void Inbox::refuse(const QString &sentence, const FileResult &result)
{
    if (!result.ok())
        _store.log.error(result.message);
    if (_receiver.refused)
        _receiver.refused(withReason(sentence, result.message));
    copyEnded();
}

void Inbox::copyEnded()
{
    _copying.reset();
    giveOut();
    copyNext();
    if (!isCopying() && _receiver.copied)
        _receiver.copied();
}

} // namespace cvtamber
