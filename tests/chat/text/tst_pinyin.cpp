// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/text/ChineseText.h"
#include "chat/text/Pinyin.h"
#include "support/Rows.h"

#include <limits>
#include <memory>
#include <string>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::string_literals;

namespace {

constexpr char32_t Untouched = 0xABCD;

// Room for exactly `capacity` characters on the heap, so that the address sanitizer sees what goes past it.
struct Room
{
    explicit Room(qsizetype capacity)
        : characters(new char32_t[static_cast<size_t>(std::max<qsizetype>(capacity, 1))]{Untouched})
    {}
    std::unique_ptr<char32_t[]> characters;
};

QString readingOf(char32_t character)
{
    const char32_t *reading = pinyinForHanzi(character);
    return reading == nullptr ? QString() : QString::fromUcs4(reading);
}

} // namespace

class TestPinyin : public QObject
{
    Q_OBJECT

private slots:
    void reading_data()
    {
        columns<char32_t, QString>("character", "reading");
        row("first", char32_t(0x4E00), u"yī"_s);
        row("second", char32_t(0x4E01), u"dīng"_s);
        row("rare", char32_t(0x4E02), u"qiǎo"_s);
        row("middle", char32_t(0x4E2D), u"zhōng"_s);
        row("writing", char32_t(0x6587), u"wén"_s);
        row("last", char32_t(0x9FA5), u"yù"_s);
        row("the more frequent of two", U'中', u"zhōng"_s);
        row("neutral", U'的', u"de"_s);
        row("ai alone", U'爱', u"aì"_s);
        row("ai in a word", U'海', u"hǎi"_s);
        row("ei", U'北', u"beǐ"_s);
        row("ou alone", U'欧', u"oū"_s);
        row("ou in a word", U'斗', u"dòu"_s);
        row("u with dots", U'女', u"nǔ:"_s);
        row("u with dots before e", U'略', u"lu:è"_s);
        row("no vowel for the tone", U'嗯', u"n"_s);
        row("unknown", char32_t(0x5159), u"*"_s);
        row("before the first", char32_t(0x4DFF), QString());
        row("after the last", char32_t(0x9FA6), QString());
        row("beyond 16 bits", char32_t(0x14E2D), QString());
    }
    void reading()
    {
        QFETCH(const char32_t, character);
        QTEST(readingOf(character), "reading");
    }

    // Sent and received again, each row is what it was: the mark stands where the receiving side puts it.
    void everyReadingComesBack()
    {
        const QString allowed = u"abcdefghijklmnopqrstuvwxyz:āáǎàēéěèīíǐìōóǒòūúǔù"_s;
        int unknown = 0;
        for (char32_t character = 0x4E00; character <= 0x9FA5; ++character) {
            const QString reading = readingOf(character);
            if (reading == u"*"_s) {
                ++unknown;
                continue;
            }
            QVERIFY2(!reading.isEmpty() && reading.size() <= 6, qPrintable(reading));
            for (const QChar c : reading)
                QVERIFY2(allowed.contains(c), qPrintable(reading));
            const QString line = u"de "_s + reading + u' ';
            QCOMPARE(marksForToneSymbols(toneSymbolsForPinyin(line)), line);
        }
        QCOMPARE(unknown, 10);
    }

    void folding_data()
    {
        columns<char32_t, char32_t>("character", "folded");
        const auto pair = [](char32_t from, char32_t to) {
            QTest::addRow("U+%04X", static_cast<uint>(from)) << from << to;
        };
        constexpr char32_t Unchanged[] = {0x00,   0x7F,   0x2013, 0x2015, 0x2017, 0x201A, 0x201B,
                                          0x201E, 0x3000, 0x3003, 0xFF00, 0xFF5F, 0x1F600};
        for (const char32_t same : Unchanged)
            pair(same, same);
        pair(0xFF01, U'!');
        pair(0xFF21, U'A');
        pair(0xFF5E, U'~');
        pair(0x3001, U',');
        pair(0x3002, U'.');
        pair(0x2014, U'-');
        pair(0x2018, U'`');
        pair(0x2019, U'`');
        pair(0x201C, U'"');
        pair(0x201D, U'"');
    }
    void folding()
    {
        QFETCH(const char32_t, character);
        QTEST(foldFullWidthCharacter(character), "folded");
    }

