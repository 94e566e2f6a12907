// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserBench.h"

#include "app/MUsersViewController.h"
#include "device_ui/CVConnectViewController.h"
#include "device_ui/CVTransferViewController.h"
#include "device_ui/MCVFilesViewController.h"
#include "support/Rows.h"

#include <QFile>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString Maths = u"20000000-0000-0000-0000-000000000000"_s;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// As the device object tells its end.
void finishDownload(BrowserBench &bench, const QString &text)
{
    bench.device.device->cvDownloadDelegate()->cvFileDownloaded(text);
    bench.settle();
}

} // namespace

class tst_browseractions : public QObject
{
    Q_OBJECT

private slots:
    void previewsWithAByteOrderMark();
    void previewThatNobodyShows();
    void previewOfWhatCannotBeRead_data();
    void previewOfWhatCannotBeRead();
    void mails();
    void mailThatCannotBeSent_data();
    void mailThatCannotBeSent();
    void sends();
    void asksUntilTheNameIsFree();
    void asksBeforeTheTextChanges();
    void embosses();
    void embossedEmptyTextIsNoDownload();
    void failedTransferIsClosed();
    void connectsFirst_data();
    void connectsFirst();
    void connectingGivenUp();
    void fetchesUnderTheNextFreeTitle();
    void fetchesNothing();
    void movesADocument_data();
    void movesADocument();
    void aTakenTitleIsNotMovedTo();
    void movesAFolder();
    void movesNothing();
    void moveOfAGoneDocument();
};

void tst_browseractions::previewsWithAByteOrderMark()
{
    BrowserBench bench;
    bench.putDocument(u"my letter"_s, "gr\xC3\xBC\xC3\x9F");
    const auto browser = bench.open();
    for (int time = 1; time <= 2; ++time) {
        bench.choose(browser, u"my letter"_s, u"4.7"_s);
        QCOMPARE(bench.preview.paths.size(), time);
        QCOMPARE(bench.preview.paths.last(), bench.locations.temporaryFolder() % u"/my letter.txt");
        QCOMPARE(bytesOf(bench.preview.paths.last()), "\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F");
    }
    QCOMPARE(bench.rig.log.count(u"[info] Show system preview"_s), 2);
    QCOMPARE(bench.rig.log.count(u"[debug] d.documentState: 1"_s), 2);
    QCOMPARE(bench.rig.log.count(u"[debug] d.documentState: 0"_s), 2);
    QVERIFY(bench.presenter.notices().isEmpty());
}

void tst_browseractions::previewThatNobodyShows()
{
    BrowserBench bench;
    bench.preview.hasProgram = false;
    bench.putDocument(u"letter"_s, "L");
    bench.choose(bench.open(), u"letter"_s, u"4.7"_s);
    QCOMPARE(bench.presenter.notices().size(), 1);
}

void tst_browseractions::previewOfWhatCannotBeRead_data()
{
    columns<QByteArray, bool, int>("bytes", "isMissing", "notices");
    row("not text", QByteArray("\xFF\xFE"), false, 1);
    // The store tells that, with the reason.
    row("vanished", QByteArray("L"), true, 0);
}

void tst_browseractions::previewOfWhatCannotBeRead()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isMissing);
    QFETCH(int, notices);
    for (const QString &entry : {u"4.7"_s, u"4.8"_s, u"4.10"_s, u"Emboss"_s}) {
        BrowserBench bench;
        bench.connectDevice();
        bench.putDocument(u"letter"_s, bytes);
        const auto browser = bench.open();
        if (isMissing)
            bench.rig.erase(bench.annsFolder() % u"/letter.tamber");
        bench.choose(browser, u"letter"_s, entry);
        QVERIFY(bench.preview.paths.isEmpty());
        QVERIFY(bench.mail.messages.isEmpty());
        QVERIFY(!bench.presenter.topModal());
        QCOMPARE(bench.presenter.notices().size(), notices);
        QCOMPARE(bench.rig.told->count(StoreProblem::What::Open), isMissing ? 1 : 0);
    }
}

