// SPDX-License-Identifier: GPL-3.0-or-later
// The text editor: where its text comes from, when it counts as saved, when it closes, and what it mails.
#include "UsersBench.h"
#include "app/MTextEditViewController.h"
#include "device_ui/CVTransferViewController.h"
#include "store/CVFile.h"
#include "support/FaultyFileOperations.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;
using Editor = MTextEditViewController;
using Kind = BarButtonItem::Kind;

namespace {

class CancelCounter final : public MTextEditViewDelegate
{
public:
    void editViewCancelled() override { ++cancelled; }

    int cancelled = 0;
};

// An editor over the list of users, of whom there is Ann with the folder Letters; what it shows a test says.
class EditorBench : public UsersBench
{
public:
    explicit EditorBench(FileOperations &operations = FileOperations::system())
        : UsersBench(StoreRig::Place::Local, operations)
    {
        directory = putUser(u"Ann/Lee/"_s);
        rig.put(directory + u"/20000000-0000-0000-0000-000000000000/folder.dat"_s, "Letters\n");
        show();
    }
    ~EditorBench()
    {
        editor->setDelegate(nullptr);
        screen->dismissViewController(false);
        settle();
    }
    void present()
    {
        editor->setDelegate(counter);
        const auto host = NavigationController::withRoot(presenter, editor);
        host->setModalPresentationStyle(PresentationStyle::FormSheet);
        screen->presentViewController(host, true);
        settle();
    }
    // As start-up does it with a file that another program handed over.
    void presentImport(const QString &title, const QString &text)
    {
        editor->setTitle(title);
        editor->setShowSaveButton(true);
        present();
        editor->setText(text);
    }
    void hit(Kind kind)
    {
        UsersBench::click(*editor, kind);
        settle();
    }
    // In the picker that is up: Ann, and there the row or, without one, herself.
    void pick(int folder)
    {
        presenter.frontAs<MUsersViewController>()->rowClicked(0, 0);
        settle();
        const auto browser = presenter.frontAs<TamberContainerViewController>();
        if (folder >= 0)
            browser->rowClicked(0, folder);
        else
            browser->controlClicked(1, 0, browser->cellForRow({1, 0}).controls.value(0).id, false);
    }
    void cancelPicker()
    {
        UsersBench::click(*presenter.front(), Kind::Cancel);
        settle();
    }
    bool isInFront() const { return presenter.front() == editor; }

    QString directory;
    std::shared_ptr<CancelCounter> counter = std::make_shared<CancelCounter>();
    std::shared_ptr<Editor> editor = std::make_shared<Editor>(context);
};

} // namespace

class tst_editor : public QObject
{
    Q_OBJECT

private slots:
    void opensAFile_data();
    void opensAFile();
    void fetchesOnce();
    void failedFetchStaysFailed();
    void cancelledFetchClosesTheEditor_data();
    void cancelledFetchClosesTheEditor();
    void asksBeforeClosing_data();
    void asksBeforeClosing();
    void savesTo_data();
    void savesTo();
    void takesTheNextFreeName();
    void cancelledPickerKeepsTheWish();
    void failedSaveIsNoSave();
    void closingWaitsForTheSave_data();
    void closingWaitsForTheSave();
    void mails_data();
    void mails();
    void mailsNowhere_data();
    void mailsNowhere();
};

void tst_editor::opensAFile_data()
{
    columns<QByteArray, bool, QString, int>("bytes", "exists", "text", "notices");
    row("text", QByteArray("Gr\xC3\xBC\xC3\x9F"), true, u"Grüß"_s, 0);
    row("empty", QByteArray(), true, QString(), 0);
    row("no text", QByteArray("\xFF\xFE\xFF"), true, QString(), 1);
    row("vanished", QByteArray(), false, QString(), 0);
}

void tst_editor::opensAFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, exists);
    EditorBench bench;
    if (exists)
        bench.rig.put(u"Letter.txt"_s, bytes);
    const auto file = std::make_shared<CVFile>(bench.rig.context, bench.rig.file(u"Letter.txt"_s));
    bench.editor->setFile(file);
    bench.present();
    QCOMPARE(bench.editor->title(), u"Letter.txt"_s);
    QTEST(bench.editor->text(), "text");
    QVERIFY(!bench.editor->isBusy());
    QTEST(int(bench.presenter.notices().size()), "notices");
    QCOMPARE(file->documentState(), int(Document::Closed));
    QVERIFY(!UsersBench::click(*bench.editor, Kind::Save));
    bench.hit(Kind::Done);
    QCOMPARE(bench.counter->cancelled, 1);
}

