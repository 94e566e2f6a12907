// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SyncBench.h"
#include "platform/cloud/PollingWatcher.h"
#include "support/Rows.h"

#include <QTest>

using namespace cvtamber;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Call = FaultyFileOperations::Call;

class tst_SyncedFolder : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SyncBench> _bench;

private slots:
    void init() { _bench = std::make_unique<SyncBench>(); }

    void namesSayWhatIsThere_data()
    {
        columns<QStringList, QStringList>("files", "listing");
        row("documents", QStringList{u"U/b.tamber"_s, u"U/a.tamber"_s},
            QStringList{u"U/a.tamber here"_s, u"U/b.tamber here"_s});
        row("placeholders",
            QStringList{u".a.tamber.icloud"_s, u"b.tamber.nextcloud"_s, u"c.tamber.owncloud"_s},
            QStringList{u"a.tamber cloud"_s, u"b.tamber cloud"_s, u"c.tamber cloud"_s});
        row("a real file beside its placeholder", QStringList{u"a.tamber.nextcloud"_s, u"a.tamber"_s},
            QStringList{u"a.tamber here"_s});
        row("two placeholders of one", QStringList{u"a.tamber.nextcloud"_s, u".a.tamber.icloud"_s},
            QStringList{u"a.tamber cloud"_s});
        row("a download in progress",
            QStringList{u"a.tamber.nextcloud"_s, u".a.tamber.~1a2b"_s, u"b.tamber"_s},
            QStringList{u"a.tamber cloudcoming"_s, u"b.tamber here"_s});
        row("conflict copies",
            QStringList{u"a (conflicted copy 2026-11-23 101500).tamber"_s, u"a.tamber"_s,
                        u"b.sync-conflict-20261123-101500-ABCDEFG.tamber.nextcloud"_s},
            QStringList{u"a (conflicted copy 2026-11-23 101500).tamber here!"_s, u"a.tamber here"_s,
                        u"b.sync-conflict-20261123-101500-ABCDEFG.tamber cloud!"_s});
        row("conflict copies of records",
            QStringList{u"user.txt"_s, u"user.sync-conflict-20261123-101500-ABCDEFG.txt"_s,
                        u"U/folder (Anna's conflicted copy 2026-11-23).dat"_s},
            QStringList{u"user.txt here"_s});
        row("on their way, and records",
            QStringList{u".syncthing.a.tamber.tmp"_s, u".cvtamber-0000000000001"_s, u".stversions/a.tamber"_s,
                        u"desktop.ini"_s},
            QStringList{});
        row("hidden ones of programs nobody has heard of",
            QStringList{u".a.tamber.aB3dE9"_s, u".getxfer.12.mega"_s, u".b.tamber"_s, u".c.tamber.owncloud"_s,
                        u"..d.tamber.icloud"_s},
            QStringList{});
        row("a tree: a folder's documents, then its folders",
            QStringList{u"B/x/1.tamber"_s, u"B/y.tamber"_s, u"A/2.tamber"_s, u"z.tamber"_s},
            QStringList{u"z.tamber here"_s, u"A/2.tamber here"_s, u"B/y.tamber here"_s,
                        u"B/x/1.tamber here"_s});
    }
    void namesSayWhatIsThere()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, listing);
        for (const QString &file : files)
            _bench->put(file);
        _bench->gather();
        QCOMPARE(_bench->takeEvents(), u"g"_s);
        QCOMPARE(_bench->listing(), listing);
    }

    void linksAreNeitherListedNorFollowed()
    {
        _bench->put(u"a.tamber"_s);
        QDir().mkpath(_bench->folder.path() + u"/outside"_s);
        QVERIFY(QFile::link(_bench->folder.path() + u"/outside"_s, _bench->path(u"linked"_s)));
        QVERIFY(QFile::link(_bench->path(u"a.tamber"_s), _bench->path(u"b.tamber"_s)));
        QFile outside(_bench->folder.path() + u"/outside/c.tamber"_s);
        QVERIFY(outside.open(QFile::WriteOnly));
        _bench->gather();
        QCOMPARE(_bench->listing(), QStringList{u"a.tamber here"_s});
        QCOMPARE(_bench->watcher.watches->watched.size(), size_t(1));
    }

    void theFilterIsOfThePathBelow()
    {
        const QString user = u"0B3C6E52-5A5E-4D8B-9B45-2F8D1C0E7A11"_s;
        _bench->put(user + u"/user.txt"_s);
        _bench->put(u"user.txt"_s);
        _bench->put(u"other/user.txt"_s);
        _bench->query->setPredicate(FileURL::directory(_bench->path({})), QString(36, u'?') % u"/*"_s);
        _bench->gather();
        QCOMPARE(_bench->listing(), QStringList{user + u"/user.txt here"_s});
        const MetadataItem item = _bench->query->results().front();
        QCOMPARE(item.size, 4);
        const QFileInfo info(_bench->path(user + u"/user.txt"_s));
        QCOMPARE(item.contentChangeDate.toMSecsSinceEpoch(), info.lastModified().toMSecsSinceEpoch());
    }

    void aChangeListsItsFolderOnly()
    {
        _bench->put(u"A/a.tamber"_s);
        _bench->put(u"B/b.tamber"_s);
        _bench->gather();
        _bench->takeEvents();
        _bench->countLists();
        _bench->put(u"A/0.tamber"_s);
        _bench->changed(u"A"_s);
        _bench->pass(299ms);
        QCOMPARE(_bench->takeEvents(), QString());
        _bench->pass(1ms);
        QCOMPARE(_bench->takeEvents(), u"u"_s);
        const QStringList additionLast{u"A/a.tamber here"_s, u"B/b.tamber here"_s, u"A/0.tamber here"_s};
        QCOMPARE(_bench->listing(), additionLast);
        QCOMPARE(_bench->lists(u"A"_s), 1);
        QCOMPARE(_bench->lists(u"B"_s) + _bench->lists({}), 0);
        _bench->changed(u"B"_s);
        _bench->pass(10s);
        QCOMPARE(_bench->lists(u"B"_s), 1);
        QCOMPARE(_bench->takeEvents(), QString());
        _bench->erase(u"A/a.tamber"_s);
        _bench->changed(u"A"_s);
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), additionLast.sliced(1));
        QCOMPARE(_bench->loop.pendingCalls(), size_t(0));
    }

    void newFoldersAreWatchedBeforeTheyAreListed()
    {
        _bench->gather();
        const auto &watched = _bench->watcher.watches->watched;
        QStringList unwatched;
        _bench->operations.setBefore([&](Call call, const QString &path) {
            if (call == Call::List && watched.count(path) == 0)
                unwatched.append(path);
        });
        _bench->put(u"A/B/C/a.tamber"_s);
        _bench->changed({});
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"A/B/C/a.tamber here"_s});
        QCOMPARE(unwatched, QStringList());
        QVERIFY(QDir().rename(_bench->path(u"A"_s), _bench->folder.path() + u"/away"_s));
        _bench->changed({});
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList());
        QCOMPARE(watched.size(), size_t(1));
    }

    void anotherFolderUnderAKnownNameIsListedWhole()
    {
        _bench->put(u"A/B/a.tamber"_s);
        _bench->put(u"../other/B/b.tamber"_s);
        _bench->gather();
        QVERIFY(QDir().rename(_bench->path(u"A"_s), _bench->folder.path() + u"/away"_s));
        QVERIFY(QDir().rename(_bench->folder.path() + u"/other"_s, _bench->path(u"A"_s)));
        _bench->changed({});
        _bench->watcher.handlers.appeared(FileURL::directory(_bench->path(u"A"_s)));
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"A/B/b.tamber here"_s});
    }

    void aVersionThatReplacesAnotherComesAndIsHere()
    {
        _bench->put(u"a.tamber"_s);
        _bench->gather();
        _bench->put(u"a.tamber"_s, "another text");
        _bench->changed({});
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"a.tamber coming"_s});
        // It goes on growing.
        _bench->put(u"a.tamber"_s, "another text, longer");
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"a.tamber coming"_s});
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"a.tamber here"_s});
        QCOMPARE(_bench->takeEvents(), u"guuu"_s);
        QCOMPARE(_bench->query->results().front().size, 20);
    }

    void aDocumentComesAndGoesToTheCloud()
    {
        _bench->put(u"a.tamber.nextcloud"_s);
        _bench->gather();
        _bench->put(u"a.tamber"_s);
        _bench->erase(u"a.tamber.nextcloud"_s);
        _bench->changed({});
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"a.tamber here"_s});
        _bench->erase(u"a.tamber"_s);
        _bench->put(u"a.tamber.nextcloud"_s);
        _bench->changed({});
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"a.tamber cloud"_s});
        QCOMPARE(_bench->query->results().front().size, 0);
    }

    void anEmptyDocumentIsBelievedAtTheSecondLook()
    {
        _bench->put(u"a.tamber"_s, {});
        _bench->gather();
        QCOMPARE(_bench->listing(), QStringList{u"a.tamber coming"_s});
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"a.tamber here"_s});
    }

    void changesWithoutAnEndAreLookedAtAllTheSame()
    {
        _bench->put(u"a.tamber"_s);
        _bench->gather();
        _bench->countLists();
        _bench->erase(u"a.tamber"_s);
        _bench->put(u"b.tamber"_s);
        for (int i = 0; i < 19; ++i) {
            _bench->changed({});
            _bench->pass(100ms);
        }
        QCOMPARE(_bench->lists({}), 0);
        _bench->changed({});
        _bench->pass(100ms);
        QCOMPARE(_bench->lists({}), 1);
        // Somebody may be in the middle of replacing the one and of writing the other.
        const QStringList undecided{u"a.tamber here"_s, u"b.tamber coming"_s};
        QCOMPARE(_bench->listing(), undecided);
        _bench->pass(300ms);
        QCOMPARE(_bench->listing(), QStringList{u"b.tamber here"_s});
    }

    void whatCannotBeReadIsNotDeleted_data()
    {
        columns<int, QString, QString>("call", "path", "below");
        row("a listing that breaks off", int(Call::List), u"A"_s, u"A/"_s);
        row("the root's listing", int(Call::List), QString(), QString());
        row("a file that cannot be looked at", int(Call::Status), u"A/b.tamber"_s, u"A/"_s);
    }
    void whatCannotBeReadIsNotDeleted()
    {
        QFETCH(int, call);
        QFETCH(QString, path);
        QFETCH(QString, below);
        _bench->put(below + u"a.tamber"_s);
        _bench->put(below + u"b.tamber"_s);
        _bench->put(below + u"B/c.tamber"_s);
        _bench->gather();
        const QStringList before = _bench->listing();
        QCOMPARE(before.size(), 3);

        _bench->fail(Call(call), path);
        _bench->erase(below + u"a.tamber"_s);
        QVERIFY(QDir(_bench->path(below + u"B"_s)).removeRecursively());
        _bench->changed(below.chopped(below.isEmpty() ? 0 : 1));
        _bench->pass(60s);
        QCOMPARE(_bench->listing(), before);
        QCOMPARE(_bench->takeEvents(), u"g"_s);

        _bench->operations.clear();
        _bench->pass(6s);
        QCOMPARE(_bench->listing(), QStringList{below + u"b.tamber here"_s});
        QCOMPARE(_bench->loop.pendingCalls(), size_t(0));
    }

    void whatCannotBeReadAtTheNextStartIsNotDeleted()
    {
        _bench->put(u"A/a.tamber"_s);
        _bench->put(u"A/b.tamber"_s);
        _bench->put(u"c.tamber"_s);
        _bench->gather();
        _bench->query->stop();
        _bench->fail(Call::List, u"A"_s);
        _bench->erase(u"A/a.tamber"_s);
        _bench->erase(u"c.tamber"_s);
        _bench->gather();
        _bench->pass(20s);
        QCOMPARE(_bench->takeEvents(), u"gg"_s);
        QCOMPARE(_bench->listing(), (QStringList{u"A/a.tamber here"_s, u"A/b.tamber here"_s}));
        _bench->operations.clear();
        _bench->pass(6s);
        QCOMPARE(_bench->listing(), QStringList{u"A/b.tamber here"_s});

        // Another directory has nothing to do with it.
        _bench->query->stop();
        _bench->query->setPredicate(FileURL::directory(_bench->path(u"B"_s)), u"*"_s);
        _bench->makeFolder(u"B"_s);
        _bench->gather();
        QCOMPARE(_bench->listing(), QStringList());
    }

    void aFolderThatCannotBeReadHoldsGatheringUpForAWhile()
    {
        _bench->put(u"A/a.tamber"_s);
        _bench->put(u"B/b.tamber"_s);
        _bench->fail(Call::List, u"A"_s);
        _bench->gather();
        _bench->pass(9s);
        QCOMPARE(_bench->takeEvents(), QString());
        _bench->pass(2s);
        QCOMPARE(_bench->takeEvents(), u"g"_s);
        QVERIFY(_bench->listing().contains(u"B/b.tamber here"_s));
        _bench->operations.clear();
        _bench->pass(6s);
        QCOMPARE(_bench->listing().size(), 2);
    }

    void aRootThatVanishesKeepsAllUntilItIsBack()
    {
        _bench->put(u"A/a.tamber"_s);
        _bench->put(u"A/b.tamber"_s);
        const QString away = _bench->folder.path() + u"/away"_s;
        QVERIFY(QDir().rename(_bench->path({}), away));
        _bench->gather();
        _bench->pass(60s);
        QCOMPARE(_bench->takeEvents(), QString());
        QVERIFY(QDir().rename(away, _bench->path({})));
        _bench->pass(6s);
        QCOMPARE(_bench->takeEvents(), u"g"_s);

        QVERIFY(QDir().rename(_bench->path({}), away));
        _bench->changed({});
        _bench->changed(u"A"_s);
        _bench->pass(60s);
        QCOMPARE(_bench->takeEvents(), QString());
        QCOMPARE(_bench->listing().size(), 2);
        QVERIFY(QFile::remove(away + u"/A/a.tamber"_s));
        QVERIFY(QDir().rename(away, _bench->path({})));
        _bench->pass(6s);
        QCOMPARE(_bench->listing(), QStringList{u"A/b.tamber here"_s});
    }

    void anEmptyFolderInPlaceOfAFileSystemMeansUnmounted()
    {
        const FileURL root = FileURL::directory(u"/root"_s);
        FolderTree tree(root);
        const ScannedFile document{u"a.tamber"_s, 1};
        const auto look = [&](quint64 device, std::vector<ScannedFile> files) {
            return tree.apply({{{root, true, false, std::move(files), {}}}, device}, true);
        };
        QCOMPARE(look(7, {document}).items.size(), size_t(1));
        const auto unmounted = look(8, {});
        QVERIFY(unmounted.removed.empty());
        QCOMPARE(unmounted.failed.size(), size_t(1));
        // Mounted again, under another number.
        QVERIFY(look(9, {document}).items.empty());
        QCOMPARE(look(9, {}).removed.size(), size_t(1));
    }

    void withoutWatchesItPolls()
    {
        _bench->put(u"A/a.tamber"_s);
        _bench->put(u"A/b.tamber"_s);
        _bench->watcher.watches->limit = 1;
        _bench->gather();
        QCOMPARE(_bench->takeEvents(), u"g"_s);
        QCOMPARE(_bench->log.count(u"[info] No more folders can be watched"_s), 1);
        QCOMPARE(_bench->listing().size(), 2);

        // A folder's date tells nothing of an edit in place.
        _bench->put(u"A/a.tamber"_s, "another text");
        _bench->erase(u"A/b.tamber"_s);
        _bench->put(u"A/c.tamber"_s);
        _bench->pass(PollingWatcher::Interval + 290ms);
        QCOMPARE(_bench->takeEvents(), QString());
        _bench->pass(20ms);
        // One look says little where nobody tells what is going on.
        const QStringList undecided{u"A/a.tamber coming"_s, u"A/b.tamber here"_s, u"A/c.tamber coming"_s};
        QCOMPARE(_bench->listing(), undecided);
        _bench->pass(300ms);
        const QStringList decided{u"A/a.tamber here"_s, u"A/c.tamber here"_s};
        QCOMPARE(_bench->listing(), decided);
        _bench->pass(60s);
        QCOMPARE(_bench->takeEvents(), u"uu"_s);
        QCOMPARE(_bench->log.lines.size(), 1);
    }

    void lostReportsMeanALookAtEverything()
    {
        _bench->put(u"A/B/a.tamber"_s);
        _bench->gather();
        _bench->put(u"A/B/b.tamber"_s);
        _bench->watcher.handlers.everythingChanged();
        _bench->pass(1s);
        QCOMPARE(_bench->listing().size(), 2);
        QCOMPARE(_bench->loop.pendingCalls(), size_t(0));
    }

    void resultsDoNotChangeWhileUpdatesAreDisabled()
    {
        _bench->query->disableUpdates();
        _bench->put(u"a.tamber"_s);
        _bench->gather();
        QCOMPARE(_bench->takeEvents(), QString());
        _bench->put(u"b.tamber"_s);
        _bench->changed({});
        _bench->pass(1s);
        QVERIFY(_bench->query->results().isEmpty());
        _bench->query->enableUpdates();
        QCOMPARE(_bench->takeEvents(), QString());
        _bench->pass(1s);
        QCOMPARE(_bench->takeEvents(), u"gu"_s);
        QCOMPARE(_bench->listing().size(), 2);
    }

    void nothingIsReportedAfterTheEnd()
    {
        _bench->put(u"a.tamber"_s);
        _bench->query->start();
        _bench->tasks.runTask();
        _bench->query->stop();
        _bench->loop.advance(1s);
        QCOMPARE(_bench->takeEvents(), QString());

        _bench->gather();
        _bench->changed({});
        _bench->erase(u"a.tamber"_s);
        _bench->query->stop();
        _bench->pass(1s);
        QCOMPARE(_bench->takeEvents(), u"g"_s);
        QCOMPARE(_bench->listing().size(), 1);
        _bench->gather();
        QCOMPARE(_bench->takeEvents(), u"g"_s);
        QCOMPARE(_bench->listing(), QStringList());

        _bench->query->setHandlers({{}, [this] { _bench->query.reset(); }});
        _bench->put(u"c.tamber"_s);
        _bench->changed({});
        _bench->pass(1s);
        QVERIFY(!_bench->query);
        QCOMPARE(_bench->loop.pendingCalls(), size_t(0));
    }

    void eachDocumentIsLookedAtOnce()
    {
        for (int i = 0; i < 200; ++i)
            _bench->put(u"%1/%2.tamber"_s.arg(i % 10).arg(i));
        const int before = _bench->operations.calls();
        _bench->gather();
        QCOMPARE(_bench->query->results().size(), 200);
        // The root's own state, each folder's listing, each document.
        QCOMPARE(_bench->operations.calls() - before, 1 + 11 + 200);
    }
};

QTEST_GUILESS_MAIN(tst_SyncedFolder)
#include "tst_syncedfolder.moc"
