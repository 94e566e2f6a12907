// SPDX-License-Identifier: GPL-3.0-or-later
// What a busy store does: each operation is in the journal before it begins and when it is done.
#include "crashes/BusyStore.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// "Text 17 230.tamber" is document 17, which got its title in operation 230.
int documentOf(const TamberDocument &file)
{
    return file.name().section(u' ', 1, 1).toInt();
}

QString titleOf(int document, int number)
{
    return u"Text %1 %2"_s.arg(QString::number(document), QString::number(number));
}

} // namespace

void BusyStore::addUser()
{
    const int number = ++_lastNumber;
    _journal.begin(number, u"add user"_s, {{u"value"_s, nameOfUser(number)}});
    const auto registry = _store.storage->activeUsers();
    registry->addUserWithFirstName(u"First %1"_s.arg(number), u"Last %1"_s.arg(number),
                                   u"User %1"_s.arg(number));
    // Its record is written in the background.
    const User user = registry->users().back();
    addAlone(number, {user}, [this, user] { return !_store.coordinator.isBusy(user->fileURL()); });
    _work.back().place = pathOf(user->url());
}

void BusyStore::renameUser(const User &user)
{
    const int number = ++_lastNumber;
    _journal.begin(number, u"write"_s, {{u"at"_s, pathOf(user->url())}, {u"value"_s, nameOfUser(number)}});
    user->setFirstName(u"First %1"_s.arg(number));
    user->setLastName(u"Last %1"_s.arg(number));
    user->setDisplayName(u"User %1"_s.arg(number));
    addAlone(number, {user}, [this, user] { return !_store.coordinator.isBusy(user->fileURL()); });
}

void BusyStore::archive(const User &user)
{
    const int number = ++_lastNumber;
    const auto from = user->users();
    const auto active = _store.storage->activeUsers();
    const auto to = from == active ? _store.storage->archivedUsers() : active;
    const FileURL place = to->url().appendingDirectory(user->folder());
    _journal.begin(number, u"move"_s, {{u"at"_s, pathOf(user->url())}, {u"to"_s, pathOf(place)}});
    from->moveUser(user, to);
    // At once, or when what is under way in the background is done.
    addAlone(number, {user}, [to, place] { return to->findUserWithURL(place) != nullptr; });
    _work.back().users.append(pathOf(place));
}

void BusyStore::deleteUser(const User &user)
{
    const int number = ++_lastNumber;
    _journal.begin(number, u"delete"_s, {{u"at"_s, pathOf(user->url())}});
    const auto registry = user->users();
    registry->deleteUser(user);
    addAlone(number, {user}, [registry, user] {
        const auto &users = registry->users();
        return std::find(users.begin(), users.end(), user) == users.end();
    });
}

void BusyStore::addFolder(const User &user)
{
    const int number = ++_lastNumber;
    const QString name = u"Folder %1"_s.arg(number);
    _journal.begin(number, u"add folder"_s, {{u"at"_s, pathOf(user->url())}, {u"value"_s, name}});
    const Folder folder = user->addFolderWithName(name);
    if (!folder)
        return _journal.failed(number, u"no folder"_s);
    const FileURL record = folder->url().appendingFile(u"folder.dat"_s);
    addAlone(number, {user}, [this, record] { return !_store.coordinator.isBusy(record); });
    _work.back().place = pathOf(folder->url());
}

void BusyStore::renameFolder(const User &user, const Folder &folder)
{
    const int number = ++_lastNumber;
    const QString name = u"Folder %1"_s.arg(number);
    _journal.begin(number, u"write"_s, {{u"at"_s, pathOf(folder->url())}, {u"value"_s, name}});
    folder->rename(name);
    const FileURL record = folder->url().appendingFile(u"folder.dat"_s);
    addAlone(number, {user}, [this, record] { return !_store.coordinator.isBusy(record); });
}

