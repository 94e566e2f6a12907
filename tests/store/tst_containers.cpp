// SPDX-License-Identifier: GPL-3.0-or-later
#include "ContainerBench.h"
#include "store/StoreNames.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace std::chrono_literals;
using Call = FaultyFileOperations::Call;
using What = StoreProblem::What;

class tst_Containers : public QObject
{
    Q_OBJECT

private slots:
    void scansDocumentsOnce();
    void tellsAListingThatFailed();
    void knowsATitle_data();
    void knowsATitle();
    void addsAtOnce();
    void keepsWhatHasTheName();
    void savesUnderAFreeTitle_data();
    void savesUnderAFreeTitle();
    void savesNothingWithoutAParent();
    void deletesWhatWasMeant_data();
    void deletesWhatWasMeant();
    void renames_data();
    void renames();
    void keepsUnsavedText_data();
    void keepsUnsavedText();
    void aFailedMoveLeavesWhatIsThere_data();
    void aFailedMoveLeavesWhatIsThere();
    void showsTheDirectoryAsItIs();
    void keepsFolders();
    void movesFolders_data();
    void movesFolders();
    void makesNoFolderWhereNothingCanBeMade();
    void deletesItsStorage_data();
    void deletesItsStorage();
};

void tst_Containers::scansDocumentsOnce()
{
    ContainerBench bench;
    for (const char *name : {"b.tamber", "A.tamber", ".x.tamber", "Report.TAMBER", "Paper.tamber.nextcloud"})
        bench.rig.put(u"one/" + QString::fromLatin1(name), "text");
    bench.rig.makeFolder(QStringLiteral("one/a folder"));
    QFile::link(bench.rig.path(QStringLiteral("one/b.tamber")),
                bench.rig.path(QStringLiteral("one/l.tamber")));
    int listings = 0;
    bench.operations.setBefore([&](Call call, const QString &path) {
        listings += call == Call::List && path == bench.rig.path(QStringLiteral("one")) ? 1 : 0;
    });
    const auto box = bench.open();
    QCOMPARE(listings, 1);
    QStringList found = ContainerBench::names(*box);
    found.sort();
    QCOMPARE(found, QStringList({u"A.tamber"_qs, u"b.tamber"_qs}));
    QCOMPARE(bench.delegate->take(), QString());
    // A directory without a record is a folder without a name.
    QCOMPARE(box->foldersCount(), 1);
    QVERIFY(box->folderAtIndex(0)->name().isNull());
    box->addFileWithName(u"a2"_qs, u"text"_qs);
    QCOMPARE(ContainerBench::names(*box), QStringList({u"A.tamber"_qs, u"a2.tamber"_qs, u"b.tamber"_qs}));
    QCOMPARE(bench.delegate->take(), u"+1"_qs);
}

void tst_Containers::tellsAListingThatFailed()
{
    ContainerBench bench;
    bench.rig.put(u"one/a.tamber"_qs, "text");
    bench.refuse(Call::List);
    bench.open();
    QCOMPARE(bench.told(What::List), 1);
}

void tst_Containers::knowsATitle_data()
{
    columns<QString, QString, bool>("file", "title", "expected");
    row("in other letters", u"Report.tamber"_qs, u"report"_qs, true);
    row("another one", u"Report.tamber"_qs, u"reports"_qs, false);
    row("composed", u"e\u0301.tamber"_qs, u"\u00E9"_qs, true);
    row("as it is repaired", u"a-b.tamber"_qs, u"a/b"_qs, true);
    row("with a dot", u"a.b.tamber"_qs, u"A.B"_qs, true);
    row("a lone surrogate", u"\xDCFF.tamber"_qs, u"\xDCFE"_qs, false);
}

void tst_Containers::knowsATitle()
{
    QFETCH(QString, file);
    QFETCH(QString, title);
    ContainerBench bench;
    const auto box = bench.open();
    box->loadFileWithFilename(file);
    QTEST(box->fileExists(title), "expected");
}

void tst_Containers::addsAtOnce()
{
    ContainerBench bench;
    const auto box = bench.open();
    QList<bool> saved;
    const auto file = box->addFileWithName(u"../Letter"_qs, u"Dear \u00E9"_qs,
                                           [&](const FileResult &result) { saved.append(result.ok()); });
    QCOMPARE(file->name(), u"-Letter.tamber"_qs);
    QCOMPARE(bench.delegate->take(), u"+0"_qs);
    QVERIFY(saved.isEmpty());
    bench.rig.settle();
    QCOMPARE(saved, QList<bool>({true}));
    QCOMPARE(bench.rig.bytes(u"one/-Letter.tamber"_qs), QByteArray("Dear \xC3\xA9"));
    QCOMPARE(file->documentState(), int(Document::Closed));
    QVERIFY(bench.rig.log.lines.contains(
        u"[info] -(TamberDocument*)addFileWithName:(NSString*)name andTextContent:(NSString*)content"_qs));
}

