// SPDX-License-Identifier: GPL-3.0-or-later
#include "ContainerBench.h"
#include "store/TamberUbiquitousFolderMonitor.h"

#include <QRandomGenerator>
#include <QTest>

using namespace cvtamber;
using What = StoreProblem::What;

namespace {

const QString Folder = QStringLiteral("0C9B3E60-5A0D-4F43-9D77-0D3D0B4C6A11");

struct CloudBench : ContainerBench
{
    CloudBench()
        : ContainerBench(StoreRig::Place::Cloud)
    {}

    TamberFilesContainer::Item item(const QString &path, bool isDownloaded = true) const
    {
        return itemOf(u"one/" + path, isDownloaded);
    }
    TamberFilesContainer::Item itemOf(const QString &path, bool isDownloaded = true) const
    {
        auto item = std::make_shared<TamberUbiquitousItem>(rig.file(path));
        item->setState(isDownloaded ? TamberUbiquitousItem::Downloaded : 0);
        return item;
    }
    TamberFilesContainer::Item record(bool isDownloaded = true) const
    {
        return item(Folder + u"/folder.dat", isDownloaded);
    }
    void putRecord(const QByteArray &name) const { rig.put(u"one/" + Folder + u"/folder.dat", name); }

    Box box = open();
};

} // namespace

class tst_CloudContainers : public QObject
{
    Q_OBJECT

private slots:
    void changesItsListsOnlyByReports();
    void listsReportsInOrder();
    void handsOrphansToTheirFolder();
    void movesTheSameWhetherReportedBeforeOrAfter_data();
    void movesTheSameWhetherReportedBeforeOrAfter();
    void movesAFolderWhoseRecordHasGone();
    void unlistsWhatGoesBeforeItIsReported();
    void listsWhatComesWhereADocumentWasMovedAway();
    void opensAFolderOnceItIsHere();
    void forgetsAFolderThatGoesWhileItIsOpened();
    void tellsOfAReloadWhereTheFolderIsNow();
    void removesWhatNobodyListed();
    void keepsADocumentThatIsReportedDuringADeletion();
    void keepsAFolderThatStaysInADeletion();
    void takesOtherMonitorsForItsDocuments();
};

void tst_CloudContainers::changesItsListsOnlyByReports()
{
    CloudBench bench;
    bench.rig.put(u"one/a.tamber"_qs, "text");
    const auto box = bench.open();
    QVERIFY(box->isUbiquitous());
    box->addFileWithName(u"b"_qs, u"text"_qs);
    const auto added = box->addFolderWithName(u"Maths"_qs);
    QVERIFY(added && !added->isUbiquitous());
    bench.rig.settle();
    QVERIFY(box->files().empty() && box->folders().empty());
    box->ubiquotusItemAdded(bench.item(u"b.tamber"_qs));
    box->ubiquotusItemAdded(bench.item(u"a.tamber"_qs, false));
    box->ubiquotusItemAdded(bench.item(u"a.tamber"_qs));
    QCOMPARE(bench.delegate->take(), u"+0 +0"_qs);
    box->renameFileAtIndex(0, u"c"_qs);
    box->deleteFileAtIndex(1);
    bench.rig.settle();
    QVERIFY(bench.rig.has(u"one/c.tamber"_qs) && !bench.rig.has(u"one/b.tamber"_qs));
    QCOMPARE(bench.delegate->take(), QString());
    box->ubiquotusItemDeleted(bench.item(u"b.tamber"_qs));
    box->ubiquotusItemDeleted(bench.item(u"b.tamber"_qs));
    QCOMPARE(bench.delegate->take(), u"-1"_qs);
    QCOMPARE(bench.rig.cloud.queriesStarted(), 0);
}

// The same list as appending and sorting at each report.
void tst_CloudContainers::listsReportsInOrder()
{
    CloudBench bench;
    QRandomGenerator random(815);
    QStringList plain;
    for (int i = 0; i < 2000; ++i) {
        const QString name = QString::number(random.generate64(), 36) + u".tamber";
        if (i % 5 == 4) {
            const QString gone = plain.takeAt(random.bounded(int(plain.size())));
            bench.box->ubiquotusItemDeleted(bench.item(gone));
        }
        plain.append(name);
        bench.box->ubiquotusItemAdded(bench.item(name));
    }
    plain.sort(Qt::CaseInsensitive);
    QCOMPARE(ContainerBench::names(*bench.box), plain);
}

