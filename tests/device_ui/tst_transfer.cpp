// SPDX-License-Identifier: GPL-3.0-or-later
#include "ConnectedBench.h"
#include "FormatTexts.h"
#include "device_ui/CVDeviceTableViewController.h"
#include "device_ui/CVTransferViewController.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Transfer = CVTransferViewController;
using TransferPointer = std::shared_ptr<Transfer>;
using Kind = Fault::Kind;

namespace {

enum What { Fetch, Store, Emboss, Data };

constexpr int translate = Transfer::TranslateButton;
constexpr int asItIs = Transfer::AsItIsButton;
constexpr int cancel = Transfer::CancelButton;

// What a transfer switches.
QList<int> modesOf(const FirmwareModel &firmware)
{
    using Field = DeviceStateRecord::Field;
    QList<int> modes;
    for (const auto field : {Field::EmbosserOutput, Field::AdvancedMode, Field::BackTranslationOnS2,
                             Field::ForwardTranslationForEmbossing})
        modes.append(firmware.record()[field]);
    return modes;
}

// The screen that presents the transfer: keeps what it is told, and does nothing about it.
class Host final : public ViewController, public CVTransferControllerDelegate
{
public:
    using ViewController::ViewController;

    void cvTransferControllerTransferFinished(Transfer &transfer) override
    {
        ++finished;
        text = transfer.downloadedString();
        isWhole = transfer.isOkVisible() && transfer.progress() == 1.0;
    }
    void cvTransferCloseClicked() override { ++closed; }

    int finished = 0;
    int closed = 0;
    QString text;
    bool isWhole = false;
};

// A host under a transfer, with a device that is connected and identified.
struct TransferBench : ConnectedBench
{
    explicit TransferBench(const QByteArray &file = "hello")
        : ConnectedBench({{"NOTE.TXT", file}})
        , host(std::make_shared<Host>(presenter))
    {
        presenter.showRoot(host);
        advance(10ms);
    }

    TransferPointer open(What what, const QString &text = QString(400, u'a'))
    {
        auto transfer = Transfer::withInputDataAndOutputFilename(context, "data", u"NEW.TXT"_s);
        if (what == Fetch)
            transfer = Transfer::withCorvaneFileToDownload(context, u"NOTE.TXT"_s);
        else if (what == Store)
            transfer = Transfer::withInputTextAndOutputFilename(context, text, u"NEW.TXT"_s);
        else if (what == Emboss)
            transfer = Transfer::withInputTextAndCaption(context, text, u"caption"_s);
        transfer->setDelegate(host);
        host->presentViewController(transfer, true);
        advance(10ms);
        return transfer;
    }
    TransferPointer start(What what)
    {
        auto transfer = open(what);
        return presenter.answerSheet(asItIs) ? transfer : nullptr;
    }
    bool waitForOk(const TransferPointer &transfer)
    {
        return advanceUntil([&] { return transfer->isOkVisible(); });
    }
    // Whether OK closes the transfer.
    bool okCloses(const TransferPointer &transfer)
    {
        transfer->okClicked();
        transfer->okClicked();
        return hasClosed();
    }
    bool hasClosed()
    {
        advance(10ms);
        return !host->presentedViewController() && presenter.front() == host;
    }

    std::shared_ptr<Host> host;
};

} // namespace