void tst_Containers::keepsWhatHasTheName()
{
    ContainerBench bench;
    bench.rig.put(u"one/b.tamber"_qs, "other");
    const auto box = bench.open();
    box->addFileWithName(u"b"_qs, u"not listed"_qs);
    bench.rig.put(u"one/a.tamber"_qs, "first");
    FileResult saved;
    const auto second =
        box->addFileWithName(u"a"_qs, u"second"_qs, [&](const FileResult &result) { saved = result; });
    bench.rig.settle();
    QCOMPARE(saved.outcome, FileResult::Outcome::AlreadyExists);
    QCOMPARE(box->files().size(), 2U);
    QCOMPARE(bench.told(What::Save), 2);
    // The second one has no file of its own that could be moved or removed.
    box->renameFileAtIndex(box->indexOfFile(second), u"c"_qs);
    bench.rig.settle();
    box->deleteFile(second);
    bench.rig.settle();
    QCOMPARE(bench.rig.names(u"one"_qs), QStringList({u"a.tamber"_qs, u"b.tamber"_qs}));
    QCOMPARE(bench.rig.bytes(u"one/a.tamber"_qs), QByteArray("first"));
    QCOMPARE(ContainerBench::names(*box), QStringList(u"b.tamber"_qs));
}

void tst_Containers::savesUnderAFreeTitle_data()
{
    columns<QString, bool, QString>("title", "isDiskDeaf", "saved");
    row("free", u"Diary"_qs, false, u"Diary"_qs);
    row("listed and on the disk", u"letter"_qs, false, u"letter 4"_qs);
    row("the disk does not say", u"Letter"_qs, true, u"Letter 3"_qs);
}

void tst_Containers::savesUnderAFreeTitle()
{
    QFETCH(QString, title);
    ContainerBench bench;
    bench.rig.put(u"one/Letter.tamber"_qs, "1");
    bench.rig.put(u"one/LETTER 2.tamber"_qs, "2");
    const auto box = bench.open();
    bench.rig.put(u"one/letter 3.tamber"_qs, "3");
    QFETCH(bool, isDiskDeaf);
    if (isDiskDeaf)
        bench.refuse(FaultyFileOperations::Call::Status);
    QString under;
    box->saveUnderFreeTitle(title, u"text"_qs,
                            [&](const QString &saved, const FileResult &) { under = saved; });
    QVERIFY(bench.operations.calls() < 30);
    bench.rig.settle();
    QTEST(under, "saved");
}

void tst_Containers::savesNothingWithoutAParent()
{
    ContainerBench bench;
    const auto box = bench.open();
    bench.location.reset();
    FileResult saved;
    box->addFileWithName(u"a"_qs, u"text"_qs, [&](const FileResult &result) { saved = result; });
    bench.rig.settle();
    QVERIFY(!saved.ok());
    QVERIFY(box->files().empty());
    QCOMPARE(bench.told(What::Save), 1);
}

void tst_Containers::deletesWhatWasMeant_data()
{
    columns<QString, int, bool>("trouble", "problems", "isLeft");
    row("none", QString(), 0, false);
    row("refused", u"refused"_qs, 1, true);
    row("gone already", u"gone"_qs, 0, false);
    row("open with changes", u"open"_qs, 0, false);
}

void tst_Containers::deletesWhatWasMeant()
{
    QFETCH(QString, trouble);
    ContainerBench bench;
    for (const QString &name : {u"b"_qs, u"c"_qs})
        bench.rig.put(u"one/" + name + u".tamber", "text");
    const auto box = bench.open();
    box->sortFiles();
    const auto file = box->files().front();
    if (trouble == u"refused")
        bench.refuse(Call::RemoveFile);
    if (trouble == u"gone")
        bench.rig.erase(u"one/b.tamber"_qs);
    if (trouble == u"open") {
        file->openWithCompletionHandler({});
        bench.rig.settle();
        file->setText(u"changed"_qs);
    }
    box->deleteFileAtIndex(0);
    box->deleteFileAtIndex(99);
    // Another one takes the index while the removal is under way.
    box->loadFileWithFilename(u"a.tamber"_qs);
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"+0 -1"_qs);
    QCOMPARE(ContainerBench::names(*box), QStringList({u"a.tamber"_qs, u"c.tamber"_qs}));
    bench.rig.loop.advance(60s);
    bench.rig.settle();
    QTEST(bench.rig.has(u"one/b.tamber"_qs), "isLeft");
    QTEST(int(bench.told(What::Delete)), "problems");
}

