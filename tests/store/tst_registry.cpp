// SPDX-License-Identifier: GPL-3.0-or-later
// A registry of users over a local folder.
#include "RegistryBench.h"
#include "support/FaultyFileOperations.h"
#include "support/Rows.h"
#include "support/ScriptedFileCoordinator.h"

#include <QFile>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using What = StoreProblem::What;
using Kind = ScriptedFileCoordinator::Kind;
using Faulty = FaultyFileOperations::Call;

namespace {

const QString Anna = u"11111111-1111-1111-1111-111111111111"_s;
const QString Bert = u"22222222-2222-2222-2222-222222222222"_s;

QString active(const QString &below)
{
    return u"ActiveUsers/"_s % below;
}

} // namespace

class tst_registry : public QObject
{
    Q_OBJECT

private:
    std::optional<FaultyFileOperations> _operations;
    std::shared_ptr<RegistryBench> _bench;
    std::unique_ptr<ScriptedFileCoordinator> _coordinator;
    std::unique_ptr<StoreContext> _scripted;

    StoreRig &rig() { return _bench->rig; }
    void putAnna() { rig().put(active(Anna % u"/user.txt"_s), "Anna\nBerg\nAnna B\n"); }
    // With background work that is done when the test says so.
    std::shared_ptr<TamberUsers> openScripted()
    {
        _coordinator = std::make_unique<ScriptedFileCoordinator>(rig().loop, &rig().disk);
        _scripted.reset(new StoreContext{rig().loop, rig().disk, *_coordinator, rig().cloud, rig().trash,
                                         rig().notifications, rig().problems, rig().log});
        return _bench->open(*_scripted);
    }
    void finish()
    {
        do {
            _coordinator->carryOutAll();
            rig().loop.advance({});
        } while (_coordinator->waitingCount() > 0);
    }

private slots:
    void init()
    {
        _operations.emplace();
        _bench = RegistryBench::make(StoreRig::Place::Local, *_operations);
    }
    void cleanup()
    {
        _bench.reset();
        _scripted.reset();
        _coordinator.reset();
    }

