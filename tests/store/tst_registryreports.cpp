// SPDX-License-Identifier: GPL-3.0-or-later
// A registry of users in the cloud container, and what it makes of reports.
#include "RegistryBench.h"
#include "store/TamberUbiquitousFolderMonitor.h"
#include "support/MemoryDefaults.h"
#include "support/Rows.h"

#include <algorithm>
#include <array>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Step = RegistryStep;

namespace {

const QString Anna = u"ActiveUsers/11111111-1111-1111-1111-111111111111"_s;
const QString Record = Anna % u"/user.txt"_s;
const QString Letter = Anna % u"/Letter.tamber"_s;
const QString Folder = Anna % u"/33333333-3333-3333-3333-333333333333"_s;
const QString FolderRecord = Folder % u"/folder.dat"_s;
const QString FolderLetter = Folder % u"/Inside.tamber"_s;
constexpr qint32 Here = TamberUbiquitousItem::Downloaded;

} // namespace

class tst_registryreports : public QObject
{
    Q_OBJECT

private:
    MemoryDefaults _defaults;
    std::shared_ptr<RegistryBench> _bench;
    std::shared_ptr<TamberUsers> _users;

    StoreRig &rig() { return _bench->rig; }

    static QByteArray contentOf(const QString &path)
    {
        if (path.endsWith(u"user.txt"_s))
            return "Anna\nBerg\n\n";
        return path.endsWith(u"folder.dat"_s) ? "Maths\n"_ba : "text"_ba;
    }
    // Its bytes are on the disk and the next update reports it.
    void arrive(const QString &path)
    {
        rig().put(path, contentOf(path));
        rig().cloud.setItem(rig().file(path), Here);
    }
    void leave(const QString &path)
    {
        rig().erase(path);
        rig().cloud.removeItem(rig().file(path));
    }
    void update()
    {
        rig().cloud.update();
        rig().settle();
    }

private slots:
    void init()
    {
        _bench = RegistryBench::make(StoreRig::Place::Cloud);
        _users = _bench->open();
        _users->startQuery();
    }
    void cleanup()
    {
        _users.reset();
        _bench.reset();
    }

    // For each report: the step for an item and for a record, of a user that is known, then of one that is
    // not.
    void theStepForEachReport_data()
    {
        columns<int, bool, QList<int>>("report", "isDownloaded", "steps");
        const auto steps = [](Step item, Step record, Step strangersItem, Step strangersRecord) {
            return QList<int>{int(item), int(record), int(strangersItem), int(strangersRecord)};
        };
        row("added", int(CloudReport::Added), true,
            steps(Step::PassToUser, Step::LoadUser, Step::KeepAsOrphan, Step::LoadUser));
        row("placeholder added", int(CloudReport::Added), false,
            steps(Step::PassToUser, Step::DownloadRecord, Step::KeepAsOrphan, Step::DownloadRecord));
        row("deleted", int(CloudReport::Deleted), true,
            steps(Step::PassToUser, Step::RemoveUser, Step::ForgetOrphan, Step::Ignore));
        row("downloaded", int(CloudReport::Downloaded), true,
            steps(Step::PassToUser, Step::TellDataChanged, Step::KeepAsOrphan, Step::LoadUser));
        row("again", int(CloudReport::DownloadedAgain), true,
            steps(Step::PassToUser, Step::TellDataChanged, Step::Ignore, Step::TellDataChanged));
    }
    void theStepForEachReport()
    {
        QFETCH(int, report);
        QFETCH(bool, isDownloaded);
        QFETCH(QList<int>, steps);
        for (int i = 0; i < 4; ++i) {
            const RegistryReport item{CloudReport(report), i % 2 == 1, isDownloaded, i < 2};
            QCOMPARE(int(registryStep(item)), steps[i]);
        }
    }

    void theUsersDirectoryIsFoundByLength()
    {
        const auto item = FileURL::file(u"/r/11111111-1111-1111-1111-111111111111/a.tamber"_s);
        QCOMPARE(userDirectoryOfItem(item, 2).path(), u"/r/11111111-1111-1111-1111-111111111111"_s);
        QVERIFY(userDirectoryOfItem(item, 2).isDirectory());
        QCOMPARE(userDirectoryOfItem(item, 3).path(),
                 u"/r/11111111-1111-1111-1111-111111111111/"_s.chopped(1));
        QVERIFY(userDirectoryOfItem(FileURL::file(u"/r/short.tamber"_s), 2).isNil());
        // Reported all the same, such an item does nothing.
        TamberUbiquitousFolderMonitor monitor(rig().context, _users->url(), registryFilter());
        const auto stray = std::make_shared<TamberUbiquitousItem>(rig().file(u"ActiveUsers/a.tamber"_s));
        _users->ubiquitousMonitorItemAdded(monitor, stray);
        _users->ubiquitousMonitorItemDeleted(monitor, stray);
        QCOMPARE(rig().log.count(u"[debug] ERROR!!!"_s), 0);
    }