// One transfer each, against a simulated device that does it or lets it down.
class tst_Transfer : public QObject
{
    Q_OBJECT

private slots:
    void asks_data()
    {
        columns<What, QString, QString, QStringList>("what", "label", "title", "buttons");
        const QStringList forSending{u"3.7"_s, u"3.8"_s, u"Cancel"_s};
        row("fetch", Fetch, u"3.2 NOTE.TXT"_s, u"3.3"_s, QStringList{u"3.4"_s, u"3.5"_s, u"Cancel"_s});
        row("store", Store, u"3.1 NEW.TXT"_s, u"3.6"_s, forSending);
        row("emboss", Emboss, u"caption"_s, u"3.6"_s, forSending);
        row("data", Data, QString(), QString(), QStringList());
    }
    void asks()
    {
        QFETCH(What, what);
        const FormatTexts texts({u"3.1"_s, u"3.2"_s});
        TransferBench bench;
        const auto transfer = bench.open(what);
        QTEST(transfer->labelText(), "label");
        QVERIFY(!transfer->isBusy() && transfer->statusText().isEmpty() && transfer->problemText().isEmpty());
        QCOMPARE(bench.okCloses(transfer), what == Data);
        const ActionSheet sheet = bench.presenter.sheet() ? *bench.presenter.sheet() : ActionSheet();
        QTEST(sheet.title, "title");
        QTEST(sheet.buttons, "buttons");
        QVERIFY(sheet.cancelButtonIndex == (what == Data ? -1 : cancel) && bench.host->finished == 0);
        QCOMPARE(transfer->downloadedFileName(), what == Fetch ? u"NOTE.TXT"_s : QString());
        QCOMPARE(transfer->remoteOutputFilename(), what == Store || what == Data ? u"NEW.TXT"_s : QString());
        // Cancelled, it closes with nothing sent.
        const int writes = bench.simulated().counters().writes;
        QCOMPARE(bench.presenter.cancelSheet(), what != Data);
        QVERIFY(bench.hasClosed() && bench.host->closed == 1);
        bench.advance(30s);
        QCOMPARE(bench.simulated().counters().writes, writes);
    }

    void runs_data()
    {
        columns<What, int, QString, Fault, QByteArray, int, QString>("what", "button", "text", "fault",
                                                                     "result", "notices", "problem");
        const auto done = [](const char *name, What what, int button, const QString &text,
                             const QByteArray &result, int notices = 0, Kind kind = Kind::ReadFails) {
            row(name, what, button, text, fault(kind), result, notices, QString());
        };
        const auto text = u"hello, that is twenty and more"_s;
        const QByteArray bytes = text.toLatin1();
        const QByteArray braille("<braille 1>" + bytes + "</braille>");
        const QByteArray page(2000, 'a');
        done("fetch, translated", Fetch, translate, u"<braille 2>hello</braille>"_s, "hello");
        done("fetch, empty", Fetch, asItIs, u""_s, {});
        done("fetch, long", Fetch, asItIs, QString(2000, u'a'), page);
        done("fetch, unknown character", Fetch, asItIs, u"a\u0081z"_s, "a\xEF\xBF\xBDz", 1);
        done("fetch, no end", Fetch, asItIs, text, bytes, 1, Kind::NoTrailer);
        done("fetch, empty, no end", Fetch, asItIs, u""_s, {}, 1, Kind::NoTrailer);
        done("store, translated", Store, translate, text, braille);
        done("store, in one write", Store, asItIs, u"short"_s, "short");
        done("store, long", Store, asItIs, QString(2000, u'a'), page);
        done("store, unknown characters", Store, asItIs, u"a\u4E00b\u4E01"_s, "a?b?", 1);
        done("emboss, translated", Emboss, translate, text, braille);
        // Nothing is written that could be confirmed.
        done("emboss, empty", Emboss, asItIs, u""_s, {});
        const QByteArray none;
        const auto nothing = u"The Corvane sent nothing. The file has not been fetched."_s;
        row("no answer", Fetch, asItIs, text, fault(Kind::NoAnswer, "PR"), none, 0, nothing);
        // Such as one that the device's own codes cannot spell.
        const Fault unknownName = fault(Kind::CustomReply, "PR", FirmwareModel::FetchTrailer);
        row("unknown name", Fetch, asItIs, text, unknownName, none, 0, nothing);
        row("unknown name, translated", Fetch, translate, text, unknownName, none, 0, nothing);
        row("half an answer", Fetch, asItIs, text, fault(Kind::CustomReply, "PR", "he"), QByteArray("he"), 1,
            QString());
        row("failed write", Store, asItIs, text, fault(Kind::FailWrite), none, 0,
            u"Part of it did not reach the Corvane. Send it again."_s);
    }
    void runs()
    {
        QFETCH(What, what);
        QFETCH(int, button);
        QFETCH(QString, text);
        QFETCH(Fault, fault);
        QFETCH(QString, problem);
        const bool isDone = problem.isEmpty();
        TransferBench bench(text.toLatin1());
        bench.simulated().faults().add(fault);
        const auto transfer = bench.open(what, text);
        QVERIFY(bench.presenter.answerSheet(button));
        QVERIFY(bench.waitForOk(transfer));
        const FirmwareModel &firmware = bench.simulated().firmware();
        QTEST(what == Fetch   ? bench.host->text.toUtf8()
              : what == Store ? firmware.storage().find("NEW.TXT").value_or(QByteArray())
                              : firmware.embosserPage(),
              "result");
        QVERIFY(what == Fetch || bench.device.unconfirmedWrites() == 0);
        QCOMPARE(bench.host->finished, isDone ? 1 : 0);
        QVERIFY(bench.host->isWhole == isDone && bench.host->text.isNull() == (what != Fetch || !isDone));
        QVERIFY(transfer->isFinished() == isDone && !transfer->isBusy());
        QCOMPARE(transfer->problemText(), problem);
        QTEST(int(bench.presenter.notices().size()), "notices");
        // What a long one is told by: three quarters on the way, then the end.
        const QStringList said = bench.presenter.announcements();
        QVERIFY(text.size() < 1000 || said.size() == 4);
        QCOMPARE(said.constLast(), transfer->statusText() + problem);
        // Appearing again does not start it again.
        transfer->presentViewController(std::make_shared<Host>(bench.presenter), false);
        bench.advance(10ms);
        transfer->dismissViewController(false);
        bench.advance(10ms);
        QVERIFY(!bench.presenter.sheet());
        // On its way out OK says nothing more.
        if (what == Fetch)
            bench.host->dismissViewController(true);
        QVERIFY(bench.okCloses(transfer));
        QCOMPARE(bench.host->closed, what == Fetch ? 0 : 1);
    }