void tst_browseractions::mails()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "gr\xC3\xBC\xC3\x9F");
    bench.choose(bench.open(), u"letter"_s, u"4.10"_s);
    QCOMPARE(bench.mail.messages.size(), 1);
    const auto attachment = bench.mail.messages.first().attachment;
    QVERIFY(attachment);
    QCOMPARE(attachment->bytes, "gr\xC3\xBC\xC3\x9F");
    QCOMPARE(attachment->mimeType, u"text/plain"_s);
    QCOMPARE(attachment->fileName, u"letter.tamber"_s);
    QCOMPARE(bench.document(u"letter"_s)->documentState(), int{Document::Closed});
}

void tst_browseractions::mailThatCannotBeSent_data()
{
    columns<bool, int>("hasProgram", "messages");
    row("no program", false, 0);
    row("not taken", true, 1);
}

void tst_browseractions::mailThatCannotBeSent()
{
    QFETCH(bool, hasProgram);
    QFETCH(int, messages);
    BrowserBench bench;
    bench.mail.hasProgram = hasProgram;
    bench.mail.takesMessages = false;
    bench.putDocument(u"letter"_s, "L");
    bench.choose(bench.open(), u"letter"_s, u"4.10"_s);
    QCOMPARE(bench.mail.messages.size(), messages);
    QCOMPARE(bench.presenter.notices().size(), 1);
}

void tst_browseractions::sends()
{
    BrowserBench bench;
    bench.connectDevice({u"other"_s});
    bench.putDocument(u"letter"_s, "hello");
    bench.choose(bench.open(), u"letter"_s, u"4.8"_s);
    const auto transfer = bench.presenter.frontAs<CVTransferViewController>();
    QVERIFY(transfer);
    QCOMPARE(transfer->inputText(), u"hello"_s);
    QCOMPARE(transfer->remoteOutputFilename(), u"letter"_s);
    QCOMPARE(transfer->modalTransitionStyle(), TransitionStyle::CrossDissolve);
    QCOMPARE(transfer->modalPresentationStyle(), PresentationStyle::FormSheet);
    QCOMPARE(bench.rig.log.count(u"[info] Send to CV"_s), 1);
}

void tst_browseractions::asksUntilTheNameIsFree()
{
    BrowserBench bench;
    bench.connectDevice({u"letter"_s, u"note"_s});
    bench.putDocument(u"letter"_s, "hello");
    bench.choose(bench.open(), u"letter"_s, u"4.8"_s);
    QStringList proposed;
    for (const QString &text : {u"note"_s, u""_s, u"two words"_s, u"end"_s, u"free"_s}) {
        const AlertView *alert = bench.presenter.alert();
        QVERIFY(alert && alert->textField);
        QCOMPARE(alert->tag, 3);
        const bool isTaken = text == u"note"_s || text.isEmpty();
        QCOMPARE(alert->title, isTaken ? u"4.4"_s : u"Another name is needed"_s);
        QCOMPARE(alert->message == u"4.5"_s, isTaken);
        proposed.append(alert->textField->text);
        QVERIFY(bench.presenter.answerAlert(u"OK"_s, text));
    }
    QCOMPARE(proposed.join(u' '), u"letter note letter2 twowords end2"_s);
    bench.settle();
    QVERIFY(!bench.presenter.alert());
    const auto transfer = bench.presenter.frontAs<CVTransferViewController>();
    QVERIFY(transfer);
    QCOMPARE(transfer->remoteOutputFilename(), u"free"_s);
    QCOMPARE(transfer->modalPresentationStyle(), PresentationStyle::FullScreen);
}

