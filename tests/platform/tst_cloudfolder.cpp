// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/EventRunLoop.h"
#include "base/NotificationCenter.h"
#include "base/ThreadPoolTaskRunner.h"
#include "platform/cloud/SyncedFolderContainer.h"
#include "store/StoreContext.h"
#include "store/StoreProblems.h"
#include "store/TamberUbiquitousFolderMonitor.h"
#include "support/FolderTrash.h"
#include "support/RecordingLog.h"
#include "support/Rows.h"
#include "support/ScriptedFileCoordinator.h"

#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace cvtamber;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Outcome = FileResult::Outcome;

namespace {

// Notes what a monitor reports: "added a.tamber", "again a.tamber" ...
class Reports final : public TamberUbiquitousFolderMonitorDelegate
{
public:
    using Monitor = TamberUbiquitousFolderMonitor;
    void ubiquitousMonitorItemAdded(Monitor &, const Item &item) override { note(u"added"_s, item); }
    void ubiquitousMonitorItemDeleted(Monitor &, const Item &item) override { note(u"deleted"_s, item); }
    void ubiquitousMonitorItemDownloaded(Monitor &, const Item &item) override
    {
        note(u"downloaded"_s, item);
    }
    void ubiquitousMonitorItemDownloadedAgain(Monitor &, const Item &item) override
    {
        note(u"again"_s, item);
    }
    void ubiquitousMonitorContentGathered(Monitor &, const TamberUbiquitousItems &) override
    {
        lines.append(u"gathered"_s);
    }

    QStringList lines;

private:
    void note(const QString &what, const Item &item)
    {
        lines.append(what % u' ' % item->url().lastPathComponent());
    }
};

// A sync program that listens on its socket.
class SyncProgram
{
public:
    explicit SyncProgram(const QString &path)
        : _socket(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.toUtf8().constData(), sizeof address.sun_path - 1);
        ::bind(_socket, reinterpret_cast<sockaddr *>(&address), sizeof address);
        ::listen(_socket, 5);
    }
    SyncProgram(const SyncProgram &) = delete;
    SyncProgram &operator=(const SyncProgram &) = delete;
    ~SyncProgram() { ::close(_socket); }

    // All that the next caller says; it waits for one.
    QByteArray heard() const
    {
        const int connection = ::accept(_socket, nullptr, nullptr);
        QByteArray bytes(4096, '\0');
        const auto size = ::recv(connection, bytes.data(), static_cast<size_t>(bytes.size()), MSG_WAITALL);
        ::close(connection);
        return bytes.first(size);
    }

private:
    int _socket;
};

} // namespace

class tst_CloudFolder : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> _temporary;
    EventRunLoop _loop;
    RecordingLog _log;
    // One for each test, so that no completion of an earlier one comes late.
    std::unique_ptr<ThreadPoolTaskRunner> _tasks;
    FileOperations &_operations = FileOperations::system();
    QString _folder;
    std::unique_ptr<SyncedFolderContainer> _container;

    // What another program does; true when it ended well.
    bool sh(const QString &script, const QString &program = u"/bin/sh"_s) const
    {
        QProcess process;
        process.setWorkingDirectory(_folder);
        process.start(program, {u"-c"_s, script});
        return process.waitForFinished() && process.exitCode() == 0;
    }

    QStringList onDisk() const
    {
        QStringList paths;
        for (QDirIterator it(_folder, {u"*.tamber"_s}, QDir::Files, QDirIterator::Subdirectories);
             it.hasNext();)
            paths.append(it.next());
        paths.sort();
        return paths;
    }

    static QStringList pathsHere(const MetadataQuery &query)
    {
        QStringList paths;
        for (const MetadataItem &item : query.results()) {
            if (item.isDownloaded)
                paths.append(item.url.path());
        }
        paths.sort();
        return paths;
    }

    std::unique_ptr<MetadataQuery> startedQuery()
    {
        auto query = _container->makeQuery();
        query->setPredicate(FileURL::directory(_folder), u"*.tamber"_s);
        query->start();
        return query;
    }

