// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CVFile.h"
#include "store/TamberDataFolderDocument.h"
#include "store/TamberDocument.h"
#include "support/Rows.h"
#include "support/ScriptedFileCoordinator.h"
#include "support/StoreRig.h"

using namespace cvtamber;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Outcome = FileResult::Outcome;
using Kind = ScriptedFileCoordinator::Kind;
using What = StoreProblem::What;
using Save = Document::SaveOperation;

namespace {

FileStamp stamp(quint64 inode)
{
    return {1, inode, 10, 100};
}

FileResult refused(Outcome outcome = Outcome::Failed)
{
    return {outcome, u"no space left on device"_s};
}

// One document over a coordinator that waits for the test.
class Rig : public StoreRig
{
public:
    ScriptedFileCoordinator files{loop, &disk};
    StoreContext scripted{loop, disk, files, cloud, trash, notifications, problems, log};
    std::shared_ptr<TamberDocument> document =
        std::make_shared<TamberDocument>(scripted, file(u"Letter.tamber"_s));
    // What the completions said, in order.
    QList<bool> ends;

    Document::Completion end()
    {
        return [this](bool success) { ends.append(success); };
    }
    void answerRead(const QByteArray &bytes, quint64 inode = 1)
    {
        files.answerRead(ScriptedFileCoordinator::contents(bytes, stamp(inode)));
        settle();
    }
    void answerWrite(quint64 inode, const FileURL &keptOther = {})
    {
        files.answerWrite(ScriptedFileCoordinator::written(stamp(inode), keptOther));
        settle();
    }
    void refuse(const FileResult &result = refused())
    {
        files.answer(result);
        settle();
    }
    void open(const QByteArray &bytes = "old")
    {
        document->openWithCompletionHandler({});
        answerRead(bytes);
    }
};

} // namespace

class tst_document : public QObject
{
    Q_OBJECT

private slots:
    void opens()
    {
        Rig rig;
        QCOMPARE(rig.document->documentState(), int(Document::Closed));
        QVERIFY(rig.document->text().isNull());
        rig.document->openWithCompletionHandler(rig.end());
        rig.files.answerRead(ScriptedFileCoordinator::contents("Zo\xC3\xAB", stamp(1)));
        QVERIFY(rig.ends.isEmpty());
        rig.settle();
        QCOMPARE(rig.ends, QList<bool>{true});
        QCOMPARE(rig.document->documentState(), int(Document::Normal));
        QCOMPARE(rig.document->text(), u"Zoë"_s);
        QCOMPARE(rig.document->name(), u"Letter.tamber"_s);

        rig.document->closeWithCompletionHandler(rig.end());
        QCOMPARE(rig.ends.size(), 1);
        rig.settle();
        QCOMPARE(rig.ends, (QList<bool>{true, true}));
        QCOMPARE(rig.document->documentState(), int(Document::Closed));
        QCOMPARE(rig.files.requests().size(), size_t(1));
    }

    void tellsWhyItDoesNotOpen_data()
    {
        columns<Outcome, bool, What, QString>("outcome", "canDownload", "what", "why");
        row("missing", Outcome::Missing, true, What::Open, u"no space left on device"_s);
        row("in the cloud", Outcome::NotDownloaded, true, What::Open, u"no space left on device"_s);
        row("cannot be asked for", Outcome::NotDownloaded, false, What::Download, u"not connected"_s);
    }

    void tellsWhyItDoesNotOpen()
    {
        QFETCH(Outcome, outcome);
        QFETCH(bool, canDownload);
        Rig rig;
        if (!canDownload)
            rig.cloud.setDownloadResult({Outcome::Failed, u"not connected"_s});
        rig.document->openWithCompletionHandler(rig.end());
        rig.refuse(refused(outcome));
        QCOMPARE(rig.ends, QList<bool>{false});
        QCOMPARE(rig.document->documentState(), int(Document::Closed));
        QCOMPARE(rig.document->lastResult().outcome, outcome);
        QCOMPARE(rig.cloud.downloads().size(), outcome == Outcome::NotDownloaded ? 1 : 0);
        QCOMPARE(rig.told->problems.size(), 1);
        QTEST(rig.told->problems[0].what, "what");
        QTEST(rig.told->problems[0].why, "why");
    }