    // Lost while the question is open, and before the next one appears.
    void cannotStart()
    {
        for (const auto what : {Fetch, Store, Emboss}) {
            TransferBench bench;
            for (const bool isAsked : {true, false}) {
                const auto transfer = bench.open(what);
                bench.dropLink();
                QCOMPARE(bench.presenter.answerSheet(asItIs), isAsked);
                QCOMPARE(transfer->problemText(), u"The Corvane is not connected."_s);
                QCOMPARE(bench.presenter.announcements().constLast(), transfer->problemText());
                QVERIFY(bench.okCloses(transfer) && bench.host->finished == 0);
            }
        }
    }

    void lostAtAnyMoment_data()
    {
        columns<What, QString>("what", "loss");
        row("fetch", Fetch, u" The file has not been fetched."_s);
        row("store", Store, u" The file on it is incomplete."_s);
        row("emboss", Emboss, u" Part of the text may be missing."_s);
    }
    // Until it is through: OK shows and closes it, whether or not somebody hears it; no half text is handed over.
    void lostAtAnyMoment()
    {
        QFETCH(What, what);
        QFETCH(QString, loss);
        const QString problem = u"The connection to the Corvane was lost." % loss;
        int losses = 0;
        for (auto time = 0ms; time < 5s; time += 15ms) {
            TransferBench bench(QByteArray(1000, 'a'));
            const auto transfer = bench.start(what);
            bench.advance(time);
            if (transfer->isFinished())
                break;
            ++losses;
            const bool isHeard = losses % 2 == 0;
            if (!isHeard)
                transfer->setDelegate({});
            const auto screen = std::make_shared<CVDeviceTableViewController>(bench.context);
            screen->linkConnected();
            bench.dropLink(isHeard);
            // Each thing is said once.
            QCOMPARE(bench.presenter.notices(), QStringList{u"Trying to connect again."_s});
            QVERIFY(transfer->isOkVisible() && !transfer->isFinished() && !transfer->isBusy());
            QCOMPARE(transfer->problemText(), problem);
            QCOMPARE(bench.presenter.announcements().count(problem), 1);
            QVERIFY(bench.okCloses(transfer));
            bench.advance(40s);
            QVERIFY(bench.host->finished == 0 && transfer->downloadedString().isNull());
            QCOMPARE(bench.host->closed, isHeard ? 1 : 0);
        }
        QVERIFY(losses > 6);
    }