private slots:
    void init()
    {
        _temporary = std::make_unique<QTemporaryDir>();
        _folder = _temporary->path() + u"/Cloud"_s;
        QDir().mkpath(_folder);
        QDir().mkpath(_temporary->path() + u"/Nextcloud"_s);
        _container.reset();
        _tasks.reset();
        _tasks = std::make_unique<ThreadPoolTaskRunner>();
        const FolderFollower::Surroundings surroundings{_loop, *_tasks, _operations, _log,
                                                        FolderWatcher::bestFactory(_loop)};
        _container = std::make_unique<SyncedFolderContainer>(_folder, surroundings, _temporary->path());
        _log.lines.clear();
    }

    void theContainerIsThereWithItsFolder()
    {
        QCOMPARE(_container->url(), FileURL::directory(_folder));
        QVERIFY(QFileInfo(_folder + u"/Documents"_s).isDir());
        QVERIFY(sh(u"cd .. && mv Cloud Elsewhere && ln -s Elsewhere Cloud"_s));
        QVERIFY(!_container->url().isNil());
        QVERIFY(sh(u"cd .. && rm -r Cloud && touch Cloud"_s));
        QVERIFY(_container->url().isNil());
        QVERIFY(QFile::remove(_folder));
        QVERIFY(_container->url().isNil());
    }

    void itemsLieInTheContainer_data()
    {
        columns<QString, bool>("below", "isIn");
        row("itself", QString(), true);
        row("in it", u"/Documents/a.tamber"_s, true);
        row("a longer name", u"2/a.tamber"_s, false);
        row("out of it again", u"/../a.tamber"_s, false);
    }
    void itemsLieInTheContainer()
    {
        QFETCH(QString, below);
        QFETCH(bool, isIn);
        QCOMPARE(_container->isUbiquitousItem(FileURL::file(_folder + below)), isIn);
        QCOMPARE(_container->isUbiquitousItem({}), false);
    }

    void onlyAListeningProgramCanBeAsked()
    {
        const FileURL folder = FileURL::directory(_folder);
        QVERIFY(sh(u"touch here a.tamber.nextcloud b.tamber.owncloud .c.tamber.icloud"_s));
        QVERIFY(_container->startDownloading(folder.appendingFile(u"here"_s)).ok());
        QCOMPARE(_container->startDownloading(folder.appendingFile(u"nowhere"_s)).outcome, Outcome::Missing);
        const FileURL document = folder.appendingFile(u"a.tamber"_s);
        const FileResult refused = _container->startDownloading(document);
        QCOMPARE(refused.outcome, Outcome::Failed);
        QVERIFY(refused.message.contains(u"still in the cloud"_s));

        const QString socket = _temporary->path() + u"/Nextcloud/socket"_s;
        {
            const SyncProgram program(socket);
            QVERIFY(_container->startDownloading(document).ok());
            QCOMPARE(program.heard(), "MAKE_AVAILABLE_LOCALLY:" + _folder.toUtf8() + "/a.tamber.nextcloud\n");
            QVERIFY(!_container->startDownloading(folder.appendingFile(u"b.tamber"_s)).ok());
            QVERIFY(!_container->startDownloading(folder.appendingFile(u"c.tamber"_s)).ok());
        }
        // The program has ended and left its socket.
        QVERIFY(_container->startDownloading(document).ok());
        QTRY_COMPARE(_log.count(u"[***ERROR***] The sync program could not be asked"_s), 1);
        QVERIFY(!_container->startDownloading(document).ok());
        QTRY_COMPARE(_log.lines.size(), 2);
        QVERIFY(QFile::remove(socket));
        const SyncProgram again(socket);
        _container->startDownloading(document);
        QVERIFY(again.heard().endsWith("a.tamber.nextcloud\n"));
        QTRY_VERIFY(_container->startDownloading(document).ok());
    }

    void aNameIsNoRequest()
    {
        QVERIFY(sh(u"touch \"$(printf 'a\\nRESOLVE:b.tamber').nextcloud\""_s));
        const SyncProgram program(_temporary->path() + u"/Nextcloud/socket"_s);
        _container->startDownloading(FileURL::file(_folder + u"/a\nRESOLVE:b.tamber"_s));
        QTRY_COMPARE(_log.lines.size(), 1);
    }

    void aMonitorHearsWhatAnotherProgramDoes()
    {
        StoreDisk disk(_operations);
        ScriptedFileCoordinator coordinator(_loop);
        FolderTrash trash(_temporary->path());
        NotificationCenter notifications;
        StoreProblems problems;
        StoreContext context{_loop, disk, coordinator, *_container, trash, notifications, problems, _log};
        const auto reports = std::make_shared<Reports>();
        const auto monitor = std::make_shared<TamberUbiquitousFolderMonitor>(
            context, FileURL::directory(_folder), u"*.tamber"_s);
        monitor->setDelegate(reports);
        QVERIFY(sh(u"printf text > a.tamber"_s));
        monitor->startMonitoring();
        const auto hears = [&](const QString &script, const QStringList &expected) {
            reports->lines.clear();
            QVERIFY(sh(script));
            QTRY_COMPARE(reports->lines, expected);
        };
        hears(u"true"_s, {u"added a.tamber"_s, u"gathered"_s});
        hears(u"printf other > .new && mv .new a.tamber"_s, {u"again a.tamber"_s});
        hears(u"printf more >> a.tamber"_s, {u"again a.tamber"_s});
        hears(u"touch b.tamber.nextcloud"_s, {u"added b.tamber"_s});
        hears(u"printf text > .b && mv .b b.tamber && rm b.tamber.nextcloud"_s, {u"downloaded b.tamber"_s});
        hears(u"mkdir -p d/e/f && printf 1 > d/e/f/c.tamber"_s, {u"added c.tamber"_s});
        hears(u"mv d ../d && printf 2 > ../d/e/2.tamber"_s, {u"deleted c.tamber"_s});
        hears(u"mv ../d g"_s, {u"added 2.tamber"_s, u"added c.tamber"_s});
        hears(u"mv g h"_s,
              {u"added 2.tamber"_s, u"added c.tamber"_s, u"deleted c.tamber"_s, u"deleted 2.tamber"_s});
        hears(u"printf 33 > h/e/f/c.tamber"_s, {u"again c.tamber"_s});
        hears(u"mv h ../h && mkdir -p h/e/f && printf 5 > h/e/f/5.tamber"_s,
              {u"added 5.tamber"_s, u"deleted c.tamber"_s, u"deleted 2.tamber"_s});
        hears(u"printf 66 > h/e/f/6.tamber"_s, {u"added 6.tamber"_s});
        hears(u"rm -r h a.tamber"_s, {u"deleted 6.tamber"_s, u"deleted 5.tamber"_s, u"deleted a.tamber"_s});
    }

    void aStormEndsInTheTruth_data()
    {
        columns<int>("seed");
        for (int seed = 1; seed <= 2; ++seed)
            row(qPrintable(u"seed %1"_s.arg(seed)), seed);
    }
    void aStormEndsInTheTruth()
    {
        QFETCH(int, seed);
        const auto query = startedQuery();
        const QString storm = u"import os, random, shutil, time\n"
                              "random.seed(%1)\n"
                              "spot = lambda: '/'.join(random.choices('abc', k=random.randint(1, 3)))\n"
                              "for i in range(1500):\n"
                              "    if i % 250 == 249: time.sleep(0.35)\n" // so that looks come in between
                              "    try:\n"
                              "        what, here, there = random.randrange(5), spot(), spot()\n"
                              "        if what < 2:\n"
                              "            os.makedirs(here, exist_ok=True)\n"
                              "            open(f'{here}/{i % 9}.tamber', 'w').write(str(i))\n"
                              "        elif what == 2:\n"
                              "            os.rename(here, there)\n"
                              "        elif what == 3:\n"
                              "            os.rename(f'{here}/{i % 9}.tamber', f'{there}/{i % 7}.tamber')\n"
                              "        elif i % 4 == 0:\n"
                              "            shutil.rmtree(here)\n"
                              "    except OSError: pass\n"_s.arg(seed);
        QProcess program;
        program.setWorkingDirectory(_folder);
        program.start(u"python3"_s, {u"-c"_s, storm});
        QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, 30000);
        QCOMPARE(program.exitCode(), 0);
        const QStringList truth = onDisk();
        QVERIFY(!truth.isEmpty());
        QTRY_COMPARE(pathsHere(*query), truth);
        // And all of it is still watched.
        QVERIFY(sh(u"find . -type d -exec sh -c 'printf 1 > \"$0\"/last.tamber' {} \\;"_s));
        QTRY_COMPARE(pathsHere(*query), onDisk());
    }
};

QTEST_GUILESS_MAIN(tst_CloudFolder)
#include "tst_cloudfolder.moc"