    // The text that a person has typed outlives a reading that ends later, and the version on the disk too.
    void keepsWhatWasTypedDuringReading()
    {
        Rig rig;
        rig.document->openWithCompletionHandler(rig.end());
        rig.document->setText(u"typed"_s);
        rig.answerRead("old");
        QCOMPARE(rig.ends, QList<bool>{true});
        QCOMPARE(rig.document->text(), u"typed"_s);
        rig.loop.advance(5s);
        QCOMPARE(rig.files.waiting().bytes, QByteArray("typed"));
        QVERIFY(!rig.files.waiting().known.isKnown());
    }

    void rereadsOnlyWithoutChanges()
    {
        Rig rig;
        rig.open("one");
        rig.document->openWithCompletionHandler(rig.end());
        rig.answerRead("two", 2);
        QCOMPARE(rig.document->text(), u"two"_s);
        rig.document->openWithCompletionHandler(rig.end());
        rig.refuse();
        QCOMPARE(rig.ends, (QList<bool>{true, false}));
        QCOMPARE(rig.document->documentState(), int(Document::Normal));
    }

    void remembersTheVersionItKnows()
    {
        Rig rig;
        rig.document->setText(u"one"_s);
        rig.document->saveToURL(rig.document->url(), Save::ForCreating, rig.end());
        QCOMPARE(rig.files.waiting().kind, Kind::Create);
        rig.answerWrite(7);
        QCOMPARE(rig.document->documentState(), int(Document::Normal));
        QVERIFY(!rig.document->hasUnsavedChanges());
        rig.document->saveToURL(rig.document->url(), Save::ForOverwriting, rig.end());
        QCOMPARE(rig.files.waiting().known, stamp(7));
        QCOMPARE(rig.files.waiting().otherVersion, StoreDisk::OtherVersion::Keep);
        rig.answerWrite(8);
        rig.document->openWithCompletionHandler(rig.end());
        rig.answerRead("by another", 9);
        rig.document->saveToURL(rig.document->url(), Save::ForOverwriting, rig.end());
        QCOMPARE(rig.files.waiting().known, stamp(9));
    }

    void doesNotKnowWhatItCannotRead()
    {
        Rig rig;
        rig.open("\xFF\xFE");
        QVERIFY(rig.document->text().isNull());
        // What an editor does that shows nothing.
        rig.document->setText(u""_s);
        QVERIFY(!rig.document->hasUnsavedChanges());
        rig.document->setText(u"new"_s);
        rig.loop.advance(5s);
        QVERIFY(!rig.files.waiting().known.isKnown());
    }

    void neverOverwritesWhatItCouldNotCreate()
    {
        Rig rig;
        rig.document->setText(u"mine"_s);
        rig.document->saveToURL(rig.document->url(), Save::ForCreating,
                                [&](bool) { rig.document->closeWithCompletionHandler(rig.end()); });
        rig.refuse(refused(Outcome::AlreadyExists));
        rig.loop.advance(1h);
        QCOMPARE(rig.ends, QList<bool>{true});
        QCOMPARE(rig.document->documentState(), Document::Closed | Document::SavingError);
        QCOMPARE(rig.files.requests().size(), size_t(1));
        QCOMPARE(rig.told->count(What::Save), 1);
        QVERIFY(rig.document->hasUnsavedChanges());
        QCOMPARE(rig.loop.pendingCalls(), size_t(0));
    }

    void worksInTheOrderAsked()
    {
        Rig rig;
        const auto url = rig.document->url();
        rig.document->openWithCompletionHandler(rig.end());
        rig.document->setText(u"one"_s);
        rig.document->saveToURL(url, Save::ForOverwriting, rig.end());
        rig.document->setText(u"two"_s);
        rig.document->closeWithCompletionHandler(rig.end());
        rig.document->openWithCompletionHandler(rig.end());
        QCOMPARE(rig.files.waitingCount(), size_t(1));
        rig.answerRead("old");
        QCOMPARE(rig.files.waiting().bytes, QByteArray("one"));
        rig.answerWrite(2);
        QCOMPARE(rig.files.waiting().bytes, QByteArray("two"));
        QCOMPARE(rig.files.waiting().known, stamp(2));
        QCOMPARE(rig.ends.size(), 2);
        rig.answerWrite(3);
        QCOMPARE(rig.ends.size(), 3);
        QCOMPARE(rig.files.waiting().kind, Kind::Read);
        rig.answerRead("two", 3);
        QCOMPARE(rig.ends, (QList<bool>{true, true, true, true}));
        QCOMPARE(rig.files.waitingCount(), size_t(0));
    }

