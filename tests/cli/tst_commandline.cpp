// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"
#include "cli/DeviceSentences.h"
#include "cli/JsonLine.h"
#include "cli/LineSplitter.h"
#include "cli/StandardConsole.h"
#include "cli/Utf8Text.h"
#include "cli/VerbTable.h"
#include "text/DeviceNames.h"

#include <QJsonArray>
#include <QTest>

using namespace cvtamber;
using namespace Qt::StringLiterals;

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void refused_data();
    void refused();
    void requests();
    void globalOptions();
    void help();
    void batchLines();
    void utf8_data();
    void utf8();
    void names_data();
    void names();
    void unlistableNames();
    void suggestedNames();
    void commandsInTexts();
    void jsonIsSafeToShow();
    void linesFromPieces();
    void progressLine();
};

// A row: the words of a command line, and a part of the sentence that refuses them.
void TestCommandLine::refused_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("sentence");
    const auto row = [](const char *words, const char *sentence) {
        QTest::newRow(words) << QString::fromLatin1(words) << QString::fromLatin1(sentence);
    };
    row("", "A command is missing");
    row("frobnicate", "no command frobnicate");
    row("\x1b[2J", "no command \\x1b[2J");
    row("ls --frob", "no option --frob");
    row("-x ls", "no option -x");
    row("ls extra", "does not take the word extra");
    row("ls --force", "--force does not go with ls");
    row("get", "needs one word more");
    row("get A B", "does not take the word B");
    row("get A -o", "-o needs a value");
    row("get A --output=", "not empty");
    row("get A --force=1", "takes no value");
    row("get A{B", "a brace");
    row("-vx ls", "separate words");
    row("put -", "needs --as");
    row("put a.txt --as END --translate", "name END");
    row("put dir/", "not empty");
    row("put x --as a/b", "a slash");
    row("rm a\tb", "a control character");
    row("grade 3", "1 or 2");
    row("encode", "needs --language");
    row("encode --language 28", "0 to 27");
    row("encode --language -1", "0 to 27");
    row("decode --language +1", "0 to 27");
    row("decode --language 2x", "0 to 27");
    row("ls --timeout 0", "1 to 3600");
    row("ls --timeout 99999999999", "1 to 3600");
    row("ls --timeout", "needs a value");
    row("pinyin x", "does not take the word x");
    row("chat --to-marks", "--to-marks does not go with chat");
    row("--device= ls", "not empty");
    row("--simulate= ls", "not empty");
}

void TestCommandLine::refused()
{
    QFETCH(const QString, words);
    QFETCH(const QString, sentence);
    const auto parsed = parseCommandLine(words.split(u' ', Qt::SkipEmptyParts));
    QVERIFY(!parsed.value);
    QVERIFY2(parsed.error.contains(sentence), qPrintable(parsed.error));
}

void TestCommandLine::requests()
{
    const auto get = parseCommandLine({u"get"_s, u"A.TXT"_s, u"-oout file"_s, u"--back-translate"_s}).value;
    QVERIFY(get);
    QCOMPARE(get->request.operand, u"A.TXT"_s);
    QCOMPARE(get->request.output, u"out file"_s);
    QVERIFY(get->request.backTranslate && !get->request.force);

    const auto put = parseCommandLine({u"put"_s, u"a folder/letter.txt"_s, u"--translate"_s}).value;
    QVERIFY(put);
    QCOMPARE(put->request.as, u"letter.txt"_s);
    QVERIFY(put->request.translate);
    QVERIFY(parseCommandLine({u"put"_s, u"two words.txt"_s}).error.contains(u"--as"_s));
    QCOMPARE(parseCommandLine({u"put"_s, u"two words.txt"_s, u"--as"_s, u"W"_s}).value->request.as, u"W"_s);

    // A name may begin with a dash after "--".
    QCOMPARE(parseCommandLine({u"rm"_s, u"--"_s, u"-v"_s}).value->request.operand, u"-v"_s);
    QCOMPARE(parseCommandLine({u"grade"_s, u"2"_s}).value->request.grade, 2);
    QCOMPARE(parseCommandLine({u"decode"_s, u"--language=17"_s}).value->request.language, 17);
}

