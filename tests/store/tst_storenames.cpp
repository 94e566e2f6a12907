// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NameBytes.h"
#include "store/CloudNames.h"
#include "store/StoreNames.h"
#include "support/Rows.h"

#include <QSet>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

// Written out, its "?" and "-" would be taken for trigraphs.
QString uuidPattern()
{
    return u"xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx"_s.replace(u'x', u'?');
}

constexpr const char *ConflictCopies[] = {"Letter (conflicted copy).tamber",
                                          "Letter (conflicted copy 12).tamber",
                                          "Letter (conflicted copy 2026-11-23 101500).tamber",
                                          "Letter (conflicted copy anna 2026-11-23 101500).tamber",
                                          "Letter (Anna's conflicted copy 2026-11-23).tamber",
                                          "Letter (Anna\xe2\x80\x99s conflicted copy 2026-11-23 (1)).tamber",
                                          "Letter (Klaus' conflicted copy 2026-11-23).tamber",
                                          "Letter (Anna's Conflicted Copy).tamber",
                                          "Letter_conflict-20180410-093612.tamber",
                                          "Letter_conflict-anna-20180410-093612.tamber",
                                          "Letter.sync-conflict-20261123-101500-ABCDEF7.tamber",
                                          "user.sync-conflict-20161123-101500.txt",
                                          "README.sync-conflict-20261123-101500-ABCDEF7",
                                          "Letter (SFConflict anna@example.org 2026-11-23-10-15-00).tamber"};
constexpr const char *Temporaries[] = {"~syncthing~Letter.tamber.tmp",
                                       ".syncthing.Letter.tamber.tmp",
                                       ".Letter.tamber.~1a2b3c4d",
                                       ".sync_0a1b2c3d4e5f.db",
                                       ".sync_0a1b2c3d4e5f.db-wal",
                                       "._sync_0a1b2c3d4e5f.db",
                                       ".nextcloudsync.log",
                                       ".owncloudsync.log",
                                       ".stfolder",
                                       ".stversions",
                                       "Letter.tamber.part",
                                       "Letter.tamber.partial",
                                       "Letter.tamber.crdownload",
                                       ".~lock.Letter.tamber#",
                                       "~$Letter.docx",
                                       "Letter.TMP",
                                       ".dropbox.cache",
                                       ".DS_Store",
                                       "Desktop.ini",
                                       "._Letter.tamber",
                                       ".#Letter.tamber",
                                       "Letter.tamber~",
                                       ".Letter.tamber.swp",
                                       ".cvtamber-0000000001234",
                                       "Letter.tamber.part.nextcloud",
                                       ".goutputstream-A1B2C3"};
constexpr const char *Ordinary[] = {"Letter.tamber",
                                    "Temp.tamber",
                                    "My conflict.tamber",
                                    "My conflicted copy.tamber",
                                    "user.txt",
                                    "folder.dat",
                                    "Letter (copy).tamber",
                                    "a.tmp.tamber",
                                    "~$Letter.tamber",
                                    "~syncthing~.tamber",
                                    "part.tamber",
                                    "Conflict (1815-06-18).tamber",
                                    "Letter (conflict 2026-11-23).tamber",
                                    ".Letter.tamber.icloud",
                                    " (conflicted copy).tamber",
                                    "sync-conflict-20261123-101500.tamber",
                                    ".hidden",
                                    "The conflict-2026.tamber",
                                    "My (conflicted copy) of it.tamber",
                                    ".sync_notes.db",
                                    ""};

} // namespace

