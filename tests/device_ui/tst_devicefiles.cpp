// SPDX-License-Identifier: GPL-3.0-or-later
#include "ConnectedBench.h"
#include "FormatTexts.h"
#include "app/MGlobals.h"
#include "device_ui/MCVFilesViewController.h"
#include "store/TamberStorage.h"
#include "store/TamberUsers.h"

#include <QAbstractItemModelTester>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Files = MCVFilesViewController;
using Mode = Files::Mode;
using Transfer = CVTransferViewController;
using Picker = TamberPickUserOrFolderViewController;

namespace {

const QString annsFolder = u"ActiveUsers/10000000-0000-0000-0000-000000000000"_s;
const QString annsLetters = u"/20000000-0000-0000-0000-000000000000"_s;
const QString threeFiles = u"A.TXT B.TXT C.TXT"_s;

class Picked final : public CVFilesViewDelegate
{
public:
    void cvFilesViewDidSelectFile(Files &, const QString &file) override { files.append(file); }

    QStringList files;
};

// The list of a device with three files; and Ann, with a folder and a document that is called like the first of them.
struct FilesBench : ConnectedBench
{
    explicit FilesBench(bool isTablet = true)
        : ConnectedBench({{"A.TXT", "text of A"}, {"B.TXT", "text of B"}, {"C.TXT", "text of C"}}, isTablet)
        , tester(screen->modelPointer(), QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        rig.put(annsFolder % u"/user.txt", "Ann\nLee\n\n");
        rig.put(annsFolder % u"/A.TXT.tamber", "mine");
        rig.put(annsFolder % annsLetters % u"/folder.dat", "Letters\n");
        storage = TamberStorage::withURL(rig.context, rig.root());
        MGlobals::setTamberStorage(storage);
        screen->setDelegate(picked);
        settle();
    }
    ~FilesBench()
    {
        MGlobals::setCurrentActiveUser(nullptr);
        MGlobals::setTamberStorage(nullptr);
        storage->close();
    }

    void open(Mode mode = Mode::Browse)
    {
        screen->setMode(mode);
        presenter.showRoot(NavigationController::withRoot(presenter, screen));
        settle();
    }
    void settle()
    {
        advance(10ms);
        rig.settle();
    }
    QString shown() const
    {
        QStringList texts;
        for (int row = 0; row < screen->modelPointer()->rowCount(); ++row)
            texts.append(screen->modelPointer()->index(row, 0).data().toString());
        return texts.join(u' ');
    }
    // Opens the menu of a row, and answers it.
    bool choose(int row, const QString &button)
    {
        screen->rowClicked(0, row);
        return presenter.answerSheet(button);
    }
    // Answers the transfer in front, and waits for its end.
    std::shared_ptr<Transfer> fetch(bool isLost)
    {
        auto transfer = presenter.frontAs<Transfer>();
        if (presenter.answerSheet(Transfer::AsItIsButton) && isLost)
            dropLink();
        advance(5s);
        settle();
        return transfer && transfer->isOkVisible() ? transfer : nullptr;
    }

    std::shared_ptr<TamberStorage> storage;
    std::shared_ptr<Picked> picked = std::make_shared<Picked>();
    std::shared_ptr<Files> screen = std::make_shared<Files>(context);
    QAbstractItemModelTester tester;
};

using Act = std::function<void(FilesBench &)>;

} // namespace

// The files on a device: listed, viewed, deleted, picked and fetched into the store.
class tst_DeviceFiles : public QObject
{
    Q_OBJECT

private slots:
    void shows()
    {
        for (const auto mode : {Mode::Browse, Mode::PickFile}) {
            FilesBench bench;
            bench.open(mode);
            const bool isPick = mode == Mode::PickFile;
            QVERIFY(bench.screen->title() == u"Files" &&
                    bench.screen->leftItems().size() == (isPick ? 1 : 0));
            QCOMPARE(bench.shown(), threeFiles);
            bench.device.setFiles({CVFileData(u"EMPTY"_s, 0), CVFileData(u"BELL\a"_s, 120)});
            const TableCell empty = bench.screen->cellForRow({0, 0});
            QCOMPARE(empty.style, TableCell::Style::Subtitle);
            QCOMPARE((QStringList{empty.text, empty.detail, empty.image}),
                     (QStringList{u"EMPTY"_s, u"0 B"_s, u"doc.png"_s}));
            QCOMPARE(bench.screen->cellForRow({0, 1}).text, u"BELL\\x07"_s);
            // A press on what is shown and is not there any more does nothing but read again.
            bench.screen->rowClicked(0, 1);
            QVERIFY(!bench.presenter.sheet());
            bench.screen->rowClicked(0, 1);
            QVERIFY(isPick || bench.presenter.answerSheet(u"Delete"_s));
            // The device could not be asked for it by that name.
            QCOMPARE(bench.presenter.notices().size(), 1);
            bench.screen->rowClicked(0, 0);
            bench.screen->leftItemClicked(0);
            QCOMPARE(bench.presenter.sheetCount(), isPick ? size_t{0} : size_t{1});
            QCOMPARE(bench.picked->files, isPick ? (QStringList{u"EMPTY"_s, QString()}) : QStringList());
            QVERIFY(!isPick || bench.picked->files.constLast().isNull());
        }
    }

