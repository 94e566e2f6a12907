// SPDX-License-Identifier: GPL-3.0-or-later
#include "powercut/Scenarios.h"

#include "app/StoreSwitch.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

const QString Anna = u"AAAAAAAA-0000-4000-8000-000000000001"_s;
const QString Ben = u"BBBBBBBB-0000-4000-8000-000000000002"_s;
const QString Carla = u"CCCCCCCC-0000-4000-8000-000000000003"_s;
const QString Maths = u"DDDDDDDD-0000-4000-8000-000000000004"_s;
const QString PlaceOfAnna = u"ActiveUsers/"_s + Anna;
const QString PlaceOfBen = u"ActiveUsers/"_s + Ben;
const QString PlaceOfCarla = u"ArchivedUsers/"_s + Carla;
const QString PlaceOfMaths = PlaceOfAnna + u'/' + Maths;
const QString PlaceOfLetter = PlaceOfAnna + u"/Letter.tamber"_s;
const QString NewText = u"Sehr geehrte Frau Müller,\nthis is the new text.\n"_s;

using Done = Scenario::Done;

// All that is in a place, and the place itself, goes elsewhere.
void moveAll(StoreListing &listing, const QString &from, const QString &to)
{
    const StoreListing old = std::exchange(listing, {});
    for (const auto &[key, value] : old)
        listing[key.startsWith(from) ? to + key.mid(from.size()) : key] = value;
}

void removeAll(StoreListing &listing, const QString &place)
{
    std::erase_if(listing, [&](const auto &entry) { return entry.first.startsWith(place); });
}

void openLetter(OpenStore &store)
{
    store.letterOfAnna()->openWithCompletionHandler({});
    store.rig.settle();
}

void saveLetter(OpenStore &store, const Done &done)
{
    const auto letter = store.letterOfAnna();
    letter->setText(NewText);
    letter->saveToURL(letter->fileURL(), Document::SaveOperation::ForOverwriting,
                      [done](bool success) { success ? done() : qFatal("the save failed"); });
}

std::vector<Scenario> savingScenarios()
{
    return {
        {"create a document", Between::OneOrTheOther,
         [](OpenStore &store, const Done &done) {
             store.anna()->addFileWithName(u"Diary"_s, NewText, [done](const FileResult &) { done(); });
         },
         [](StoreListing &listing) { listing[PlaceOfAnna + u"/Diary.tamber"_s] = NewText; }},
        {"save over a document", Between::OneOrTheOther, &saveLetter,
         [](StoreListing &listing) { listing[PlaceOfLetter] = NewText; }, &openLetter},
        {"save over another program's version", Between::BothTogether, &saveLetter,
         [](StoreListing &listing) {
             listing[PlaceOfAnna + u"/Letter (conflicted copy).tamber"_s] =
                 std::exchange(listing[PlaceOfLetter], NewText);
         },
         [](OpenStore &store) {
             openLetter(store);
             store.rig.put(PlaceOfLetter, "another program's version\n");
         }},
    };
}

std::vector<Scenario> movingScenarios()
{
    return {
        {"rename a document", Between::OneOrTheOther,
         [](OpenStore &store, const Done &done) {
             store.anna()->renameFileAtIndex(store.anna()->indexOfFile(store.letterOfAnna()), u"Brief"_s);
             done();
         },
         [](StoreListing &listing) { moveAll(listing, PlaceOfLetter, PlaceOfAnna + u"/Brief.tamber"_s); }},
        {"move a document to a folder", Between::OneOrTheOther,
         [](OpenStore &store, const Done &) {
             store.anna()->moveFile(store.letterOfAnna(), store.folderOfAnna());
         },
         [](StoreListing &listing) { moveAll(listing, PlaceOfLetter, PlaceOfMaths + u"/Letter.tamber"_s); }},
        {"move a document to another user", Between::OneOrTheOther,
         [](OpenStore &store, const Done &) { store.anna()->moveFile(store.letterOfAnna(), store.ben()); },
         [](StoreListing &listing) { moveAll(listing, PlaceOfLetter, PlaceOfBen + u"/Letter.tamber"_s); }},
        {"move a folder to another user", Between::OneOrTheOther,
         [](OpenStore &store, const Done &done) {
             store.anna()->moveFolder(store.folderOfAnna(), store.ben());
             done();
         },
         [](StoreListing &listing) { moveAll(listing, PlaceOfMaths, PlaceOfBen + u'/' + Maths); }},
        {"archive a user", Between::OneOrTheOther,
         [](OpenStore &store, const Done &done) {
             store.storage->activeUsers()->moveUser(store.anna(), store.storage->archivedUsers());
             done();
         },
         [](StoreListing &listing) { moveAll(listing, PlaceOfAnna, u"ArchivedUsers/"_s + Anna); }},
    };
}

