// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/text/ChineseText.h"
#include "cli/VerbBench.h"
#include "support/Rows.h"
#include "text/TextCodec.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr char ChineseDevice[] = R"({"language": 15, "languageSet": "E", "languageSwitch": 7})";

} // namespace

class TestChinese : public QObject
{
    Q_OBJECT

private slots:
    void chatConverts()
    {
        VerbBench bench(ChineseDevice);
        bench.console.input = {QStringLiteral("中文。\n女\n｛DEL A｝\nabc\n").toUtf8()};
        QCOMPARE(bench.run({u"chat"_s}), 1);
        QCOMPARE(QString::fromUtf8(bench.console.output), u"zhōng wén.\nnu:\nabc\n"_s);
        QVERIFY2(bench.console.messages.startsWith(u"Line 3 was not sent"_s),
                 qPrintable(bench.console.messages));
        QCOMPARE(bench.console.messages.count(u'\n'), 1);
    }

    void chatConvertsWhatComes()
    {
        VerbBench bench(ChineseDevice);
        bench.console.inputEnds = false;
        bench.start({u"chat"_s});
        bench.loop.advance(30s);
        bench.simulated().type("ni^ ha");
        bench.simulated().type("o^\r\nx\r\nai&");
        bench.loop.advance(1s);
        QCOMPARE(QString::fromUtf8(bench.console.output), u"nǐ hǎo\nx\n"_s);

        // A device that is away tells no language, but what is typed for it is Chinese all the same.
        bench.simulated().dropLink(true);
        bench.loop.advance(10ms);
        bench.console.type(QStringLiteral("中。\n").toUtf8());
        bench.loop.advance(1min);
        bench.console.type("");
        QCOMPARE(bench.wait(), 0);
        QCOMPARE(QString::fromUtf8(bench.console.output), u"nǐ hǎo\nx\naì\nzhōng.\n"_s);
    }

    void othersConvertNothing_data()
    {
        columns<QByteArray, QString>("profile", "verb");
        row("chat in English", QByteArray(R"({"language": 1})"), u"chat"_s);
        row("whiteboard in Chinese", QByteArray(ChineseDevice), u"board"_s);
    }
    void othersConvertNothing()
    {
        QFETCH(const QByteArray, profile);
        QFETCH(const QString, verb);
        VerbBench bench(profile);
        bench.console.input = {QByteArray("hao$\xC3\xA1 \0 end\n", 13), QStringLiteral("中。\n").toUtf8()};
        QCOMPARE(bench.run({verb}), 0);
        QCOMPARE(bench.console.output, QByteArray("hao$\xC3\xA1 \\x00 end\n??\n"));
    }

    // What goes over the link, with the zero at its end.
    void bytes()
    {
        const EncodedText sent = TextCodec::encode(toneSymbolsForPinyin(pinyinForText(u"中文略。"_s)), 15);
        QCOMPARE(sent.bytes, QByteArray("zhong$ wen% lu:e&.\0", 19));
        QCOMPARE(sent.replaced, 0);
    }

    void endlessLine()
    {
        VerbBench bench(ChineseDevice);
        bench.console.inputEnds = false;
        bench.start({u"chat"_s});
        bench.loop.advance(30s);
        bench.simulated().type(QByteArray(1'500'000, 'x') + "\r\nnext\r\n");
        bench.loop.advanceUntil([&] { return bench.console.output.endsWith("next\n"); }, 10min);
        QCOMPARE(bench.console.output, QByteArray(1'000'000, 'x') + "\nnext\n");
        QCOMPARE(bench.console.messages.count(u"dropped"_s), 1);
        bench.console.type("");
        QCOMPARE(bench.wait(), 0);
    }

    void pinyin_data()
    {
        columns<QString, QByteArrayList, QString, QString>("command", "input", "output", "message");
        const auto line = [](const char *name, const QString &command, const QString &input,
                             const QString &output) {
            row(name, command, QByteArrayList{input.toUtf8()}, output, QString());
        };
        line("sent", u"pinyin"_s, u"中文\r\n\n中文。"_s, u"zhong$ wen\n\nzhong$ wen%.\n"_s);
        line("back", u"pinyin --to-marks"_s, u"ni^ hao^\nx"_s, u"nǐ hǎo\nx\n"_s);
        line("nothing", u"pinyin"_s, QString(), QString());
        line("byte order mark", u"pinyin"_s, u"\uFEFF中 \n"_s, u"zhong$ \n"_s);
        row("in pieces", u"pinyin"_s, QByteArrayList{"\xE4\xB8", "\xAD ", "\n"}, u"zhong$ \n"_s, QString());
        row("no UTF-8", u"pinyin"_s, QByteArrayList{"ab\nab\xE4\xB8\nc"}, u"ab\nc\n"_s, u"Line 2"_s);
        row("its offset", u"pinyin --to-marks"_s, QByteArrayList{"ab\xFF"}, QString(), u"offset 2"_s);
        line("a long line", u"pinyin"_s, QString(300'000, u'一'), u"yi$ "_s.repeated(299'999) + u"yi\n"_s);
        line("tones without vowels", u"pinyin --to-marks"_s,
             u"n"_s.repeated(300'000) + u"$"_s.repeated(300'000), u"n"_s.repeated(300'000) + u'\n');
    }
    void pinyin()
    {
        QFETCH(const QString, command);
        QFETCH(const QByteArrayList, input);
        QFETCH(const QString, message);
        VerbBench bench(R"({"devices": []})");
        bench.console.input = input;
        QCOMPARE(bench.run(command.split(u' ')), message.isEmpty() ? 0 : 1);
        QTEST(QString::fromUtf8(bench.console.output), "output");
        QVERIFY2(bench.console.messages.contains(message), qPrintable(bench.console.messages));
    }

    void pinyinFails()
    {
        VerbBench bench(R"({"devices": []})");
        bench.console.inputError = u"broken"_s;
        QCOMPARE(bench.run({u"pinyin"_s}), 1);
        QCOMPARE(bench.console.messages, u"broken\n"_s);
        bench.console.inputError.clear();
        bench.console.outputBroken = true;
        bench.console.input = {"a\n", "b\n"};
        QCOMPARE(bench.run({u"pinyin"_s}), 1);
        QCOMPARE(bench.console.input.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestChinese)
#include "tst_chinese.moc"
