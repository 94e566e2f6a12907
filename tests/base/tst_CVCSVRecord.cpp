// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/CVCSVRecord.h"

#include <QTest>

using namespace cvtamber;

class tst_CVCSVRecord : public QObject
{
    Q_OBJECT

private slots:
    void splits_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("fields");

        const auto row = [](const char *name, const QString &line, const QStringList &fields) {
            QTest::newRow(name) << line << fields;
        };
        const auto s = [](const char *text) { return QString::fromUtf8(text); };
        row("three", s("a,b,c"), {s("a"), s("b"), s("c")});
        row("empty line", s(""), {s("")});
        row("one", s("Zoë"), {s("Zoë")});
        row("only commas", s(",,"), {s(""), s(""), s("")});
        row("comma at the end", s("a,"), {s("a"), s("")});
        row("spaces stay", s(" a , b "), {s(" a "), s(" b ")});
        row("quoted comma", s("x,\"a,b\""), {s("x"), s("a,b")});
        row("quoted first with a comma", s("\"a,b\",c,d"), {s("a,b\",c"), s("d")});
        row("comma after the closing quote", s("\"a\",b,c"), {s("a\",b"), s("c")});
        row("two quoted fields", s("\"a\",\"b\""), {s("a\",\"b")});
        row("quote never closed", s("\"a,b,c"), {s("a,b,c")});
        row("quote inside a field", s("a\"b,c"), {s("a\"b"), s("c")});
        row("quote after a space opens nothing", s("a, \"b,c\""), {s("a"), s(" \"b"), s("c\"")});
        row("quote and comma alone", s("\","), {s(",")});
        row("pair, then comma", s("\"\",b"), {s(",b")});
        row("doubled quotes", s("x,\"say \"\"hi\"\" now\""), {s("x"), s("say \"hi\" now")});
    }

    void splits()
    {
        QFETCH(QString, line);
        QTEST(CVCSVRecord::recordFromString(line).fields(), "fields");
        QTEST(CVCSVRecord(line).fields(), "fields");
    }

    void unquotes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("unquoted");

        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("plain") << QStringLiteral("ab") << QStringLiteral("ab");
        QTest::newRow("quote at the end only") << QStringLiteral("ab\"\"") << QStringLiteral("ab\"\"");
        QTest::newRow("one quote") << QStringLiteral("\"") << QString();
        QTest::newRow("a pair") << QStringLiteral("\"\"") << QString();
        QTest::newRow("every quote at the ends") << QStringLiteral("\"\"\"a\"\"\"\"") << QStringLiteral("a");
        QTest::newRow("three inside") << QStringLiteral("\"a\"\"\"b\"") << QStringLiteral("a\"\"b");
    }

    void unquotes()
    {
        QFETCH(QString, text);
        QTEST(CVCSVRecord::unquoteString(text), "unquoted");
    }
};

QTEST_APPLESS_MAIN(tst_CVCSVRecord)
#include "tst_CVCSVRecord.moc"