    // Begun by another screen, by this one, refused, and ended by the link.
    void refreshes()
    {
        FilesBench bench;
        bench.device.setFiles({CVFileData(u"OLD"_s, 1)});
        bench.device.refreshFilesWithCompletionHandler({});
        bench.open();
        QCOMPARE(bench.screen->cellForRow({0, 0}).style, TableCell::Style::Wait);
        bench.advance(10s);
        QCOMPARE(bench.shown(), threeFiles);
        const QPersistentModelIndex second(bench.screen->modelPointer()->index(1, 0));
        bench.screen->linkConnected();
        QCOMPARE(second.row(), 1);
        bench.screen->rightItemClicked(0);
        bench.screen->rightItemClicked(0);
        QCOMPARE(bench.shown(), u"Please wait…"_s);
        bench.screen->rowClicked(0, 0);
        QVERIFY(!bench.presenter.sheet());
        bench.advance(10s);
        QCOMPARE(bench.shown(), threeFiles);
        QCOMPARE(bench.received().count("DIR"), 3);
        QVERIFY(bench.presenter.announcements().constLast().startsWith(u"Files on the Corvane"));
        bench.device.getFile(u"A.TXT"_s, PlainTransfer);
        bench.screen->rightItemClicked(0);
        bench.advance(30s);
        bench.screen->rightItemClicked(0);
        bench.dropLink();
        QCOMPARE(bench.shown(), threeFiles);
        bench.screen->rightItemClicked(0);
        QVERIFY(!bench.screen->isRefreshing() && bench.presenter.notices().size() == 1);
    }

    void refreshEnds_data()
    {
        columns<Act, QString, QString>("act", "files", "emptyText");
        const QString none;
        const auto noDevice = u"The Corvane is not connected."_s;
        const auto noFiles = u"There are no files on the Corvane. Write one on it, then choose Refresh."_s;
        const Fault silence = fault(Fault::Kind::NoAnswer, "DIR");
        row("disconnected", Act([](auto &bench) { bench.device.disconnectAsCVComm(); }), none, noDevice);
        row("other question", Act([](auto &bench) { bench.device.sendWaitCommand(4); }), threeFiles, none);
        row("no answer", Act([=](auto &bench) { bench.simulated().faults().add(silence); }), none, noFiles);
    }
    void refreshEnds()
    {
        QFETCH(Act, act);
        FilesBench bench;
        bench.open();
        bench.screen->rightItemClicked(0);
        act(bench);
        bench.advance(10s);
        QVERIFY(!bench.screen->isRefreshing());
        QTEST(bench.shown(), "files");
        QTEST(bench.screen->emptyText(), "emptyText");
    }

    // What is asked and told, in order; an answer that comes twice counts once.
    void deletes()
    {
        const FormatTexts texts({u"5.4"_s});
        FilesBench bench;
        bench.open();
        QVERIFY(bench.choose(1, u"Cancel"_s));
        bench.screen->rowClicked(0, 1);
        const ActionSheet menu = *bench.presenter.sheet();
        QCOMPARE(menu.buttons, (QStringList{u"Delete"_s, u"5.3"_s, u"Cancel"_s}));
        QVERIFY(menu.tag == 1 && menu.destructiveButtonIndex == 0 && menu.cancelButtonIndex == 2);
        QVERIFY(menu.anchor.kind == Anchor::Kind::Row && menu.anchor.row == 1);
        QVERIFY(bench.presenter.answerSheet(0));
        const ActionSheet question = *bench.presenter.sheet();
        QCOMPARE(question.title, u"5.4 B.TXT"_s);
        QCOMPARE(question.buttons, (QStringList{u"Delete"_s, u"Cancel"_s}));
        QVERIFY(question.tag == 2 && question.destructiveButtonIndex == 0 && question.cancelButtonIndex == 1);
        QVERIFY(question.anchor.kind == Anchor::Kind::Row && question.anchor.row == 1);
        QVERIFY(bench.presenter.cancelSheet());
        QCOMPARE(bench.shown(), threeFiles);
        bench.rig.log.lines.clear();
        QVERIFY(bench.choose(1, u"Delete"_s) && bench.presenter.answerSheet(u"Delete"_s));
        question.didDismiss(question, 0);
        bench.advance(1s);
        QCOMPARE(bench.rig.log.lines.mid(0, 2), QStringList(2, u"[info] {length = 2, path = 0 - 1}"_s));
        QVERIFY(bench.rig.log.lines.value(2).contains(u"sendCommand:"));
        QCOMPARE(bench.shown(), u"A.TXT C.TXT"_s);
        QCOMPARE(bench.screen->rowAnimation(), RowAnimation::Fade);
        QVERIFY(!bench.simulated().firmware().storage().find("B.TXT"));
        // Not in the middle of a fetch that somebody has left.
        bench.device.getFile(u"A.TXT"_s, PlainTransfer);
        QVERIFY(bench.choose(1, u"Delete"_s) && !bench.presenter.sheet());
        QVERIFY(bench.presenter.notices().constLast().contains(u"busy"));
    }

