// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/modelcheck/CloudRun.h"

#include "base/HiddenFile.h"
#include "store/CloudNames.h"
#include "store/StoreNames.h"

#include <QDirIterator>

#include <algorithm>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

constexpr int Steps = 60;

bool isRecord(const QString &place)
{
    return place.endsWith(u"/user.txt"_s) || place.endsWith(u"/folder.dat"_s);
}

} // namespace

CloudRun::CloudRun(quint32 seed, Kind kind)
    : _kind(kind)
    , _bench(seed, StoreRig::Place::Cloud)
{}

QString CloudRun::run()
{
    for (int i = 0; i < Steps; ++i) {
        step();
        numberDirectories();
        _bench.someBackgroundWork();
        if (_kind == Kind::Failing && _bench.random.oneIn(4))
            disturb();
        if (!_bench.random.oneIn(15) && i + 1 < Steps)
            continue;
        QString fault = faultAtRest();
        if (!fault.isNull())
            return fault;
    }
    return {};
}

void CloudRun::step()
{
    using Step = void (CloudRun::*)();
    static const std::vector<Step> steps{
        &CloudRun::changeUsers, &CloudRun::changeFolders, &CloudRun::changeFiles, &CloudRun::changeFiles,
        &CloudRun::syncAdds,    &CloudRun::syncAdds,      &CloudRun::syncRemoves, &CloudRun::syncChanges};
    // Nothing is synced where the folder is not.
    const auto step = _bench.random.below(_bench.isAway() ? 4 : steps.size());
    if (_bench.random.oneIn(3) && !_bench.isAway())
        report(false);
    else
        (this->*steps[static_cast<size_t>(step)])();
}

void CloudRun::disturb()
{
    if (_bench.random.oneIn(3))
        _bench.isAway() ? _bench.mount() : _bench.unmount();
    else if (_bench.random.oneIn(3) && !_bench.isAway())
        startAnew();
    else
        _bench.failCalls(20);
}

void CloudRun::startAnew()
{
    _bench.startAnew();
    _seenDownloaded.clear();
}

void CloudRun::changeUsers()
{
    const auto registries = _bench.registries();
    const auto from = _bench.random.pick(registries);
    if (from->users().empty() || _bench.random.oneIn(4)) {
        from->addUserWithFirstName(u"Anna"_s, u"Berg"_s, _bench.freshText());
        return tell(u"add user to"_s, _bench.placeOf(from->url()));
    }
    const User user = _bench.random.pick(from->users());
    const QString place = _bench.placeOf(user->url());
    if (!_bench.isFree(user->url()) || !_bench.random.oneIn(2))
        return;
    if (_bench.random.oneIn(3)) {
        tell(u"delete user"_s, place);
        _bench.forgiveAll(place);
        _bench.setDying(place);
        from->deleteUser(user);
    } else {
        tell(u"move user"_s, place);
        _bench.reserve(place);
        from->moveUser(user, registries[from == registries[0] ? 1 : 0]);
    }
}

void CloudRun::changeFolders()
{
    const auto users = _bench.users();
    if (users.empty())
        return;
    const User user = _bench.random.pick(users);
    if (!_bench.isFree(user->url()))
        return;
    if (user->foldersCount() == 0 || _bench.random.oneIn(3)) {
        user->addFolderWithName(_bench.freshText());
        return tell(u"add folder to"_s, _bench.placeOf(user->url()));
    }
    const auto folder = _bench.random.pick(user->folders());
    const QString place = _bench.placeOf(folder->url());
    const User target = _bench.random.pick(users);
    if (_bench.random.oneIn(2)) {
        tell(u"delete folder"_s, place);
        _bench.forgiveAll(place);
        _bench.setDying(place);
        user->deleteFolder(folder);
    } else if (target != user && _bench.isFree(target->url()) &&
               !_bench.rig.disk.exists(target->url().appendingDirectory(folder->storageName()))) {
        tell(u"move folder"_s, place);
        _bench.reserve(place);
        _bench.reserve(_bench.placeOf(target->url()) + u'/' + folder->storageName());
        user->moveFolder(folder, target);
    }
}

