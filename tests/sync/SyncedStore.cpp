// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/SyncedStore.h"

#include "support/StoreListing.h"

#include <QCryptographicHash>
#include <QJsonArray>

namespace cvtamber {

using namespace Qt::StringLiterals;

SyncedStore::SyncedStore(RunningStore &store, Tell tell)
    : _store(store)
    , _tell(std::move(tell))
{}

SyncedStore::~SyncedStore() = default;

bool SyncedStore::open()
{
    const FileURL root = TamberStorage::ubiquotusStorageURL(*_store.cloud);
    if (root.isNil())
        return false;
    _store.load(root.path());
    if (!_store.storage || !_store.storage->isUbiquitous())
        return false;
    for (const auto &registry : {_store.storage->activeUsers(), _store.storage->archivedUsers()}) {
        registry->addObserver(*this);
        registry->startQuery();
    }
    return true;
}

QString SyncedStore::hashOf(const QByteArray &text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha1).toHex());
}

// As the list of users does.
void SyncedStore::dataChangedForUser(const User &user)
{
    if (user)
        user->reloadDataWitCompletionHandler({});
}

void SyncedStore::storeProblem(const StoreProblem &problem)
{
    _tell({{u"problem"_s, int(problem.what)},
           {u"at"_s, pathOf(problem.url)},
           {u"why"_s, problem.why},
           {u"kept"_s, pathOf(problem.kept)}});
}

SyncedStore::Place SyncedStore::find(const QString &path) const
{
    Place place;
    const QStringList parts = path.split(u'/');
    if (parts.size() < 2)
        return place;
    const auto registry = parts[0] == _store.storage->activeUsers()->url().lastPathComponent()
                              ? _store.storage->activeUsers()
                              : _store.storage->archivedUsers();
    place.user = registry->findUserWithURL(registry->url().appendingDirectory(parts[1]));
    if (!place.user)
        return place;
    place.container = place.user;
    const bool isInFolder = parts.size() > 3 || (parts.size() == 3 && !parts[2].contains(u'.'));
    if (isInFolder) {
        place.folder = place.user->folderAtIndex(
            place.user->indexOfFolderWithURL(place.user->url().appendingDirectory(parts[2])));
        place.container = place.folder;
    }
    if (place.container && parts.last().contains(u'.')) {
        const auto index =
            place.container->indexOfFileWithURL(place.container->url().appendingFile(parts.last()));
        if (index != NotFound)
            place.file = place.container->files()[static_cast<size_t>(index)];
    }
    return place;
}

QStringList SyncedStore::listedIn(const Container &container) const
{
    QStringList paths;
    for (const File &file : container->files())
        paths.append(pathOf(file->url()));
    return paths;
}

QString SyncedStore::pathOf(const FileURL &url) const
{
    return url.isNil() ? QString() : url.path().mid(_store.storage->storeURL().pathLength() + 1);
}

void SyncedStore::answer(const QJsonObject &command, bool ok, QJsonObject details)
{
    details.insert(u"id"_s, command[u"id"_s]);
    details.insert(u"ok"_s, ok);
    _tell(details);
}

void SyncedStore::answerAtRest(const QJsonObject &command, const QJsonObject &details)
{
    _store.whenAtRest([this, command, details] { answer(command, true, details); });
}

void SyncedStore::carryOut(const QJsonObject &command)
{
    const QString what = command[u"do"_s].toString();
    if (what == u"list"_s)
        list(command);
    else if (what == u"rest"_s)
        rest(command);
    else if (!workOnUser(what, command) && !workOnFolder(what, command) && !workOnFile(what, command))
        answer(command, false, {{u"why"_s, u"it is not listed"_s}});
}

void SyncedStore::list(const QJsonObject &command)
{
    QJsonObject lines;
    for (const auto &[key, value] : listingOf(*_store.storage, _store.disk)) {
        const bool isText = key.contains(u".tamber"_s) && value != u"(unreadable)"_s;
        const QString shown = isText ? hashOf(value.toUtf8()) : value;
        lines.insert(key, shown.isNull() ? QJsonValue() : QJsonValue(shown));
    }
    answer(command, true, {{u"list"_s, lines}});
}

void SyncedStore::rest(const QJsonObject &command)
{
    _store.whenAtRest([this, command] {
        QJsonArray unsaved;
        for (const auto &[owner, item] : _store.problems.unsaved())
            unsaved.append(pathOf(item.url));
        answer(command, true, {{u"unsaved"_s, unsaved}});
    });
}

} // namespace cvtamber