    void toSymbols_data()
    {
        columns<std::u32string, std::u32string>("marks", "symbols");
        const auto line = [](const char *name, const std::u32string &marks, const std::u32string &symbols) {
            row(name, marks, symbols);
        };
        line("empty", U"", U"");
        line("last tone lost", U"zhōng wén", U"zhong$ wen");
        line("full stop", U"zhōng wén.", U"zhong$ wen%.");
        line("each separator", U"á\rǎ à\"ā,ú.", U"a%\ra^ a&\"a$,u%.");
        line("no separators", U"á\nǎ;ē!ī ", U"a\na;e!i$ ");
        line("the last of two tones", U"áè ", U"ae& ");
        line("neutral", U"de le ", U"de le ");
        line("capitals and u with dots", U"Á Ǔ nǚ ü ", U"Á Ǔ nǚ ü ");
        line("zero and what is beyond 16 bits", U"á\0\U0001F600 "s, U"a\0\U0001F600% "s);
    }
    void toSymbols()
    {
        QFETCH(const std::u32string, marks);
        QFETCH(const std::u32string, symbols);
        const auto length = static_cast<qsizetype>(marks.size());
        const auto whole = static_cast<qsizetype>(symbols.size()) + 1;
        for (qsizetype capacity = 0; capacity <= whole + 2; ++capacity) {
            Room room(capacity);
            char32_t *const to = room.characters.get();
            const qsizetype written =
                pinyinMarksToToneSymbols(marks.data(), length, to, capacity, ToneSymbols);
            QCOMPARE(written, std::min(capacity, whole));
            if (capacity == 0) {
                QCOMPARE(to[0], Untouched);
                continue;
            }
            QCOMPARE(std::u32string(to, to + written - 1),
                     symbols.substr(0, static_cast<size_t>(written) - 1));
            QCOMPARE(to[written - 1], U'\0');
        }
    }

    void toMarks_data()
    {
        columns<std::u32string, std::u32string>("symbols", "marks");
        const auto line = [](const char *name, const std::u32string &symbols, const std::u32string &marks) {
            row(name, symbols, marks);
        };
        line("empty", U"", U"");
        line("greeting", U"ni^ hao^", U"nǐ hǎo");
        line("in words", U"dou& gui% liu% hai& xue% guo% yao&", U"dòu guí liú hài xué guó yào");
        line("ai at the start", U"ai& ai&", U"aì aì");
        line("after line ends", U"x\nai& y\rao^", U"x\naì y\raǒ");
        line("ou at the start", U"ou$ ou$", U"oū oū");
        line("across words", U"zhong wn$", U"zhōng wn");
        line("further back each time", U"hao$%^", U"hāó");
        line("the same i again", U"hai$%", U"hāí");
        line("only a plain vowel before", U"hāi%", U"hāí");
        line("passed over", U"nü$ x", U"nü");
        line("capitals pass", U"xiAN$", U"xīAN");
        line("held and swallowing", U"$hao", U"");
        line("the later of two held", U"n$^h", U"n");
        line("zero ends it", U"a$\0b"s, U"ā");
    }
    void toMarks()
    {
        QFETCH(const std::u32string, symbols);
        QFETCH(const std::u32string, marks);
        const auto whole = static_cast<qsizetype>(symbols.size()) + 1;
        for (qsizetype capacity = 0; capacity <= whole; ++capacity) {
            Room room(capacity);
            char32_t *const to = room.characters.get();
            const qsizetype written = pinyinToneSymbolsToMarks(symbols.c_str(), to, capacity, ToneSymbols);
            QVERIFY(written <= std::max<qsizetype>(capacity - 1, 0));
            QCOMPARE(to[written], capacity == 0 ? Untouched : U'\0');
            // A full destination ends the text, before the symbols that belong to its last letters.
            if (capacity > static_cast<qsizetype>(marks.size()) + 1)
                QCOMPARE(std::u32string(to, to + written), marks);
        }
    }