void CloudRun::changeFiles()
{
    const auto containers = _bench.containers();
    if (containers.empty())
        return;
    const Container container = _bench.random.pick(containers);
    if (container->files().empty() || _bench.random.oneIn(3))
        return addFile(container);
    const File file = _bench.random.pick(container->files());
    if (!_bench.isFree(file->url()))
        return;
    if (!_bench.random.oneIn(3))
        return renameOrMove(container, file);
    tell(u"delete"_s, _bench.placeOf(file->url()));
    _bench.forgive(_bench.textAt(file->url()));
    _bench.setDying(_bench.placeOf(file->url()));
    container->deleteFile(file);
}

void CloudRun::addFile(const Container &container)
{
    const QString title = _bench.anyTitle();
    const QString place = _bench.placeOf(container->url().appendingFile(documentFileName(title)));
    // The cloud does not tell a document that takes the place of another between two reports from that one.
    if (_bench.isReserved(place))
        return;
    const QString text = _bench.freshText();
    tell(u"add "_s + text, place);
    container->addFileWithName(title, text, [this, text, place](const FileResult &result) {
        if (result.ok())
            _bench.owe(text, place);
    });
}

void CloudRun::renameOrMove(const Container &container, const File &file)
{
    const Container target = _bench.random.pick(_bench.containers());
    if (target == container || _bench.random.oneIn(2)) {
        const QString title = _bench.anyTitle();
        tell(u"rename to "_s + title.left(20), _bench.placeOf(file->url()));
        return container->renameFileAtIndex(container->indexOfFile(file), title);
    }
    const FileURL to = target->url().appendingFile(file->name());
    if (!_bench.isFree(to) || _bench.rig.disk.exists(to) || !_bench.rig.disk.exists(file->url()) ||
        !_bench.rig.disk.isFolder(target->url()) || isOwedAt(file->url()))
        return;
    tell(u"move to "_s + _bench.placeOf(to), _bench.placeOf(file->url()));
    _bench.reserve(_bench.placeOf(file->url()));
    _bench.reserve(_bench.placeOf(to));
    container->moveFile(file, target);
}

// A text waits to be saved in that place: whoever takes the place between two reports is not told of.
bool CloudRun::isOwedAt(const FileURL &url) const
{
    const auto &unsaved = _bench.rig.problems.unsaved();
    return std::any_of(unsaved.begin(), unsaved.end(),
                       [&](const auto &entry) { return entry.second.url == url; });
}

void CloudRun::syncAdds()
{
    const QString user = anyUserPlace();
    if (!_bench.isFree(_bench.rig.directory(user)))
        return;
    const QString folder = _bench.random.oneIn(2) ? user : QString(user % u'/' % uuid());
    QStringList places{folder + u'/' + documentFileName(_bench.anyTitle())};
    if (_bench.random.oneIn(2))
        places.append(user + u"/user.txt"_s);
    if (folder != user && !_bench.random.oneIn(3))
        places.append(folder + u"/folder.dat"_s);
    if (_bench.random.oneIn(4))
        places.append(folder + u'/' + conflictCopyName(u"Letter.tamber"_s, 1));
    for (const QString &place : places) {
        // A record that takes the place of another between two reports is not told.
        const FileURL url = _bench.rig.file(place);
        const auto &told = _bench.rig.cloud.items();
        const bool isTold =
            std::any_of(told.begin(), told.end(), [&](const MetadataItem &item) { return item.url == url; });
        if (!_bench.textAt(url).isNull() || (isRecord(place) && isTold))
            continue;
        bring(place, _bench.freshText() + (isRecord(place) ? u"\n\n\n"_s : QString()));
    }
}

void CloudRun::bring(const QString &place, const QString &text)
{
    tell(u"sync brings "_s + text.trimmed(), place);
    _bench.rig.put(place, text.toUtf8());
    if (!isRecord(place))
        _bench.owe(text, place);
    if (_bench.random.oneIn(2))
        replaceByPlaceholder(place);
}

void CloudRun::replaceByPlaceholder(const QString &place)
{
    const FileURL url = _bench.rig.file(place);
    const QStringList names = placeholderNames(url.lastPathComponent());
    // A name that is as long as a name may be has none.
    if (!names.isEmpty())
        QFile::rename(url.path(),
                      url.deletingLastPathComponent().appendingFile(_bench.random.pick(names)).path());
}