void tst_CloudContainers::handsOrphansToTheirFolder()
{
    CloudBench bench;
    bench.putRecord("Maths\nold\n");
    for (const QString &name : {u"b"_qs, u"gone"_qs, u"a"_qs})
        bench.box->ubiquotusItemAdded(bench.item(Folder + u'/' + name + u".tamber"));
    bench.box->ubiquotusItemDeleted(bench.item(Folder + u"/gone.tamber"));
    bench.box->ubiquotusItemAdded(bench.record());
    bench.box->ubiquotusItemAdded(bench.record());
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"[+0]"_qs);
    const auto folder = bench.box->folderAtIndex(0);
    QCOMPARE(folder->name(), u"Maths"_qs);
    QCOMPARE(ContainerBench::names(*folder), QStringList({u"a.tamber"_qs, u"b.tamber"_qs}));
    QVERIFY(bench.box->orphanedItemsForFolder(*folder).empty());
    bench.box->ubiquotusItemDeleted(bench.item(Folder + u"/a.tamber"));
    bench.box->ubiquotusItemAdded(bench.item(Folder + u"/c.tamber"));
    QCOMPARE(ContainerBench::names(*folder), QStringList({u"b.tamber"_qs, u"c.tamber"_qs}));
    QCOMPARE(bench.box->files().size(), 0U);
    bench.box->ubiquotusItemDeleted(bench.record());
    QCOMPARE(bench.delegate->take(), u"[-0]"_qs);
    // A record that is only replaced: the documents are not reported again.
    bench.box->ubiquotusItemAdded(bench.record());
    bench.rig.settle();
    QCOMPARE(ContainerBench::names(*bench.box->folderAtIndex(0)),
             QStringList({u"b.tamber"_qs, u"c.tamber"_qs}));
}

void tst_CloudContainers::movesTheSameWhetherReportedBeforeOrAfter_data()
{
    QTest::addColumn<bool>("isReportedFirst");
    QTest::newRow("reported after") << false;
    QTest::newRow("reported before") << true;
}

void tst_CloudContainers::movesTheSameWhetherReportedBeforeOrAfter()
{
    QFETCH(bool, isReportedFirst);
    CloudBench bench;
    bench.putRecord("Maths\n");
    bench.rig.put(u"one/" + Folder + u"/a.tamber", "text");
    bench.rig.put(u"one/b.tamber"_qs, "text");
    const QStringList paths{Folder + u"/a.tamber", Folder + u"/folder.dat", u"b.tamber"_qs};
    for (const QString &path : paths)
        bench.box->ubiquotusItemAdded(bench.item(path));
    bench.rig.settle();
    const auto other = bench.open(u"two"_qs);
    const auto report = [&] {
        for (const QString &path : paths) {
            bench.box->ubiquotusItemDeleted(bench.item(path));
            other->ubiquotusItemAdded(bench.itemOf(u"two/" + path));
        }
    };
    bench.box->moveFile(bench.box->files().front(), other);
    bench.box->moveFolder(bench.box->folderAtIndex(0), other);
    if (isReportedFirst)
        report();
    bench.rig.settle();
    if (!isReportedFirst)
        report();
    bench.rig.settle();
    QVERIFY(bench.box->files().empty() && bench.box->folders().empty());
    QCOMPARE(ContainerBench::names(*other), QStringList({u"b.tamber"_qs}));
    QCOMPARE(ContainerBench::folderNames(*other), QStringList({u"Maths"_qs}));
    QCOMPARE(ContainerBench::names(*other->folderAtIndex(0)), QStringList({u"a.tamber"_qs}));
}

void tst_CloudContainers::movesAFolderWhoseRecordHasGone()
{
    CloudBench bench;
    bench.putRecord("Maths\n");
    bench.rig.put(u"one/" + Folder + u"/a.tamber", "text");
    bench.box->ubiquotusItemAdded(bench.record());
    bench.rig.settle();
    bench.rig.erase(u"one/" + Folder + u"/folder.dat");
    const auto other = bench.open(u"two"_qs);
    bench.box->moveFolder(bench.box->folderAtIndex(0), other);
    bench.rig.settle();
    QCOMPARE(ContainerBench::folderNames(*other), QStringList({u"Maths"_qs}));
    QCOMPARE(bench.rig.bytes(u"two/" + Folder + u"/folder.dat"), QByteArray("Maths\n"));
}