    void oddArguments()
    {
        constexpr auto Least = std::numeric_limits<qsizetype>::min();
        Room room(8);
        char32_t *const to = room.characters.get();
        for (const qsizetype capacity : {Least, qsizetype{-1}, qsizetype{0}}) {
            QCOMPARE(pinyinMarksToToneSymbols(U"á ", 2, to, capacity, ToneSymbols), 0);
            QCOMPARE(pinyinToneSymbolsToMarks(U"a$", to, capacity, ToneSymbols), 0);
            QCOMPARE(to[0], Untouched);
        }
        for (const qsizetype length : {Least, qsizetype{-1}, qsizetype{0}}) {
            to[0] = Untouched;
            QCOMPARE(pinyinMarksToToneSymbols(U"á ", length, to, 8, ToneSymbols), 1);
            QCOMPARE(to[0], U'\0');
        }
        QCOMPARE(pinyinMarksToToneSymbols(nullptr, 3, to, 8, ToneSymbols), 1);
        QCOMPARE(pinyinToneSymbolsToMarks(nullptr, to, 8, ToneSymbols), 0);
        QCOMPARE(pinyinMarksToToneSymbols(U"á ", 2, nullptr, 8, ToneSymbols), 0);
        QCOMPARE(pinyinMarksToToneSymbols(U"á ", 2, to, 8, nullptr), 3);
        QCOMPARE(std::u32string(to), std::u32string(U"a "));
        QCOMPARE(pinyinToneSymbolsToMarks(U"a$", to, 8, nullptr), 2);
        QCOMPARE(std::u32string(to), std::u32string(U"a$"));
    }

    void texts_data()
    {
        columns<QString, QString, QString>("typed", "pinyin", "sent");
        const auto text = [](const char *name, const QString &typed, const QString &pinyin,
                             const QString &sent) { row(name, typed, pinyin, QString(sent + QChar(u'\0'))); };
        text("empty", u""_s, u""_s, u""_s);
        text("Hanzi", u"中文"_s, u"zhōng wén"_s, u"zhong$ wen"_s);
        text("full stop", u"中文。"_s, u"zhōng wén."_s, u"zhong$ wen%."_s);
        text("full width", u"ＡＢ"_s, u"AB"_s, u"AB"_s);
        text("other before", u"a中"_s, u"a zhōng"_s, u"a zhong"_s);
        text("space before", u"a 中"_s, u"a  zhōng"_s, u"a  zhong"_s);
        text("other after", u"中a文"_s, u"zhōnga wén"_s, u"zhonga$ wen"_s);
        text("pairs", u"\U0001F600中\U00020000。"_s, u"\U0001F600 zhōng\U00020000."_s,
             u"\U0001F600 zhong\U00020000$."_s);
        text("lone surrogate", u"\xD83D中"_s, u"\xD83D zhōng"_s, u"\uFFFD zhong"_s);
        text("byte order mark", u"\uFEFF中"_s, u"\uFEFF zhōng"_s, u"\uFEFF zhong"_s);
        text("marks and directions", u"\u202E\u0301中\u200D"_s, u"\u202E\u0301 zhōng\u200D"_s,
             u"\u202E\u0301 zhong\u200D"_s);
        text("over a stretch", QString(1000, u'一'), u"yī"_s + u" yī"_s.repeated(999),
             u"yi$ "_s.repeated(999) + u"yi"_s);
    }
    void texts()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, pinyin);
        QCOMPARE(pinyinForText(typed), pinyin);
        QTEST(toneSymbolsForPinyin(pinyin), "sent");
    }

    void receivedLines()
    {
        QCOMPARE(marksForToneSymbols(u"\uFEFFni^ \U0001F600hao^"_s), u"\uFEFFnǐ \U0001F600hǎo"_s);
        QCOMPARE(marksForToneSymbols(toneSymbolsForPinyin(u"zhōng wén"_s) + u"more"_s), u"zhōng wen"_s);
        QCOMPARE(marksForToneSymbols(QString()), u""_s);
        // Without a plain vowel left, each of these tones would read the whole line back.
        const QString consonants(500'000, u'n');
        QCOMPARE(marksForToneSymbols(consonants + QString(500'000, u'$')), consonants);
        const QString vowels(20'000, u'a');
        QCOMPARE(marksForToneSymbols(vowels + consonants + u"a$$"_s.repeated(20'000)),
                 QString(20'000, u'ā') + consonants + QString(20'000, u'ā'));
    }
};

QTEST_GUILESS_MAIN(TestPinyin)
#include "tst_pinyin.moc"