void CloudRun::syncRemoves()
{
    const QStringList all = places();
    if (all.isEmpty())
        return;
    const QString place = _bench.random.pick(all);
    const FileURL url = _bench.rig.file(place);
    if (!_bench.isFree(url.deletingLastPathComponent()))
        return;
    tell(u"sync removes"_s, place);
    if (!isRecord(place))
        _bench.forgive(_bench.textAt(url));
    download(url);
    _bench.rig.erase(place);
}

// What was asked for is downloaded, or anything else; or a newer version is on its way.
void CloudRun::syncChanges()
{
    const auto &asked = _bench.rig.cloud.downloads();
    const QStringList all = places();
    if (all.isEmpty())
        return;
    const FileURL url = asked.isEmpty() || _bench.random.oneIn(3) ? _bench.rig.file(_bench.random.pick(all))
                                                                  : _bench.random.pick(asked);
    const QString place = _bench.placeOf(url);
    if (!_bench.isFree(url))
        return;
    if (!_bench.rig.has(place)) {
        tell(u"sync downloads"_s, place);
        return download(url);
    }
    tell(u"sync has a newer version of"_s, place);
    const QString text = _bench.freshText() + (isRecord(place) ? u"\n\n\n"_s : QString());
    if (place.endsWith(u"/user.txt"_s)) // nobody reads it again
        return replaceByPlaceholder(place);
    if (!isRecord(place)) {
        _bench.forgive(_bench.textAt(url));
        _bench.owe(text, place);
    }
    _bench.rig.put(place, text.toUtf8());
    replaceByPlaceholder(place);
    // One that comes and is downloaded between two reports is not told at all.
    report(false);
}

void CloudRun::download(const FileURL &url)
{
    for (const QString &name : placeholderNames(url.lastPathComponent()))
        QFile::rename(url.deletingLastPathComponent().appendingFile(name).path(), url.path());
}

QList<MetadataItem> CloudRun::itemsOnDisk()
{
    QList<MetadataItem> items;
    for (const QString &place : places()) {
        MetadataItem item;
        item.url = _bench.rig.file(place);
        item.isDownloaded = _bench.rig.has(place);
        item.isDownloading = !item.isDownloaded && _bench.random.oneIn(2);
        item.isUploaded = _bench.random.oneIn(2);
        item.hasUnresolvedConflicts = isConflictCopy(item.url.lastPathComponent());
        items.append(item);
    }
    return items;
}

void CloudRun::report(bool isWhole)
{
    QList<MetadataItem> &told = _bench.rig.cloud.items();
    std::set<QString> known;
    for (const MetadataItem &item : std::as_const(told))
        known.insert(_bench.placeOf(item.url));
    QList<MetadataItem> items = itemsOnDisk();
    if (!isWhole)
        items.removeIf([&](const MetadataItem &item) {
            return known.count(_bench.placeOf(item.url)) == 0 && _bench.random.oneIn(3);
        });
    _bench.random.shuffle(items);
    std::set<QString> seen;
    for (const MetadataItem &item : std::as_const(items)) {
        const QString place = _bench.placeOf(item.url);
        if (item.isDownloaded || _seenDownloaded.count(place) != 0)
            seen.insert(place);
    }
    _seenDownloaded = seen;
    told = items;
    tell(u"report"_s, QString::number(items.size()));
    _bench.rig.cloud.gather();
    _bench.rig.cloud.update();
}

QStringList CloudRun::places() const
{
    QStringList all;
    QDirIterator files(_bench.rig.root().path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const FileURL url = FileURL::file(files.next());
        const QString real = nameBehindPlaceholder(url.lastPathComponent());
        if (!isHiddenName(url.lastPathComponent()))
            all.append(
                _bench.placeOf(real.isNull() ? url : url.deletingLastPathComponent().appendingFile(real)));
    }
    std::map<QString, QString> sorted;
    for (const QString &place : std::as_const(all))
        sorted.emplace(numbered(place), place);
    all.clear();
    for (const auto &[key, place] : sorted)
        all.append(place);
    return all;
}

