// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Records.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;

class tst_records : public QObject
{
    Q_OBJECT

private slots:
    void readsUsers_data()
    {
        columns<QByteArray, QStringList>("bytes", "fields");
        const auto fields = [](const char *first, const char *last, const char *display) {
            return QStringList{QString::fromUtf8(first), QString::fromUtf8(last), QString::fromUtf8(display)};
        };
        row("as written", QByteArray("Anna\nBerg\nAnni\n"), fields("Anna", "Berg", "Anni"));
        row("no last line end", QByteArray("Anna\nBerg\nAnni"), fields("Anna", "Berg", "Anni"));
        row("CR LF", QByteArray("Anna\r\nBerg\r\nAnni\r\n"), fields("Anna", "Berg", "Anni"));
        row("byte-order mark",
            QByteArray("\xEF\xBB\xBF"
                       "Anna\nBerg\nAnni\n"),
            fields("Anna", "Berg", "Anni"));
        row("byte-order mark, short",
            QByteArray("\xEF\xBB\xBF"
                       "A"),
            fields("A", "", ""));
        row("two byte-order marks",
            QByteArray("\xEF\xBB\xBF\xEF\xBB\xBF"
                       "A"),
            fields("A", "", ""));
        row("one line", QByteArray("Anna"), fields("Anna", "", ""));
        row("two lines", QByteArray("Anna\nBerg\n"), fields("Anna", "Berg", ""));
        row("empty file", QByteArray(""), fields("", "", ""));
        row("more lines", QByteArray("a\nb\nc\nd\ne"), fields("a", "b", "c"));
        row("CR inside stays", QByteArray("a\rb\nc\r\nd"), fields("a\rb", "c", "d"));
        row("not a character", QByteArray("\xEF\xBF\xBE\nb\nc"), fields("\xEF\xBF\xBE", "b", "c"));
        row("invalid UTF-8", QByteArray("Anna\xFF\nBerg\nAnni\n"),
            QStringList{QString(), QString(), QString()});
        row("cut UTF-8", QByteArray("Zo\xC3"), QStringList{QString(), QString(), QString()});
    }

    void readsUsers()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, fields);
        const auto record = UserRecord::fromText(textFromUtf8(bytes));
        QCOMPARE((QStringList{record.firstName, record.lastName, record.displayName}), fields);
        for (const QString &field : {record.firstName, record.lastName, record.displayName})
            QCOMPARE(field.isNull(), fields[0].isNull());
    }

    void writesUsers()
    {
        QCOMPARE((UserRecord{u"Anna"_s, {}, u"Anni"_s}.toText()), u"Anna\n\nAnni\n"_s);
        const UserRecord hostile{u"a\nb"_s, u"c\r\nd"_s, u"e\r"_s};
        QCOMPARE(hostile.toText(), u"a b\nc  d\ne \n"_s);
        QCOMPARE(UserRecord::fromText(hostile.toText()), (UserRecord{u"a b"_s, u"c  d"_s, u"e "_s}));
    }

    void readsFolders_data()
    {
        columns<QByteArray, QString>("bytes", "name");
        row("as written", QByteArray("Maths\n"), u"Maths"_s);
        row("more lines", QByteArray("Maths\nold"), u"Maths"_s);
        row("CR LF", QByteArray("\xEF\xBB\xBFMaths\r\n"), u"Maths"_s);
        row("empty name", QByteArray("\n"), u""_s);
        row("empty file", QByteArray(), u""_s);
        row("invalid UTF-8", QByteArray("Maths\n\xC0\x80"), QString());
    }

    void readsFolders()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, name);
        QCOMPARE(folderNameFromBytes(bytes), name);
        QCOMPARE(folderNameFromBytes(bytes).isNull(), name.isNull());
    }

    void writesFolders()
    {
        QCOMPARE(folderNameToBytes(QString()), QByteArray("\n"));
        QCOMPARE(folderNameToBytes(u"Maths\n2"_s), QByteArray("Maths 2\n"));
    }

    void writesWhatCannotBeEncoded()
    {
        const QString text = u'a' % QChar(0xDC80) % u"\U0001F600"_s % QChar(0xD83D);
        QCOMPARE(utf8FromText(text), QByteArray("a\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD"));
    }
};

QTEST_APPLESS_MAIN(tst_records)
#include "tst_records.moc"