// The old place is the last to go, so for a while both are there.
std::vector<Scenario> betweenFileSystems()
{
    std::vector<Scenario> scenarios{
        {"move a document to another file system", Between::BothTogether,
         [](OpenStore &store, const Done &) {
             store.anna()->moveFile(store.letterOfAnna(), store.archived());
         },
         [](StoreListing &listing) { moveAll(listing, PlaceOfLetter, PlaceOfCarla + u"/Letter.tamber"_s); }},
        movingScenarios().back(),
    };
    scenarios.back().name = "archive a user on another file system";
    scenarios.back().between = Between::BothTogether;
    for (Scenario &scenario : scenarios)
        scenario.isBetweenFileSystems = true;
    return scenarios;
}

std::vector<Scenario> deletingScenarios()
{
    return {
        {"delete a document", Between::PartlyGone,
         [](OpenStore &store, const Done &) { store.anna()->deleteFile(store.letterOfAnna()); },
         [](StoreListing &listing) { listing.erase(PlaceOfLetter); }},
        {"delete a folder", Between::PartlyGone,
         [](OpenStore &store, const Done &) { store.anna()->deleteFolder(store.folderOfAnna()); },
         [](StoreListing &listing) { removeAll(listing, PlaceOfMaths); }},
        {"delete a user", Between::PartlyGone,
         [](OpenStore &store, const Done &) { store.storage->activeUsers()->deleteUser(store.anna()); },
         [](StoreListing &listing) { removeAll(listing, PlaceOfAnna); },
         // So that more is not durable in the end than every subset is tried of.
         [](OpenStore &store) {
             for (const QString &title : {u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s, u"Five"_s})
                 store.anna()->addFileWithName(title, NewText);
             store.rig.settle();
         }},
    };
}

// A record is written in the background without a word.
std::vector<Scenario> recordScenarios()
{
    return {
        {"create a user", Between::OneOrTheOther,
         [](OpenStore &store, const Done &) {
             store.storage->activeUsers()->addUserWithFirstName(u"Dora"_s, u"Engel"_s, u"Dora E"_s);
         },
         [](StoreListing &listing) { listing[u"ActiveUsers/NEW"_s] = u"Dora|Engel|Dora E"_s; }},
        {"change a user's names", Between::OneOrTheOther,
         [](OpenStore &store, const Done &) {
             store.anna()->setLastName(u"Bergmann"_s);
             store.anna()->setDisplayName(u"Anna Bergmann"_s);
         },
         [](StoreListing &listing) { listing[PlaceOfAnna] = u"Anna|Bergmann|Anna Bergmann"_s; }},
        {"create a folder", Between::OneOrTheOther,
         [](OpenStore &store, const Done &) { store.anna()->addFolderWithName(u"History"_s); },
         [](StoreListing &listing) { listing[PlaceOfAnna + u"/NEW"_s] = u"History"_s; }, [](OpenStore &) {},
         [](StoreListing &listing) { listing[PlaceOfAnna + u"/NEW"_s] = QString(); }},
        {"rename a folder", Between::OneOrTheOther,
         [](OpenStore &store, const Done &) { store.folderOfAnna()->rename(u"Mathematics"_s); },
         [](StoreListing &listing) { listing[PlaceOfMaths] = u"Mathematics"_s; }},
    };
}