    void everyOrderOfArrivalGivesTheSameLists_data()
    {
        columns<QStringList, bool>("order", "placeholdersFirst");
        std::array<QString, 4> items{FolderRecord, FolderLetter, Letter, Record};
        std::sort(items.begin(), items.end());
        int number = 0;
        do {
            for (const bool first : {false, true})
                row(qPrintable(QString::number(++number)), QStringList(items.begin(), items.end()), first);
        } while (std::next_permutation(items.begin(), items.end()));
    }
    void everyOrderOfArrivalGivesTheSameLists()
    {
        QFETCH(QStringList, order);
        QFETCH(bool, placeholdersFirst);
        rig().cloud.gather();
        if (placeholdersFirst) {
            for (const QString &path : order)
                rig().cloud.setItem(rig().file(path), 0);
            update();
            QVERIFY(rig().cloud.downloads().contains(rig().file(Record)));
            QVERIFY(_users->users().empty());
        }
        for (const QString &path : order) {
            arrive(path);
            update();
        }
        QCOMPARE(RegistryBench::namesOf(*_users), QStringList{u"Anna"_s});
        const auto user = _users->users().front();
        QCOMPARE(user->files().size(), 1U);
        QCOMPARE(user->foldersCount(), 1);
        QCOMPARE(user->folders().front()->name(), u"Maths"_s);
        QCOMPARE(user->folders().front()->files().size(), 1U);
        QVERIFY(_users->orphanedItemsForUser(*user).empty());
    }

    void theFirstListingIsToldOnce()
    {
        QVERIFY(!_users->contentGathered());
        arrive(Record);
        rig().cloud.setItem(rig().file(u"ActiveUsers/short/user.txt"_s), Here);
        rig().cloud.gather();
        update();
        QVERIFY(_users->contentGathered());
        QCOMPARE(_bench->take(), (QStringList{u"added Anna"_s, u"gathered"_s}));
        QCOMPARE(rig().log.count(u"[debug] -(void)ubiquitousMonitor:(TamberUbiquitousFolderMonitor *)monitor "
                                 "contentGathered:(NSArray *)items"_s),
                 1);
    }

    void aChangedRecordIsTold()
    {
        arrive(Record);
        rig().cloud.gather();
        _bench->take();
        for (const qint32 state : {0, Here}) {
            rig().cloud.setItem(rig().file(Record), state);
            update();
        }
        QCOMPARE(_bench->take(), QStringList{u"changed Anna"_s});
        TamberUbiquitousFolderMonitor monitor(rig().context, _users->url(), registryFilter());
        _users->ubiquitousMonitorItemDownloadedAgain(
            monitor, std::make_shared<TamberUbiquitousItem>(
                         rig().file(u"ActiveUsers/22222222-2222-2222-2222-222222222222/user.txt"_s)));
        QCOMPARE(_bench->take(), QStringList{u"changed nobody"_s});
    }

    void aDeletedRecordTakesTheDirectoryOnlyWithoutDocuments_data()
    {
        columns<QString, bool>("left", "stays");
        row("nothing", QString(), false);
        row("a folder without documents", FolderRecord, false);
        row("a document", Letter, true);
        row("a document in a folder", FolderLetter, true);
        row("a placeholder of a document", Anna % u"/.Letter.tamber.icloud"_s, true);
        row("a conflict copy", Anna % u"/Letter (conflicted copy).tamber"_s, true);
        row("a document on its way", Anna % u"/.syncthing.Letter.tamber.tmp"_s, true);
        row("one on its way by another program", Anna % u"/.Letter.tamber.aB3dE9"_s, true);
    }
    void aDeletedRecordTakesTheDirectoryOnlyWithoutDocuments()
    {
        QFETCH(QString, left);
        QFETCH(bool, stays);
        arrive(Record);
        if (!left.isEmpty())
            rig().put(left, "x");
        rig().cloud.gather();
        const auto user = _users->users().front();
        user->setFirstName(u"Anne"_s);
        leave(Record);
        update();
        QCOMPARE(_bench->take().last(), u"will delete Anne"_s);
        QVERIFY(_users->users().empty());
        QCOMPARE(rig().has(Anna), stays);
        QVERIFY(!rig().has(Record));
    }