    // Lost on its way, it is offered again when the link is back, and what a store has left can be deleted.
    void againAfterALoss()
    {
        for (const auto what : {Fetch, Store, Emboss}) {
            for (const bool deletes : {false, true}) {
                TransferBench bench(QByteArray(1000, 'a'));
                const auto transfer = bench.start(what);
                bench.advance(45ms);
                bench.simulated().dropLink();
                bench.advance(500ms);
                QVERIFY(transfer->isOkVisible() && !transfer->isAgainVisible() &&
                        !transfer->isDeleteVisible());
                QCOMPARE(transfer->statusText(), u"Trying to connect again."_s);
                QVERIFY(bench.advanceUntil([&] { return transfer->isAgainVisible(); }));
                QCOMPARE(transfer->isDeleteVisible(), what == Store);
                if (deletes && what == Store) {
                    transfer->deleteClicked();
                    bench.advance(1s);
                    QVERIFY(!bench.simulated().firmware().storage().find("NEW.TXT"));
                    QVERIFY(!transfer->isDeleteVisible() && transfer->isAgainVisible());
                }
                transfer->againClicked();
                QVERIFY(transfer->isBusy() && !bench.presenter.sheet() && transfer->problemText().isEmpty());
                QVERIFY(bench.waitForOk(transfer));
                QVERIFY(transfer->isFinished() && bench.host->finished == 1);
                const auto stored = bench.simulated().firmware().storage().find("NEW.TXT");
                QCOMPARE(stored.value_or("").size(), what == Store ? transfer->inputText().size() : 0);
            }
        }
    }

    // A second one on a link that still stalls is held up no longer than the first.
    void stalls()
    {
        for (const auto what : {Fetch, Store, Emboss}) {
            TransferBench bench;
            bench.simulated().faults().add(fault(Kind::LoseConfirmation));
            bench.simulated().faults().add(fault(Kind::NoAnswer, "PR"));
            for (int time = 1; time <= 2; ++time) {
                const auto transfer = bench.start(what);
                bench.advance(5900ms);
                QVERIFY(transfer->isBusy() && !bench.okCloses(transfer));
                bench.advance(200ms);
                QVERIFY(transfer->isStalled() && transfer->isCancelVisible() && !transfer->isBusy());
                QCOMPARE(bench.presenter.announcements().constLast(), transfer->problemText());
                transfer->cvUploadProgress(0.5F);
                transfer->cvDownloadProgress(0.5F);
                QVERIFY(transfer->isBusy() && !transfer->isOkVisible() && transfer->problemText().isEmpty());
                transfer->linkStalled();
                transfer->cancelClicked();
                QVERIFY(what == Fetch ? bench.hasClosed() : bench.okCloses(transfer));
                QCOMPARE(bench.host->closed, time);
                bench.advance(60s);
                QCOMPARE(bench.host->finished, 0);
            }
        }
    }

    // The answer to a fetch that was left is nobody's, and does not become part of the next.
    void lateAnswer()
    {
        TransferBench bench;
        bench.simulated().faults().add(fault(Kind::LateAnswer, "PR", {}, 10s));
        const auto left = bench.start(Fetch);
        left->cancelClicked();
        QVERIFY(bench.hasClosed() && bench.presenter.notices().constLast().contains(u"busy until"));
        for (const auto what : {Emboss, Fetch}) {
            const auto refused = bench.open(what);
            QVERIFY(!bench.presenter.sheet() && refused->problemText().contains(u"busy"));
            QVERIFY(!refused->isAgainVisible());
            if (what == Emboss)
                QVERIFY(bench.okCloses(refused));
        }
        const auto refused = bench.presentedBy<Transfer>(bench.host);
        QVERIFY(bench.advanceUntil([&] { return refused->isAgainVisible(); }));
        QCOMPARE(bench.host->finished, 0);
        refused->againClicked();
        QVERIFY(bench.presenter.answerSheet(asItIs) && bench.waitForOk(refused));
        QVERIFY(left->downloadedString().isNull());
        QCOMPARE(bench.host->text, u"hello"_s);
    }

