// SPDX-License-Identifier: GPL-3.0-or-later
#include "RegistryBench.h"
#include "support/Rows.h"
#include "support/TemporaryLocations.h"

#include <QFile>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString Anna = u"ActiveUsers/11111111-1111-1111-1111-111111111111"_s;

} // namespace

class tst_storage : public QObject
{
    Q_OBJECT

private slots:
    void aRootThatCannotBeUsedGivesNoStorage_data()
    {
        columns<QString, QString, bool>("file", "link", "isUsable");
        row("empty folder", QString(), QString(), true);
        row("root is a file", u"root"_s, QString(), false);
        row("root is missing", QString(), QString(), false);
        row("a file in the place of active users", u"root/ActiveUsers"_s, QString(), false);
        row("a link in the place of archived users", QString(), u"root/ArchivedUsers"_s, false);
    }
    void aRootThatCannotBeUsedGivesNoStorage()
    {
        QFETCH(QString, file);
        QFETCH(QString, link);
        StoreRig rig;
        const QByteArray tag = QTest::currentDataTag();
        if (tag != "root is a file" && tag != "root is missing")
            rig.makeFolder(u"root"_s);
        if (!file.isEmpty())
            rig.put(file, "x");
        if (!link.isEmpty())
            QVERIFY(QFile::link(rig.path(), rig.path(link)));
        const auto storage = TamberStorage::withURL(rig.context, rig.directory(u"root"_s));
        QTEST(storage != nullptr, "isUsable");
        QVERIFY(!storage || !storage->createSubfolder(u"../elsewhere"_s));
        QCOMPARE(rig.names(u"root"_s).size(), storage ? 2 : rig.names(u"root"_s).size());
    }

    void theTwoPlaces()
    {
        StoreRig rig;
        TemporaryLocations locations;
        QCOMPARE(TamberStorage::localStorageURL(locations), FileURL::directory(locations.documentsFolder()));
        QCOMPARE(TamberStorage::ubiquotusStorageURL(rig.cloud), rig.cloudRoot());
        QVERIFY(TamberStorage::withURL(rig.context, rig.cloudRoot())->isUbiquitous());
        rig.cloud.setMissing(true);
        QVERIFY(TamberStorage::ubiquotusStorageURL(rig.cloud).isNil());
        QVERIFY(!TamberStorage::withURL(rig.context, TamberStorage::ubiquotusStorageURL(rig.cloud)));
    }

    // Below its root the store follows no link, so the root itself must not be one.
    void aDocumentsFolderBehindALinkIsUsed()
    {
        class LinkedLocations final : public Locations
        {
        public:
            explicit LinkedLocations(QString link)
                : _link(std::move(link))
            {}
            QString documentsFolder() override { return _link; }
            QString stateFolder() override { return _link; }
            QString temporaryFolder() override { return _link; }

        private:
            QString _link;
        };
        StoreRig rig;
        rig.makeFolder(u"kept"_s);
        QVERIFY(QFile::link(rig.path(u"kept"_s), rig.path(u"link"_s)));
        LinkedLocations locations(rig.path(u"link"_s));
        QVERIFY(TamberStorage::withURL(rig.context, TamberStorage::localStorageURL(locations)));
        QCOMPARE(rig.names(u"kept"_s).size(), 2);
    }

    void anotherRootHasOtherRegistries()
    {
        const auto bench = RegistryBench::make();
        StoreRig &rig = bench->rig;
        rig.put(Anna % u"/user.txt"_s, "Anna\n\n\n");
        const auto users = bench->open();
        bench->storage->setStoreURL(rig.root());
        QCOMPARE(bench->storage->activeUsers(), users);
        // A name that is not saved yet belongs to the old root.
        users->users().front()->setFirstName(u"Anne"_s);
        bench->storage->setStoreURL(rig.cloudRoot());
        rig.settle();
        QCOMPARE(rig.bytes(Anna % u"/user.txt"_s), "Anne\n\n\n"_ba);
        QVERIFY(bench->storage->isUbiquitous());
        QVERIFY(bench->storage->activeUsers() != users);
        QCOMPARE(bench->storage->activeUsers()->url(), rig.cloudRoot().appendingDirectory(u"ActiveUsers"_s));
        rig.put(u"other"_s, "in the way");
        bench->storage->setStoreURL(rig.directory(u"other"_s));
        QCOMPARE(rig.log.count(u"[***ERROR***] TamberStorage::createSubfolder failed"_s), 1);
    }

    void aMovedUserIsListedByTheTargetAlone()
    {
        const auto bench = RegistryBench::make();
        StoreRig &rig = bench->rig;
        rig.put(Anna % u"/user.txt"_s, "Anna\n\n\n");
        const auto users = bench->open();
        const auto archive = bench->storage->archivedUsers();
        const auto user = users->users().front();
        user->setFirstName(u"Anne"_s);
        bench->take();
        bench->storage->moveUser(user, archive);
        rig.settle();
        QCOMPARE(bench->take(), QStringList{u"will delete Anne"_s});
        QCOMPARE(RegistryBench::namesOf(*users), QStringList{u"Anne"_s});
        QCOMPARE(RegistryBench::namesOf(*archive), QStringList{u"Anne"_s});
        QCOMPARE(rig.names(u"ActiveUsers"_s), QStringList());
        bench->storage->moveUser(user, archive);
        rig.settle();
        QCOMPARE(archive->users().size(), 1U);
        QCOMPARE(rig.log.count(u"[***ERROR***] Error: "_s), 1);
        QCOMPARE(rig.told->count(StoreProblem::What::Move), 1);
    }

    void closingLetsEverythingGo()
    {
        const auto bench = RegistryBench::make();
        bench->rig.put(Anna % u"/user.txt"_s, "Anna\n\n\n");
        std::weak_ptr<TamberUsers> users = bench->open();
        bench->rig.settle();
        bench->storage->close();
        QVERIFY(users.expired());
        std::weak_ptr<TamberStorage> storage = bench->storage;
        bench->storage.reset();
        QVERIFY(storage.expired());
        for (const auto &line :
             {u"TamberUser::dealloc"_s, u"TamberUsers::dealloc"_s, u"TamberStorage::dealloc"_s})
            QCOMPARE(bench->rig.log.count(u"[info] "_s % line), 1);
    }
};

QTEST_APPLESS_MAIN(tst_storage)
#include "tst_storage.moc"
