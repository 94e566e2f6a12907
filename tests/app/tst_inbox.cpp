// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Inbox.h"
#include "app/TextImport.h"
#include "base/PathBytes.h"
#include "support/Rows.h"
#include "support/StoreRig.h"
#include "support/TemporaryLocations.h"

#include <sys/stat.h>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

// An Inbox whose receiver takes as many files as the test lets it.
class InboxBench
{
public:
    InboxBench()
    {
        inbox.setReceiver({[this] { return ready; },
                           [this](const FileURL &copy) {
                               taken.append(copy.lastPathComponent());
                               texts.append(rig.disk.read(copy).bytes);
                               ready = !takesOneOnly;
                           },
                           [this](const QString &sentence) { refusals.append(sentence); },
                           [this] { refusedAtEnds.append(refusals.size()); }});
    }
    QStringList inInbox() const
    {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    StoreRig rig;
    TemporaryLocations locations;
    FileURL folder = Inbox::folder(locations);
    Inbox inbox{rig.context, rig.tasks, locations};
    bool ready = true;
    bool takesOneOnly = false;
    QStringList taken;
    QByteArrayList texts;
    QStringList refusals;
    // How many files had been refused at each end of the copying.
    QList<qsizetype> refusedAtEnds;
};

} // namespace

class tst_inbox : public QObject
{
    Q_OBJECT

private slots:
    void theOriginalIsCopiedAndStays()
    {
        InboxBench bench;
        bench.rig.put(u"Letter.txt"_s, "Dear Ann");
        bench.inbox.handOver({bench.rig.path(u"Letter.txt"_s)});
        QVERIFY(bench.taken.isEmpty());
        bench.rig.settle();
        QCOMPARE(bench.taken, QStringList{u"Letter.txt"_s});
        QCOMPARE(bench.texts, QByteArrayList{"Dear Ann"});
        QCOMPARE(bench.rig.bytes(u"Letter.txt"_s), QByteArray("Dear Ann"));
        QVERIFY(bench.inbox.isIdle());
    }

    void filesComeInTheirOrderWhenTheReceiverIsReady()
    {
        InboxBench bench;
        bench.takesOneOnly = true;
        for (const QString &name : {u"b.txt"_s, u"a.txt"_s, u"c.txt"_s})
            bench.rig.put(name, name.toUtf8());
        bench.inbox.handOver({bench.rig.path(u"b.txt"_s), bench.rig.path(u"a.txt"_s)});
        bench.inbox.handOver({bench.rig.path(u"c.txt"_s)});
        bench.rig.settle();
        QCOMPARE(bench.taken, QStringList{u"b.txt"_s});
        QCOMPARE(bench.inInbox().size(), 3);
        bench.ready = true;
        bench.inbox.giveOut();
        QCOMPARE(bench.taken, (QStringList{u"b.txt"_s, u"a.txt"_s}));
        QVERIFY(!bench.inbox.isIdle());
    }

    void twoFilesOfOneNameAreBothKept()
    {
        InboxBench bench;
        bench.rig.put(u"one/Letter.txt"_s, "1");
        bench.rig.put(u"two/Letter.txt"_s, "2");
        bench.inbox.handOver({bench.rig.path(u"one/Letter.txt"_s), bench.rig.path(u"two/Letter.txt"_s)});
        bench.rig.settle();
        QCOMPARE(bench.taken, (QStringList{u"Letter.txt"_s, u"Letter 2.txt"_s}));
        QCOMPARE(bench.texts, (QByteArrayList{"1", "2"}));
    }

    void whatCannotBeTakenOverIsToldAndLeftOut_data()
    {
        columns<QString>("kind");
        for (const char *kind : {"vanished", "folder", "too large", "pipe", "link to nothing"})
            row(kind, QString::fromLatin1(kind));
    }
    void whatCannotBeTakenOverIsToldAndLeftOut()
    {
        QFETCH(QString, kind);
        InboxBench bench;
        const QString path = bench.rig.path(u"Odd.txt"_s);
        if (kind == u"folder")
            bench.rig.makeFolder(u"Odd.txt"_s);
        else if (kind == u"too large")
            bench.rig.put(u"Odd.txt"_s, QByteArray(LargestImport + 1, 'x'));
        else if (kind == u"pipe")
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        else if (kind == u"link to nothing")
            QVERIFY(QFile::link(u"/nowhere/at/all"_s, path));
        bench.rig.put(u"Good.txt"_s, "text");
        bench.inbox.handOver({path, bench.rig.path(u"Good.txt"_s)});
        bench.rig.settle();
        QCOMPARE(bench.refusals.size(), 1);
        QCOMPARE(bench.refusedAtEnds, QList<qsizetype>{1});
        QVERIFY(bench.refusals.first().contains(u"Odd.txt"));
        QCOMPARE(bench.taken, QStringList{u"Good.txt"_s});
    }

