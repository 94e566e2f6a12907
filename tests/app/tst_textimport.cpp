// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TextImport.h"
#include "support/Rows.h"
#include "support/StoreRig.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;

class tst_textimport : public QObject
{
    Q_OBJECT

private slots:
    void bytesBecomeText_data()
    {
        columns<QByteArray, QString, QString>("bytes", "language", "text");
        const auto none = QString();
        row("empty", QByteArray(), u"en"_s, u""_s);
        row("ASCII", QByteArray("Dear Ann\r\n"), u"en"_s, u"Dear Ann\r\n"_s);
        row("UTF-8", "Łódź 盲文 😀"_ba, u"pl"_s, u"Łódź 盲文 😀"_s);
        row("UTF-8 with its mark", QByteArray("\xEF\xBB\xBFź"), u"pl"_s, u"ź"_s);
        row("Polish", QByteArray("\xA3\xF3\x64\x9F"), u"pl-PL"_s, u"Łódź"_s);
        row("the same, phone set to English", QByteArray("\xA3\xF3\x64\x9F"), u"en-GB"_s, u"£ódŸ"_s);
        row("Czech", QByteArray("\xE8\xE1ra"), u"cs"_s, u"čára"_s);
        row("Greek", QByteArray("\xC1\xE8\xDE\xED\xE1"), u"el-GR"_s, u"Αθήνα"_s);
        row("Arabic", QByteArray("\xC8\xD1\xED\xE1"), u"ar-EG"_s, u"بريل"_s);
        row("French", QByteArray("\xE9t\xE9"), u"fr"_s, u"été"_s);
        row("no language", QByteArray("\xE9t\xE9"), QString(), u"été"_s);
        row("undefined in Western", QByteArray("\x81\x8D"), u"en"_s, none);
        row("undefined in Greek", QByteArray("\xAA\xE1"), u"el"_s, none);
        row("surrogates in UTF-8 are Western", QByteArray("\xED\xA0\x80"), u"en"_s, u"í\u00A0€"_s);
    }
    void bytesBecomeText()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, language);
        QFETCH(QString, text);
        const QString result = textOfBytes(bytes, language);
        QCOMPARE(result, text);
        QCOMPARE(result.isNull(), text.isNull());
    }

    void aWordWithoutEndIsNoText_data()
    {
        columns<QByteArray, bool>("bytes", "isText");
        const QByteArray longest(LongestWord, 'x');
        row("longest", longest, true);
        row("longer", longest + 'x', false);
        row("longer, after others", "two words " + longest + "x\n", false);
        row("two of the longest", longest.chopped(1) + '\n' + longest, true);
        row("Chinese without blanks", QString(LongestWord + 1, u'盲').toUtf8(), true);
    }
    void aWordWithoutEndIsNoText()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isText);
        StoreRig rig;
        rig.put(u"text.txt"_s, bytes);
        QCOMPARE(readTextFile(rig.disk, rig.file(u"text.txt"_s), u"en"_s).ok(), isText);
    }

    void aFileIsReadOrToldWhyNot()
    {
        using Outcome = ImportedText::Outcome;
        StoreRig rig;
        const auto outcome = [&rig](const QString &name) {
            return readTextFile(rig.disk, rig.file(name), u"en"_s).outcome;
        };
        rig.put(u"whole.txt"_s, QByteArray(LargestImport, '\n'));
        rig.put(u"larger.txt"_s, QByteArray(LargestImport + 1, 'x'));
        rig.put(u"binary.txt"_s, QByteArray("\x7F"
                                            "ELF\0\1",
                                            6));
        rig.put(u"undecodable.txt"_s, QByteArray("\x81\x81"));
        rig.makeFolder(u"folder.txt"_s);
        QCOMPARE(outcome(u"whole.txt"_s), Outcome::Ok);
        QCOMPARE(outcome(u"larger.txt"_s), Outcome::TooLarge);
        QCOMPARE(outcome(u"binary.txt"_s), Outcome::NotText);
        QCOMPARE(outcome(u"undecodable.txt"_s), Outcome::NotText);
        QCOMPARE(outcome(u"vanished.txt"_s), Outcome::Unreadable);
        QCOMPARE(outcome(u"folder.txt"_s), Outcome::Unreadable);
        QVERIFY(!readTextFile(rig.disk, rig.file(u"vanished.txt"_s), {}).why.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_textimport)
#include "tst_textimport.moc"
