// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/VerbBench.h"
#include "support/Rows.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr char OneDevice[] = R"({"serial": "10000001", "name": "Desk",
    "files": [{"name": "A.TXT", "text": "first\r\nsecond\r\n"}]})";
constexpr char TwoDevices[] = R"({"devices": [{"serial": "10000001", "name": "Desk"},
    {"serial": "10000002", "name": "Window", "info": "none"}]})";

constexpr char OddName[] =
    R"({"files": [{"name": "A\u001b[2J", "text": "12345"}, {"name": "B", "text": ""}]})";

QStringList words(const QString &line)
{
    return line.split(u' ', Qt::SkipEmptyParts);
}

QByteArray deviceWith(const QByteArray &more)
{
    return R"({"serial": "10000001", "files": [{"name": "A.TXT", "text": "first\r\nsecond\r\n"}], )" + more +
           '}';
}

QByteArray faultAt(const QString &fault, int write)
{
    return QStringLiteral(R"({"fault": "%1", "write": %2})").arg(fault).arg(write).toLatin1();
}

QByteArray faulty(const QByteArray &faults)
{
    return deviceWith(R"("faults": [)" + faults + ']');
}

} // namespace

class TestVerbs : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(_folder.isValid()); }
    // A profile, a command, and what a script and a person are told.
    void exitStatus_data()
    {
        columns<QByteArray, QString, int, QString>("profile", "command", "status", "message");
        const auto row = [](const char *name, const QByteArray &profile, const QString &command, int status,
                            const QString &message = {}) {
            QTest::newRow(name) << profile << command << status << message;
        };
        const QByteArray nobody = R"({"devices": []})";
        row("done", OneDevice, u"ls"_s, 0);
        row("by serial number", TwoDevices, u"--device 10000001 ls"_s, 0);
        row("by name", TwoDevices, u"--device Desk ls"_s, 0);
        row("wrong usage", OneDevice, u"ls more"_s, 2, u"does not take"_s);
        row("radio off", R"({"radio": {"state": "off"}})", u"ls"_s, 3);
        row("radio unsupported", R"({"radio": {"state": "unsupported"}})", u"scan"_s, 3);
        row("radio not allowed", R"({"radio": {"state": "unauthorized"}})", u"info"_s, 3);
        row("radio switched off meanwhile", R"({"radio": {"offAfter": 500}})", u"scan"_s, 3);
        row("nobody there", nobody, u"ls"_s, 4, u"10 seconds"_s);
        row("scan finds nobody", nobody, u"scan --timeout 2"_s, 4, u"2 seconds"_s);
        row("nobody answers", faulty(R"({"fault": "connectFails"})"), u"ls"_s, 4, u"did not answer"_s);
        row("several", TwoDevices, u"ls"_s, 4, u"10000001 Desk"_s);
        row("another one", TwoDevices, u"--device 1000000 ls"_s, 4, u"No device 1000000 "_s);
        row("answers nothing", faulty(R"({"fault": "noAnswer"})"), u"ls"_s, 5, u"answer"_s);
        row("no state record", faulty(R"({"fault": "noAnswer", "command": "PCR"})"), u"ls"_s, 5);
        row("never identifies itself", deviceWith(R"("linkCode": 46)"), u"ls"_s, 5, u"link type 2"_s);
        row("nor does type 5", deviceWith(R"("linkCode": 33)"), u"info"_s, 5, u"link type 5"_s);
        row("nor does type 6", deviceWith(R"("linkCode": 32)"), u"info"_s, 5, u"link type 6"_s);
        row("no notifications", faulty(R"({"fault": "notifyFails"})"), u"ls"_s, 5);
        row("lost while identifying", faulty(faultAt(u"dropAtWrite"_s, 2)), u"ls"_s, 5, u"lost"_s);
        row("type 3 has no listing of its own", deviceWith(R"("linkCode": 34)"), u"ls"_s, 0);
        row("no such file", OneDevice, u"get a.txt"_s, 6, u"There is A.TXT"_s);
        row("nothing to delete", OneDevice, u"rm B.TXT"_s, 6, u"B.TXT"_s);
        row("no such file here", OneDevice, u"put /nonexistent/B"_s, 6, u"here"_s);
        row("no such batch", OneDevice, u"batch /nonexistent/B"_s, 6, u"here"_s);
        row("a folder", OneDevice, u"emboss /tmp"_s, 1, u"folder"_s);
    }
    void exitStatus()
    {
        QFETCH(const QByteArray, profile);
        QFETCH(const QString, command);
        QFETCH(const int, status);
        QFETCH(const QString, message);
        VerbBench bench(profile);
        QCOMPARE(bench.run(words(command)), status);
        QVERIFY2(bench.console.messages.contains(message), qPrintable(bench.console.messages));
        QCOMPARE(bench.console.messages.isEmpty(), status == 0);
        if (status != 0 && !command.contains(u"scan"_s))
            QCOMPARE(bench.console.output, QByteArray());
    }

    void scan()
    {
        VerbBench bench(TwoDevices);
        const auto before = bench.loop.now();
        QCOMPARE(bench.run({u"scan"_s, u"--timeout"_s, u"5"_s}), 0);
        QVERIFY(bench.loop.now() - before >= 5s);
        QByteArrayList lines = bench.console.output.trimmed().split('\n');
        std::sort(lines.begin(), lines.end());
        QCOMPARE(lines, (QByteArrayList{"-\t-", "10000001\tDesk"}));

        const auto named = bench.loop.now();
        QCOMPARE(bench.run({u"--device"_s, u"Desk"_s, u"--json"_s, u"scan"_s}), 0);
        QVERIFY(bench.loop.now() - named < 5s);
        const auto array = QJsonDocument::fromJson(bench.console.output).array();
        QVERIFY(array.contains(QJsonObject{{u"serial"_s, u"10000001"_s}, {u"name"_s, u"Desk"_s}}));
    }

    void info()
    {
        VerbBench bench(
            deviceWith(R"("model": 3, "firmware": "2.1D004", "languageSwitch": 5, "language": 10)"));
        QCOMPARE(bench.run({u"info"_s, u"--json"_s}), 0);
        const auto info = QJsonDocument::fromJson(bench.console.output).object();
        QCOMPARE(info[u"model"_s].toString(), u"Expert"_s);
        QCOMPARE(info[u"modelCode"_s].toInt(), 3);
        QCOMPARE(info[u"firmware"_s].toString(), u"2.1D004"_s);
        QCOMPARE(info[u"serial"_s].toString(), u"10000001"_s);
        QCOMPARE(info[u"languageName"_s].toString(), u"Swedish"_s);
        QCOMPARE(info[u"keyboardLanguage"_s].toInt(), 10);
        QCOMPARE(info[u"files"_s].toInt(), 1);
        QCOMPARE(info[u"connectionType"_s].toInt(), 1);
        QVERIFY(info[u"embosserOn"_s].isBool() && info[u"advancedMode"_s].isBool());
        for (const auto *key : {"language", "brailleCode", "forwardGrade", "backwardGrade"})
            QVERIFY2(info[QLatin1StringView(key)].isDouble(), key);
        QCOMPARE(bench.run({u"info"_s}), 0);
        QVERIFY(bench.console.output.contains("Language: Swedish\n"));
    }

    void ls()
    {
        VerbBench bench(OddName);
        QCOMPARE(bench.run({u"ls"_s}), 0);
        QCOMPARE(bench.console.output, QByteArray("5\tA\\x1b[2J\n0\tB\n"));
        QCOMPARE(bench.run({u"ls"_s, u"--json"_s}), 0);
        QVERIFY(!bench.console.output.contains('\x1b'));
        const auto files = QJsonDocument::fromJson(bench.console.output).array();
        QCOMPARE(files.at(0), (QJsonObject{{u"name"_s, u"A\x1b[2J"_s}, {u"size"_s, 5}}));
    }

    void putAndGet()
    {
        VerbBench bench(OneDevice);
        QByteArray text = "caf\xC3\xA9 \xE4\xB8\xAD\n";
        for (int line = 0; line < 500; ++line)
            text += "line " + QByteArray::number(line) + '\n';
        const QString file = makeFile(u"page"_s, "\xEF\xBB\xBF" + text);
        QCOMPARE(bench.run({u"put"_s, file, u"--as"_s, u"PAGE"_s}), 0);
        QVERIFY2(bench.console.messages.startsWith(u"1 character "_s) &&
                     bench.console.messages.endsWith(u": \u4E2D.\n"_s),
                 qPrintable(bench.console.messages));
        QVERIFY(bench.console.output.isEmpty());
        QVERIFY(bench.console.progress.size() > 10 && bench.console.progress.constLast() == 1.0F);
        QVERIFY(bench.storedText("PAGE").startsWith("caf\x82 ?\nline 0\n"));
        QCOMPARE(bench.run({u"get"_s, u"PAGE"_s}), 0);
        QCOMPARE(bench.console.output, text.replace("\xE4\xB8\xAD", "?"));
        QVERIFY2(bench.console.messages.isEmpty(), qPrintable(bench.console.messages));

        bench.console.input = {"He", "llo"};
        QCOMPARE(bench.run({u"put"_s, u"-"_s, u"--as"_s, u"T"_s, u"--translate"_s}), 0);
        QCOMPARE(bench.storedText("T"), QByteArray("<braille 1>Hello</braille>"));
        QCOMPARE(bench.run({u"get"_s, u"T"_s, u"--back-translate"_s}), 0);
        QCOMPARE(bench.console.output, QByteArray("Hello"));
        QCOMPARE(bench.run({u"put"_s, u"-"_s, u"--as"_s, u"EMPTY"_s}), 0);
        QCOMPARE(bench.storedText("EMPTY"), QByteArray());
        // The modes that a transfer changes are back as they were.
        QVERIFY(bench.simulated().firmware().record()[DeviceStateRecord::EmbosserOutput] != 0);
        QCOMPARE(bench.simulated().firmware().record()[DeviceStateRecord::AdvancedMode], 0);
    }

    void putRefuses_data()
    {
        columns<QByteArray, QString, QString, int, QString>("text", "name", "more", "status", "message");
        row("Latin-1", QByteArray("caf\xE9"), u"N"_s, QString(), 1, u"offset 3"_s);
        row("a command", QByteArray("a\n{DEL A.TXT}"), u"N"_s, QString(), 1, u"Line 2 "_s);
        row("taken", QByteArray("x"), u"a.txt"_s, QString(), 1, u"a.txt"_s);
        row("unlistable", QByteArray("x"), u"\u00E9"_s, QString(), 2, u"cannot list"_s);
        row("lost", QByteArray(2000, 'x'), u"N"_s, u"dropAtWrite"_s, 5, u"put the whole"_s);
        row("stalled", QByteArray(2000, 'x'), u"N"_s, u"loseConfirmation"_s, 5, u"put the whole"_s);
        row("failed write", QByteArray(2000, 'x'), u"N"_s, u"failWrite"_s, 5, u"put the whole"_s);
    }
    void putRefuses()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const QString, name);
        QFETCH(const QString, more);
        QFETCH(const int, status);
        QFETCH(const QString, message);
        VerbBench bench(more.isEmpty() ? QByteArray(OneDevice) : faulty(faultAt(more, 30)));
        bench.console.input = {text};
        QCOMPARE(bench.run({u"put"_s, u"-"_s, u"--as"_s, name}), status);
        QVERIFY2(bench.console.messages.contains(message), qPrintable(bench.console.messages));
        QCOMPARE(bench.storedText("A.TXT"), QByteArray("first\r\nsecond\r\n"));
        if (more.isEmpty())
            QCOMPARE(bench.simulated().firmware().commandCount("BEGIN"), 0);
    }

    void putReplaces()
    {
        VerbBench bench(OneDevice);
        bench.console.input = {"{new}"};
        QCOMPARE(bench.run({u"put"_s, u"-"_s, u"--as"_s, u"a.txt"_s, u"--force"_s}), 0);
        QCOMPARE(bench.storedText("A.TXT"), QByteArray("(none)"));
        QCOMPARE(bench.simulated().firmware().storage().files().size(), 1);
        QVERIFY(bench.storedText("a.txt").contains("new"));
    }

    void embossing()
    {
        VerbBench bench(OneDevice);
        const QString file = makeFile(u"page"_s, "Dear\xC2\xA0"
                                                 "all\n");
        QCOMPARE(bench.run({u"emboss"_s, file}), 0);
        QCOMPARE(bench.simulated().firmware().embosserPage(), QByteArray("Dear all\n"));
        QCOMPARE(bench.run({u"emboss"_s, u"--translate"_s, file}), 0);
        QVERIFY(bench.simulated().firmware().embosserPage().contains("<braille 1>Dear all"));
        QCOMPARE(bench.run({u"emboss"_s, makeFile(u"none"_s, "")}), 0);
        QVERIFY(bench.console.messages.contains(u"empty"_s));
        QCOMPARE(bench.run({u"emboss"_s, makeFile(u"command"_s, "{DEL A.TXT}")}), 1);
        QVERIFY(bench.storedText("A.TXT") != "(none)");
    }

    void getToFile()
    {
        VerbBench bench(OneDevice);
        const QByteArray fetched = "first\r\nsecond\r\n";
        QCOMPARE(bench.run({u"get"_s, u"A.TXT"_s, u"-o"_s, path(u"out"_s)}), 0);
        QCOMPARE(contents(path(u"out"_s)), fetched);
        QVERIFY(bench.console.output.isEmpty());

        const QString kept = makeFile(u"kept"_s, "mine");
        QCOMPARE(bench.run({u"get"_s, u"A.TXT"_s, u"-o"_s, kept}), 1);
        QCOMPARE(contents(kept), QByteArray("mine"));
        QCOMPARE(bench.simulated().counters().connects, 2); // refused before any connection
        QCOMPARE(bench.run({u"get"_s, u"A.TXT"_s, u"-o"_s, kept, u"--force"_s}), 0);
        QCOMPARE(contents(kept), fetched);
        QCOMPARE(bench.run({u"get"_s, u"A.TXT"_s, u"-o"_s, path(u"no/folder"_s)}), 1);
        QVERIFY(bench.console.messages.contains(u"cannot be written"_s));

        // One that appears during the fetch is left alone, too.
        bench.start({u"get"_s, u"A.TXT"_s, u"-o"_s, path(u"late"_s)});
        bench.loop.advance(8s);
        makeFile(u"late"_s, "mine");
        QCOMPARE(bench.wait(), 1);
        QCOMPARE(contents(path(u"late"_s)), QByteArray("mine"));
    }

    void getWarns_data()
    {
        columns<QByteArray, int, QString, QByteArray>("fault", "status", "message", "output");
        const QByteArray whole = "first\r\nsecond\r\n";
        row("ended by silence", QByteArray(R"({"fault": "noTrailer"})"), 0, u"Its end may be missing"_s,
            whole);
        row("nothing came", QByteArray(R"({"fault": "noAnswer", "command": "PR"})"), 1, u"sent nothing"_s,
            QByteArray());
        row("undefined bytes, another length",
            QByteArray(R"({"fault": "reply", "command": "PR", "base64": "YoGNYntQQ/19"})"), 0,
            u"listed 15 characters"_s, QByteArray());
        row("lost", faultAt(u"dropAtWrite"_s, 8), 5, u"lost"_s, QByteArray());
    }
    void getWarns()
    {
        QFETCH(const QByteArray, fault);
        QFETCH(const int, status);
        QFETCH(const QString, message);
        QFETCH(const QByteArray, output);
        VerbBench bench(faulty(fault));
        QCOMPARE(bench.run({u"get"_s, u"A.TXT"_s, u"-o"_s, path(u"warned"_s), u"--force"_s}), status);
        QVERIFY2(bench.console.messages.contains(message), qPrintable(bench.console.messages));
        QCOMPARE(QFile::exists(path(u"warned"_s)), status == 0);
        if (!output.isEmpty())
            QCOMPARE(contents(path(u"warned"_s)), output);
        QFile::remove(path(u"warned"_s));
    }

    void grade()
    {
        VerbBench bench(OneDevice);
        QCOMPARE(bench.run({u"grade"_s, u"2"_s}), 0);
        const auto &record = bench.simulated().firmware().record();
        QCOMPARE(record[DeviceStateRecord::ForwardGrade], 2);
        QCOMPARE(record[DeviceStateRecord::BackwardGrade], 2);
        Fault silence;
        silence.kind = Fault::Kind::LoseConfirmation;
        bench.simulated().faults().add(silence);
        QCOMPARE(bench.run({u"--timeout"_s, u"2"_s, u"grade"_s, u"1"_s}), 5);
    }

    void rm()
    {
        VerbBench bench(OneDevice);
        QCOMPARE(bench.run({u"rm"_s, u"A.TXT"_s}), 0);
        QCOMPARE(bench.storedText("A.TXT"), QByteArray("(none)"));
        QCOMPARE(bench.run({u"rm"_s, u"A.TXT"_s}), 6);
    }

    void chat()
    {
        VerbBench bench(OneDevice);
        bench.console.input = {"hel", "lo\r\nw\xC3\xB6rld \xE4\xB8\xAD\n", "last"};
        QCOMPARE(bench.run({u"chat"_s}), 0);
        QCOMPARE(bench.console.output, QByteArray("hello\nw\xC3\xB6rld ?\nlast\n"));
        QVERIFY(bench.console.messages.startsWith(u"Line 2:"_s));
        QCOMPARE(bench.simulated().firmware().commandCount("CHAT"), 2);

        // More than the link carries in the 10 seconds for which a silent one is waited for.
        const QByteArray lines = QByteArray("a line of the lesson\n").repeated(2000);
        bench.console.input = {lines};
        QCOMPARE(bench.run({u"chat"_s}), 0);
        QCOMPARE(bench.console.output, lines);

        // What the person at the device types is shown, with nothing that a terminal obeys.
        bench.console.inputEnds = false;
        bench.start({u"chat"_s});
        bench.loop.advance(30s);
        bench.simulated().type("hi\x1b[2J\r\nrest");
        bench.loop.advance(1s);
        QCOMPARE(bench.console.output, QByteArray("hi\\x1b[2J\n"));
        bench.runner().interrupt(ExitStatus::Interrupted);
        QCOMPARE(bench.wait(), 130);
        QCOMPARE(bench.console.output, QByteArray("hi\\x1b[2J\nrest\n"));
        QCOMPARE(bench.simulated().firmware().commandCount("CHAT"), 6);
    }

    void chatKeepsCommandsOut()
    {
        VerbBench bench(OneDevice);
        bench.console.input = {"{DEL A.TXT}\nbad \xFF\nit\xE2\x80\x99s good\n"};
        QCOMPARE(bench.run({u"chat"_s}), 1);
        QCOMPARE(bench.console.output, QByteArray("it's good\n"));
        QVERIFY(bench.console.messages.contains(u"Line 1 was not sent"_s));
        QVERIFY(bench.console.messages.contains(u"Line 2 was not sent"_s));
        QVERIFY(bench.storedText("A.TXT") != "(none)");
    }

    // Nothing typed is lost with the link; the line that was not confirmed goes out again.
    void chatComesBack_data()
    {
        columns<QByteArray, QByteArray>("fault", "output");
        const QByteArray twice = "one\ntwo\ntwo\nthree\naway\nlast\n";
        row("lost", faultAt(u"dropAtWrite"_s, 8), twice);
        row("lost, without an error",
            QByteArray(R"({"fault": "dropAtWrite", "write": 8, "withError": false})"), twice);
        row("not confirmed", faultAt(u"loseConfirmation"_s, 8), twice);
        row("failed write", faultAt(u"failWrite"_s, 8), QByteArray("one\ntwo\nthree\naway\nlast\n"));
        row("lost twice", QByteArray(faultAt(u"dropAtWrite"_s, 8) + ", " + faultAt(u"dropAtWrite"_s, 12)),
            twice);
        row("refused at first", QByteArray(faultAt(u"dropAtWrite"_s, 8) + ", " + faultAt(u"failWrite"_s, 9)),
            twice);
    }
    void chatComesBack()
    {
        QFETCH(const QByteArray, fault);
        QFETCH(const QByteArray, output);
        VerbBench bench(deviceWith(R"("delays": {"reply": 1}, "faults": [)" + fault + ']'));
        const auto says = [&bench](const QString &words) {
            return bench.loop.advanceUntil([&] { return bench.console.messages.contains(words); }, 1min);
        };
        bench.console.inputEnds = false;
        bench.console.input = {"one\ntwo\nthree\n"};
        bench.start({u"chat"_s});
        QVERIFY(says(u"trying again in 1 second."_s));
        bench.console.type("away\n");
        QVERIFY(says(u"Connected again."_s));
        bench.console.type("last\n");
        bench.console.type("");
        QCOMPARE(bench.wait(), 0);
        QCOMPARE(bench.console.output, output);
        QCOMPARE(bench.console.messages.count(u'\n'), 2);
        // On, on again, off.
        QCOMPARE(bench.simulated().firmware().commandCount("CHAT"), 3);
        QCOMPARE(bench.run({u"ls"_s}), 0);
    }

    // Who ends the input or the program while the device is away is told what did not get there.
    void chatEndsAway_data()
    {
        columns<bool, std::chrono::milliseconds>("leaves", "time");
        row("at once", true, 0ms);
        row("between attempts", true, 500ms);
        row("in an attempt", true, 1500ms);
        row("in a scan", true, 8500ms);
        row("while it is identified", false, 5000ms);
    }
    void chatEndsAway()
    {
        QFETCH(const bool, leaves);
        QFETCH(const std::chrono::milliseconds, time);
        for (const bool interrupts : {false, true}) {
            VerbBench bench(OneDevice);
            bench.console.inputEnds = false;
            bench.console.input = {"one\n"};
            bench.start({u"chat"_s});
            bench.loop.advance(30s);
            if (leaves)
                bench.simulated().leave();
            else
                bench.simulated().dropLink(true);
            bench.loop.advance(time);
            bench.console.type("two\nthree\n");
            bench.loop.advance(2ms);
            const auto before = bench.loop.now();
            if (interrupts)
                bench.runner().interrupt(ExitStatus::Interrupted);
            else
                bench.console.type("");
            QCOMPARE(bench.wait(), 5);
            QVERIFY(bench.loop.now() - before < 3s);
            QCOMPARE(bench.console.output, QByteArray("one\n"));
            QVERIFY2(bench.console.messages.endsWith(u"not sent or not confirmed: 2.\n"_s),
                     qPrintable(bench.console.messages));
            bench.loop.advance(5min);
            QCOMPARE(bench.loop.pendingCalls(), size_t{0});
            QCOMPARE(bench.simulated().firmware().commandCount("CHAT"), 1);
        }
    }

    void board()
    {
        VerbBench bench(OneDevice);
        bench.console.input = {"one\ntwo\n"};
        QCOMPARE(bench.run({u"board"_s}), 0);
        QCOMPARE(bench.console.output, QByteArray("one\ntwo\n"));
        QCOMPARE(bench.simulated().firmware().commandCount("BOARD"), 2);
    }

    void batch()
    {
        VerbBench bench(OneDevice);
        const QString file = makeFile(u"two words"_s, "text");
        bench.console.input = {"# a comment\n\nput \"" + file.toUtf8() + "\" --as B\r\n",
                               "ls\nget B\nrm A.TXT\nls"};
        QCOMPARE(bench.run({u"batch"_s, u"--json"_s}), 0);
        QCOMPARE(bench.console.output, QByteArray(R"([{"name":"A.TXT","size":15},{"name":"B","size":4}])"
                                                  "\ntext"
                                                  R"([{"name":"B","size":4}])"
                                                  "\n"));
        QCOMPARE(bench.simulated().counters().connects, 2); // one to read the serial number
    }

    void batchStops()
    {
        VerbBench bench(OneDevice);
        bench.console.input = {"grade 2\nget NONE\nrm A.TXT\n"};
        QCOMPARE(bench.run({u"batch"_s}), 6);
        QVERIFY(bench.console.messages.endsWith(u"The batch stopped at line 2.\n"_s));
        QVERIFY(bench.storedText("A.TXT") != "(none)");
        QCOMPARE(bench.simulated().firmware().record()[DeviceStateRecord::ForwardGrade], 2);

        const auto connects = bench.simulated().counters().connects;
        for (const auto *lines : {"rm A.TXT\nfrob\n", "rm A.TXT\nchat\n"}) {
            bench.console.input = {lines};
            QCOMPARE(bench.run({u"batch"_s}), 2);
            QVERIFY(bench.console.messages.startsWith(u"Line 2: "_s));
        }
        QCOMPARE(bench.simulated().counters().connects, connects);
    }

    void codec()
    {
        VerbBench bench(R"({"devices": []})");
        bench.console.input = {"\xC3", "\xA9\xE4\xB8\xAD"};
        QCOMPARE(bench.run({u"encode"_s, u"--language"_s, u"2"_s}), 0);
        QCOMPARE(bench.console.output, QByteArray("\x82?"));
        QVERIFY(bench.console.messages.contains(u"1."_s));
        bench.console.input = {"\x82"};
        QCOMPARE(bench.run({u"decode"_s, u"--language"_s, u"2"_s}), 0);
        QCOMPARE(bench.console.output, QByteArray("\xC3\xA9"));
        bench.console.input = {"abc\xFF"};
        QCOMPARE(bench.run({u"encode"_s, u"--language"_s, u"2"_s}), 1);
        QVERIFY(bench.console.messages.contains(u"offset 3"_s));
        bench.console.input = {"half"};
        bench.console.inputError = u"broken"_s;
        QCOMPARE(bench.run({u"decode"_s, u"--language"_s, u"2"_s}), 1);
        QCOMPARE(bench.console.output, QByteArray());
    }

    void brokenOutput()
    {
        VerbBench bench(OneDevice);
        bench.console.outputBroken = true;
        for (const auto &command : {u"scan"_s, u"info"_s, u"ls"_s, u"get A.TXT"_s})
            QCOMPARE(bench.run(words(command)), 1);
        bench.console.input = {"line\n"};
        QCOMPARE(bench.run({u"chat"_s}), 1);
    }

    // Wherever it comes, the link is given back and the status is that of the signal.
    void interrupt_data()
    {
        columns<int>("milliseconds");
        for (const int at : {0, 300, 900, 1500, 4100, 4300, 5000, 7000, 9000, 13000, 15000})
            QTest::addRow("after %d ms", at) << at;
    }
    void interrupt()
    {
        QFETCH(const int, milliseconds);
        VerbBench bench(OneDevice);
        bench.console.input = {QByteArray(20000, 'x')};
        bench.start({u"put"_s, u"-"_s, u"--as"_s, u"N"_s});
        bench.loop.advance(std::chrono::milliseconds(milliseconds));
        bench.runner().interrupt(ExitStatus::Interrupted);
        QCOMPARE(bench.wait(), 130);
        const bool begun = bench.simulated().firmware().commandCount("BEGIN") > 0;
        QCOMPARE(bench.console.messages.contains(u"incomplete"_s), begun);
        // The next command finds the device as it was.
        QCOMPARE(bench.run({u"get"_s, u"A.TXT"_s}), 0);
    }

private:
    QString path(const QString &name) const { return _folder.filePath(name); }
    QString makeFile(const QString &name, const QByteArray &bytes)
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s", qPrintable(file.errorString()));
        return file.fileName();
    }
    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    QTemporaryDir _folder;
};

QTEST_GUILESS_MAIN(TestVerbs)
#include "tst_verbs.moc"
