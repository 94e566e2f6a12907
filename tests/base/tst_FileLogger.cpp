// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileLogger.h"
#include "base/StandardLocations.h"
#include "support/RecordingLog.h"
#include "support/TemporaryLocations.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace cvtamber;

namespace {

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("<unreadable>");
}

} // namespace

class tst_FileLogger : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir _home;

private slots:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", _home.filePath(QStringLiteral("data")).toLocal8Bit());
        qputenv("XDG_STATE_HOME", _home.filePath(QStringLiteral("state/deep")).toLocal8Bit());
    }

    void messagesCollectOverRuns()
    {
        TemporaryLocations locations;
        RecordingLog log;
        const QString path = locations.documentsFolder() + QStringLiteral("/application.log");
        {
            FileLogger logger(locations, log);
            QCOMPARE(contentsOf(path), QByteArray());
            logger.log(QStringLiteral("saved: Zoë %1 %s"));
            QCOMPARE(contentsOf(path), QByteArrayLiteral("saved: Zo\xc3\xab %1 %s\n"));
        }
        FileLogger logger(locations, log);
        logger.log(QString());
        logger.log(QStringLiteral("second"));
        QCOMPARE(contentsOf(path), QByteArrayLiteral("saved: Zo\xc3\xab %1 %s\n\nsecond\n"));
        QCOMPARE(log.lines, (QStringList{QStringLiteral("[info] saved: Zoë %1 %s"), QStringLiteral("[info] "),
                                         QStringLiteral("[info] second")}));
    }

    void withoutAFileTheSystemLogStillHears()
    {
        TemporaryLocations locations;
        RecordingLog log;
        QVERIFY(QDir(locations.documentsFolder()).mkdir(QStringLiteral("application.log")));
        FileLogger logger(locations, log);
        logger.log(QStringLiteral("still here"));
        QCOMPARE(log.lines.size(), 2);
        QVERIFY(log.lines.first().startsWith(QStringLiteral("[***ERROR***]")));
        QCOMPARE(log.lines.last(), QStringLiteral("[info] still here"));
    }

    void thereIsOneSharedLogger()
    {
        QCOMPARE(&FileLogger::sharedInstance(), &FileLogger::sharedInstance());
        FileLogger::sharedInstance().log(QStringLiteral("shared"));
        QCOMPARE(contentsOf(_home.filePath(QStringLiteral("data/cvtamber/Documents/application.log"))),
                 QByteArrayLiteral("shared\n"));
    }

#if defined(Q_OS_LINUX)
    void standardFoldersAreMadePrivate()
    {
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                                QFile::WriteOther | QFile::ExeOther;
        QString temporary;
        {
            StandardLocations locations;
            QCOMPARE(locations.stateFolder(), _home.filePath(QStringLiteral("state/deep/cvtamber")));
            temporary = locations.temporaryFolder();
            QCOMPARE(locations.temporaryFolder(), temporary);
            for (const auto &folder : {locations.documentsFolder(), locations.stateFolder(), temporary}) {
                QVERIFY(QFileInfo(folder).isDir());
                QVERIFY(!(QFileInfo(folder).permissions() & others));
            }
        }
        QVERIFY(!QFileInfo::exists(temporary));
    }

    void onlyAbsoluteVariablesCount()
    {
        const auto home = qgetenv("HOME");
        const auto state = qgetenv("XDG_STATE_HOME");
        qputenv("HOME", _home.path().toLocal8Bit());
        StandardLocations locations;
        for (const auto *value : {"", "relative/path"}) {
            qputenv("XDG_STATE_HOME", value);
            QCOMPARE(locations.stateFolder(), _home.filePath(QStringLiteral(".local/state/cvtamber")));
        }
        qputenv("HOME", home);
        qputenv("XDG_STATE_HOME", state);
    }
#endif
};

QTEST_GUILESS_MAIN(tst_FileLogger)
#include "tst_FileLogger.moc"