    void savesFiveSecondsAfterTheFirstChange()
    {
        Rig rig;
        rig.open();
        rig.document->setText(u"a"_s);
        rig.loop.advance(4s);
        rig.document->setText(u"ab"_s);
        rig.loop.advance(999ms);
        QCOMPARE(rig.files.waitingCount(), size_t(0));
        rig.loop.advance(1ms);
        QCOMPARE(rig.files.waiting().bytes, QByteArray("ab"));

        // What is typed during the save is not in it.
        rig.loop.advance(2s);
        rig.document->setText(u"abc"_s);
        rig.loop.advance(1s);
        rig.answerWrite(2);
        QVERIFY(rig.document->hasUnsavedChanges());
        rig.loop.advance(3999ms);
        QCOMPARE(rig.files.waitingCount(), size_t(0));
        rig.loop.advance(1ms);
        QCOMPARE(rig.files.waiting().bytes, QByteArray("abc"));
        rig.answerWrite(3);
        QVERIFY(!rig.document->hasUnsavedChanges());
        QCOMPARE(rig.loop.pendingCalls(), size_t(0));
    }

    void triesAgainUntilItIsSaved()
    {
        Rig rig;
        rig.open();
        rig.document->setText(u"new"_s);
        for (int time = 0; time < 3; ++time) {
            rig.loop.advance(5s);
            rig.refuse();
            QCOMPARE(rig.document->documentState(), int(Document::SavingError));
        }
        QCOMPARE(rig.told->count(What::Save), 1);
        rig.loop.advance(5s);
        rig.answerWrite(2);
        QCOMPARE(rig.document->documentState(), int(Document::Normal));
        rig.loop.advance(1h);
        QCOMPARE(rig.files.count(Kind::Replace), size_t(4));
    }

    void triesANewOneAgain()
    {
        Rig rig;
        rig.document->setText(u"mine"_s);
        rig.document->saveToURL(rig.document->url(), Save::ForCreating, rig.end());
        rig.document->closeWithCompletionHandler({});
        rig.refuse();
        rig.refuse();
        QCOMPARE(rig.told->count(What::Save), 1);
        QCOMPARE(rig.problems.unsaved().size(), 1U);
        // It is read from memory meanwhile, and what tries all again hears the truth.
        rig.document->openWithCompletionHandler(rig.end());
        rig.refuse(refused(Outcome::Missing));
        QCOMPARE(rig.document->text(), u"mine"_s);
        int tried = 0;
        rig.problems.saveUnsaved([&] { ++tried; });
        rig.refuse();
        QCOMPARE(tried, 1);
        QCOMPARE(rig.problems.unsaved().size(), 1U);
        QCOMPARE(rig.ends, (QList<bool>{false, true}));
        rig.loop.advance(5s);
        rig.answerWrite(1);
        QVERIFY(!rig.document->hasUnsavedChanges());
        QVERIFY(rig.problems.unsaved().empty());
    }

    void savesBeforeItCloses()
    {
        Rig rig;
        rig.open();
        rig.document->setText(u"new"_s);
        rig.document->closeWithCompletionHandler(rig.end());
        rig.refuse();
        QCOMPARE(rig.ends, QList<bool>{false});
        QCOMPARE(rig.document->documentState(), int(Document::SavingError));

        rig.document->closeWithCompletionHandler(rig.end());
        rig.document->setText(u"newer"_s);
        rig.answerWrite(2);
        QCOMPARE(rig.files.waiting().bytes, QByteArray("newer"));
        rig.answerWrite(3);
        QCOMPARE(rig.ends, (QList<bool>{false, true}));
        QCOMPARE(rig.document->documentState(), int(Document::Closed));
        rig.loop.advance(1h);
        QCOMPARE(rig.files.waitingCount(), size_t(0));
    }

    void tellsOfAnotherVersion()
    {
        Rig rig;
        rig.open();
        rig.document->saveToURL(rig.document->url(), Save::ForOverwriting, rig.end());
        const auto kept = rig.file(u"Letter (conflicted copy).tamber"_s);
        rig.answerWrite(2, kept);
        QCOMPARE(rig.ends, QList<bool>{true});
        QCOMPARE(rig.document->documentState(), int(Document::InConflict));
        QCOMPARE(rig.told->problems.size(), 1);
        QCOMPARE(rig.told->problems[0].what, What::KeptOtherVersion);
        QCOMPARE(rig.told->problems[0].kept, kept);
    }