void BusyStore::moveFolder(const User &user, const Folder &folder)
{
    const User target = anyUser();
    if (target == user || !isIdle(target))
        return;
    const int number = ++_lastNumber;
    const FileURL place = target->url().appendingDirectory(folder->storageName());
    _journal.begin(number, u"move"_s, {{u"at"_s, pathOf(folder->url())}, {u"to"_s, pathOf(place)}});
    user->moveFolder(folder, target);
    addAlone(number, {user, target},
             [target, place] { return target->indexOfFolderWithURL(place) != NotFound; });
}

void BusyStore::deleteFolder(const User &user, const Folder &folder)
{
    const int number = ++_lastNumber;
    _journal.begin(number, u"delete"_s, {{u"at"_s, pathOf(folder->url())}});
    user->deleteFolder(folder);
    addAlone(number, {user}, [user, folder] { return user->indexOfFolder(folder) == NotFound; });
}

void BusyStore::addFile(const User &user, const Container &container)
{
    const int number = ++_lastNumber;
    const QString title = titleOf(number, number);
    const QString place = pathOf(container->url().appendingFile(title + u".tamber"_s));
    _journal.begin(number, u"write"_s, {{u"at"_s, place}, {u"value"_s, versionIn(textOf(number, number))}});
    const auto isSaved = std::make_shared<bool>(false);
    container->addFileWithName(title, textOf(number, number),
                               [this, isSaved, number](const FileResult &result) {
                                   *isSaved = true;
                                   if (!result.ok())
                                       _journal.failed(number, result.message);
                               });
    add(number, {place}, {user}, [isSaved] { return *isSaved; });
}

void BusyStore::saveFile(const User &user, const File &file)
{
    const int number = ++_lastNumber;
    const QString text = textOf(documentOf(*file), number);
    const QString place = pathOf(file->url());
    _journal.begin(number, u"write"_s, {{u"at"_s, place}, {u"value"_s, versionIn(text)}});
    const auto isSaved = std::make_shared<bool>(false);
    const auto heard = [this, number, file](const QString &what, bool success) {
        if (!success)
            _journal.failed(number, what + u": "_s + file->lastResult().message);
    };
    file->openWithCompletionHandler([=](bool opened) {
        heard(u"open"_s, opened);
        file->setText(text);
        const auto saved = [=](bool success) {
            heard(u"save"_s, success);
            file->closeWithCompletionHandler([=](bool closed) {
                heard(u"close"_s, closed);
                *isSaved = true;
            });
        };
        file->saveToURL(file->url(), Document::SaveOperation::ForOverwriting, saved);
    });
    add(number, {place}, {user}, [isSaved] { return *isSaved; });
}

void BusyStore::renameFile(const User &user, const Container &container, const File &file)
{
    const int number = ++_lastNumber;
    const QString title = titleOf(documentOf(*file), number);
    const FileURL place = container->url().appendingFile(title + u".tamber"_s);
    const QStringList items{pathOf(file->url()), pathOf(place)};
    _journal.begin(number, u"move"_s, {{u"at"_s, items.first()}, {u"to"_s, items.last()}});
    container->renameFileAtIndex(container->indexOfFile(file), title);
    add(number, items, {user},
        [container, place] { return container->indexOfFileWithURL(place) != NotFound; });
}

void BusyStore::moveFile(const User &user, const Container &container, const File &file)
{
    const User other = anyUser();
    const Container target = anyContainer(other);
    if (!isOpenToWork(other) || target == container)
        return;
    const int number = ++_lastNumber;
    const FileURL place = target->url().appendingFile(file->name());
    const QStringList items{pathOf(file->url()), pathOf(place)};
    _journal.begin(number, u"move"_s, {{u"at"_s, items.first()}, {u"to"_s, items.last()}});
    container->moveFile(file, target);
    add(number, items, {user, other},
        [target, place] { return target->indexOfFileWithURL(place) != NotFound; });
}

void BusyStore::deleteFile(const User &user, const Container &container, const File &file)
{
    const int number = ++_lastNumber;
    const QString place = pathOf(file->url());
    _journal.begin(number, u"delete"_s, {{u"at"_s, place}});
    container->deleteFile(file);
    add(number, {place}, {user}, [container, file] { return container->indexOfFile(file) == NotFound; });
}

} // namespace cvtamber
