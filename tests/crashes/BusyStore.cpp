// SPDX-License-Identifier: GPL-3.0-or-later
#include "crashes/BusyStore.h"

#include <QRegularExpression>

#include <algorithm>

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr size_t MostWork = 6;
constexpr size_t MostUsers = 4;
constexpr StoreIndex MostFolders = 3;
constexpr size_t MostFiles = 6;
constexpr auto TickTime = 1ms;

} // namespace

BusyStore::BusyStore(RunningStore &store, Journal &journal, quint32 seed, int firstNumber)
    : _store(store)
    , _journal(journal)
    , _random(seed)
    , _lastNumber(firstNumber)
{}

QString BusyStore::nameOfUser(int number)
{
    return u"First %1|Last %1|User %1"_s.arg(number);
}

QString BusyStore::textOf(int document, int version)
{
    const QString ends =
        u"document %1 version %2\n"_s.arg(QString::number(document), QString::number(version));
    // From nothing to some 16 KB.
    return ends + u"Zeile für Zeile\n"_s.repeated(version * 37 % 1000) + ends;
}

QString BusyStore::versionIn(const QString &text)
{
    static const QRegularExpression start(u"^document (\\d+) version (\\d+)\n"_s);
    const auto match = start.match(text);
    const int document = match.captured(1).toInt();
    const int version = match.captured(2).toInt();
    if (!match.hasMatch() || text != textOf(document, version))
        return u"torn, %1 characters: %2"_s.arg(QString::number(text.size()),
                                                text.first(std::min<qsizetype>(text.size(), 60)));
    return u"%1.%2"_s.arg(QString::number(document), QString::number(version));
}

void BusyStore::tick()
{
    for (size_t number = 0; number < _work.size();) {
        // What is only scheduled at first is not busy before the next turn of the loop.
        if (++_work[number].ticks < 3 || !_work[number].isDone()) {
            ++number;
            continue;
        }
        _journal.done(_work[number].number, {{u"place"_s, _work[number].place}});
        _work.erase(_work.begin() + static_cast<std::ptrdiff_t>(number));
    }
    for (int tries = 0; tries < 3 && _work.size() < MostWork; ++tries)
        startSomething();
    _store.loop.performAfter(TickTime, [this] { tick(); });
}

void BusyStore::startSomething()
{
    const size_t users =
        _store.storage->activeUsers()->users().size() + _store.storage->archivedUsers()->users().size();
    if (users < 2 || (users < MostUsers && oneIn(20)))
        return addUser();
    const User user = anyUser();
    if (!isOpenToWork(user))
        return;
    if (isIdle(user)) {
        // A kill can leave a folder without its record, and such a folder cannot be deleted.
        if (const Folder folder = namelessFolder(user))
            return renameFolder(user, folder);
        if (oneIn(8))
            return workOnAllOf(user, users == MostUsers);
    }
    if (user->foldersCount() < MostFolders && oneIn(10))
        return addFolder(user);
    workOnFile(user, anyContainer(user));
}

void BusyStore::workOnAllOf(const User &user, bool isOneTooMany)
{
    const Folder folder = anyFolder(user);
    switch (_random.bounded(folder ? 6 : 3)) {
    case 0:
        return archive(user);
    case 1:
        return renameUser(user);
    case 2:
        return isOneTooMany && oneIn(3) ? deleteUser(user) : archive(user);
    case 3:
        return moveFolder(user, folder);
    case 4:
        return deleteFolder(user, folder);
    default:
        return renameFolder(user, folder);
    }
}

void BusyStore::workOnFile(const User &user, const Container &container)
{
    const File file = anyFile(container);
    const bool isFull = container->files().size() >= MostFiles;
    if (!file || (!isFull && oneIn(3)))
        return addFile(user, container);
    switch (_random.bounded(5)) {
    case 0:
        return renameFile(user, container, file);
    case 1:
        return moveFile(user, container, file);
    case 2:
        return isFull ? deleteFile(user, container, file) : saveFile(user, file);
    default:
        return saveFile(user, file);
    }
}

void BusyStore::add(int number, const QStringList &items, const std::vector<User> &users,
                    std::function<bool()> isDone)
{
    QStringList places;
    for (const User &user : users)
        places.append(pathOf(user->url()));
    _work.push_back({number, items, places, false, std::move(isDone), {}, 0});
}

void BusyStore::addAlone(int number, const std::vector<User> &users, std::function<bool()> isDone)
{
    add(number, {}, users, std::move(isDone));
    _work.back().isAloneWithUsers = true;
}

bool BusyStore::isFree(const QString &item) const
{
    return std::none_of(_work.begin(), _work.end(),
                        [&](const Work &work) { return work.items.contains(item); });
}

bool BusyStore::isOpenToWork(const User &user) const
{
    const QString place = pathOf(user->url());
    return std::none_of(_work.begin(), _work.end(), [&](const Work &work) {
        return work.isAloneWithUsers && work.users.contains(place);
    });
}

bool BusyStore::isIdle(const User &user) const
{
    const QString place = pathOf(user->url());
    return std::none_of(_work.begin(), _work.end(),
                        [&](const Work &work) { return work.users.contains(place); });
}

BusyStore::User BusyStore::anyUser()
{
    std::vector<User> users = _store.storage->activeUsers()->users();
    const auto &archived = _store.storage->archivedUsers()->users();
    users.insert(users.end(), archived.begin(), archived.end());
    return users[static_cast<size_t>(_random.bounded(static_cast<int>(users.size())))];
}

BusyStore::Container BusyStore::anyContainer(const User &user)
{
    const Folder folder = oneIn(2) ? nullptr : anyFolder(user);
    return folder ? Container(folder) : Container(user);
}

BusyStore::File BusyStore::anyFile(const Container &container)
{
    const auto &files = container->files();
    if (files.empty())
        return nullptr;
    const File file = files[static_cast<size_t>(_random.bounded(static_cast<int>(files.size())))];
    return isFree(pathOf(file->url())) ? file : nullptr;
}

BusyStore::Folder BusyStore::anyFolder(const User &user)
{
    const auto count = static_cast<int>(user->foldersCount());
    return count == 0 ? nullptr : user->folderAtIndex(_random.bounded(count));
}

BusyStore::Folder BusyStore::namelessFolder(const User &user)
{
    const auto &folders = user->folders();
    const auto found = std::find_if(folders.begin(), folders.end(),
                                    [](const Folder &folder) { return folder->name().isNull(); });
    return found == folders.end() ? nullptr : *found;
}

QString BusyStore::pathOf(const FileURL &url) const
{
    return url.path().mid(_store.storage->storeURL().pathLength() + 1);
}

} // namespace cvtamber