void tst_browseractions::asksBeforeTheTextChanges()
{
    for (const QString &entry : {u"4.8"_s, u"Emboss"_s}) {
        BrowserBench bench;
        bench.connectDevice();
        bench.putDocument(u"letter"_s, "a\n{DEL X} \xE2\x80\x9Cq\xE2\x80\x9D \xE4\xB8\xAD}");
        const auto browser = bench.open();
        bench.choose(browser, u"letter"_s, entry);
        QVERIFY(bench.presenter.alert() && !bench.presenter.topModal());
        QVERIFY(bench.presenter.cancelAlert());
        bench.choose(browser, u"letter"_s, entry);
        QVERIFY(bench.presenter.answerAlert(u"Send with ( and ) instead"_s));
        QVERIFY(bench.presenter.alert() && !bench.presenter.topModal());
        QVERIFY(bench.presenter.cancelAlert());
        QVERIFY(!bench.presenter.topModal());
        bench.choose(browser, u"letter"_s, entry);
        QVERIFY(bench.presenter.answerAlert(u"Send with ( and ) instead"_s));
        QVERIFY(bench.presenter.answerAlert(u"Send anyway"_s));
        const auto transfer = bench.presenter.frontAs<CVTransferViewController>();
        QVERIFY(transfer);
        QCOMPARE(transfer->inputText(), u"a\n(DEL X) \"q\" ?)"_s);
    }
}

void tst_browseractions::embosses()
{
    BrowserBench bench;
    bench.connectDevice();
    bench.putDocument(u"letter"_s, "hello");
    const auto browser = bench.open();
    bench.choose(browser, u"letter"_s, u"Emboss"_s);
    const auto transfer = bench.presenter.frontAs<CVTransferViewController>();
    QVERIFY(transfer);
    QCOMPARE(transfer->inputText(), u"hello"_s);
    QVERIFY(transfer->remoteOutputFilename().isNull());
    QCOMPARE(transfer->modalPresentationStyle(), PresentationStyle::FullScreen);
}

void tst_browseractions::embossedEmptyTextIsNoDownload()
{
    BrowserBench bench;
    bench.connectDevice();
    bench.putDocument(u"letter"_s, "");
    const auto browser = bench.open();
    bench.choose(browser, u"letter"_s, u"Emboss"_s);
    QVERIFY(bench.presenter.answerSheet(1));
    bench.settle();
    QVERIFY(!bench.presenter.topModal());
    QCOMPARE(BrowserBench::shown(*browser, 1), QStringList{u"letter"_s});
}

void tst_browseractions::failedTransferIsClosed()
{
    BrowserBench bench;
    bench.connectDevice();
    bench.putDocument(u"letter"_s, "hello");
    const auto browser = bench.open();
    bench.choose(browser, u"letter"_s, u"4.8"_s);
    bench.device.device->disconnectAsCVComm();
    QVERIFY(bench.presenter.answerSheet(1));
    bench.settle();
    const auto transfer = bench.presenter.frontAs<CVTransferViewController>();
    QVERIFY(transfer && transfer->isOkVisible());
    transfer->okClicked();
    bench.settle();
    QCOMPARE(bench.presenter.front(), browser);
}

void tst_browseractions::connectsFirst_data()
{
    columns<QString, int, int>("entry", "waits", "stays");
    row("send", u"4.8"_s, 1, 1);
    row("emboss stays", u"Emboss"_s, 2, 2);
    row("fetch", u"4.2"_s, 3, 0);
}

void tst_browseractions::connectsFirst()
{
    QFETCH(QString, entry);
    QFETCH(int, waits);
    QFETCH(int, stays);
    BrowserBench bench;
    bench.presenter.setTablet(true);
    bench.putDocument(u"letter"_s, "hello");
    const auto browser = bench.open();
    QCOMPARE(browser->afterConnectionAction(), 0);
    if (waits == 3) {
        browser->rightItemClicked(0);
        bench.presenter.answerSheet(entry);
        bench.settle();
    } else {
        bench.choose(browser, u"letter"_s, entry);
    }
    const auto dialog = std::dynamic_pointer_cast<CVConnectViewController>(bench.presenter.modals().at(0));
    QVERIFY(dialog);
    QCOMPARE(dialog->modalTransitionStyle(), TransitionStyle::FlipHorizontal);
    QCOMPARE(dialog->modalPresentationStyle(), PresentationStyle::FormSheet);
    QCOMPARE(browser->afterConnectionAction(), waits);
    bench.connectDevice();
    dialog->didSelectBTDevice(
        std::make_shared<CVBTPeripheral>(bench.device.peripheral, QString(), u"Corvane"_s));
    bench.settle();
    dialog->linkStateChanged(CVDeviceStateDelegate::ConnectedAndIdentified);
    bench.settle();
    QCOMPARE(browser->afterConnectionAction(), stays);
    const bool isTransfer = bench.presenter.frontAs<CVTransferViewController>() != nullptr;
    const bool isList = bench.presenter.frontAs<MCVFilesViewController>() != nullptr;
    QCOMPARE(isTransfer, waits != 3);
    QCOMPARE(isList, waits == 3);
}