    void aRecordIsReadWhateverItHolds_data()
    {
        columns<QByteArray, QStringList>("bytes", "names");
        row("three lines", "Anna\nBerg\nAnna B\n"_ba, QStringList{u"Anna"_s, u"Berg"_s, u"Anna B"_s});
        row("no last line end", "Anna\nBerg\nAnna B"_ba, QStringList{u"Anna"_s, u"Berg"_s, u"Anna B"_s});
        row("mark and CR LF",
            "\xef\xbb\xbf"
            "Zo\xc3\xab\r\nBerg\r\n\r\n"_ba,
            QStringList{u"Zoë"_s, u"Berg"_s, QString()});
        row("one line", "Anna"_ba, QStringList{u"Anna"_s, QString(), QString()});
        row("empty", ""_ba, QStringList{QString(), QString(), QString()});
        row("not UTF-8", "Anna\xff\nBerg\n\n"_ba, QStringList{QString(), QString(), QString()});
    }
    void aRecordIsReadWhateverItHolds()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, names);
        rig().put(active(Anna % u"/user.txt"_s), bytes);
        const auto users = _bench->open();
        QCOMPARE(users->users().size(), 1U);
        const auto user = users->users().front();
        QCOMPARE((QStringList{user->firstName(), user->lastName(), user->displayName()}), names);
        QCOMPARE(rig().bytes(active(Anna % u"/user.txt"_s)), bytes);
    }

    void loadingTellsOfEachUserAndTouchesNothingElse()
    {
        putAnna();
        rig().put(active(Bert % u"/user.txt"_s), "Bert\n\n\n");
        rig().put(active(u"notes.txt"_s), "a plain file");
        rig().put(u"elsewhere/Letter.tamber"_s, "text");
        rig().makeFolder(active(u"linked"_s));
        rig().erase(active(u"linked"_s));
        QVERIFY(QFile::link(rig().path(u"elsewhere"_s), rig().path(active(u"linked"_s))));
        const auto users = _bench->open();
        auto names = _bench->take();
        names.sort();
        QCOMPARE(names, (QStringList{u"added Anna"_s, u"added Bert"_s}));
        QCOMPARE(_bench->posters, QList<const void *>(2, users.get()));
        QVERIFY(users->contentGathered());
        QVERIFY(!users->loadUserFromFolderAndNotifyDelegate(u"linked"_s));
        QVERIFY(!users->loadUserFromFolderAndNotifyDelegate(u"notes.txt"_s));
        QVERIFY(!users->loadUserFromFolderAndNotifyDelegate(u".."_s));
        QCOMPARE(rig().names(u"ActiveUsers"_s), (QStringList{Anna, Bert, u"linked"_s, u"notes.txt"_s}));
        QCOMPARE(rig().bytes(u"elsewhere/Letter.tamber"_s), "text"_ba);
    }

    // What stands in the directory; where the directory is after loading; what is told.
    void aDirectoryWithoutARecord_data()
    {
        columns<QString, bool, bool, int, int>("content", "trashFails", "stays", "inTrash", "told");
        row("nothing", u""_s, false, false, 0, -1);
        row("a leftover of ours", u".cvtamber-0000000000001"_s, false, true, 1, -1);
        row("a document", u"Letter.tamber"_s, false, false, 1, int(What::MovedToTrash));
        row("a folder", Bert % u"/folder.dat"_s, false, false, 1, int(What::MovedToTrash));
        row("a foreign hidden file", u".stfolder"_s, false, false, 1, int(What::MovedToTrash));
        row("a document, no trash", u"Letter.tamber"_s, true, true, 0, int(What::NotMovedToTrash));
        row("nothing, no trash", u""_s, true, false, 0, -1);
    }
    void aDirectoryWithoutARecord()
    {
        QFETCH(QString, content);
        QFETCH(bool, trashFails);
        QFETCH(bool, stays);
        QFETCH(int, inTrash);
        QFETCH(int, told);
        putAnna();
        rig().makeFolder(active(Bert));
        if (!content.isEmpty())
            rig().put(active(Bert % u'/' % content), "x");
        rig().age(active(Bert));
        if (trashFails)
            rig().trash.failure = {FileResult::Outcome::Failed, u"no trash"_s};
        const auto users = _bench->open();
        rig().settle();
        QCOMPARE(RegistryBench::namesOf(*users), QStringList{u"Anna"_s});
        QCOMPARE(rig().has(active(Bert)), stays);
        QCOMPARE(rig().trash.items.size(), inTrash);
        QCOMPARE(rig().told->problems.size(), told < 0 ? 0 : 1);
        if (told >= 0)
            QCOMPARE(int(rig().told->problems.first().what), told);
    }

    void aRecordThatIsThereButCannotBeReadKeepsItsDirectory_data()
    {
        columns<QString>("made");
        row("a link to nowhere", u"link"_s);
        row("a folder", u"folder"_s);
        row("a placeholder", u"placeholder"_s);
    }
    void aRecordThatIsThereButCannotBeReadKeepsItsDirectory()
    {
        QFETCH(QString, made);
        rig().put(active(Anna % u"/Letter.tamber"_s), "text");
        const QString record = active(Anna % u"/user.txt"_s);
        if (made == u"link"_s)
            QVERIFY(QFile::link(u"/nowhere"_s, rig().path(record)));
        else if (made == u"folder"_s)
            rig().makeFolder(record);
        else
            rig().put(active(Anna % u"/.user.txt.icloud"_s), "");
        const auto users = _bench->open();
        QCOMPARE(users->users().size(), 1U);
        QVERIFY(users->users().front()->firstName().isNull());
        QCOMPARE(users->users().front()->files().size(), 1U);
        QCOMPARE(rig().told->count(What::Open), 1);
    }

    // What fails, and of what; whether the user is listed.
    void nothingIsConcludedFromAnError_data()
    {
        columns<int, QString, bool>("call", "of", "isListed");
        row("the record cannot be read", int(Faulty::Read), u"/user.txt"_s, true);
        row("nor looked at", int(Faulty::Status), u"/user.txt"_s, true);
        row("the directory cannot be listed", int(Faulty::List), u""_s, false);
        row("nor looked at", int(Faulty::Status), u""_s, false);
    }
    void nothingIsConcludedFromAnError()
    {
        QFETCH(int, call);
        QFETCH(QString, of);
        rig().put(active(Anna % u"/Letter.tamber"_s), "text");
        _operations->add(
            {std::make_error_code(std::errc::io_error), Faulty(call), rig().path(active(Anna % of))});
        const auto users = _bench->open();
        rig().settle();
        QTEST(!users->users().empty(), "isListed");
        QCOMPARE(rig().names(active(Anna)), QStringList{u"Letter.tamber"_s});
        _operations->clear();
        _operations->add(
            {std::make_error_code(std::errc::io_error), Faulty::List, rig().path(u"ActiveUsers"_s)});
        _bench->storage->activeUsers()->loadFromStorage();
        QVERIFY(rig().told->problems.last().url == users->url());
    }

    void aNewUserIsOnTheDiskAndListed()
    {
        const auto users = _bench->open();
        users->addUserWithFirstName(u"Anna"_s, u"of\nBerg"_s, {});
        QCOMPARE(_bench->take(), QStringList{u"added Anna"_s});
        rig().settle();
        const auto user = users->users().front();
        QCOMPARE(user->folder().size(), UserDirectoryLength - 1);
        QCOMPARE(rig().bytes(active(user->folder() % u"/user.txt"_s)), "Anna\nof Berg\n\n"_ba);
        QCOMPARE(users->findUserWithURL(user->url()), user);
        rig().erase(u"ActiveUsers"_s);
        rig().put(u"ActiveUsers"_s, "in the way");
        users->addUserWithFirstName(u"Bert"_s, {}, {});
        rig().settle();
        QCOMPARE(RegistryBench::namesOf(*users), (QStringList{u"Anna"_s, u"Bert"_s}));
        QCOMPARE(rig().told->count(What::Create), 1);
    }

    // Else the next start takes her directory for one without a user.
    void aRecordThatCouldNotBeWrittenIsTriedAgain_data()
    {
        columns<QString>("when");
        row("later", u"later"_s);
        row("before her first document", u"document"_s);
        row("before the first one in a folder", u"folder"_s);
        row("at the end", u"end"_s);
    }
    void aRecordThatCouldNotBeWrittenIsTriedAgain()
    {
        QFETCH(QString, when);
        const auto users = _bench->open();
        _operations->failEvery(Faulty::CreateFile, std::errc::no_space_on_device);
        if (when == u"later")
            _operations->failEvery(Faulty::MakeFolder, std::errc::no_space_on_device);
        users->addUserWithFirstName(u"Anna"_s, {}, {});
        const auto user = users->users().front();
        const auto folder = user->addFolderWithName(u"Maths"_s);
        rig().settle();
        rig().loop.advance(6s);
        rig().settle();
        QCOMPARE(rig().told->count(What::Save), folder ? 2 : 1);
        _operations->clear();
        if (when == u"later")
            rig().loop.advance(5s);
        else if (when == u"document")
            user->addFileWithName(u"Letter"_s, u"text"_s);
        else if (when == u"folder")
            folder->addFileWithName(u"Letter"_s, u"text"_s);
        else
            _bench->storage->close();
        rig().settle();
        QCOMPARE(rig().bytes(active(user->folder() % u"/user.txt"_s)), "Anna\n\n\n"_ba);
        QCOMPARE(rig().problems.unsaved().count(user.get()), 0U);
    }

    void namesAreSavedTogetherAndOnlyWhenTheyDiffer()
    {
        putAnna();
        const auto user = openScripted()->users().front();
        user->setFirstName(u"Anna"_s);
        QCOMPARE(rig().loop.pendingCalls(), 0U);
        user->setFirstName(u"Anne"_s);
        user->setLastName(u"Burg"_s);
        rig().loop.advance({});
        QCOMPARE(_coordinator->count(Kind::Replace), 1U);
        // Read back before the write is done, the names stay.
        int called = 0;
        user->reloadDataWitCompletionHandler([&called] { ++called; });
        QCOMPARE(user->firstName(), u"Anne"_s);
        finish();
        QCOMPARE(rig().bytes(active(Anna % u"/user.txt"_s)), "Anne\nBurg\nAnna B\n"_ba);
        rig().put(active(Anna % u"/user.txt"_s), "Other\n\n\n");
        user->reloadDataWitCompletionHandler([&called] { ++called; });
        QCOMPARE(user->firstName(), u"Other"_s);
        rig().erase(active(Anna % u"/user.txt"_s));
        user->reloadDataWitCompletionHandler([&called] { ++called; });
        QCOMPARE(called, 2);
        QCOMPARE(user->firstName(), u"Other"_s);
    }

    void deletingTakesTheDirectoryAndLosesNothingForeign_data()
    {
        columns<QString, int>("foreign", "inTrash");
        row("nothing foreign", QString(), 0);
        row("a file of another program", u"notes.odt"_s, 1);
    }
    void deletingTakesTheDirectoryAndLosesNothingForeign()
    {
        QFETCH(QString, foreign);
        QFETCH(int, inTrash);
        putAnna();
        rig().put(active(Anna % u"/Letter.tamber"_s), "text");
        if (!foreign.isEmpty())
            rig().put(active(Anna % u'/' % foreign), "x");
        const auto users = _bench->open();
        rig().settle();
        const auto user = users->users().front();
        user->setFirstName(u"Anne"_s);
        users->deleteUser(user);
        user->setLastName(u"Burg"_s);
        rig().settle();
        QCOMPARE(_bench->take().last(), u"will delete Anne"_s);
        QVERIFY(users->users().empty());
        QVERIFY(!users->findUserWithURL(rig().directory(active(Anna))));
        QVERIFY(!rig().has(active(Anna)));
        QCOMPARE(rig().trash.items.size(), inTrash);
        QCOMPARE(rig().log.count(u"[info] TamberUsers::deleteUser"_s), 1);
        QCOMPARE(rig().log.count(u"[info] User storage deleted!"_s), 1);
    }

    void deletingEndsAsItsRecordDoes()
    {
        putAnna();
        const auto users = openScripted();
        const auto user = users->users().front();
        users->deleteUser(user);
        _coordinator->answer({FileResult::Outcome::Failed, u"read-only"_s});
        rig().loop.advance({});
        QCOMPARE(_coordinator->waiting().url, user->url());
        _coordinator->answer({FileResult::Outcome::Failed, u"read-only"_s});
        rig().loop.advance({});
        QVERIFY(users->users().empty());
        QCOMPARE(rig().told->count(What::Delete), 2);
        // Without a completion the directory stays.
        user->deleteStorageWithCompletion({});
        finish();
        QCOMPARE(rig().names(active(Anna)), QStringList());
    }

    void movingKeepsTheDirectoryNameAndTheUnsavedName_data()
    {
        columns<bool>("isWriteUnderWay");
        row("a save is scheduled", false);
        row("a save is under way", true);
    }
    void movingKeepsTheDirectoryNameAndTheUnsavedName()
    {
        QFETCH(bool, isWriteUnderWay);
        putAnna();
        rig().put(active(Anna % u"/Letter.tamber"_s), "text");
        const auto users = openScripted();
        const auto archive = _bench->storage->archivedUsers();
        const auto user = users->users().front();
        user->setFirstName(u"Anne"_s);
        if (isWriteUnderWay)
            rig().loop.advance({});
        _bench->take();
        users->moveUser(user, archive);
        QCOMPARE(_bench->take(), QStringList{u"will delete Anne"_s});
        finish();
        QCOMPARE(_bench->take(), QStringList{u"added Anne"_s});
        QCOMPARE(_bench->posters.last(), archive.get());
        QVERIFY(users->users().empty());
        QCOMPARE(archive->users().front()->folder(), Anna);
        QCOMPARE(archive->users().front()->files().size(), 1U);
        QCOMPARE(rig().names(u"ActiveUsers"_s), QStringList());
        QCOMPARE(rig().bytes(u"ArchivedUsers/"_s % Anna % u"/user.txt"_s), "Anne\nBerg\nAnna B\n"_ba);
    }

    void aMoveNeverReplacesAndNeverCostsAUser()
    {
        putAnna();
        const auto users = _bench->open();
        rig().settle();
        const auto archive = _bench->storage->archivedUsers();
        const auto user = users->users().front();
        rig().put(u"ArchivedUsers/"_s % Anna % u"/Letter.tamber"_s, "there before");
        _bench->take();
        users->moveUser(user, archive);
        QCOMPARE(_bench->take(), (QStringList{u"will delete Anna"_s, u"added Anna"_s}));
        QCOMPARE(RegistryBench::namesOf(*users), QStringList{u"Anna"_s});
        QCOMPARE(rig().told->count(What::Move), 1);
        QCOMPARE(rig().bytes(u"ArchivedUsers/"_s % Anna % u"/Letter.tamber"_s), "there before"_ba);
        // A record that another program has removed is written anew, else the user would not be found.
        rig().erase(u"ArchivedUsers/"_s % Anna);
        rig().erase(active(Anna % u"/user.txt"_s));
        users->moveUser(user, archive);
        rig().settle();
        QCOMPARE(RegistryBench::namesOf(*archive), QStringList{u"Anna"_s});
    }

    void theFirstOfTwoUsersOfOneDirectoryIsFound()
    {
        putAnna();
        const auto users = _bench->open();
        const auto first = users->users().front();
        const auto second = users->loadUserFromFolderAndNotifyDelegate(Anna);
        const auto unborn = std::make_shared<TamberUser>(rig().context, u"New"_s, QString(), QString());
        users->addUser(unborn);
        unborn->storeInUsers(users, {});
        QCOMPARE(users->findUserWithURL(first->url()), first);
        QCOMPARE(users->findUserWithURL(unborn->url()), unborn);
        QVERIFY(!users->findUserWithURL(FileURL::file(first->url().path())));
        QVERIFY(!users->findUserWithURL({}));
        users->setStorage(nullptr);
        QVERIFY(users->users().empty());
        QVERIFY(!users->findUserWithURL(first->url()));
        users->setStorage(_bench->storage);
        QCOMPARE(users->findUserWithURL(second->url())->firstName(), u"Anna"_s);
        rig().settle();
    }

    void theNameThatScreensShow_data()
    {
        columns<QStringList, QString>("names", "shown");
        row("display name", QStringList{u"A"_s, u"B"_s, u"C"_s}, u"C"_s);
        row("both", QStringList{u"A"_s, u"B"_s, QString()}, u"A B"_s);
        row("first", QStringList{u"A"_s, QString(), QString()}, u"A"_s);
        row("last", QStringList{QString(), u"B"_s, QString()}, u"B"_s);
        row("none", QStringList{QString(), QString(), u""_s}, u""_s);
    }
    void theNameThatScreensShow()
    {
        QFETCH(QStringList, names);
        const auto user = std::make_shared<TamberUser>(rig().context, names[0], names[1], names[2]);
        QTEST(userDisplayName(user.get()), "shown");
        QCOMPARE(user->description(), names[2] % u" ("_s % names[0] % u' ' % names[1] % u')');
        QVERIFY(userDisplayName(nullptr).isNull());
    }
};

QTEST_APPLESS_MAIN(tst_registry)
#include "tst_registry.moc"
