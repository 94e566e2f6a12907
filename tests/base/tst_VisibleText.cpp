// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/VisibleText.h"

#include <QTest>

using namespace cvtamber;

class tst_VisibleText : public QObject
{
    Q_OBJECT

private slots:
    void shows_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");

        const auto row = [](const char *name, const QString &text, const QString &shown) {
            QTest::newRow(name) << text << shown;
        };
        row("empty", QString(), QString());
        row("ordinary text stays", QStringLiteral("Zoë's \\ \u4f60 \U0001F600"),
            QStringLiteral("Zoë's \\ \u4f60 \U0001F600"));
        row("escape sequence", QStringLiteral("\x1b[31mred\x1b[0m"), QStringLiteral("\\x1b[31mred\\x1b[0m"));
        row("line breaks, tab, bell, DEL", QStringLiteral("a\r\n\tb\a\x7f"),
            QStringLiteral("a\\x0d\\x0a\\x09b\\x07\\x7f"));
        row("zero inside", QString(QChar(u'\0')) + u'x', QStringLiteral("\\x00x"));
        row("eight-bit control introducer", QString(QChar(u'\x9b')) + u'm', QStringLiteral("\\x9bm"));
        row("first unit past the controls", QString(QChar(u'\xa0')), QString(QChar(u'\xa0')));
        row("override", QStringLiteral("a\u202Eb\u202Cc"), QStringLiteral("a\\u{202E}b\\u{202C}c"));
        row("isolates", QStringLiteral("\u2066\u2069"), QStringLiteral("\\u{2066}\\u{2069}"));
        row("marks", QStringLiteral("\u200E\u200F\u061C"), QStringLiteral("\\u{200E}\\u{200F}\\u{061C}"));
        row("separators", QStringLiteral("\u2028\u2029"), QStringLiteral("\\u{2028}\\u{2029}"));
        row("neighbours stay", QStringLiteral("\u2027\u202F\u2065\u206A\u200D"),
            QStringLiteral("\u2027\u202F\u2065\u206A\u200D"));
        row("lone high surrogate at the end", u'a' + QString(QChar(0xD83D)), QStringLiteral("a\\u{D83D}"));
        row("surrogates the wrong way round", QString(QChar(0xDE00)) + QChar(0xD83D),
            QStringLiteral("\\u{DE00}\\u{D83D}"));
    }

    void shows()
    {
        QFETCH(QString, text);
        QTEST(visibleText(text), "shown");
    }
};

QTEST_APPLESS_MAIN(tst_VisibleText)
#include "tst_VisibleText.moc"