void tst_Containers::renames_data()
{
    columns<QString, QString, QString, int>("title", "file", "heard", "problems");
    row("another title", u"z"_qs, u"z.tamber"_qs, u"-0 +1"_qs, 0);
    row("nothing", QString(), u"a.tamber"_qs, QString(), 0);
    row("the same", u"a"_qs, u"a.tamber"_qs, QString(), 0);
    row("a taken one", u"m"_qs, u"a.tamber"_qs, QString(), 1);
    row("other letters", u"A"_qs, u"A.tamber"_qs, u"-0 +0"_qs, 0);
    row("one that leads elsewhere", u"../z"_qs, u"-z.tamber"_qs, u"-0 +0"_qs, 0);
}

void tst_Containers::renames()
{
    QFETCH(QString, title);
    QFETCH(QString, file);
    ContainerBench bench;
    bench.rig.put(u"one/a.tamber"_qs, "a");
    bench.rig.put(u"one/m.tamber"_qs, "m");
    const auto box = bench.open();
    box->sortFiles();
    box->renameFileAtIndex(0, title);
    // Locally all is done when the call returns.
    QTEST(bench.delegate->take(), "heard");
    QTEST(int(bench.told(What::Rename)), "problems");
    QCOMPARE(bench.rig.bytes(u"one/" + file), QByteArray("a"));
    QCOMPARE(bench.rig.bytes(u"one/m.tamber"_qs), QByteArray("m"));
    QCOMPARE(bench.rig.names(u"one"_qs).size(), 2);
    QVERIFY(ContainerBench::names(*box).contains(file));
}

void tst_Containers::keepsUnsavedText_data()
{
    columns<QString, bool>("operation", "isNew");
    row("renaming a new one", u"rename"_qs, true);
    row("moving a new one", u"move"_qs, true);
    row("renaming an open one", u"rename"_qs, false);
    row("moving an open one", u"move"_qs, false);
}

// A document that is still being saved, or is open with changes, goes to its new place whole, and its
// old file does not come back.
void tst_Containers::keepsUnsavedText()
{
    QFETCH(QString, operation);
    QFETCH(bool, isNew);
    ContainerBench bench;
    const auto box = bench.open();
    const auto other = bench.open(u"two"_qs);
    const auto file = box->addFileWithName(u"a"_qs, u"text"_qs);
    if (!isNew) {
        file->openWithCompletionHandler({});
        bench.rig.settle();
        file->setText(u"text, changed"_qs);
    }
    bench.delegate->take();
    if (operation == u"rename")
        box->renameFileAtIndex(0, u"b"_qs);
    else
        box->moveFile(file, other);
    QCOMPARE(bench.delegate->take(), QString());
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"-0 +0"_qs);
    bench.rig.loop.advance(60s);
    bench.rig.settle();
    const QString place = operation == u"rename" ? u"one/b.tamber"_qs : u"two/a.tamber"_qs;
    QCOMPARE(bench.rig.bytes(place), isNew ? QByteArray("text") : QByteArray("text, changed"));
    QVERIFY(!bench.rig.has(u"one/a.tamber"_qs));
    QVERIFY(bench.rig.told->problems.isEmpty());
}

void tst_Containers::aFailedMoveLeavesWhatIsThere_data()
{
    columns<QString, QString>("why", "heard");
    row("the title is in use", u"listed"_qs, QString());
    row("a file that is not listed has the name", u"unlisted"_qs, QString());
    row("the disk refuses", u"refused"_qs, QString());
    row("the file has gone", u"gone"_qs, u"-0"_qs);
}