    void aLinkIsFollowedAndStays()
    {
        InboxBench bench;
        bench.rig.put(u"below/Real.txt"_s, "text");
        QVERIFY(QFile::link(bench.rig.path(u"below/Real.txt"_s), bench.rig.path(u"Link.txt"_s)));
        bench.inbox.handOver({bench.rig.path(u"Link.txt"_s)});
        bench.rig.settle();
        QCOMPARE(bench.taken, QStringList{u"Link.txt"_s});
        QCOMPARE(bench.texts, QByteArrayList{"text"});
        QVERIFY(bench.rig.has(u"Link.txt"_s) && bench.rig.has(u"below/Real.txt"_s));
    }

    void everyNameFindsAPlace_data()
    {
        columns<QByteArray, QString>("name", "title");
        row("without an ending", "README"_ba, u"README"_s);
        row("hidden", ".notes"_ba, u"notes"_s);
        row("dots", "a.b.txt"_ba, u"a.b"_s);
        row("a long ending", "a.b.markdown"_ba, u"a.b"_s);
        row("blank", " .txt"_ba, u"Untitled"_s);
        row("line break", "a\nb.txt"_ba, u"a-b"_s);
        row("as long as can be", QByteArray(251, 'x') + ".txt", QString(248, u'x'));
        row("Chinese", "盲文.txt"_ba, u"盲文"_s);
        row("not UTF-8", "caf\xE9.txt"_ba, u"caf\xDCE9"_s);
    }
    void everyNameFindsAPlace()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, title);
        InboxBench bench;
        const QByteArray path = QFile::encodeName(bench.rig.path()) + '/' + name;
        FILE *const file = std::fopen(path.constData(), "w");
        QVERIFY(file);
        std::fputs("text", file);
        std::fclose(file);
        bench.inbox.handOver({bench.rig.path() % u'/' % pathOfBytes(name)});
        bench.rig.settle();
        QCOMPARE(bench.refusals, QStringList());
        QCOMPARE(bench.texts, QByteArrayList{"text"});
        QCOMPARE(FileURL::file(u'/' % bench.taken.value(0)).nameWithoutExtension(), title);
        // Qt does not remove what it cannot name.
        for (const QString &folder : {bench.rig.path(), bench.folder.path()}) {
            QList<FolderEntry> entries;
            QVERIFY(!FileOperations::system().list(folder, entries));
            for (const FolderEntry &entry : entries)
                FileOperations::system().removeFile(folder % u'/' % entry.name);
        }
    }

    void anOrdinaryLaunchEmptiesIt()
    {
        InboxBench bench;
        QDir().mkpath(bench.folder.path() + u"/folder/below");
        bench.rig.put(u"Letter.txt"_s, "text");
        QVERIFY(QFile::copy(bench.rig.path(u"Letter.txt"_s), bench.folder.path() + u"/Letter.txt"));
        Inbox::removeAll(bench.rig.context, bench.locations);
        // What is handed over meanwhile is not taken for what was there.
        bench.inbox.handOver({bench.rig.path(u"Letter.txt"_s)});
        bench.rig.settle();
        QCOMPARE(bench.taken, QStringList{u"Letter.txt"_s});
        QCOMPARE(bench.inInbox(), QStringList{u"Letter.txt"_s});
        QVERIFY(!QDir(bench.folder.path() + u"/folder").exists());
    }

    void whatALinkInItsPlaceLeadsToIsLeftAlone()
    {
        InboxBench bench;
        bench.rig.put(u"mine/Letter.txt"_s, "text");
        QVERIFY(QFile::link(bench.rig.path(u"mine"_s), bench.folder.path()));
        Inbox::removeAll(bench.rig.context, bench.locations);
        bench.rig.settle();
        QVERIFY(bench.rig.has(u"mine/Letter.txt"_s));
    }
};

QTEST_GUILESS_MAIN(tst_inbox)
#include "tst_inbox.moc"