    void deletesByName_data()
    {
        columns<QString, QString, QString>("meanwhile", "left", "notice");
        row("another order", u"NEW C.TXT B.TXT"_s, u"NEW C.TXT"_s, QString());
        row("twins", u"B.TXT A B.TXT"_s, u"B.TXT A B.TXT"_s,
            u"There is more than one B.TXT on the Corvane. Delete all but one there."_s);
        row("gone", u"NEW"_s, u"NEW"_s, u"B.TXT is not on the Corvane any more."_s);
        row("link lost", QString(), threeFiles, u"The Corvane is not connected."_s);
    }
    // The list may be another when the person has answered.
    void deletesByName()
    {
        QFETCH(QString, meanwhile);
        QFETCH(QString, notice);
        FilesBench bench;
        bench.open();
        QVERIFY(bench.choose(1, u"Delete"_s));
        QList<CVFileData> files;
        for (const QString &name : meanwhile.split(u' '))
            files.append(CVFileData(name, 1));
        if (meanwhile.isEmpty())
            bench.dropLink();
        else
            bench.device.setFiles(files);
        bench.screen->linkConnected();
        QVERIFY(bench.presenter.answerSheet(u"Delete"_s));
        bench.advance(1s);
        QTEST(bench.shown(), "left");
        QCOMPARE(bench.received().count("DEL B.TXT"), notice.isEmpty() ? 1 : 0);
        QCOMPARE(bench.presenter.notices().join(u'|'), notice);
    }

    // A fetch that failed does not start again when the editor appears again.
    void views()
    {
        for (const auto &[isTablet, isLost] : {std::pair(true, false), {false, false}, {false, true}}) {
            FilesBench bench(isTablet);
            bench.open();
            QVERIFY(bench.choose(2, u"5.3"_s));
            bench.settle();
            QCOMPARE(bench.presenter.modals()[0]->modalPresentationStyle(), PresentationStyle::FormSheet);
            const auto transfer = bench.fetch(isLost);
            QVERIFY(transfer);
            transfer->okClicked();
            bench.settle();
            QVERIFY(!bench.presenter.sheet());
            const auto editor = bench.presenter.frontAs<MTextEditViewController>();
            QVERIFY(editor && editor->showSaveButton() && editor->cvFileName() == u"C.TXT");
            QCOMPARE(editor->text(), isLost ? QString() : u"text of C"_s);
            bench.screen->editViewCancelled();
            bench.settle();
            QCOMPARE(bench.presenter.front(), bench.screen);
        }
    }

    void downloads_data()
    {
        columns<QString, QString>("to", "path");
        row("the current user", u"current"_s, u"/A.TXT 2.tamber"_s);
        row("a user", u"user"_s, u"/A.TXT 2.tamber"_s);
        row("a folder", u"folder"_s, QString(annsLetters % u"/A.TXT.tamber"));
        row("nobody", u"nobody"_s, QString());
        // The place is forgotten with the transfer.
        row("link lost", u"lost"_s, QString());
    }
    void downloads()
    {
        QFETCH(QString, to);
        QFETCH(QString, path);
        FilesBench bench;
        bench.open();
        const auto ann = bench.storage->activeUsers()->users().front();
        MGlobals::setCurrentActiveUser(to == u"current" || to == u"lost" ? ann : nullptr);
        bench.screen->downloadFile(u"A.TXT"_s, 1);
        bench.settle();
        if (const auto picker = bench.presentedBy<Picker>(bench.screen)) {
            QVERIFY(picker->mode() == Picker::Mode::PickUserThenFolder &&
                    picker->actionButtonTitle() == u"5.1");
            for (int clicks = to == u"folder" ? 2 : 1; clicks > 0; --clicks) {
                bench.presenter.frontAs<TableViewController>()->rowClicked(0, 0);
                bench.settle();
            }
            if (to != u"folder")
                bench.screen->tamberPickUserOrFolderViewControllerUserPicked(*picker,
                                                                             to == u"user" ? ann : nullptr);
            bench.settle();
        }
        const auto transfer = bench.fetch(to == u"lost");
        QCOMPARE(transfer != nullptr, to != u"nobody");
        if (transfer) {
            QCOMPARE(transfer->modalTransitionStyle(), TransitionStyle::CrossDissolve);
            transfer->okClicked();
            bench.screen->cvTransferControllerTransferFinished(*transfer);
            bench.settle();
        }
        QCOMPARE(bench.presenter.front(), bench.screen);
        QCOMPARE(bench.presenter.notices().size(), path.isNull() ? 0 : 1);
        QVERIFY(path.isNull() || bench.rig.bytes(annsFolder + path) == "text of A");
        QCOMPARE(bench.rig.bytes(annsFolder % u"/A.TXT.tamber"), "mine");
        QCOMPARE(bench.rig.has(annsFolder % u"/A.TXT 2.tamber"), path.contains(u" 2"));
    }
};

QTEST_GUILESS_MAIN(tst_DeviceFiles)
#include "tst_devicefiles.moc"