void tst_browseractions::connectingGivenUp()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "hello");
    const auto browser = bench.open();
    bench.choose(browser, u"letter"_s, u"4.8"_s);
    const auto dialog = std::dynamic_pointer_cast<CVConnectViewController>(bench.presenter.modals().at(0));
    QVERIFY(dialog);
    dialog->didSelectBTDevice(nullptr);
    bench.settle();
    QVERIFY(!bench.presenter.topModal());
    QCOMPARE(bench.presenter.front(), browser);
}

void tst_browseractions::fetchesUnderTheNextFreeTitle()
{
    BrowserBench bench;
    bench.connectDevice({u"letter"_s});
    bench.putDocument(u"Letter"_s, "mine");
    const auto browser = bench.open();
    browser->rightItemClicked(0);
    bench.presenter.answerSheet(u"4.2"_s);
    bench.settle();
    const auto list = bench.presenter.frontAs<MCVFilesViewController>();
    QVERIFY(list);
    list->rowClicked(0, 0);
    bench.settle();
    const auto transfer = bench.presenter.frontAs<CVTransferViewController>();
    QVERIFY(transfer);
    QCOMPARE(transfer->modalPresentationStyle(), PresentationStyle::FormSheet);
    QVERIFY(bench.presenter.answerSheet(1));
    finishDownload(bench, u"theirs"_s);
    QVERIFY(!bench.presenter.topModal());
    QCOMPARE(BrowserBench::shown(*browser, 1), (QStringList{u"letter 2"_s, u"Letter"_s}));
    QCOMPARE(bench.rig.bytes(bench.annsFolder() % u"/letter 2.tamber"), "theirs");
    QCOMPARE(bench.rig.bytes(bench.annsFolder() % u"/Letter.tamber"), "mine");
    QCOMPARE(bench.presenter.notices().size(), 1);
}

void tst_browseractions::fetchesNothing()
{
    BrowserBench bench;
    bench.connectDevice({u"letter"_s});
    const auto browser = bench.open();
    browser->rightItemClicked(0);
    bench.presenter.answerSheet(u"4.2"_s);
    bench.settle();
    const auto list = bench.presenter.frontAs<MCVFilesViewController>();
    QVERIFY(list);
    list->leftItemClicked(0);
    bench.settle();
    QVERIFY(!bench.presenter.topModal());
    QCOMPARE(browser->model().rowCount(), 0);
}

void tst_browseractions::movesADocument_data()
{
    columns<bool, bool>("isTablet", "toFolder");
    row("to a folder, phone", false, true);
    row("to a folder, tablet", true, true);
    row("to another user", true, false);
}

void tst_browseractions::movesADocument()
{
    QFETCH(bool, isTablet);
    QFETCH(bool, toFolder);
    BrowserBench bench;
    bench.presenter.setTablet(isTablet);
    bench.addUser(u"40000000-0000-0000-0000-000000000000"_s, "Bob\nMay\n\n");
    bench.putDocument(u"letter"_s, "hello");
    bench.putDocument(u"note"_s, "N");
    bench.putFolder(Maths, "Maths");
    const auto browser = bench.open();
    bench.choose(browser, u"letter"_s, u"4.9"_s);
    const auto users = bench.presenter.frontAs<MUsersViewController>();
    QVERIFY(users);
    users->rowClicked(0, toFolder ? 0 : 1);
    bench.settle();
    const auto places = bench.presenter.frontAs<TamberContainerViewController>();
    QVERIFY(places && places != browser);
    QCOMPARE(places->actionButtonTitle(), u"4.16"_s);
    if (toFolder)
        places->rowClicked(0, 0);
    else
        places->controlClicked(1, 0, places->cellForRow({1, 0}).controls.value(0).id, false);
    bench.settle();
    QVERIFY(!bench.presenter.topModal());
    QCOMPARE(BrowserBench::shown(*browser, 1), QStringList{u"note"_s});
    const QString target = toFolder ? QString(bench.annsFolder() % u'/' % Maths)
                                    : u"ActiveUsers/40000000-0000-0000-0000-000000000000"_s;
    QCOMPARE(bench.rig.bytes(target % u"/letter.tamber"), "hello");
}