void TestCommandLine::globalOptions()
{
    const auto parsed = parseCommandLine({u"--simulate=p.json"_s, u"scan"_s, u"--device"_s, u"My Corvane"_s,
                                          u"--timeout=3"_s, u"--json"_s, u"-v"_s});
    QVERIFY2(parsed.value, qPrintable(parsed.error));
    QVERIFY(parsed.value->simulate && parsed.value->verbose && parsed.value->request.json);
    QCOMPARE(parsed.value->profile, u"p.json"_s);
    QCOMPARE(parsed.value->device, u"My Corvane"_s);
    QCOMPARE(parsed.value->timeout, std::chrono::seconds(3));

    // The profile never is the next word: that is the command.
    const auto plain = parseCommandLine({u"--simulate"_s, u"ls"_s}).value;
    QVERIFY(plain && plain->simulate && plain->profile.isEmpty() && plain->device.isNull());
    QCOMPARE(plain->timeout, std::chrono::seconds(10));
}

void TestCommandLine::help()
{
    QVERIFY(!parseCommandLine({u"--help"_s}).value->helpFor);
    QCOMPARE(parseCommandLine({u"put"_s, u"--help"_s}).value->helpFor, VerbId::Put);
    QCOMPARE(parseCommandLine({u"--version"_s}).value->action, CommandLine::Action::ShowVersion);
    for (const VerbEntry &entry : verbTable()) {
        QVERIFY(helpText().contains(entry.usage));
        const QStringList lines = helpText(entry.id).split(u'\n') + helpText().split(u'\n');
        for (const QString &line : lines)
            QVERIFY2(line.size() <= 80, qPrintable(line));
    }
}

void TestCommandLine::batchLines()
{
    const auto put = parseBatchLine(uR"(put "my \"old\" file" --as  X --force)"_s);
    QVERIFY2(put.value, qPrintable(put.error));
    QCOMPARE(put.value->operand, uR"(my "old" file)"_s);
    QCOMPARE(put.value->as, u"X"_s);
    QVERIFY(put.value->force);
    QVERIFY(parseBatchLine(u"rm \"A"_s).error.contains(u"not closed"_s));
    QVERIFY(parseBatchLine(u"rm \"\""_s).error.contains(u"not empty"_s));
    QVERIFY(parseBatchLine(u"ls --device X"_s).error.contains(u"whole batch"_s));
    for (const auto &verb : {u"scan"_s, u"batch"_s, u"encode --language 1"_s, u"pinyin"_s})
        QVERIFY(parseBatchLine(verb).error.contains(u"part of a batch"_s));
}

void TestCommandLine::utf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("badOffset");
    QTest::newRow("empty") << QByteArray() << -1;
    QTest::newRow("all lengths") << QByteArray("a\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E") << -1;
    QTest::newRow("zero byte") << QByteArray("a\0b", 3) << -1;
    QTest::newRow("last code point") << QByteArray("\xF4\x8F\xBF\xBF") << -1;
    QTest::newRow("Latin-1") << QByteArray("caf\xE9 au lait") << 3;
    QTest::newRow("stray continuation") << QByteArray("ab\x80") << 2;
    QTest::newRow("cut short") << QByteArray("ab\xE2\x82") << 2;
    QTest::newRow("overlong slash") << QByteArray("\xC0\xAF") << 0;
    QTest::newRow("overlong three") << QByteArray("x\xE0\x80\xAF") << 1;
    QTest::newRow("overlong four") << QByteArray("x\xF0\x80\x80\xAF") << 1;
    QTest::newRow("surrogate") << QByteArray("xy\xED\xA0\x80") << 2;
    QTest::newRow("above the range") << QByteArray("\xF4\x90\x80\x80") << 0;
    QTest::newRow("UTF-16") << QByteArray("\xFF\xFEh\0", 4) << 0;
}

void TestCommandLine::utf8()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, badOffset);
    QCOMPARE(badUtf8Offset(bytes).value_or(-1), badOffset);
    const Utf8Text read = readUtf8(bytes);
    if (badOffset < 0) {
        QCOMPARE(read.text.toUtf8(), bytes);
        // One byte order mark is dropped, a second one is text.
        const QByteArray mark("\xEF\xBB\xBF");
        QCOMPARE(readUtf8(QByteArray(mark + bytes)).text, read.text);
        QCOMPARE(readUtf8(QByteArray(mark + mark + bytes)).text, QString(u'\uFEFF' + read.text));
    } else {
        QVERIFY(read.error.contains(u"offset %1 "_s.arg(badOffset)));
    }
}

void TestCommandLine::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("problem");
    QTest::newRow("good") << u"LETTER_2.TXT"_s << QString();
    QTest::newRow("empty") << QString() << u"not empty"_s;
    QTest::newRow("space") << u"a b"_s << u"a space"_s;
    QTest::newRow("no-break space") << u"a\u00A0b"_s << u"a space"_s;
    QTest::newRow("closing brace") << u"a}"_s << u"a brace"_s;
    QTest::newRow("slash") << u"../a"_s << u"a slash"_s;
    QTest::newRow("backslash") << u"a\\b"_s << u"a slash"_s;
    QTest::newRow("line end") << u"a\nb"_s << u"control"_s;
    QTest::newRow("C1") << u"a\u009Bb"_s << u"control"_s;
    QTest::newRow("was no text") << u"a\uFFFD"_s << u"no text"_s;
}