// A move lists at once, everything else waits for reports; of what has come and gone meanwhile there is none.
void tst_CloudContainers::unlistsWhatGoesBeforeItIsReported()
{
    CloudBench bench;
    bench.putRecord("Maths\n");
    bench.box->ubiquotusItemAdded(bench.record());
    for (const QString &name : {u"a.tamber"_qs, u"b.tamber"_qs, u"c.tamber"_qs}) {
        bench.rig.put(u"one/" + name, "text");
        bench.box->ubiquotusItemAdded(bench.item(name));
    }
    bench.rig.settle();
    const auto other = bench.open(u"two"_qs);
    for (const auto &file : std::vector(bench.box->files()))
        bench.box->moveFile(file, other);
    bench.box->moveFolder(bench.box->folderAtIndex(0), other);
    bench.rig.settle();
    QCOMPARE(other->files().size(), size_t(3));
    other->ubiquotusItemAdded(bench.itemOf(u"two/c.tamber"_qs));
    other->deleteFileAtIndex(2);
    other->deleteFileAtIndex(1);
    other->renameFileAtIndex(0, u"d"_qs);
    other->deleteFolderAtIndex(0);
    bench.rig.settle();
    QCOMPARE(ContainerBench::names(*other), QStringList({u"c.tamber"_qs}));
    QCOMPARE(other->foldersCount(), 0);
}

// Nobody looked at the folder in between: for the cloud it is another version of the same document.
void tst_CloudContainers::listsWhatComesWhereADocumentWasMovedAway()
{
    CloudBench bench;
    bench.putRecord("Maths\n");
    const QStringList paths{u"a.tamber"_qs, Folder + u"/b.tamber"};
    bench.box->ubiquotusItemAdded(bench.record());
    bench.rig.settle();
    for (const QString &path : paths) {
        bench.rig.put(u"one/" + path, "text");
        bench.box->ubiquotusItemAdded(bench.item(path));
    }
    const auto folder = bench.box->folderAtIndex(0);
    const auto other = bench.open(u"two"_qs);
    bench.box->moveFile(bench.box->files().front(), other);
    folder->moveFile(folder->files().front(), other);
    bench.rig.settle();
    QVERIFY(bench.box->files().empty() && folder->files().empty());
    for (const QString &path : paths) {
        bench.rig.put(u"one/" + path, "newer");
        bench.box->ubiquotusItemDownloadedAgain(bench.item(path));
    }
    QCOMPARE(ContainerBench::names(*bench.box), QStringList({u"a.tamber"_qs}));
    QCOMPARE(ContainerBench::names(*folder), QStringList({u"b.tamber"_qs}));
    // The same where the folder itself was moved and comes back with what was saved in it elsewhere.
    bench.box->moveFolder(folder, other);
    bench.rig.settle();
    QCOMPARE(bench.box->foldersCount(), 0);
    bench.putRecord("Maths\n");
    bench.box->ubiquotusItemDownloadedAgain(bench.record());
    bench.rig.settle();
    QCOMPARE(ContainerBench::names(*bench.box->folderAtIndex(0)), QStringList({u"b.tamber"_qs}));
}

void tst_CloudContainers::opensAFolderOnceItIsHere()
{
    CloudBench bench;
    bench.box->ubiquotusItemAdded(bench.record(false));
    bench.rig.settle();
    QCOMPARE(bench.rig.cloud.downloads(), QList<FileURL>({bench.record()->url()}));
    QCOMPARE(bench.box->foldersCount(), 0);
    bench.putRecord("Maths\n");
    bench.box->ubiquotusItemDownloaded(bench.record());
    bench.rig.settle();
    QCOMPARE(ContainerBench::folderNames(*bench.box), QStringList({u"Maths"_qs}));
    bench.putRecord("Art\n");
    bench.box->ubiquotusItemDownloaded(bench.record());
    bench.rig.settle();
    QCOMPARE(ContainerBench::folderNames(*bench.box), QStringList({u"Art"_qs}));
    bench.rig.cloud.setDownloadResult({FileResult::Outcome::Failed, u"no network"_qs});
    bench.box->ubiquotusItemAdded(bench.item(u"11111111-1111-1111-1111-111111111111/folder.dat"_qs, false));
    QCOMPARE(bench.told(What::Download), 1);
}

void tst_CloudContainers::forgetsAFolderThatGoesWhileItIsOpened()
{
    CloudBench bench;
    bench.putRecord("Maths\n");
    bench.box->ubiquotusItemAdded(bench.record());
    bench.box->ubiquotusItemDeleted(bench.record());
    bench.rig.settle();
    QCOMPARE(bench.box->foldersCount(), 0);
    bench.box->ubiquotusItemAdded(bench.record());
    bench.box->ubiquotusItemDeleted(bench.record());
    bench.box->ubiquotusItemAdded(bench.record());
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"[+0]"_qs);
}