void tst_Containers::aFailedMoveLeavesWhatIsThere()
{
    QFETCH(QString, why);
    ContainerBench bench;
    bench.rig.put(u"one/a.tamber"_qs, "one");
    if (why == u"listed")
        bench.rig.put(u"two/A.tamber"_qs, "two");
    const auto box = bench.open();
    const auto other = bench.open(u"two"_qs);
    if (why == u"unlisted")
        bench.rig.put(u"two/a.tamber"_qs, "two");
    else if (why == u"refused")
        bench.refuse(FaultyFileOperations::Call::RenameToNewName);
    else if (why == u"gone")
        bench.rig.erase(u"one/a.tamber"_qs);
    box->moveFile(box->files().front(), other);
    bench.rig.settle();
    QTEST(bench.delegate->take(), "heard");
    QCOMPARE(bench.told(What::Move), 1);
    QCOMPARE(bench.rig.names(u"one"_qs), ContainerBench::names(*box));
    QCOMPARE(bench.rig.bytes(u"one/a.tamber"_qs), why == u"gone" ? QByteArray() : QByteArray("one"));
}

void tst_Containers::showsTheDirectoryAsItIs()
{
    ContainerBench bench;
    for (const QString &name : {u"gone"_qs, u"open"_qs, u"stays"_qs})
        bench.rig.put(u"one/%1.tamber"_qs.arg(name), "text");
    bench.rig.put(u"one/OLD/folder.dat"_qs, "Old");
    const auto box = bench.open();
    const auto open = box->files()[1];
    open->openWithCompletionHandler({});
    bench.rig.settle();
    for (const QString &name : {u"one/gone.tamber"_qs, u"one/open.tamber"_qs, u"one/OLD"_qs})
        bench.rig.erase(name);
    bench.rig.put(u"one/new.tamber"_qs, "text");
    bench.rig.put(u"one/NEW/folder.dat"_qs, "New");
    bench.operations.failEvery(FaultyFileOperations::Call::List, std::errc::io_error);
    box->refresh();
    QCOMPARE(bench.delegate->take(), QString());
    bench.operations.clear();
    box->refresh();
    box->refresh();
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"-0 +0 [-0] [+0]"_qs);
    QCOMPARE(ContainerBench::names(*box),
             QStringList({u"new.tamber"_qs, u"open.tamber"_qs, u"stays.tamber"_qs}));
    QCOMPARE(box->folders().front()->name(), u"New"_qs);
}

void tst_Containers::keepsFolders()
{
    ContainerBench bench;
    const auto box = bench.open();
    const auto maths = box->addFolderWithName(u"Maths"_qs);
    box->addFolderWithName(u"art"_qs);
    QCOMPARE(bench.delegate->take(), u"[+0] [+0]"_qs);
    maths->addFileWithName(u"a"_qs, u"text"_qs);
    bench.rig.settle();
    QVERIFY(isLike(maths->storageName(), u"????????"
                                         u"-????"
                                         u"-????"
                                         u"-????"
                                         u"-????????????"));
    QCOMPARE(bench.rig.bytes(u"one/" + maths->storageName() + u"/folder.dat"), QByteArray("Maths\n"));
    maths->setName(u"Algebra"_qs);
    bench.rig.settle();
    // It keeps its place until the next insertion, and is found there.
    QCOMPARE(ContainerBench::folderNames(*box), QStringList({u"art"_qs, u"Algebra"_qs}));
    box->addFolderWithName(u"B"_qs);
    QCOMPARE(ContainerBench::folderNames(*box), QStringList({u"Algebra"_qs, u"art"_qs, u"B"_qs}));
    bench.rig.settle();
    const auto again = bench.open();
    again->sortFolders();
    QCOMPARE(ContainerBench::folderNames(*again), QStringList({u"Algebra"_qs, u"art"_qs, u"B"_qs}));
    QCOMPARE(ContainerBench::names(*again->folderAtIndex(0)), QStringList({u"a.tamber"_qs}));
    bench.delegate->take();
    const auto byURL = TamberDataFolder::withURL(bench.rig.context, maths->url());
    QVERIFY(byURL && byURL->name() == u"Algebra" && byURL->files().size() == 1);
    again->deleteFolderAtIndex(0);
    bench.rig.settle();
    QCOMPARE(bench.delegate->take(), u"[-0]"_qs);
    QVERIFY(!bench.rig.has(u"one/" + maths->storageName()));
    QVERIFY(!TamberDataFolder::withURL(bench.rig.context, maths->url()));
}

void tst_Containers::movesFolders_data()
{
    columns<QString, QString>("trouble", "heard");
    row("at once", QString(), u"[-0]"_qs);
    row("while its record is being written", u"busy"_qs, QString());
    row("with a changed document", u"open"_qs, QString());
    row("to a name in use", u"taken"_qs, QString());
}