    void savesWhatNobodyHoldsAnyMore()
    {
        Rig rig;
        rig.open();
        rig.document->setText(u"new"_s);
        const std::weak_ptr<Document> weak = rig.document;
        rig.document.reset();
        rig.loop.advance(5s);
        QCOMPARE(rig.files.waiting().bytes, QByteArray("new"));
        rig.refuse();
        rig.loop.advance(5s);
        rig.answerWrite(2);
        QVERIFY(weak.expired());
        QCOMPARE(rig.loop.pendingCalls(), size_t(0));
    }

    void dropsWhatIsCleared()
    {
        Rig rig;
        rig.open();
        rig.document->setText(u"one"_s);
        rig.document->saveToURL(rig.document->url(), Save::ForOverwriting, {});
        rig.document->setText(u"two"_s);
        rig.document->updateChangeCount(Document::ChangeKind::Cleared);
        rig.answerWrite(2);
        rig.document->closeWithCompletionHandler(rig.end());
        rig.settle();
        QCOMPARE(rig.ends, QList<bool>{true});
        QCOMPARE(rig.files.count(Kind::Replace), size_t(1));
        QCOMPARE(rig.loop.pendingCalls(), size_t(0));
    }

    void renamesFolders()
    {
        Rig rig;
        auto folder = std::make_shared<TamberDataFolderDocument>(rig.scripted, rig.file(u"folder.dat"_s));
        folder->openWithCompletionHandler({});
        // A reading that ends later does not bring the old name back.
        folder->setName(u"Maths\n2"_s);
        rig.answerRead("Old\n");
        QCOMPARE(folder->name(), u"Maths 2"_s);
        QCOMPARE(rig.files.waiting().bytes, QByteArray("Maths 2\n"));
        QCOMPARE(rig.files.waiting().otherVersion, StoreDisk::OtherVersion::Replace);
        rig.answerWrite(2);
        QCOMPARE(folder->documentState(), int(Document::Closed));
        folder->setName(u"Maths 2"_s);
        QCOMPARE(rig.files.waitingCount(), size_t(0));

        folder->openWithCompletionHandler({});
        rig.answerRead("\xFF");
        QVERIFY(folder->name().isNull());
        folder->setName(u""_s);
        QCOMPARE(rig.files.waiting().bytes, QByteArray("\n"));
        rig.answerWrite(3);
        folder.reset();
        QCOMPARE(rig.log.count(u"[info] TamberDataFolderDocument::dealloc"_s), 1);
    }

    void keepsBothOnTheDisk()
    {
        Rig rig;
        rig.files.setAutomatic(true);
        rig.put(u"Letter.tamber"_s, "old");
        rig.document->openWithCompletionHandler(rig.end());
        rig.settle();
        rig.document->setText(u"mine"_s);
        rig.put(u"Letter.tamber"_s, "by another program");
        rig.document->closeWithCompletionHandler(rig.end());
        rig.settle();
        QCOMPARE(rig.ends, (QList<bool>{true, true}));
        QCOMPARE(rig.bytes(u"Letter.tamber"_s), QByteArray("mine"));
        QCOMPARE(rig.bytes(u"Letter (conflicted copy).tamber"_s), QByteArray("by another program"));
        QCOMPARE(rig.told->count(What::KeptOtherVersion), 1);
    }

    void readsAndWritesPlainFiles()
    {
        Rig rig;
        rig.files.setAutomatic(true);
        const auto file = std::make_shared<CVFile>(rig.scripted, rig.file(u"note.txt"_s));
        file->setText(QString(u'a' % QChar(0xD800)));
        QVERIFY(!file->hasUnsavedChanges());
        file->saveToURL(file->fileURL(), Save::ForCreating, rig.end());
        file->openWithCompletionHandler(rig.end());
        rig.settle();
        QCOMPARE(rig.ends, (QList<bool>{true, true}));
        QCOMPARE(file->text(), u"a\ufffd"_s);
        QCOMPARE(file->name(), u"note.txt"_s);
    }
};

QTEST_GUILESS_MAIN(tst_document)
#include "tst_document.moc"
