// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MGlobals.h"
#include "app/StoreSwitch.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "support/Rows.h"
#include "support/StoreRig.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString Ann = u"11111111-1111-1111-1111-111111111111"_s;
const QString Bob = u"22222222-2222-2222-2222-222222222222"_s;

// A store that has gone before what it stands on does.
class SwitchRig : public StoreRig
{
public:
    ~SwitchRig() { closeStorage(); }
};

QByteArray fileAt(const FileURL &root, const QString &path)
{
    QFile file(root.path() % u'/' % path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_storeswitch : public QObject
{
    Q_OBJECT

private slots:
    void theStoreMovesToAnotherPlaceAndBack()
    {
        SwitchRig rig;
        rig.put(u"ActiveUsers/"_s % Ann % u"/user.txt"_s, "Ann\nLee\n\n");
        makeStorage(rig.context, rig.localRoot());
        QCOMPARE(MGlobals::tamberStorage(), gTamberStorage);
        QCOMPARE(gTamberStorage->activeUsers()->users().size(), 1U);
        const auto storage = gTamberStorage;
        switchStorage(rig.context, rig.cloudRoot());
        QCOMPARE(gTamberStorage, storage);
        QVERIFY(gTamberStorage->isUbiquitous());
        switchStorage(rig.context, rig.localRoot());
        QCOMPARE(gTamberStorage->activeUsers()->users().size(), 1U);
    }

    void aPlaceThatCannotBeUsedLeavesNoStore_data()
    {
        columns<QString>("kind");
        for (const char *kind : {"nil", "missing", "a file", "a file in a users folder's place"})
            row(kind, QString::fromLatin1(kind));
    }
    void aPlaceThatCannotBeUsedLeavesNoStore()
    {
        QFETCH(QString, kind);
        SwitchRig rig;
        makeStorage(rig.context, rig.localRoot());
        if (kind == u"a file")
            rig.put(u"place"_s, "x");
        else if (kind != u"missing")
            rig.put(u"place/ArchivedUsers"_s, "x");
        switchStorage(rig.context, kind == u"nil" ? FileURL() : rig.directory(u"place"_s));
        QVERIFY(!gTamberStorage && !MGlobals::tamberStorage());
        // And the way back.
        switchStorage(rig.context, rig.localRoot());
        QVERIFY(gTamberStorage && MGlobals::tamberStorage());
    }

    void usersMoveWithAllThatIsTheirs()
    {
        SwitchRig rig;
        rig.put(u"ActiveUsers/"_s % Ann % u"/user.txt"_s, "Ann\nLee\n\n");
        rig.put(u"ActiveUsers/"_s % Ann % u"/Letter.tamber"_s, "text");
        rig.put(u"ArchivedUsers/"_s % Bob % u"/user.txt"_s, "Bob\n\n\n");
        moveUsersToCloud(rig.context, rig.localRoot(), rig.cloudRoot());
        rig.settle();
        QCOMPARE(fileAt(rig.cloudRoot(), u"ActiveUsers/"_s % Ann % u"/Letter.tamber"_s), QByteArray("text"));
        QCOMPARE(fileAt(rig.cloudRoot(), u"ArchivedUsers/"_s % Bob % u"/user.txt"_s),
                 QByteArray("Bob\n\n\n"));
        QCOMPARE(rig.names(u"ActiveUsers"_s) + rig.names(u"ArchivedUsers"_s), QStringList());
        QCOMPARE(rig.told->problems.size(), 0);
    }

    void whatStandsInTheCloudIsNeverReplaced()
    {
        SwitchRig rig;
        const QString record = u"ActiveUsers/"_s % Ann % u"/user.txt"_s;
        rig.put(record, "mine");
        rig.put(u"ActiveUsers/"_s % Bob % u"/user.txt"_s, "Bob");
        QDir().mkpath(rig.cloudRoot().path() % u"/ActiveUsers/"_s % Ann);
        QFile theirs(rig.cloudRoot().path() % u'/' % record);
        QVERIFY(theirs.open(QIODevice::WriteOnly) && theirs.write("theirs") == 6);
        theirs.close();
        moveUsersToCloud(rig.context, rig.localRoot(), rig.cloudRoot());
        rig.settle();
        QCOMPARE(fileAt(rig.cloudRoot(), record), QByteArray("theirs"));
        QCOMPARE(rig.bytes(record), QByteArray("mine"));
        // The others are not held up, and the person hears of it.
        QCOMPARE(fileAt(rig.cloudRoot(), u"ActiveUsers/"_s % Bob % u"/user.txt"_s), QByteArray("Bob"));
        QCOMPARE(rig.told->count(StoreProblem::What::Move), 1);
        QCOMPARE(rig.log.count(u"[info] Error"_s), 1);
    }

    void withoutAContainerNothingMoves()
    {
        SwitchRig rig;
        rig.put(u"ActiveUsers/"_s % Ann % u"/user.txt"_s, "Ann\nLee\n\n");
        moveUsersToCloud(rig.context, rig.localRoot(), {});
        rig.settle();
        QVERIFY(rig.has(u"ActiveUsers/"_s % Ann % u"/user.txt"_s));
    }
};

QTEST_GUILESS_MAIN(tst_storeswitch)
#include "tst_storeswitch.moc"