void tst_Containers::movesFolders()
{
    QFETCH(QString, trouble);
    ContainerBench bench;
    const auto box = bench.open();
    const auto other = bench.open(u"two"_qs);
    const auto folder = box->addFolderWithName(u"Maths"_qs);
    if (trouble != u"busy")
        bench.rig.settle();
    const auto file = folder->addFileWithName(u"a"_qs, u"text"_qs);
    if (trouble != u"busy")
        bench.rig.settle();
    if (trouble == u"open") {
        file->openWithCompletionHandler({});
        bench.rig.settle();
        file->setText(u"changed"_qs);
    }
    if (trouble == u"taken")
        bench.rig.put(u"two/" + folder->storageName() + u"/x.tamber", "other's");
    bench.delegate->take();
    box->moveFolder(folder, other);
    QTEST(bench.delegate->take(), "heard");
    bench.rig.settle();
    bench.rig.loop.advance(60s);
    bench.rig.settle();
    const bool isMoved = trouble != u"taken";
    QCOMPARE(box->foldersCount(), isMoved ? 0 : 1);
    QCOMPARE(ContainerBench::folderNames(*other), isMoved ? QStringList({u"Maths"_qs}) : QStringList());
    QCOMPARE(bench.told(What::Move), isMoved ? 0 : 1);
    const QString place = (isMoved ? u"two/"_qs : u"one/"_qs) + folder->storageName();
    QCOMPARE(bench.rig.bytes(place + u"/a.tamber"), QByteArray(trouble == u"open" ? "changed" : "text"));
    QCOMPARE(bench.rig.has(u"one/" + folder->storageName()), !isMoved);
}

void tst_Containers::makesNoFolderWhereNothingCanBeMade()
{
    ContainerBench bench;
    const auto box = bench.open();
    bench.refuse(Call::MakeFolder);
    QVERIFY(!box->addFolderWithName(u"Maths"_qs));
    QCOMPARE(bench.told(What::Create), 1);
    QCOMPARE(box->foldersCount(), 0);
    bench.operations.clear();
    bench.rig.erase(u"one"_qs);
    QVERIFY(box->addFolderWithName(u"Maths"_qs));
}

void tst_Containers::deletesItsStorage_data()
{
    columns<QStringList, QString, QString, QStringList>("paths", "refused", "reports", "left");
    const QStringList some{u"a.tamber"_qs, u"b.tamber"_qs, u"F/a.tamber"_qs, u"F/folder.dat"_qs};
    row("nothing", QStringList(), QString(), u"yes"_qs, QStringList());
    row("documents", some.first(2), QString(), u"yes"_qs, QStringList());
    row("documents and a folder", some, QString(), u"yes"_qs, QStringList());
    row("a folder alone", some.last(2), QString(), u"yes"_qs, QStringList());
    row("a folder without its record", some.mid(2, 1), QString(), u"yes"_qs, QStringList());
    row("a document has gone already", some, u"gone"_qs, u"yes"_qs, QStringList());
    // Kept as they are: nothing is heard when a document cannot be removed, and the folders stay.
    row("a document stays", some, u"b.tamber"_qs, QString(), QStringList({u"F"_qs, u"b.tamber"_qs}));
    row("a folder's document stays", some, u"F/a.tamber"_qs, QString(), QStringList({u"F"_qs}));
    row("a folder's record stays", some, u"F/folder.dat"_qs, u"no"_qs, QStringList({u"F"_qs}));
}

void tst_Containers::deletesItsStorage()
{
    QFETCH(QStringList, paths);
    QFETCH(QString, refused);
    ContainerBench bench;
    for (const QString &path : paths)
        bench.rig.put(u"one/" + path, "text\n");
    const auto box = bench.open();
    const bool isGone = refused == u"gone";
    if (isGone)
        bench.rig.erase(u"one/b.tamber"_qs);
    else if (!refused.isEmpty())
        bench.operations.failPath(bench.rig.path(u"one/" + refused), std::errc::io_error);
    QStringList reports;
    box->deleteStorageWithCompletion([&](bool ok) { reports.append(ok ? u"yes"_qs : u"no"_qs); });
    bench.rig.settle();
    QTEST(reports.join(u' '), "reports");
    QTEST(bench.rig.names(u"one"_qs), "left");
    QCOMPARE(bench.told(What::Delete), refused.isEmpty() || isGone ? 0 : 1);
    QCOMPARE(bench.delegate->take(), QString());
}

QTEST_GUILESS_MAIN(tst_Containers)
#include "tst_containers.moc"