class tst_storenames : public QObject
{
    Q_OBJECT

private slots:
    void repairsTitles_data()
    {
        columns<QString, QString>("title", "repaired");
        for (const char *kept : {"Letter", "Two words", "a.b.c", "Dots...", "Zoë", "信", " space ", "~$x"})
            row(kept, QString::fromUtf8(kept), QString::fromUtf8(kept));
        row("separators", u"../../etc/passwd"_s, u"-..-etc-passwd"_s);
        row("backslash", u"a\\b"_s, u"a-b"_s);
        row("control bytes", QString(u"a\0b\tc\nd\u007fe\u0085f"_s), u"a-b-c-d-e-f"_s);
        row("leading dots", u"...hidden"_s, u"hidden"_s);
        row("empty", QString(), u"Untitled"_s);
        row("only dots", u".."_s, u"Untitled"_s);
        row("only blanks", u" \u00a0\u200b\u2800"_s, u"Untitled"_s);
        row("only blanks once it is cut", QString(300, u' ') % u'x', u"Untitled"_s);
        row("decomposed", u"Zoe\u0308"_s, u"Zo\u00eb"_s);
        row("half a pair", QString(u'a' % QChar(0xD83D) % u'b'), u"a\ufffdb"_s);
        row("an odd byte stays", QString(u'a' % QChar(0xDCFF)), QString(u'a' % QChar(0xDCFF)));
        row("odd bytes that are a character", QString(QChar(0xDCC3) % QChar(0xDCA9) % QChar(0xDCA9)),
            QString(u'\u00e9' % QChar(0xDCA9)));
        row("longest", QString(248, u'x'), QString(248, u'x'));
        row("too long", QString(249, u'x'), QString(248, u'x'));
        row("cut before a pair", QString(QString(246, u'x') % u"\U0001F600"_s), QString(246, u'x'));
        row("cut before what belongs to it", QString(QString(245, u'x') % u"e\u0323\u0301"_s),
            QString(245, u'x'));
        row("cut before a family", QString(QString(240, u'x') % u"\U0001F469\u200D\U0001F467"_s),
            QString(240, u'x'));
        row("one character too long by itself", QString(u'x' % QString(200, QChar(0x0301))),
            QString(u'x' % QString(123, QChar(0x0301))));
    }

    void repairsTitles()
    {
        QFETCH(QString, title);
        QTEST(repairedTitle(title), "repaired");
        QFETCH(QString, repaired);
        QCOMPARE(repairedTitle(repaired), repaired);
        QCOMPARE(documentFileName(title), QString(repaired % u".tamber"_s));
        QVERIFY(nameBytes(documentFileName(title)) <= MaxNameBytes);
    }

    void findsFreeTitles()
    {
        QSet<QString> taken;
        const auto isTaken = [&](const QString &title) { return taken.contains(comparableName(title)); };
        const auto take = [&](const QString &title) { return taken.insert(comparableName(title)); };
        QCOMPARE(nextFreeTitle(u"Letter"_s, isTaken), u"Letter"_s);
        take(u"LETTER"_s);
        QCOMPARE(nextFreeTitle(u"Letter"_s, isTaken), u"Letter 2"_s);
        take(u"letter 2"_s);
        QCOMPARE(nextFreeTitle(u".Letter"_s, isTaken), u"Letter 3"_s);
        take(u"Zoe\u0308"_s);
        QCOMPARE(nextFreeTitle(u"Zo\u00eb"_s, isTaken), u"Zo\u00eb 2"_s);
        const QString longest(248, u'x');
        take(longest);
        QCOMPARE(nextFreeTitle(longest, isTaken), QString(QString(246, u'x') % u" 2"_s));

        const auto always = nextFreeTitle(u"Letter"_s, [](const QString &) { return true; });
        QVERIFY(isLike(always, QString(u"Letter "_s % uuidPattern())));
        QVERIFY(freshUuidName() != freshUuidName());
    }

    void keepsToOneLine()
    {
        QCOMPARE(singleLine(u"a\r\nb\tc\u2028d\0e"_s), u"a  b c d e"_s);
        QVERIFY(singleLine(QString()).isNull());
    }

    void knowsPlaceholders_data()
    {
        columns<QString, QString>("name", "behind");
        row("icloud", u".Letter.tamber.icloud"_s, u"Letter.tamber"_s);
        row("nextcloud", u"Letter.tamber.nextcloud"_s, u"Letter.tamber"_s);
        row("owncloud", u"user.txt.owncloud"_s, u"user.txt"_s);
        for (const char *other :
             {"Letter.tamber", "Letter.tamber.icloud", ".icloud", "..icloud", "...icloud", "....icloud",
              ".nextcloud", "..nextcloud", "...owncloud", "a.nextcloud.tamber", ""})
            row(other, QString::fromUtf8(other), QString());
    }

    void knowsPlaceholders()
    {
        QFETCH(QString, name);
        QTEST(nameBehindPlaceholder(name), "behind");
        QFETCH(QString, behind);
        QCOMPARE(nameBehindPlaceholder(name).isNull(), behind.isNull());
        QVERIFY(behind.isNull() || placeholderNames(behind).contains(name));
    }

