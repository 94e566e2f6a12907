// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ThreadPoolTaskRunner.h"
#include "platform/documents/DesktopTrash.h"
#include "platform/documents/DiskFileCoordinator.h"
#include "support/FolderTrash.h"
#include "support/ManualRunLoop.h"
#include "support/ManualTaskRunner.h"
#include "support/Rows.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <optional>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using Outcome = FileResult::Outcome;

class tst_coordinator : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> _folder;
    StoreDisk _disk{FileOperations::system()};
    std::optional<FolderTrash> _trash;
    std::optional<ManualRunLoop> _loop;
    std::optional<ManualTaskRunner> _tasks;
    std::optional<DiskFileCoordinator> _coordinator;

    QString path(const QString &name) const { return _folder->filePath(name); }
    FileURL url(const QString &name) const { return FileURL::file(path(name)); }
    FileURL folder(const QString &name) const { return FileURL::directory(path(name)); }
    void put(const QString &name, const QByteArray &bytes = "x") const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    bool has(const QString &name) const { return QFileInfo::exists(path(name)); }

    void settle()
    {
        do {
            _tasks->runAll();
            _loop->advance({});
        } while (_tasks->waiting() > 0);
    }

private slots:
    void init()
    {
        _coordinator.reset();
        _folder = std::make_unique<QTemporaryDir>();
        _trash.emplace(path(u"Trash"_s));
        _loop.emplace();
        _tasks.emplace(*_loop);
        _coordinator.emplace(*_tasks, _disk, *_trash);
    }
    void cleanup() { _coordinator.reset(); }

    // Whether a read of the other item may begin while the first one is under way.
    void whatTouchesWaits_data()
    {
        columns<QString, bool>("other", "waits");
        row("the same", u"u/f/a"_s, true);
        row("a folder above", u"u"_s, true);
        row("one below", u"u/f/a/b"_s, true);
        row("other letter case", u"u/F/A"_s, true);
        row("beside", u"u/f/b"_s, false);
        row("a longer name", u"u/f/a2"_s, false);
        row("a shorter name", u"u/f "_s, false);
        row("the target of a move", u"v/c"_s, true);
        row("beside the target", u"v/d"_s, false);
    }
    void whatTouchesWaits()
    {
        QFETCH(QString, other);
        QFETCH(bool, waits);
        for (const bool otherFirst : {false, true}) {
            init();
            int completed = 0;
            const auto move = [&] {
                _coordinator->move(url(u"u/f/a"_s), url(u"v/c"_s), [&](auto &) { ++completed; });
            };
            const auto read = [&] { _coordinator->read(url(other), [&](auto &) { ++completed; }); };
            otherFirst ? read() : move();
            if (!otherFirst)
                QCOMPARE(_coordinator->isBusy(url(other)), waits);
            otherFirst ? move() : read();
            QCOMPARE(_tasks->waiting(), waits ? size_t{1} : size_t{2});
            _tasks->runTask();
            // The next may begin when the first has been completed, which comes from the loop.
            QCOMPARE(completed, 0);
            QCOMPARE(_tasks->waiting(), waits ? size_t{0} : size_t{1});
            settle();
            QCOMPARE(completed, 2);
            QVERIFY(!_coordinator->isBusy(FileURL::directory(u"/"_s)));
        }
    }

    void workIsDoneInTheOrderOfAsking()
    {
        put(u"f/a"_s);
        QStringList done;
        const auto note = [&done](const QString &what) {
            return [&done, what](const FileResult &result) { done += what + (result.ok() ? u"+" : u"-"); };
        };
        _coordinator->replace(url(u"f/a"_s), "1", {}, StoreDisk::OtherVersion::Replace, note(u"1"_s));
        _coordinator->remove(folder(u"f"_s), note(u"folder"_s));
        _coordinator->create(url(u"f/a"_s), "2", note(u"2"_s));
        _coordinator->create(url(u"b"_s), "b", note(u"b"_s));
        // The pool takes what it likes first.
        QCOMPARE(_tasks->waiting(), size_t{2});
        _tasks->runTask(1);
        settle();
        QCOMPARE(done, (QStringList{u"b+"_s, u"1+"_s, u"folder+"_s, u"2-"_s}));
        // The folder was not empty, so it is in the trash with the text that was saved before.
        QVERIFY(!has(u"f"_s));
        QFile trashed(path(u"Trash/1/f/a"_s));
        QVERIFY(trashed.open(QIODevice::ReadOnly));
        QCOMPARE(trashed.readAll(), QByteArrayLiteral("1"));
    }

    void aCompletionMayAskForMore()
    {
        put(u"a"_s);
        std::optional<ReadResult> read;
        _coordinator->move(url(u"a"_s), url(u"b"_s), [&](auto &) {
            QVERIFY(!_coordinator->isBusy(url(u"b"_s)));
            _coordinator->read(url(u"b"_s), [&](const ReadResult &result) { read = result; });
            QVERIFY(!read);
        });
        settle();
        QVERIFY(read && read->ok() && read->bytes == "x");
    }

    void whatWaitsIsDoneWhenTheProgramEnds()
    {
        put(u"f/a"_s);
        bool told = false;
        const auto tell = [&](const FileResult &) { told = true; };
        _coordinator->remove(url(u"f/a"_s), tell);
        _coordinator->remove(folder(u"f"_s), tell);
        _coordinator->create(url(u"f"_s), "new", tell);
        _coordinator.reset();
        QVERIFY(has(u"f/a"_s));
        _tasks->runAll();
        _loop->advance({});
        QVERIFY(QFileInfo(path(u"f"_s)).isFile());
        QVERIFY(!told);
    }

    // Each costs the same however many are ahead: ten times as many may take forty times as long on a busy machine, not a hundred.
    void manyRemovalsAreLinear()
    {
        const auto timeFor = [this](int count) {
            init();
            int completed = 0;
            QElapsedTimer timer;
            timer.start();
            const auto counted = [&](const FileResult &) { ++completed; };
            for (int round = 0; round < 2; ++round) {
                for (int i = 0; i < count; ++i)
                    _coordinator->remove(url(u"f/%1"_s.arg(i)), counted);
                _coordinator->remove(folder(u"f"_s), counted);
            }
            settle();
            return completed == 2 * count + 2 ? timer.nsecsElapsed() : -1;
        };
        const qint64 few = timeFor(1000);
        const qint64 many = timeFor(10000);
        QVERIFY2(few > 0 && many > 0 && many < 40 * few, qPrintable(u"%1 %2 ns"_s.arg(few).arg(many)));
    }

    void theRealPoolKeepsTheOrder()
    {
        QVERIFY(QDir().mkpath(path(u"f"_s)));
        constexpr int Count = 200;
        int completed = 0;
        bool isMainThread = true;
        {
            ThreadPoolTaskRunner pool;
            DiskFileCoordinator coordinator(pool, _disk, *_trash);
            const auto done = [&](const FileResult &result) {
                completed += result.ok() ? 1 : 0;
                isMainThread = isMainThread && QThread::currentThread() == thread();
            };
            for (int i = 0; i < Count; ++i) {
                const FileURL item = url(u"f/%1"_s.arg(i));
                coordinator.create(item, "x", done);
                coordinator.move(item, url(u"f/%1 moved"_s.arg(i)), done);
                coordinator.remove(url(u"f/%1 moved"_s.arg(i)), done);
            }
            coordinator.remove(folder(u"f"_s), done);
            QTRY_COMPARE_WITH_TIMEOUT(completed, 3 * Count + 1, 60000);
            QVERIFY(isMainThread);
            QVERIFY(_trash->items.isEmpty());
            // What is still under way when the program ends is done, and not told.
            coordinator.create(url(u"g"_s), "x", done);
            coordinator.move(url(u"g"_s), url(u"h"_s), done);
        }
        QCoreApplication::processEvents();
        QCOMPARE(completed, 3 * Count + 1);
        QVERIFY(has(u"h"_s) && !has(u"g"_s));
    }

    void theTrashTakesTheItemWhole()
    {
        const QByteArray home = qgetenv("XDG_DATA_HOME");
        const FileURL recovered = folder(u"Recovered"_s);
        DesktopTrash trash(_disk, recovered);
        // The desktop's trash cannot be made where a file has its place.
        for (const bool isDesktop : {true, false}) {
            put(u"f/a.txt"_s);
            put(isDesktop ? u"data/x"_s : u"no data"_s);
            qputenv("XDG_DATA_HOME", QFile::encodeName(path(isDesktop ? u"data"_s : u"no data"_s)));
            QVERIFY(trash.moveToTrash(folder(u"f"_s)).ok());
            QVERIFY(!has(u"f"_s));
            QVERIFY(has(isDesktop ? u"data/Trash/files/f/a.txt"_s : u"Recovered/f/a.txt"_s));
        }
        for (const char *name : {"Recovered/a.txt", "Recovered/a 2.txt", "a.txt"})
            put(QString::fromLatin1(name));
        QVERIFY(trash.moveToTrash(url(u"a.txt"_s)).ok());
        QVERIFY(has(u"Recovered/a 3.txt"_s));
        QCOMPARE(trash.moveToTrash(url(u"a.txt"_s)).outcome, Outcome::Missing);
        home.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", home);
    }
};

QTEST_GUILESS_MAIN(tst_coordinator)
#include "tst_coordinator.moc"