void tst_editor::fetchesOnce()
{
    EditorBench bench;
    bench.device.identify();
    bench.editor->setCvFileName(u"LETTER"_s);
    bench.present();
    QCOMPARE(bench.editor->title(), u"LETTER"_s);
    auto transfer = bench.presenter.frontAs<CVTransferViewController>();
    QVERIFY(transfer);
    QCOMPARE(transfer->downloadedFileName(), u"LETTER"_s);
    bench.presenter.answerSheet(CVTransferViewController::AsItIsButton);
    transfer->cvFileDownloaded(u"Dear Ann"_s);
    bench.settle();
    QCOMPARE(bench.editor->text(), u"Dear Ann"_s);
    QVERIFY(bench.isInFront());
    const std::weak_ptr<CVTransferViewController> gone = std::exchange(transfer, nullptr);
    QVERIFY(gone.expired());
}

void tst_editor::failedFetchStaysFailed()
{
    EditorBench bench;
    bench.editor->setCvFileName(u"LETTER"_s);
    bench.present();
    const auto transfer = bench.presenter.frontAs<CVTransferViewController>();
    QVERIFY(transfer);
    QVERIFY(transfer->isOkVisible());
    transfer->okClicked();
    bench.settle();
    QVERIFY(bench.isInFront());
    QVERIFY(bench.editor->text().isEmpty());
    // There is nothing to save and nothing to ask about; the fetch is offered again.
    bench.editor->setShowSaveButton(true);
    QVERIFY(!UsersBench::click(*bench.editor, Kind::Save) && UsersBench::click(*bench.editor, Kind::Refresh));
    bench.settle();
    bench.presenter.frontAs<CVTransferViewController>()->okClicked();
    bench.settle();
    bench.hit(Kind::Done);
    QVERIFY(!bench.presenter.alert());
    QCOMPARE(bench.counter->cancelled, 1);
}

void tst_editor::cancelledFetchClosesTheEditor_data()
{
    columns<bool>("isRunning");
    row("at the question", false);
    row("on its way", true);
}

void tst_editor::cancelledFetchClosesTheEditor()
{
    QFETCH(bool, isRunning);
    EditorBench bench;
    bench.device.identify();
    bench.editor->setCvFileName(u"LETTER"_s);
    bench.present();
    bench.presenter.answerSheet(isRunning ? CVTransferViewController::AsItIsButton
                                          : CVTransferViewController::CancelButton);
    bench.settle();
    if (isRunning)
        bench.presenter.frontAs<CVTransferViewController>()->cancelClicked();
    bench.settle();
    QCOMPARE(bench.counter->cancelled, 1);
    QCOMPARE(bench.presenter.notices().size(), isRunning ? 1 : 0);
}

void tst_editor::asksBeforeClosing_data()
{
    columns<int, int, bool>("button", "cancelled", "asksForPlace");
    row("cancel", 0, 0, false);
    row("save", 1, 0, true);
    row("close", 2, 1, false);
}

void tst_editor::asksBeforeClosing()
{
    QFETCH(int, button);
    QFETCH(bool, asksForPlace);
    EditorBench bench;
    bench.presentImport(u"Letter"_s, u"Dear Ann"_s);
    bench.hit(Kind::Done);
    const AlertView *const alert = bench.presenter.alert();
    QVERIFY(alert);
    QCOMPARE(alert->title, u"Letter"_s);
    QCOMPARE(alert->message, u"6.1"_s);
    QCOMPARE(alert->buttons, (QStringList{u"Cancel"_s, u"6.2"_s, u"6.3"_s}));
    QCOMPARE(alert->cancelButtonIndex, 0);
    bench.presenter.answerAlert(button);
    bench.settle();
    QTEST(bench.counter->cancelled, "cancelled");
    QCOMPARE(bench.isInFront(), !asksForPlace);
    if (!asksForPlace)
        return;
    bench.pick(-1);
    bench.settle();
    QCOMPARE(bench.counter->cancelled, 1);
}

