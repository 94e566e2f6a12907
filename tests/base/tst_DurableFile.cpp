// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <memory>
#include <thread>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#endif

using namespace cvtamber;
using Outcome = DurableFileResult::Outcome;

class tst_DurableFile : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> _folder;

    QString path(const char *name) const { return _folder->filePath(QString::fromUtf8(name)); }

    QStringList names() const
    {
        return QDir(_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    static QByteArray contentsOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("<unreadable>");
    }

private slots:
    void init() { _folder = std::make_unique<QTemporaryDir>(); }

    void aNewFileIsThereWhole()
    {
        const QByteArray bytes = QByteArray(300000, 'x') + '\0' + "end";
        QVERIFY(writeNewFile(path("Zoë.txt"), bytes).ok());
        QVERIFY(writeNewFile(path("empty"), QByteArray()).ok());
        QCOMPARE(contentsOf(path("Zoë.txt")), bytes);
        QCOMPARE(contentsOf(path("empty")), QByteArray());
        QCOMPARE(names().size(), 2);
    }

    void anExistingFileStays()
    {
        QVERIFY(writeNewFile(path("a"), "first").ok());
        const auto result = writeNewFile(path("a"), "second");
        QCOMPARE(result.outcome, Outcome::AlreadyExists);
        QVERIFY(!result.message.isEmpty());
        QCOMPARE(contentsOf(path("a")), QByteArrayLiteral("first"));
        QCOMPARE(names(), QStringList{QStringLiteral("a")});
    }

    void oneOfManyWritersWins()
    {
        std::array<Outcome, 8> outcomes{};
        std::array<std::thread, 8> threads;
        for (size_t i = 0; i < threads.size(); ++i) {
            threads[i] = std::thread([this, i, &outcomes] {
                outcomes[i] = writeNewFile(path("a"), QByteArray(70000, static_cast<char>('a' + i))).outcome;
            });
        }
        for (auto &thread : threads)
            thread.join();
        QCOMPARE(std::count(outcomes.begin(), outcomes.end(), Outcome::Ok), 1);
        QCOMPARE(std::count(outcomes.begin(), outcomes.end(), Outcome::AlreadyExists), 7);
        const auto winner = std::find(outcomes.begin(), outcomes.end(), Outcome::Ok) - outcomes.begin();
        QCOMPARE(contentsOf(path("a")), QByteArray(70000, static_cast<char>('a' + winner)));
        QCOMPARE(names().size(), 1);
    }

    void whatIsNoFileNameIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QString();
        QTest::newRow("folder") << QStringLiteral("/tmp/");
        QTest::newRow("zero inside") << QStringLiteral("/tmp/a") + QChar(u'\0') + u'b';
        QTest::newRow("no such folder") << QStringLiteral("/no-such-folder/a");
        QTest::newRow("name too long") << QStringLiteral("/tmp/") + QString(300, u'n');
    }

    void whatIsNoFileNameIsRefused()
    {
        QFETCH(QString, name);
        for (const auto &result : {writeNewFile(name, "x"), replaceFile(name, "x")}) {
            QCOMPARE(result.outcome, Outcome::Failed);
            QVERIFY(!result.message.isEmpty());
        }
        QCOMPARE(names(), QStringList());
    }

    void replacingMakesOrReplaces()
    {
        QVERIFY(replaceFile(path("a"), "first, and longer").ok());
        QVERIFY(QFile::setPermissions(path("a"), QFile::ReadOwner | QFile::WriteOwner));
        const auto permissions = QFile::permissions(path("a"));
        QVERIFY(replaceFile(path("a"), "second").ok());
        QCOMPARE(contentsOf(path("a")), QByteArrayLiteral("second"));
        QCOMPARE(QFile::permissions(path("a")), permissions);
        QCOMPARE(names(), QStringList{QStringLiteral("a")});
    }

    void onlyAnOrdinaryFileIsReplaced()
    {
        QVERIFY(QDir(_folder->path()).mkdir(QStringLiteral("folder")));
        QVERIFY(QFile::link(path("nowhere"), path("link")));
        QCOMPARE(replaceFile(path("folder"), "x").outcome, Outcome::Failed);
        QCOMPARE(replaceFile(path("link"), "x").outcome, Outcome::Failed);
        QCOMPARE(writeNewFile(path("link"), "x").outcome, Outcome::AlreadyExists);
        QVERIFY(!QFile::exists(path("nowhere")));
#ifdef Q_OS_UNIX
        QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
        QCOMPARE(replaceFile(path("pipe"), "x").outcome, Outcome::Failed);
#endif
        QCOMPARE(QDir(path("folder")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
        QVERIFY(names().filter(QStringLiteral("cvtamber")).isEmpty());
    }

#ifdef Q_OS_UNIX
    void aLinkIsFollowed()
    {
        QVERIFY(writeNewFile(path("real"), "old").ok());
        QVERIFY(QFile::link(path("real"), path("link")));
        QVERIFY(replaceFile(path("link"), "new").ok());
        QVERIFY(QFileInfo(path("link")).isSymbolicLink());
        QCOMPARE(contentsOf(path("real")), QByteArrayLiteral("new"));
    }

    void aFailedWriteLeavesNothingBehind()
    {
        QVERIFY(writeNewFile(path("old"), "old").ok());
        rlimit limit{};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &limit), 0);
        const auto unlimited = limit;
        limit.rlim_cur = 10000;
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        const auto created = writeNewFile(path("new"), QByteArray(20000, 'x'));
        const auto replaced = replaceFile(path("old"), QByteArray(20000, 'x'));
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &unlimited), 0);
        std::signal(SIGXFSZ, handler);
        QCOMPARE(created.outcome, Outcome::Failed);
        QCOMPARE(replaced.outcome, Outcome::Failed);
        QCOMPARE(contentsOf(path("old")), QByteArrayLiteral("old"));
        QCOMPARE(names(), QStringList{QStringLiteral("old")});
    }

    void aNewFileFollowsTheUmask()
    {
        const auto before = ::umask(027);
        const bool written = writeNewFile(path("a"), "x").ok();
        ::umask(before);
        QVERIFY(written);
        struct stat status
        {};
        QCOMPARE(::stat(QFile::encodeName(path("a")).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777U, 0640U);
    }
#endif
};

QTEST_APPLESS_MAIN(tst_DurableFile)
#include "tst_DurableFile.moc"