void tst_CloudContainers::tellsOfAReloadWhereTheFolderIsNow()
{
    CloudBench bench;
    const QString other = u"11111111-1111-1111-1111-111111111111/folder.dat"_qs;
    bench.putRecord("Maths\n");
    bench.rig.put(u"one/" + other, "Art\n");
    bench.box->ubiquotusItemAdded(bench.record());
    bench.box->ubiquotusItemAdded(bench.item(other));
    bench.rig.settle();
    bench.delegate->take();
    bench.putRecord("Zoology\n");
    bench.box->ubiquotusItemDownloadedAgain(bench.record());
    bench.box->ubiquotusItemDeleted(bench.item(other));
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"[-0] [*0]"_qs);
    QCOMPARE(bench.box->folderAtIndex(0)->name(), u"Zoology"_qs);
    bench.box->ubiquotusItemDownloadedAgain(bench.record());
    bench.box->ubiquotusItemDeleted(bench.record());
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"[-0]"_qs);
}

void tst_CloudContainers::removesWhatNobodyListed()
{
    CloudBench bench;
    bench.putRecord("Maths\n");
    for (const char *name : {"a.tamber", ".b.tamber.icloud", "keep.txt"})
        bench.rig.put(u"one/" + QString::fromLatin1(name), "text");
    QList<bool> reports;
    bench.box->deleteStorageWithCompletion([&](bool ok) { reports.append(ok); });
    QCOMPARE(reports, QList<bool>({true}));
    QCOMPARE(bench.rig.names(u"one"_qs), QStringList({Folder, u"keep.txt"_qs}));
    QVERIFY(bench.rig.names(u"one/" + Folder).isEmpty());
    // Nobody has seen it: another computer may have written it a moment ago.
    QCOMPARE(bench.rig.trash.items, QList<FileURL>({bench.item(u"a.tamber"_qs)->url()}));
}

void tst_CloudContainers::keepsADocumentThatIsReportedDuringADeletion()
{
    CloudBench bench;
    for (const QString &name : {u"a.tamber"_qs, u"b.tamber"_qs}) {
        bench.rig.put(u"one/" + name, "text");
        bench.box->ubiquotusItemAdded(bench.item(name));
    }
    QList<bool> reports;
    bench.box->deleteStorageWithCompletion([&](bool ok) { reports.append(ok); });
    bench.rig.put(u"one/z.tamber"_qs, "text");
    bench.box->ubiquotusItemAdded(bench.item(u"z.tamber"_qs));
    bench.rig.settle();
    QCOMPARE(bench.rig.names(u"one"_qs), QStringList({u"z.tamber"_qs}));
    QCOMPARE(ContainerBench::names(*bench.box), QStringList({u"z.tamber"_qs}));
    QCOMPARE(reports, QList<bool>());
}

// The one that went has been reported before its deletion was done.
void tst_CloudContainers::keepsAFolderThatStaysInADeletion()
{
    CloudBench bench;
    const QString other = u"11111111-1111-1111-1111-111111111111/"_qs;
    const QString document = other + u"a.tamber";
    bench.putRecord("Maths\n");
    bench.rig.put(u"one/" + other + u"folder.dat", "Art\n");
    bench.rig.put(u"one/" + document, "text");
    for (const auto &item : {bench.record(), bench.item(other + u"folder.dat"), bench.item(document)})
        bench.box->ubiquotusItemAdded(item);
    bench.rig.settle();
    bench.operations.failPath(bench.rig.path(u"one/" + document), std::errc::io_error);
    bench.box->deleteStorageWithCompletion({});
    bench.box->ubiquotusItemDeleted(bench.record());
    bench.rig.settle();
    QVERIFY(bench.rig.has(u"one/" + document));
    QVERIFY(!bench.rig.has(u"one/" + Folder));
    QCOMPARE(ContainerBench::folderNames(*bench.box), QStringList({u"Art"_qs}));
}

void tst_CloudContainers::takesOtherMonitorsForItsDocuments()
{
    CloudBench bench;
    TamberUbiquitousFolderMonitor other(bench.rig.context, bench.rig.directory(u"one"_qs), u"*"_qs);
    bench.box->ubiquitousMonitorItemAdded(other, bench.item(u"a.tamber"_qs));
    bench.box->ubiquitousMonitorItemAdded(other, bench.record());
    bench.box->ubiquitousMonitorItemDownloaded(other, bench.record());
    bench.box->ubiquitousMonitorItemDeleted(other, bench.item(u"a.tamber"_qs));
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"+0 -0"_qs);
    QCOMPARE(bench.rig.log.count(u"[info] x-x-x-x-x-x-x"_qs), 4);
}

QTEST_GUILESS_MAIN(tst_CloudContainers)
#include "tst_cloudcontainers.moc"