void TestCommandLine::names()
{
    QFETCH(const QString, name);
    QFETCH(const QString, problem);
    const QString said = fileNameProblem(name);
    QCOMPARE(said.isEmpty(), problem.isEmpty());
    QVERIFY2(said.contains(problem), qPrintable(said));
    for (const QChar c : said)
        QVERIFY(c.category() != QChar::Other_Control);
}

void TestCommandLine::unlistableNames()
{
    const auto western = StringEncoding::WindowsCP1252;
    QVERIFY(unlistableNameProblem(u"A-1.TXT"_s, 2, western).isEmpty());
    // The device keeps é as 130, which a listing reads as a low quotation mark.
    QVERIFY(!unlistableNameProblem(u"caf\u00E9"_s, 2, western).isEmpty());
    QVERIFY(!unlistableNameProblem(u"\u4E2D"_s, 2, western).isEmpty());
    QVERIFY(unlistableNameProblem(u"za\u017C"_s, 17, StringEncoding::WindowsCP1250).isEmpty());
}

void TestCommandLine::suggestedNames()
{
    const auto suggested = [](const QString &title, const QStringList &taken = {}) {
        return suggestedDeviceName(title, 2, StringEncoding::WindowsCP1252,
                                   [&taken](const QString &name) { return taken.contains(name); });
    };
    QCOMPARE(suggested(u"LETTER 2"_s), u"LETTER2"_s);
    QCOMPARE(suggested(u"LETTER 2"_s, {u"LETTER2"_s, u"LETTER22"_s}), u"LETTER23"_s);
    QCOMPARE(suggested(u"caf\u00E9 {a/b}"_s), u"cafeab"_s);
    QCOMPARE(suggested(u"\u4E2D\u6587"_s), u"FILE"_s);
    QCOMPARE(suggested(u"End"_s), u"End2"_s);
}

void TestCommandLine::commandsInTexts()
{
    QVERIFY(deviceCommandProblem(u"a } b\n"_s).isEmpty());
    QVERIFY(deviceCommandProblem(u"one\ntwo {DEL X}\n"_s).contains(u"Line 2 "_s));
    // The closing brace would come from the command that ends the transfer.
    QVERIFY(deviceCommandProblem(u"{DEL X"_s).contains(u"Line 1 "_s));
}

void TestCommandLine::jsonIsSafeToShow()
{
    const QString name = u"a\u001B\u009B\u202E\u2028\U000E0001\u00E9\""_s;
    const QByteArray line = jsonLine(QJsonDocument(QJsonArray{name}));
    QCOMPARE(line, QByteArray("[\"a\\u001b\\u009b\\u202e\\u2028\\udb40\\udc01\xC3\xA9\\\"\"]\n"));
    QCOMPARE(QJsonDocument::fromJson(line).array().at(0).toString(), name);
}

void TestCommandLine::linesFromPieces()
{
    LineSplitter splitter;
    QCOMPARE(splitter.feed("one\r"), QByteArrayList());
    QCOMPARE(splitter.feed("\ntwo\n\nth"), (QByteArrayList{"one", "two", ""}));
    QVERIFY(splitter.hasRest());
    QCOMPARE(splitter.takeRest(), QByteArray("th"));
    QVERIFY(!splitter.hasRest());

    LineSplitter narrow(3);
    QCOMPARE(narrow.feed("abc\r\nab\n"), (QByteArrayList{"abc", "ab"}));
    QVERIFY(narrow.takeOverflow());
    QCOMPARE(narrow.feed("abc"), QByteArrayList());
    QVERIFY(!narrow.takeOverflow());
    QCOMPARE(narrow.feed("d"), QByteArrayList());
    QVERIFY(narrow.takeOverflow());
    QCOMPARE(narrow.feed("e\nf\n"), (QByteArrayList{"abc", "f"}));
    QVERIFY(!narrow.takeOverflow());
}

void TestCommandLine::progressLine()
{
    QCOMPARE(StandardConsole::progressLine(0), QByteArray("  0 % [                    ]"));
    QCOMPARE(StandardConsole::progressLine(52), QByteArray(" 52 % [##########          ]"));
    QCOMPARE(StandardConsole::progressLine(100), QByteArray("100 % [####################]"));
}

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
