// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/modelcheck/StoreBench.h"

#include "base/HiddenFile.h"
#include "store/CloudNames.h"
#include "store/StoreNames.h"

#include <QDirIterator>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

QString textOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void addDocuments(StoreListing &listing, const QString &place, const QDir &directory)
{
    for (const QString &name : directory.entryList({u"*.tamber"_s}, QDir::Files))
        listing.emplace(QString(place % u'/' % name), textOf(directory.filePath(name)));
}

const QStringList &titles()
{
    static const QStringList list{u"Letter"_s,        u"letter"_s,     u"LETTER"_s,     u"Letter 2"_s,
                                  u"../up"_s,         u"a/b"_s,        u".hidden"_s,    u""_s,
                                  u"Untitled"_s,      u"x\ny"_s,       u"\u00c4rger"_s, u"A\u0308rger"_s,
                                  u"a.tamber"_s,      u"folder.dat"_s, u"user.txt"_s,   u"."_s,
                                  QString(300, u'l'), u"Diary"_s,      u"Shopping"_s,   u"-"_s};
    return list;
}

// In memory where the system has a place for that: thousands of syncs of a real disk take minutes.
QString quickFolder()
{
    const QFileInfo memory(u"/dev/shm"_s);
    return memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath();
}

bool touchesAny(const QStringList &places, const QString &place)
{
    return std::any_of(places.begin(), places.end(),
                       [&](const QString &one) { return isBelow(place, one) || isBelow(one, place); });
}

} // namespace

bool isBelow(const QString &place, const QString &other)
{
    return place == other || place.startsWith(other + u'/');
}

StoreBench::StoreBench(quint32 seed, StoreRig::Place place)
    : random(seed)
    , rig(place, operations, quickFolder())
    , _seed(seed)
{
    open();
}

StoreBench::~StoreBench()
{
    storage->close();
}

void StoreBench::open()
{
    if (storage)
        storage->close();
    storage = TamberStorage::withURL(rig.context, rig.root());
    // Where the disk refuses that, the program looks again later.
    if (!storage) {
        operations.clear();
        storage = TamberStorage::withURL(rig.context, rig.root());
    }
    for (const auto &registry : registries())
        registry->startQuery();
}

void StoreBench::startAnew()
{
    story.append(u"start anew"_s);
    storage->close();
    rig.settle();
    rig.context.saves.cancelAll();
    open();
    rig.settle();
}

void StoreBench::failCalls(int most)
{
    using Call = FaultyFileOperations::Call;
    static const std::vector<std::errc> errors{std::errc::no_space_on_device, std::errc::permission_denied,
                                               std::errc::read_only_file_system, std::errc::io_error,
                                               std::errc::no_such_device};
    const int first = 1 + random.below(5);
    const auto call = static_cast<Call>(random.below(int(Call::SyncFolder) + 1));
    const auto error = random.pick(errors);
    story.append(u"fail call %1 from the %2th on"_s.arg(int(call)).arg(first));
    operations.add({std::make_error_code(error), call, {}, first, first + random.below(most)});
    if (random.oneIn(4))
        rig.trash.failure = {FileResult::Outcome::Failed, u"full"_s};
}

void StoreBench::unmount()
{
    story.append(u"unmount"_s);
    _isAway = true;
    QDir().rename(rig.path(), realPath(rig.path()));
    QDir().mkdir(rig.path());
    rig.cloud.setMissing(true);
}

void StoreBench::mount()
{
    story.append(u"mount"_s);
    if (!QDir().rmdir(rig.path()) || !QDir().rename(realPath(rig.path()), rig.path()))
        return;
    _isAway = false;
    rig.cloud.setMissing(false);
}

QString StoreBench::realPath(const QString &path) const
{
    return _isAway ? QString(rig.path() % u".away" % path.sliced(rig.path().size())) : path;
}

void StoreBench::endFailures()
{
    operations.clear();
    rig.trash.failure = {};
}

std::vector<std::shared_ptr<TamberUsers>> StoreBench::registries() const
{
    return {storage->activeUsers(), storage->archivedUsers()};
}

std::vector<StoreBench::User> StoreBench::users() const
{
    std::vector<User> all;
    for (const auto &registry : registries())
        all.insert(all.end(), registry->users().begin(), registry->users().end());
    return all;
}