void CloudRun::numberDirectories()
{
    QStringList found;
    QDirIterator directories(_bench.rig.root().path(), QDir::Dirs | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
    while (directories.hasNext())
        found.append(QFileInfo(directories.next()).fileName());
    // Of one step there is at most one that the store has named.
    found.sort();
    for (const QString &name : std::as_const(found)) {
        if (!_directories.contains(name))
            _directories.append(name);
    }
}

QString CloudRun::numbered(const QString &place) const
{
    QStringList parts = place.split(u'/');
    for (QString &part : parts) {
        const qsizetype number = _directories.indexOf(part);
        if (number >= 0)
            part = u"directory %1"_s.arg(number);
    }
    return parts.join(u'/');
}

QString CloudRun::uuid()
{
    return u"%1-0000-4000-8000-%2"_s.arg(_bench.random.below(6), 8, 16, QChar(u'0'))
        .arg(_bench.random.below(2), 12, 16, QChar(u'0'));
}

QString CloudRun::anyUserPlace()
{
    return (_bench.random.oneIn(3) ? u"ArchivedUsers/"_s : u"ActiveUsers/"_s) + uuid();
}

void CloudRun::tell(const QString &what, const QString &place)
{
    _bench.story.append(what % u' ' % numbered(place));
}

StoreListing CloudRun::expected() const
{
    StoreListing listing;
    const auto value = [this](const QString &place) {
        return _bench.rig.has(place) ? QString::fromUtf8(_bench.rig.bytes(place)) : u"(unreadable)"_s;
    };
    for (const MetadataItem &item : _bench.rig.cloud.items()) {
        const QString place = _bench.placeOf(item.url);
        const QString directory = _bench.placeOf(item.url.deletingLastPathComponent());
        const QString user = place.section(u'/', 0, 1);
        const bool isInFolder = directory != user;
        if (_seenDownloaded.count(user + u"/user.txt"_s) == 0 ||
            (isInFolder && _seenDownloaded.count(directory + u"/folder.dat"_s) == 0))
            continue;
        listing.emplace(isRecord(place) ? directory : place, value(place));
    }
    return listing;
}

// Whether a folder is listed while a newer version of its record is on its way depends on when its user came.
void CloudRun::leaveOutFoldersOnTheirWay(StoreListing &listing) const
{
    std::erase_if(listing, [this](const auto &entry) {
        const QString folder = entry.first.section(u'/', 0, 2).remove(u" (again)"_s);
        return entry.first.count(u'/') > 1 && !folder.endsWith(u".tamber"_s) &&
               !_bench.rig.has(folder + u"/folder.dat"_s);
    });
}

QString CloudRun::faultInLists(const QString &when)
{
    StoreListing found = listingOf(*_bench.storage, _bench.rig.disk);
    StoreListing wanted = expected();
    leaveOutFoldersOnTheirWay(found);
    leaveOutFoldersOnTheirWay(wanted);
    // What could not be deleted is there and not listed until the next start.
    if (_kind == Kind::Failing)
        std::erase_if(wanted, [&](const auto &entry) {
            return found.count(entry.first) == 0 && _bench.isDying(entry.first);
        });
    for (auto &[place, text] : wanted) {
        // A user's record is not read again, so that only where it is counts.
        const auto listed = found.find(place);
        if (listed == found.end() || place.endsWith(u".tamber"_s))
            continue;
        const bool isUser = place.count(u'/') == 1;
        // Nor is a folder's, where the disk has refused it.
        text = isUser || _kind == Kind::Failing ? listed->second : text.section(u'\n', 0, 0);
    }
    QString fault = difference(found, wanted);
    for (qsizetype i = 0; i < _directories.size(); ++i)
        fault.replace(_directories[i], u"directory %1"_s.arg(i));
    return fault.isEmpty() ? QString() : QString(when % u":\n" % fault);
}

QString CloudRun::faultAtRest()
{
    _bench.story.append(u"rest"_s);
    _bench.endFailures();
    if (_bench.isAway())
        _bench.mount();
    if (_bench.isAway())
        return u"written to while it was not there: "_s + _bench.rig.names().join(u", "_s);
    for (int i = 0; i < 3; ++i) {
        _bench.settleAll();
        report(true);
    }
    _bench.settleAll();
    const QStringList lost = _bench.lostTexts();
    if (!lost.isEmpty())
        return u"lost: "_s + lost.join(u", "_s);
    QString fault = faultInLists(u"lists, against what was reported"_s);
    if (!fault.isNull())
        return fault;
    _bench.atRest();
    _bench.open();
    _seenDownloaded.clear();
    report(true);
    _bench.settleAll();
    return faultInLists(u"opened anew, against what was reported"_s);
}

} // namespace cvtamber