    // A name that no file system takes would look as if it were there.
    void asksForNoPlaceholderThatIsTooLong()
    {
        QCOMPARE(placeholderNames(QString(246, u'x')).size(), 2);
        QVERIFY(placeholderNames(QString(248, u'x')).isEmpty());
    }

    void tellsWhatSyncProgramsMake_data()
    {
        columns<QString, bool, bool>("name", "isConflict", "isTemporary");
        for (const char *name : ConflictCopies)
            row(name, QString::fromUtf8(name), true, false);
        for (const char *name : Temporaries)
            row(name, QString::fromUtf8(name), false, true);
        for (const char *name : Ordinary)
            row(name, QString::fromUtf8(name), false, false);
        row("not UTF-8", QString(QChar(0xDCFF) % u" (conflicted copy 2).tamber"_s), true, false);
    }

    void tellsWhatSyncProgramsMake()
    {
        QFETCH(QString, name);
        QTEST(isConflictCopy(name), "isConflict");
        const QString title = name.endsWith(u".tamber"_s) ? name.chopped(7) : QString();
        QCOMPARE(titleBehindConflictCopy(title).isEmpty(), title.isEmpty() || !isConflictCopy(name));
        QTEST(isSyncTemporary(name), "isTemporary");
    }

    void namesConflictCopies_data()
    {
        columns<QString, int, QString>("name", "number", "copy");
        row("first", u"Letter.tamber"_s, 1, u"Letter (conflicted copy).tamber"_s);
        row("second", u"Letter.tamber"_s, 2, u"Letter (conflicted copy 2).tamber"_s);
        row("hidden", u".x"_s, 1, u".x (conflicted copy)"_s);
        row("long", QString(QString(248, u'x') % u".tamber"_s), 1,
            QString(QString(230, u'x') % u" (conflicted copy).tamber"_s));
        row("long extension", QString(u"a."_s % QString(250, u'x')), 1,
            QString(u"a."_s % QString(235, u'x') % u" (conflicted copy)"_s));
    }

    void namesConflictCopies()
    {
        QFETCH(QString, name);
        QFETCH(int, number);
        QTEST(conflictCopyName(name, number), "copy");
        QVERIFY(isConflictCopy(conflictCopyName(name, number)));
    }

    void matchesLike_data()
    {
        columns<QString, QString, bool>("text", "pattern", "matches");
        const auto s = [](const char *text) { return QString::fromUtf8(text); };
        row("both empty", s(""), s(""), true);
        row("empty run", s(""), s("**"), true);
        row("text left", s("ab"), s("a"), false);
        row("pattern left", s("a"), s("ab"), false);
        row("one character", s("abc"), s("a?c"), true);
        row("no character", s("ac"), s("a?c"), false);
        row("a pair is one",
            s("a\xF0\x9F\x98\x80"
              "c"),
            s("a?c"), true);
        row("a pair is not two", s("\xF0\x9F\x98\x80"), s("??"), false);
        row("no half of a pair after a run",
            s("\xF0\x9F\x98\x80"
              "c"),
            s("*??c"), false);
        row("run at the end", s("/u/a/b.tamber"), s("/u/*"), true);
        row("separators too", s("/u/a/b/c.tamber"), s("/u/?/*.tamber"), true);
        row("the run gives back", s("ababac"), s("*ab?c"), true);
        row("two runs", s("xaybzaybq"), s("*a*b?"), true);
        row("letter case", s("A"), s("a"), false);
        row("nothing else is special", s("a.b[c]"), s("a?b[c]"), true);
        row("user", s("/r/0F8FAD5B-D9CB-469F-A165-70867728950E/user.txt"),
            QString(u"/r/"_s % uuidPattern() % u"/*"_s), true);
        row("not a user", s("/r/0F8FAD5B-D9CB-469F-A165-70867728950/user.txt"),
            QString(u"/r/"_s % uuidPattern() % u"/*"_s), false);
    }

    void matchesLike()
    {
        QFETCH(QString, text);
        QFETCH(QString, pattern);
        QTEST(isLike(text, pattern), "matches");
    }

    // Trying every way to divide the text among the runs would take years.
    void doesNotTryEveryDivision()
    {
        QString pattern;
        for (int i = 0; i < 30; ++i)
            pattern += u"*a"_s;
        QVERIFY(!isLike(QString(5000, u'a'), QString(pattern % u'b')));
    }
};

QTEST_APPLESS_MAIN(tst_storenames)
#include "tst_storenames.moc"