void tst_editor::savesTo_data()
{
    columns<int, QString>("folder", "path");
    row("user", -1, u"/Letter.tamber"_s);
    row("folder", 0, u"/20000000-0000-0000-0000-000000000000/Letter.tamber"_s);
}

void tst_editor::savesTo()
{
    QFETCH(int, folder);
    QFETCH(QString, path);
    EditorBench bench;
    bench.presentImport(u"Letter"_s, u"Dear Ann"_s);
    bench.hit(Kind::Save);
    bench.pick(folder);
    bench.settle();
    QCOMPARE(bench.rig.bytes(bench.directory + path), QByteArray("Dear Ann"));
    QVERIFY(bench.editor->isSaved());
    QVERIFY(bench.isInFront());
    QCOMPARE(bench.counter->cancelled, 0);
    bench.hit(Kind::Done);
    QVERIFY(!bench.presenter.alert());
    QCOMPARE(bench.counter->cancelled, 1);
}

void tst_editor::takesTheNextFreeName()
{
    EditorBench bench;
    bench.presentImport(u"Letter"_s, u"new"_s);
    bench.user(u"Ann"_s)->addFileWithName(u"letter"_s, u"old"_s);
    // Not listed yet, as in the cloud.
    bench.rig.put(bench.directory + u"/Letter 2.tamber"_s, "older");
    bench.settle();
    bench.hit(Kind::Save);
    bench.pick(-1);
    bench.settle();
    QCOMPARE(bench.rig.bytes(bench.directory + u"/letter.tamber"_s), QByteArray("old"));
    QCOMPARE(bench.rig.bytes(bench.directory + u"/Letter 2.tamber"_s), QByteArray("older"));
    QCOMPARE(bench.rig.bytes(bench.directory + u"/Letter 3.tamber"_s), QByteArray("new"));
    QCOMPARE(bench.presenter.notices(), QStringList{u"Saved as Letter 3."_s});
}

void tst_editor::cancelledPickerKeepsTheWish()
{
    EditorBench bench;
    bench.presentImport(u"Letter"_s, u"Dear Ann"_s);
    bench.hit(Kind::Done);
    bench.presenter.answerAlert(Editor::SaveAndCloseButton);
    bench.settle();
    bench.cancelPicker();
    QVERIFY(bench.isInFront());
    QVERIFY(!bench.editor->isSaved());
    QCOMPARE(bench.counter->cancelled, 0);
    bench.hit(Kind::Save);
    bench.pick(-1);
    bench.settle();
    QCOMPARE(bench.counter->cancelled, 1);
}

void tst_editor::failedSaveIsNoSave()
{
    FaultyFileOperations operations;
    EditorBench bench(operations);
    bench.presentImport(u"Letter"_s, u"Dear Ann"_s);
    bench.hit(Kind::Done);
    bench.presenter.answerAlert(Editor::SaveAndCloseButton);
    bench.settle();
    operations.failEvery(FaultyFileOperations::Call::Write, std::errc::no_space_on_device);
    bench.pick(-1);
    bench.settle();
    QVERIFY(!bench.editor->isSaved());
    QVERIFY(bench.isInFront());
    QCOMPARE(bench.counter->cancelled, 0);
    QCOMPARE(bench.presenter.notices().size(), 1);
    QVERIFY(UsersBench::isEnabled(*bench.editor, Kind::Save));
    operations.clear();
    bench.hit(Kind::Save);
    bench.pick(0);
    bench.settle();
    QVERIFY(bench.editor->isSaved());
    QCOMPARE(bench.counter->cancelled, 1);
}

void tst_editor::closingWaitsForTheSave_data()
{
    columns<bool, int>("fails", "cancelled");
    row("saved", false, 1);
    row("failed", true, 0);
}

void tst_editor::closingWaitsForTheSave()
{
    QFETCH(bool, fails);
    FaultyFileOperations operations;
    EditorBench bench(operations);
    bench.presentImport(u"Letter"_s, u"Dear Ann"_s);
    bench.hit(Kind::Save);
    if (fails)
        operations.failEvery(FaultyFileOperations::Call::Write, std::errc::no_space_on_device);
    bench.pick(-1);
    // The picker goes, and the write waits for the background.
    bench.rig.loop.advance({});
    QVERIFY(bench.isInFront());
    QVERIFY(bench.rig.tasks.waiting() > 0);
    QVERIFY(!UsersBench::isEnabled(*bench.editor, Kind::Save));
    UsersBench::click(*bench.editor, Kind::Done);
    QVERIFY(!bench.presenter.alert());
    QCOMPARE(bench.counter->cancelled, 0);
    bench.settle();
    QTEST(bench.counter->cancelled, "cancelled");
    QVERIFY(UsersBench::isEnabled(*bench.editor, Kind::Save));
}