    void aUserWhoseRecordComesBackHasItsDocuments()
    {
        for (const QString &path : {Record, Letter, FolderRecord, FolderLetter})
            arrive(path);
        rig().cloud.gather();
        rig().settle();
        leave(Record);
        update();
        QVERIFY(_users->users().empty());
        // Deleted while nobody owns it: it must not be listed later.
        leave(FolderLetter);
        update();
        arrive(Record);
        update();
        const auto user = _users->users().front();
        QCOMPARE(user->files().size(), 1U);
        QCOMPARE(user->foldersCount(), 1);
        QVERIFY(user->folders().front()->files().empty());
    }

    // Another computer has moved or deleted the user while somebody has written here.
    void recordsAreWrittenAgainWhereDocumentsStay()
    {
        for (const QString &path : {Record, Letter, FolderRecord, FolderLetter})
            arrive(path);
        rig().cloud.gather();
        rig().settle();
        for (const QString &path : {Record, FolderRecord})
            leave(path);
        update();
        rig().loop.advance(1min);
        leave(Letter);
        update();
        rig().loop.advance(1min);
        rig().settle();
        QVERIFY(!rig().has(Record));
        rig().loop.advance(2min);
        rig().settle();
        QCOMPARE(rig().bytes(Record), contentOf(Record));
        QCOMPARE(rig().bytes(FolderRecord), contentOf(FolderRecord));
        for (const QString &path : {Record, FolderRecord})
            arrive(path);
        update();
        QCOMPARE(_users->users().front()->folders().front()->files().size(), 1U);
        leave(Record);
        leave(FolderLetter);
        update();
        rig().loop.advance(10min);
        rig().settle();
        QVERIFY(!rig().has(Record));
    }

    void recordsThatWentWhileNoProgramRanAreWrittenAgain()
    {
        rig().context.knownRecords.keepIn(_defaults);
        for (const QString &path : {Record, Letter, FolderRecord, FolderLetter})
            arrive(path);
        rig().cloud.gather();
        rig().settle();
        _users->stopQuery();
        _bench->storage->close();
        rig().context.saves.cancelAll();
        rig().context.knownRecords = {};
        for (const QString &path : {Record, Letter, FolderRecord, FolderLetter})
            leave(path);
        // Archived elsewhere, and written to here.
        const auto archived = [](const QString &path) {
            return QString(path).replace(u"Active"_s, u"Archived"_s);
        };
        for (const QString &path : {Letter, FolderLetter})
            arrive(archived(path));
        rig().context.knownRecords.keepIn(_defaults);
        _users = _bench->open();
        _bench->storage->archivedUsers()->startQuery();
        rig().cloud.gather();
        rig().settle();
        rig().loop.advance(2min);
        rig().settle();
        QCOMPARE(rig().bytes(archived(Record)), contentOf(Record));
        QCOMPARE(rig().bytes(archived(FolderRecord)), contentOf(FolderRecord));
    }

    void whatIsDoneHereIsListedOnlyWhenItIsReported()
    {
        rig().cloud.gather();
        _users->addUserWithFirstName(u"Anna"_s, {}, {});
        rig().settle();
        QVERIFY(_users->users().empty());
        const QString folder = u"ActiveUsers/"_s % rig().names(u"ActiveUsers"_s).first();
        rig().cloud.setItem(rig().file(folder % u"/user.txt"_s), Here);
        update();
        const auto archive = _bench->storage->archivedUsers();
        const auto user = _users->users().front();
        _bench->take();
        _users->moveUser(user, archive);
        rig().settle();
        QCOMPARE(_bench->take(), QStringList());
        QCOMPARE(_users->users().size(), 1U);
        QCOMPARE(rig().names(u"ArchivedUsers"_s), QStringList{user->folder()});
        _users->moveUser(user, archive);
        rig().settle();
        QCOMPARE(rig().told->count(StoreProblem::What::Move), 1);
    }

    void aRefusedDownloadIsTold()
    {
        rig().cloud.setDownloadResult({FileResult::Outcome::Failed, u"offline"_s});
        rig().cloud.setItem(rig().file(Record), 0);
        rig().cloud.gather();
        QCOMPARE(rig().told->count(StoreProblem::What::Download), 1);
    }

    void aRegistryOutsideTheContainerIsAMistake()
    {
        QVERIFY_THROWS_EXCEPTION(
            TamberUbiquitousFolderMonitorException,
            TamberUbiquitousFolderMonitor(rig().context, rig().localRoot(), registryFilter()));
    }
};

QTEST_APPLESS_MAIN(tst_registryreports)
#include "tst_registryreports.moc"