std::vector<StoreBench::Container> StoreBench::containers() const
{
    std::vector<Container> all;
    for (const User &user : users()) {
        all.push_back(user);
        all.insert(all.end(), user->folders().begin(), user->folders().end());
    }
    return all;
}

QString StoreBench::placeOf(const FileURL &url) const
{
    return url.path().sliced(rig.root().pathLength() + 1);
}

StoreListing StoreBench::directoryListing() const
{
    StoreListing listing;
    for (const QString &registry : {u"ActiveUsers"_s, u"ArchivedUsers"_s}) {
        for (const QString &user : QDir(rig.path(registry)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            const QString place = registry % u'/' % user;
            const QDir directory(rig.path(place));
            if (!directory.exists(u"user.txt"_s))
                continue;
            const QStringList names = textOf(directory.filePath(u"user.txt"_s)).split(u'\n');
            listing.emplace(place, QString(names.value(0) % u'|' % names.value(1) % u'|' % names.value(2)));
            addDocuments(listing, place, directory);
            for (const QString &name : directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
                const QDir folder(directory.filePath(name));
                listing.emplace(QString(place % u'/' % name),
                                textOf(folder.filePath(u"folder.dat"_s)).section(u'\n', 0, 0));
                addDocuments(listing, place % u'/' % name, folder);
            }
        }
    }
    return listing;
}

void StoreBench::someBackgroundWork()
{
    for (int count = random.below(4); count > 0; --count) {
        if (rig.tasks.waiting() == 0 || random.oneIn(3))
            rig.loop.advance(std::chrono::seconds(random.oneIn(10) ? 6 : 0));
        else
            rig.tasks.runTask(random.below(rig.tasks.waiting()));
    }
}

void StoreBench::settleAll()
{
    // Twice the time after which a changed document saves itself.
    for (const auto end = rig.loop.now() + std::chrono::seconds(10);
         rig.tasks.waiting() > 0 || rig.loop.now() < end;) {
        while (rig.tasks.waiting() > 0)
            rig.tasks.runTask(random.below(rig.tasks.waiting()));
        rig.loop.advance(std::chrono::seconds(1));
    }
    rig.settle();
}

bool StoreBench::isFree(const FileURL &url) const
{
    const QString place = placeOf(url);
    return !rig.context.coordinator.isBusy(url) && !isDying(place) && !isReserved(place);
}

bool StoreBench::isReserved(const QString &place) const
{
    return touchesAny(_reserved, place);
}

QString StoreBench::freshText()
{
    // Unlike any other's beginning, so that one text is never found within another.
    return u"<text %1 of %2>"_s.arg(++_texts).arg(_seed);
}

QString StoreBench::anyTitle()
{
    return random.pick(titles());
}

void StoreBench::owe(const QString &text, const QString &place)
{
    if (!isDying(place))
        _owed.insert(text);
}

void StoreBench::forgiveListed(const TamberFilesContainer &container)
{
    for (const auto &file : container.files())
        forgive(textAt(file->url()));
}

void StoreBench::forgiveAll(const QString &place)
{
    QDirIterator files(realPath(rig.path(place)), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext())
        forgive(textOf(files.next()));
}

bool StoreBench::isDying(const QString &place) const
{
    return touchesAny(_dying, place);
}

void StoreBench::atRest()
{
    _dying.clear();
    _reserved.clear();
}

QString StoreBench::textAt(const FileURL &url) const
{
    QStringList names = placeholderNames(url.lastPathComponent());
    names.prepend(url.lastPathComponent());
    for (const QString &name : names) {
        const QString path = realPath(url.deletingLastPathComponent().appendingFile(name).path());
        if (QFile::exists(path))
            return textOf(path);
    }
    return {};
}

QStringList StoreBench::lostTexts() const
{
    std::set<QString> found;
    QDirIterator files(rig.folder(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        // What will be swept is no place for a text.
        const auto parts = QStringView(path).split(u'/');
        if (std::none_of(parts.begin(), parts.end(), &isHiddenName))
            found.insert(textOf(path));
    }
    QStringList lost;
    std::set_difference(_owed.begin(), _owed.end(), found.begin(), found.end(), std::back_inserter(lost));
    return lost;
}

} // namespace cvtamber