// And a deletion after it takes the document that was meant.
void tst_browseractions::aTakenTitleIsNotMovedTo()
{
    BrowserBench bench;
    const QString bob = u"40000000-0000-0000-0000-000000000000"_s;
    bench.addUser(bob, "Bob\nMay\n\n");
    bench.rig.put(u"ActiveUsers/%1/letter.tamber"_s.arg(bob), "Bob's");
    bench.putDocument(u"letter"_s, "Ann's");
    const auto browser = bench.open();
    bench.choose(browser, u"letter"_s, u"4.9"_s);
    bench.presenter.frontAs<MUsersViewController>()->rowClicked(0, 1);
    bench.settle();
    bench.presenter.frontAs<TamberContainerViewController>()->controlClicked(1, 0, 0, false);
    bench.settle();
    QCOMPARE(bench.rig.told->problems.size(), 1);
    QCOMPARE(BrowserBench::shown(*browser, 1), QStringList{u"letter"_s});
    browser->deleteClicked(1, 0);
    bench.presenter.answerSheet(u"Yes"_s);
    bench.settle();
    QVERIFY(!bench.rig.has(bench.annsFolder() % u"/letter.tamber"));
    QCOMPARE(bench.rig.bytes(u"ActiveUsers/%1/letter.tamber"_s.arg(bob)), "Bob's");
    QCOMPARE(bench.storage->activeUsers()->users()[1]->files().size(), 1U);
}

void tst_browseractions::movesAFolder()
{
    BrowserBench bench;
    bench.addUser(u"40000000-0000-0000-0000-000000000000"_s, "Bob\nMay\n\n");
    bench.putFolder(Maths, "Maths");
    const auto browser = bench.open();
    browser->setEditing(true);
    browser->rowClicked(0, 0);
    bench.presenter.answerSheet(u"4.9"_s);
    bench.settle();
    const auto users = bench.presenter.frontAs<MUsersViewController>();
    QVERIFY(users);
    users->rowClicked(0, 1);
    bench.settle();
    QVERIFY(!bench.presenter.topModal());
    QCOMPARE(browser->model().rowCount(), 0);
    QVERIFY(bench.rig.has(u"ActiveUsers/40000000-0000-0000-0000-000000000000/"_s % Maths));
}

void tst_browseractions::movesNothing()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "hello");
    const auto browser = bench.open();
    bench.choose(browser, u"letter"_s, u"4.9"_s);
    const auto users = bench.presenter.frontAs<MUsersViewController>();
    QVERIFY(users);
    users->leftItemClicked(0);
    bench.settle();
    QVERIFY(!bench.presenter.topModal());
    QCOMPARE(BrowserBench::shown(*browser, 1), QStringList{u"letter"_s});
    QVERIFY(bench.presenter.notices().isEmpty());
}

void tst_browseractions::moveOfAGoneDocument()
{
    BrowserBench bench;
    bench.addUser(u"40000000-0000-0000-0000-000000000000"_s, "Bob\nMay\n\n");
    bench.putDocument(u"letter"_s, "hello");
    const auto browser = bench.open();
    bench.choose(browser, u"letter"_s, u"4.9"_s);
    bench.presenter.frontAs<MUsersViewController>()->rowClicked(0, 1);
    bench.settle();
    bench.ann->deleteFileAtIndex(0);
    bench.settle();
    const auto places = bench.presenter.frontAs<TamberContainerViewController>();
    places->controlClicked(1, 0, 0, false);
    bench.settle();
    QCOMPARE(bench.presenter.notices().size(), 1);
    QVERIFY(bench.rig.told->problems.isEmpty());
    QCOMPARE(browser->model().rowCount(), 0);
}

QTEST_GUILESS_MAIN(tst_browseractions)
#include "tst_browseractions.moc"
