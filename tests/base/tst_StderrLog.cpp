// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/StderrLog.h"

#include <QProcess>
#include <QTest>

using namespace cvtamber;

// The program under test is this one: with an argument it only logs.
class tst_StderrLog : public QObject
{
    Q_OBJECT

private slots:
    void masksUnlessAsked_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("errorOutput");

        const QByteArray first = "[info] Zo\xc3\xab \\x1b[2J\\x0a\\u{202E}\n[debug] ";
        QTest::newRow("unset") << QString() << first + "<hidden>\n";
        QTest::newRow("0") << QStringLiteral("0") << first + "<hidden>\n";
        QTest::newRow("1") << QStringLiteral("1") << first + "Letter to Ann\n";
    }

    void masksUnlessAsked()
    {
        QFETCH(QString, value);
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("CVTAMBER_LOG_PRIVATE"), value);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("write")});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardOutput(), QByteArray());
        QTEST(process.readAllStandardError(), "errorOutput");
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "write") == 0) {
        StderrLog log;
        log.info(QStringLiteral("Zoë \x1b[2J\n\u202E"));
        log.debug(SystemLog::masked(QStringLiteral("Letter to Ann")));
        return 0;
    }
    tst_StderrLog test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_StderrLog.moc"