    void cancelledAtAnyMoment_data()
    {
        columns<What, int>("what", "button");
        row("fetch", Fetch, asItIs);
        row("fetch, translated", Fetch, translate);
        row("store", Store, asItIs);
        row("store, translated", Store, translate);
        row("emboss", Emboss, asItIs);
        row("emboss, translated", Emboss, translate);
    }
    // The link stays, the device is as it was, and what it has of the text is said; the next transfer is whole.
    void cancelledAtAnyMoment()
    {
        QFETCH(What, what);
        QFETCH(int, button);
        int cuts = 0;
        for (auto time = 0ms; time < 5s; time += 15ms) {
            TransferBench bench(QByteArray(1000, 'a'));
            const FirmwareModel &firmware = bench.simulated().firmware();
            const auto modes = modesOf(firmware);
            const auto transfer = bench.open(what, QString(1000, u'a'));
            QVERIFY(bench.presenter.answerSheet(button));
            bench.advance(time);
            if (transfer->isFinished())
                break;
            QVERIFY(transfer->isCancelVisible() && !transfer->isOkVisible());
            transfer->cancelClicked();
            const QString problem = transfer->problemText();
            const bool isCut = !problem.isEmpty();
            cuts += isCut ? 1 : 0;
            QCOMPARE(bench.presenter.announcements().count(problem), isCut ? 1 : 0);
            QCOMPARE(bench.presenter.notices().size(), isCut ? 0 : 1);
            // What closes the file is still on its way.
            QVERIFY(!transfer->isAgainVisible() && !transfer->isDeleteVisible());
            bench.advance(30s);
            QVERIFY(bench.device.turn().isFree() && bench.device.queuedBytes() == 0);
            QCOMPARE(modesOf(firmware), modes);
            const QByteArray text(1000, 'a');
            const QByteArray whole =
                button == translate ? QByteArray("<braille 1>" + text + "</braille>") : text;
            QCOMPARE(firmware.storage().find("NEW.TXT") == whole, what == Store && !isCut);
            QVERIFY(!isCut || transfer->isDeleteVisible() == (what == Store));
            transfer->deleteClicked();
            QVERIFY(isCut ? bench.okCloses(transfer) : bench.hasClosed());
            bench.advance(1s);
            QCOMPARE(firmware.storage().find("NEW.TXT").has_value(), what == Store && !isCut);
            QVERIFY(bench.host->closed == 1 && bench.host->finished == 0);
            QVERIFY(bench.waitForOk(bench.start(Fetch)));
            QCOMPARE(bench.host->text, QString(1000, u'a'));
        }
        QVERIFY(what == Fetch ? cuts == 0 : cuts > 6);
    }

    // Dismissed with its question open, and while it runs.
    void leaves()
    {
        for (const bool isRunning : {false, true}) {
            TransferBench bench;
            const std::weak_ptr<Transfer> gone = bench.open(Store);
            QVERIFY(bench.device.cvUploadDelegate() == gone.lock() &&
                    bench.device.cvDownloadDelegate() == gone.lock());
            const auto other = std::make_shared<RecordingDelegates>();
            bench.device.setCvDownloadDelegate(other);
            QCOMPARE(isRunning && bench.presenter.answerSheet(asItIs), isRunning);
            bench.host->dismissViewController(true);
            bench.advance(5s);
            QVERIFY(gone.expired() && !bench.device.cvUploadDelegate());
            QCOMPARE(bench.device.cvDownloadDelegate(), other);
            const int writes = bench.simulated().counters().writes;
            QCOMPARE(bench.presenter.answerSheet(asItIs), !isRunning);
            bench.advance(5s);
            QVERIFY(bench.simulated().counters().writes == writes && bench.host->finished == 0);
        }
    }
};

QTEST_GUILESS_MAIN(tst_Transfer)
#include "tst_transfer.moc"