void tst_editor::mails_data()
{
    columns<bool, QString, int, QString, bool, QByteArray, int>("isDeviceFile", "text", "button", "body",
                                                                "hasAttachment", "bytes", "notices");
    const QString plain = u"Grüße – 5 €"_s;
    const QByteArray plainBytes("Gr\xFC\xDF"
                                "e \x96 5 \x80");
    const QString greek = u"a λ"_s;
    row("file, body", false, greek, 0, greek, false, QByteArray(), 0);
    row("file, attachment", false, plain, 1, QString(), true, plainBytes, 0);
    row("file, lossy attachment", false, greek, 1, QString(), true, QByteArray("a ?"), 1);
    row("device, body", true, greek, 0, greek, false, QByteArray(), 0);
    row("device, attachment", true, plain, 1, QString(), true, plainBytes, 0);
    row("device, nothing is lost silently", true, greek, 1, QString(), true, QByteArray(), 1);
}

void tst_editor::mails()
{
    QFETCH(bool, isDeviceFile);
    QFETCH(QString, text);
    QFETCH(int, button);
    EditorBench bench;
    if (isDeviceFile) {
        bench.device.identify();
        bench.editor->setCvFileName(u"LETTER"_s);
        bench.present();
        const auto transfer = bench.presenter.frontAs<CVTransferViewController>();
        bench.presenter.answerSheet(CVTransferViewController::AsItIsButton);
        transfer->cvFileDownloaded(text);
        bench.settle();
    } else {
        bench.rig.put(u"Letter.txt"_s, text.toUtf8());
        bench.editor->setFile(std::make_shared<CVFile>(bench.rig.context, bench.rig.file(u"Letter.txt"_s)));
        bench.present();
    }
    bench.presenter.clearTexts();
    bench.hit(Kind::Action);
    const ActionSheet *const sheet = bench.presenter.sheet();
    QVERIFY(sheet);
    QVERIFY(sheet->title.isEmpty());
    QCOMPARE(sheet->buttons, (QStringList{u"6.4"_s, u"6.5"_s, u"Cancel"_s}));
    QCOMPARE(sheet->anchor.kind, Anchor::Kind::RightBarButton);
    bench.presenter.answerSheet(button);
    const QString name = isDeviceFile ? u"LETTER"_s : u"Letter.txt"_s;
    QCOMPARE(bench.mail.messages.size(), 1);
    const MailMessage &message = bench.mail.messages.first();
    QCOMPARE(message.subject, QString(u"0.1 "_s + name));
    QTEST(message.body, "body");
    QTEST(message.attachment.has_value(), "hasAttachment");
    QTEST(int(bench.presenter.notices().size()), "notices");
    if (!message.attachment)
        return;
    QTEST(message.attachment->bytes, "bytes");
    QCOMPARE(message.attachment->fileName, name);
    QCOMPARE(message.attachment->mimeType, u"text/plain"_s);
}

void tst_editor::mailsNowhere_data()
{
    columns<bool, int>("hasProgram", "messages");
    row("no program", false, 0);
    row("a program that takes nothing", true, 1);
}

void tst_editor::mailsNowhere()
{
    QFETCH(bool, hasProgram);
    EditorBench bench;
    bench.mail.hasProgram = hasProgram;
    bench.mail.takesMessages = false;
    bench.rig.put(u"Letter.txt"_s, "Dear Ann");
    bench.editor->setFile(std::make_shared<CVFile>(bench.rig.context, bench.rig.file(u"Letter.txt"_s)));
    bench.present();
    bench.hit(Kind::Action);
    bench.presenter.answerSheet(Editor::MailTextButton);
    QTEST(int(bench.mail.messages.size()), "messages");
    QCOMPARE(bench.presenter.notices().size(), 1);
    QVERIFY(bench.isInFront());
}

QTEST_GUILESS_MAIN(tst_editor)
#include "tst_editor.moc"