// Where everything is listed does not change: each user is in one store or the other.
std::vector<Scenario> switchingScenarios()
{
    Scenario toCloud{"move all users to the cloud", Between::OneOrTheOther,
                     [](OpenStore &store, const Done &) {
                         moveUsersToCloud(store.rig.context, store.rig.root(), store.storage->storeURL());
                     },
                     [](StoreListing &) {},
                     [](OpenStore &store) {
                         const FileURL second = store.rig.root().appendingDirectory(SecondStore.toString());
                         QDir().mkpath(second.path());
                         store.storage->setStoreURL(second);
                         store.storage->activeUsers();
                         store.storage->archivedUsers();
                         store.rig.settle();
                     }};
    toCloud.isToSecondStore = true;
    Scenario toOtherFileSystem = toCloud;
    toOtherFileSystem.name = "move all users to the cloud on another file system";
    toOtherFileSystem.isBetweenFileSystems = true;
    return {toCloud, toOtherFileSystem};
}

std::shared_ptr<TamberUser> user(const std::shared_ptr<TamberUsers> &registry, const QString &name)
{
    return registry->findUserWithURL(registry->url().appendingDirectory(name));
}

} // namespace

const std::vector<Scenario> &scenarios()
{
    static const std::vector<Scenario> all = [] {
        std::vector<Scenario> result = savingScenarios();
        for (const auto &some : {movingScenarios(), betweenFileSystems(), deletingScenarios(),
                                 recordScenarios(), switchingScenarios()})
            result.insert(result.end(), some.begin(), some.end());
        return result;
    }();
    return all;
}

OpenStore::OpenStore(StoreRig &givenRig)
    : OpenStore(givenRig, givenRig.root())
{}

OpenStore::OpenStore(StoreRig &givenRig, const FileURL &root)
    : rig(givenRig)
    , storage(TamberStorage::withURL(givenRig.context, root))
{
    if (!storage)
        qFatal("the store could not be opened");
    storage->activeUsers();
    storage->archivedUsers();
    rig.settle();
}

OpenStore::~OpenStore()
{
    storage->close();
}

TreeImage OpenStore::initialTree()
{
    return {
        {u"ActiveUsers"_s, std::nullopt},
        {PlaceOfAnna, std::nullopt},
        {PlaceOfAnna + u"/user.txt"_s, "Anna\nBerg\nAnna B\n"},
        {PlaceOfLetter, "Dear Ben,\nthis is the old text.\n"},
        {PlaceOfAnna + u"/Poem.tamber"_s, "Sea and sky.\n"},
        {PlaceOfMaths, std::nullopt},
        {PlaceOfMaths + u"/folder.dat"_s, "Maths\n"},
        {PlaceOfMaths + u"/Sums.tamber"_s, "1 + 1 = 2\n"},
        {PlaceOfMaths + u"/Proofs.tamber"_s, "q.e.d.\n"},
        {PlaceOfBen, std::nullopt},
        {PlaceOfBen + u"/user.txt"_s, "Ben\nCole\n\n"},
        {PlaceOfBen + u"/Notes.tamber"_s, "buy bread\n"},
        {u"ArchivedUsers"_s, std::nullopt},
        {PlaceOfCarla, std::nullopt},
        {PlaceOfCarla + u"/user.txt"_s, "Carla\nDean\n\n"},
    };
}

bool OpenStore::knows(const QString &directoryName)
{
    return QStringList{Anna, Ben, Carla, Maths}.contains(directoryName);
}

std::shared_ptr<TamberUser> OpenStore::anna() const
{
    return user(storage->activeUsers(), Anna);
}

std::shared_ptr<TamberUser> OpenStore::ben() const
{
    return user(storage->activeUsers(), Ben);
}

std::shared_ptr<TamberUser> OpenStore::archived() const
{
    return user(storage->archivedUsers(), Carla);
}

std::shared_ptr<TamberDataFolder> OpenStore::folderOfAnna() const
{
    return anna()->folderAtIndex(0);
}

std::shared_ptr<TamberDocument> OpenStore::letterOfAnna() const
{
    const auto &files = anna()->files();
    const auto found = std::find_if(files.begin(), files.end(),
                                    [](const auto &file) { return file->name() == u"Letter.tamber"; });
    return found == files.end() ? nullptr : *found;
}

} // namespace cvtamber
