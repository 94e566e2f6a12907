// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppBench.h"
#include "app/KeysViewController.h"
#include "app/MEditUserDialog.h"
#include "app/StoreNotices.h"
#include "app/TextImport.h"
#include "base/ErrorText.h"
#include "support/FaultyFileOperations.h"
#include "support/Rows.h"
#include "ui/TableModel.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;

class tst_appdelegate : public QObject
{
    Q_OBJECT

private slots:
    void aFirstLaunchIsLocalAndEmptiesTheInbox()
    {
        AppBench bench;
        bench.defaults.values.clear();
        bench.put(u"Inbox/Old.txt"_s, "old");
        bench.launchWhole();
        QCOMPARE(bench.defaults.values.value(u"iCloudOn"_s), QVariant(false));
        QCOMPARE(bench.defaults.values.value(u"prev_iCloudOn"_s), QVariant(false));
        QVERIFY(gCVDevice && gTamberStorage);
        QCOMPARE(MGlobals::tamberStorage(), gTamberStorage);
        QCOMPARE(gTamberStorage->storeURL(), bench.local);
        QVERIFY(!bench.hasLocal(u"Inbox/Old.txt"_s));
        QVERIFY(!bench.rig.log.lines.filter(u"iCloudOn == (null)"_s).isEmpty());
    }

    void threeTabsInTheirOrder()
    {
        AppBench bench;
        bench.launchWhole();
        const auto tabs = MGlobals::tabBarController();
        QCOMPARE(bench.presenter->root(), tabs);
        QCOMPARE(tabs->count(), 3);
        QCOMPARE(bench.users(0)->tamberUsers(), gTamberStorage->activeUsers());
        QCOMPARE(bench.users(1)->tamberUsers(), gTamberStorage->archivedUsers());
        QCOMPARE(tabs->tabTitle(2), u"Corvane Brailler"_s);
        QCOMPARE(tabs->tabImage(0), u"user.png"_s);
        QCOMPARE(tabs->tabImage(1), u"archive.png"_s);
        tabs->selectTab(2);
        QCOMPARE(bench.presenter->front()->title(), u"Corvane"_s);
        QCOMPARE(bench.defaults.value(u"selectedTab"_s).toInt(), 2);
    }

    void theLastTabIsShownAgain_data()
    {
        columns<QVariant, int>("kept", "shown");
        row("never kept", QVariant(), 0);
        row("kept", QVariant(1), 1);
        row("as the file has it", QVariant(u"2"_s), 2);
        row("a tab that is gone", QVariant(7), 0);
    }
    void theLastTabIsShownAgain()
    {
        QFETCH(QVariant, kept);
        AppBench bench;
        bench.defaults.setValue(u"selectedTab"_s, kept);
        bench.launchWhole();
        QTEST(MGlobals::tabBarController()->selectedIndex(), "shown");
    }

    void aTextInAnyEncodingOpensInAnEditor_data()
    {
        columns<QString, QByteArray, QString>("language", "bytes", "text");
        row("UTF-8", u"pl-PL"_s, "Łódź"_ba, u"Łódź"_s);
        row("Polish", u"pl-PL"_s, QByteArray("\xA3\xF3\x64\x9F"), u"Łódź"_s);
        row("Polish read as Western", u"en-GB"_s, QByteArray("\xA3\xF3\x64\x9F"), u"£ódŸ"_s);
        row("empty", u"en-GB"_s, QByteArray(), u""_s);
    }
    void aTextInAnyEncodingOpensInAnEditor()
    {
        QFETCH(QString, language);
        QFETCH(QByteArray, bytes);
        AppBench bench;
        bench.languages = {language};
        bench.launchWhole();
        bench.put(u"Inbox/My letter.v2.txt"_s, bytes);
        bench.delegate->applicationOpenURL(bench.inInbox(u"My letter.v2.txt"_s), {});
        // Until the text is in the editor, the copy is the only one.
        QVERIFY(bench.hasLocal(u"Inbox/My letter.v2.txt"_s));
        bench.rig.settle();
        QVERIFY(bench.editor());
        QTEST(bench.editor()->text(), "text");
        QCOMPARE(bench.editor()->title(), u"My letter.v2"_s);
        QVERIFY(bench.editor()->showSaveButton());
        QVERIFY(!bench.hasLocal(u"Inbox/My letter.v2.txt"_s));
    }

    void whatCannotBeImportedIsToldAndItsCopyRemoved_data()
    {
        columns<QByteArray>("bytes");
        row("undecodable", QByteArray("\x81\x8D"));
        row("binary", QByteArray("\0\1\2", 3));
        row("too large", QByteArray(LargestImport + 1, 'x'));
    }
    void whatCannotBeImportedIsToldAndItsCopyRemoved()
    {
        QFETCH(QByteArray, bytes);
        AppBench bench;
        bench.launchWhole();
        bench.put(u"Inbox/Odd.txt"_s, bytes);
        bench.delegate->importFile(bench.inInbox(u"Odd.txt"_s));
        bench.rig.settle();
        QVERIFY(!bench.editor());
        QCOMPARE(bench.presenter->notices().size(), 1);
        QCOMPARE(bench.presenter->alertCount(), 0U);
        QVERIFY(!bench.hasLocal(u"Inbox/Odd.txt"_s));
    }

    void allThatCannotBeImportedIsToldAtOnce_data()
    {
        columns<int, int, QString>("missing", "binary", "last");
        row("of both kinds", 1, 1, u"b0.txt does not hold text that can be read."_s);
        row("more than are told", 3, 4, u"5 more could not be opened."_s);
    }
    void allThatCannotBeImportedIsToldAtOnce()
    {
        QFETCH(int, missing);
        QFETCH(int, binary);
        QFETCH(QString, last);
        AppBench bench;
        bench.launchWhole();
        QStringList paths;
        for (int i = 0; i < missing; ++i)
            paths.append(bench.rig.path(u'm' % QString::number(i)));
        for (int i = 0; i < binary; ++i) {
            const QString name = u'b' % QString::number(i) % u".txt"_s;
            bench.rig.put(name, QByteArray("\0", 1));
            paths.append(bench.rig.path(name));
        }
        bench.delegate->handOver(paths, {u"https://example.org/a"_s});
        bench.rig.settle();
        QCOMPARE(bench.presenter->notices().size(), 1);
        QVERIFY(bench.presenter->notices().first().startsWith(u"https://example.org/a is not on this"));
        QVERIFY2(bench.presenter->notices().first().endsWith(last),
                 qPrintable(bench.presenter->notices().first()));
        QVERIFY(bench.rig.has(u"b0.txt"_s));
    }

    void aStoreWhoseFolderHasGoneIsNotWrittenTo()
    {
        AppBench bench;
        bench.putLocalUser();
        bench.launchWhole();
        QCOMPARE(bench.shownUsers(), 1U);
        QVERIFY(QDir(bench.local.path()).removeRecursively());
        bench.delegate->applicationDidBecomeActive();
        QCOMPARE(bench.shownUsers(), 0U);
    }

    void aFileThatHasVanishedIsTold()
    {
        AppBench bench;
        bench.launchWhole();
        bench.delegate->importFile(bench.inInbox(u"Gone.txt"_s));
        bench.rig.settle();
        QCOMPARE(bench.presenter->notices().size(), 1);
    }

    void severalFilesOpenOneAfterTheOther()
    {
        AppBench bench;
        bench.launchWhole();
        for (const QString &name : {u"1.txt"_s, u"2.txt"_s})
            bench.rig.put(name, name.toUtf8());
        bench.delegate->handOver({bench.rig.path(u"1.txt"_s), bench.rig.path(u"2.txt"_s)});
        bench.rig.settle();
        QCOMPARE(bench.editor()->text(), u"1.txt"_s);
        QVERIFY(bench.hasLocal(u"Inbox/2.txt"_s));
        bench.delegate->editViewCancelled();
        bench.rig.settle();
        QVERIFY(bench.editor());
        QCOMPARE(bench.editor()->text(), u"2.txt"_s);
        QVERIFY(bench.rig.has(u"1.txt"_s) && bench.rig.has(u"2.txt"_s));
    }

    void theMenuOffersWhatTheScreenCanDo()
    {
        AppBench bench;
        bench.putLocalUser();
        bench.launchWhole();
        const auto tabs = MGlobals::tabBarController();
        const auto choose = [&](const QString &button) {
            tabs->menuClicked();
            const bool isThere = bench.presenter->answerSheet(button);
            bench.rig.settle();
            return isThere;
        };
        QVERIFY(!choose(u"4.1"_s));
        bench.presenter->cancelSheet();
        QVERIFY(choose(u"Settings"_s) && bench.settingsShown == 1);
        QVERIFY(choose(u"About CVTamber"_s) &&
                bench.presenter->alert()->title == u"CVTamber " CVTAMBER_VERSION);
        bench.presenter->answerAlert(0);
        QVERIFY(choose(u"Keys"_s) && bench.presenter->frontAs<KeysViewController>());
        KeysViewController::show(*bench.presenter->topModal());
        bench.rig.settle();
        QCOMPARE(bench.presenter->modals().size(), 1U);
        bench.presenter->front()->rightItemClicked(0);
        bench.rig.settle();
        bench.users(0)->rowClicked(0, 0);
        bench.rig.settle();
        QVERIFY(choose(u"4.1"_s) && bench.presenter->alert()->textField);
    }

    void chosenFilesAreHandedOver()
    {
        AppBench bench;
        bench.launchWhole();
        bench.rig.put(u"1.txt"_s, "text");
        bench.delegate->menu().openFiles();
        bench.files.answer({true, {}, {}});
        QCOMPARE(bench.presenter->notices().size(), 1);
        bench.delegate->menu().openFiles();
        bench.files.answer({false, {bench.rig.path(u"1.txt"_s)}, {}});
        bench.rig.settle();
        QCOMPARE(bench.editor()->text(), u"text"_s);
    }

    void anImportWaitsForTheDialogThatIsUp()
    {
        AppBench bench;
        bench.launchWhole();
        const auto dialog = std::make_shared<ViewController>(*bench.presenter);
        bench.users(0)->presentViewController(dialog, true);
        bench.rig.settle();
        bench.put(u"Inbox/Letter.txt"_s, "text");
        bench.delegate->importFile(bench.inInbox(u"Letter.txt"_s));
        bench.rig.settle();
        QVERIFY(!bench.editor() && bench.hasLocal(u"Inbox/Letter.txt"_s));
        QCOMPARE(bench.presenter->notices(),
                 QStringList{u"Letter.txt is waiting. It opens when this is closed."_s});
        bench.users(0)->dismissViewController(true);
        bench.rig.loop.advance(std::chrono::seconds(2));
        bench.rig.settle();
        QVERIFY(bench.editor());
    }

    // What is chosen in a menu that is up comes first.
    void anImportWaitsForTheQuestionThatIsUp()
    {
        AppBench bench;
        bench.launchWhole();
        const auto chosen = std::make_shared<ViewController>(*bench.presenter);
        ActionSheet sheet;
        sheet.buttons = {u"Open"_s};
        sheet.didDismiss = [&](const ActionSheet &, int) {
            bench.users(0)->presentViewController(chosen, true);
        };
        bench.users(0)->showActionSheet(sheet);
        bench.put(u"Inbox/Letter.txt"_s, "text");
        bench.delegate->importFile(bench.inInbox(u"Letter.txt"_s));
        bench.rig.loop.advance(std::chrono::seconds(2));
        QVERIFY(!bench.editor());
        QCOMPARE(bench.presenter->notices().size(), 1);
        bench.presenter->answerSheet(0);
        bench.rig.loop.advance(std::chrono::seconds(2));
        QCOMPARE(bench.presenter->front(), chosen);
        bench.users(0)->dismissViewController(true);
        bench.rig.loop.advance(std::chrono::seconds(2));
        bench.rig.settle();
        QVERIFY(bench.editor());
        QCOMPARE(bench.presenter->notices().size(), 1);
    }

    void reasonsAreToldWhereTheyHelp_data()
    {
        columns<QString, QString>("why", "told");
        row("full", errorText(std::make_error_code(std::errc::no_space_on_device)),
            u"Letter could not be saved. The disk is full."_s);
        row("gone", errorText(std::make_error_code(std::errc::no_such_file_or_directory)),
            u"Letter could not be saved. It or its folder is not there any more."_s);
        row("nothing to be done", errorText(std::make_error_code(std::errc::io_error)),
            u"Letter could not be saved."_s);
        row("none", QString(), u"Letter could not be saved."_s);
    }
    void reasonsAreToldWhereTheyHelp()
    {
        QFETCH(QString, why);
        QTEST(StoreNotices::textOf({StoreProblem::What::Save, FileURL::file(u"/Letter.tamber"_s), why, {}}),
              "told");
    }

    void aCloudLaunchShowsItsScreensOnceTheStoreIsFound()
    {
        AppBench bench;
        bench.startsInCloud(true);
        bench.put(u"Inbox/1.txt"_s, "one");
        bench.put(u"Inbox/2.txt"_s, "two");
        bench.launch(LaunchOptions{{u"/home/ann/2.txt"_s}});
        QVERIFY(!MGlobals::tabBarController() && !gTamberStorage);
        bench.delegate->applicationDidBecomeActive();
        // One at most waits; the file before it stays where it is.
        bench.delegate->applicationOpenURL(bench.inInbox(u"1.txt"_s), {});
        bench.delegate->applicationOpenURL(bench.inInbox(u"2.txt"_s), {});
        bench.rig.settle();
        QCOMPARE(gTamberStorage->storeURL(), bench.rig.cloudRoot());
        QCOMPARE(bench.editor()->text(), u"two"_s);
        QVERIFY(bench.hasLocal(u"Inbox/1.txt"_s) && !bench.hasLocal(u"Inbox/2.txt"_s));
    }

    void twoFilesHandedOverBeforeStartUpAreBothOpened()
    {
        AppBench bench;
        bench.startsInCloud(true);
        bench.rig.put(u"1.txt"_s, "one");
        bench.rig.put(u"2.txt"_s, "two");
        const QStringList files{bench.rig.path(u"1.txt"_s), bench.rig.path(u"2.txt"_s)};
        bench.launch(LaunchOptions{files});
        bench.delegate->handOver(files);
        bench.rig.settle();
        QCOMPARE(bench.editor()->text(), u"one"_s);
        bench.delegate->editViewCancelled();
        bench.rig.settle();
        QCOMPARE(bench.editor()->text(), u"two"_s);
    }

    void theCloudIsTurnedOnAndOff()
    {
        AppBench bench;
        bench.putLocalUser();
        bench.launchWhole();
        QCOMPARE(bench.shownUsers(), 1U);
        bench.turnCloud(true);
        QVERIFY(bench.defaults.boolValue(u"prev_iCloudOn"_s));
        QCOMPARE(gTamberStorage->storeURL(), bench.rig.cloudRoot());
        QCOMPARE(bench.users(0)->tamberUsers(), gTamberStorage->activeUsers());
        QCOMPARE(bench.users(1)->tamberUsers(), gTamberStorage->archivedUsers());
        QVERIFY(bench.hasInCloud(u"ActiveUsers/"_s % Ann % u"/user.txt"_s));
        QVERIFY(!bench.hasLocal(u"ActiveUsers/"_s % Ann));
        bench.turnCloud(false);
        QVERIFY(!bench.defaults.boolValue(u"prev_iCloudOn"_s));
        QCOMPARE(gTamberStorage->storeURL(), bench.local);
        QCOMPARE(bench.users(0)->tamberUsers(), gTamberStorage->activeUsers());
        QVERIFY(bench.hasInCloud(u"ActiveUsers/"_s % Ann % u"/user.txt"_s));
        QCOMPARE(bench.presenter->alertCount() + static_cast<size_t>(bench.presenter->notices().size()), 0U);
    }

    void aSwitchLeavesTheScreensOfTheOldStore()
    {
        AppBench bench;
        bench.putLocalUser();
        bench.put(u"ActiveUsers/"_s % Ann % u"/Letter.tamber"_s, "text");
        bench.launchWhole();
        const auto users = bench.users(0);
        users->rowClicked(0, 0);
        bench.rig.settle();
        bench.presenter->frontAs<TamberContainerViewController>()->rowClicked(1, 0);
        bench.presenter->answerSheet(u"4.9"_s);
        bench.rig.settle();
        QVERIFY(bench.presenter->frontAs<MUsersViewController>() != users);
        // The screen that has opened the picker goes before it.
        users->navigationController()->popToRootViewController(false);
        bench.rig.settle();
        bench.turnCloud(true);
        QCOMPARE(bench.presenter->frontAs<MUsersViewController>(), users);
        QCOMPARE(users->navigationController()->depth(), 1);
        users->rightItemClicked(0);
        bench.rig.settle();
        QVERIFY(bench.presenter->frontAs<MEditUserDialog>());
        bench.turnCloud(false);
        QCOMPARE(bench.presenter->frontAs<MUsersViewController>(), users);
        bench.put(u"Inbox/Kept.txt"_s, "not saved");
        bench.delegate->importFile(bench.inInbox(u"Kept.txt"_s));
        bench.rig.settle();
        bench.turnCloud(true);
        QCOMPARE(bench.editor()->text(), u"not saved"_s);
    }

    // The window closes at once only where nothing is lost with it.
    void theWindowAsksForWhatIsNotSaved()
    {
        AppBench bench;
        bench.putLocalUser();
        bench.launchWhole();
        int closes = 0;
        const auto mayClose = [&closes] { ++closes; };
        QVERIFY(bench.delegate->windowShouldClose(mayClose));
        bench.put(u"Inbox/Letter.txt"_s, "text");
        bench.delegate->importFile(bench.inInbox(u"Letter.txt"_s));
        bench.rig.settle();
        QVERIFY(!bench.delegate->windowShouldClose(mayClose));
        QVERIFY(!bench.delegate->windowShouldClose(mayClose));
        QCOMPARE(bench.presenter->alertCount(), 1U);
        bench.presenter->answerAlert(u"Cancel"_s);
        QVERIFY(!bench.delegate->windowShouldClose(mayClose));
        bench.presenter->answerAlert(u"6.3"_s);
        QCOMPARE(closes, 1);
        QVERIFY(bench.delegate->windowShouldClose(mayClose));
        bench.rig.settle();
        // What the disk does not take is tried again first.
        QFile inTheWay(bench.localPath(u"ActiveUsers/"_s % Ann));
        const auto ann = bench.users(0)->sortedUsers().front();
        QVERIFY(QDir().rename(inTheWay.fileName(), bench.localPath(u"away"_s)));
        ann->addFileWithName(u"Letter"_s, u"text"_s);
        bench.rig.settle();
        QVERIFY(!bench.delegate->windowShouldClose(mayClose));
        QVERIFY(!bench.delegate->windowShouldClose(mayClose));
        bench.rig.settle();
        QCOMPARE(bench.presenter->alertCount(), 1U);
        QVERIFY(bench.presenter->alert()->message.contains(u"Letter"_s));
        bench.presenter->answerAlert(u"Cancel"_s);
        QCOMPARE(closes, 1);
        QVERIFY(QDir().rename(bench.localPath(u"away"_s), inTheWay.fileName()));
        QVERIFY(!bench.delegate->windowShouldClose(mayClose));
        bench.rig.settle();
        QCOMPARE(closes, 2);
        QVERIFY(bench.hasLocal(u"ActiveUsers/"_s % Ann % u"/Letter.tamber"_s));
    }

    // A pupil who is added, and a text that is saved to her, while the disk is full.
    void aFullDiskLosesNobodysWork()
    {
        FaultyFileOperations operations;
        AppBench bench(operations);
        bench.launchWhole();
        operations.failEvery(FaultyFileOperations::Call::Write, std::errc::no_space_on_device);
        bench.users(0)->rowClicked(0, 0);
        bench.rig.settle();
        const auto dialog = bench.presenter->frontAs<MEditUserDialog>();
        dialog->firstNameTyped(u"Ann"_s);
        dialog->rightItemClicked(0);
        bench.rig.settle();
        bench.put(u"Inbox/Letter.txt"_s, "text");
        bench.delegate->importFile(bench.inInbox(u"Letter.txt"_s));
        bench.rig.settle();
        bench.editor()->rightItemClicked(0);
        bench.rig.settle();
        bench.presenter->frontAs<MUsersViewController>()->rowClicked(0, 0);
        bench.rig.settle();
        bench.presenter->frontAs<TamberContainerViewController>()->controlClicked(1, 0, 0, false);
        bench.rig.settle();
        const QString directory =
            QStringLiteral("ActiveUsers/") % gTamberStorage->activeUsers()->users().front()->folder();
        QVERIFY(!bench.hasLocal(directory % u"/user.txt"_s));
        QVERIFY(!bench.hasLocal(directory % u"/Letter.tamber"_s));
        operations.clear();
        bench.rig.loop.advance(std::chrono::seconds(5));
        bench.rig.settle();
        QVERIFY(bench.hasLocal(directory % u"/user.txt"_s));
        QVERIFY(bench.hasLocal(directory % u"/Letter.tamber"_s));
        QVERIFY(!bench.editor() || !bench.editor()->isUnsaved());
    }

    void anActivationShowsTheSameStoreAsItIsNow()
    {
        AppBench bench;
        bench.putLocalUser();
        bench.launchWhole();
        const auto registry = bench.users(0)->tamberUsers();
        bench.users(0)->rowClicked(0, 0);
        bench.rig.settle();
        const auto browser = bench.presenter->frontAs<TamberContainerViewController>();
        QCOMPARE(browser->model().rowCount(), 0);
        bench.put(u"ActiveUsers/"_s % Ann % u"/Letter.tamber"_s, "text");
        bench.turnCloud(false);
        QCOMPARE(bench.users(0)->tamberUsers(), registry);
        QCOMPARE(browser->model().rowCount(), 1);
    }

    // The switch was turned while the program did not run.
    void theFirstActivationOfACloudLaunchComesBeforeTheStore()
    {
        AppBench bench;
        bench.putLocalUser();
        bench.startsInCloud(false);
        bench.launch();
        bench.delegate->applicationDidBecomeActive();
        QVERIFY(!gTamberStorage);
        QVERIFY(bench.defaults.boolValue(u"prev_iCloudOn"_s));
        bench.rig.settle();
        QVERIFY(bench.hasInCloud(u"ActiveUsers/"_s % Ann % u"/user.txt"_s));
        QCOMPARE(gTamberStorage->storeURL(), bench.rig.cloudRoot());
        QCOMPARE(MGlobals::tabBarController()->count(), 3);
    }

    void theCloudTurnedOffWhileItIsLookedFor()
    {
        AppBench bench;
        bench.startsInCloud(true);
        bench.launch();
        bench.defaults.elsewhere.insert(u"iCloudOn"_s, false);
        bench.delegate->applicationDidBecomeActive();
        bench.rig.settle();
        QCOMPARE(gTamberStorage->storeURL(), bench.local);
    }

    void withoutAContainerTheProgramRunsOnAndFindsItsWayBack_data()
    {
        columns<bool>("launchesInCloud");
        row("at launch", true);
        row("at an activation", false);
    }
    void withoutAContainerTheProgramRunsOnAndFindsItsWayBack()
    {
        QFETCH(bool, launchesInCloud);
        AppBench bench;
        bench.putLocalUser();
        bench.rig.cloud.setMissing(true);
        if (launchesInCloud)
            bench.startsInCloud(false);
        bench.launchWhole();
        if (!launchesInCloud)
            bench.turnCloud(true);
        QVERIFY(!gTamberStorage && !bench.users(0)->tamberUsers());
        QVERIFY(!bench.users(0)->emptyText().isEmpty());
        QVERIFY(bench.hasLocal(u"ActiveUsers/"_s % Ann));
        // Back to local, or on once there is a container: the person's documents are there each time.
        bench.turnCloud(false);
        QCOMPARE(bench.shownUsers(), 1U);
        bench.turnCloud(true);
        bench.rig.cloud.setMissing(false);
        bench.rig.loop.advance(std::chrono::seconds{5});
        bench.rig.settle();
        QCOMPARE(gTamberStorage->storeURL(), bench.rig.cloudRoot());
        QVERIFY(bench.hasInCloud(u"ActiveUsers/"_s % Ann % u"/user.txt"_s));
    }

    void theSwitchingAlertRecordsTheOutcome_data()
    {
        columns<int, int, QString, bool, QString>("tag", "button", "key", "value", "message");
        row("move to", 0, 0, u"prev_iCloudOn"_s, true, u"Files moved to iCloud"_s);
        row("copy to", 0, 1, u"prev_iCloudOn"_s, true, u"Files copied to iCloud"_s);
        row("stay local", 0, 2, u"iCloudOn"_s, false, u"iCloud is still disabled"_s);
        row("move back", 1, 0, u"prev_iCloudOn"_s, false, u"Files moved to local storage"_s);
        row("copy back", 1, 1, u"prev_iCloudOn"_s, false, u"Files copied to local storage"_s);
        row("stay in cloud", 1, 2, u"iCloudOn"_s, true, u"iCloud is still enabled"_s);
        row("another alert", 2, 0, QString(), false, QString());
    }
    void theSwitchingAlertRecordsTheOutcome()
    {
        QFETCH(int, tag);
        QFETCH(int, button);
        QFETCH(QString, key);
        QFETCH(bool, value);
        AppBench bench;
        bench.defaults.values = {{u"iCloudOn"_s, !value}, {u"prev_iCloudOn"_s, !value}};
        bench.presenter->showAlert(bench.delegate->switchingAlert(tag));
        QVERIFY(bench.presenter->answerAlert(button));
        QVariantMap expected{{u"iCloudOn"_s, !value}, {u"prev_iCloudOn"_s, !value}};
        if (!key.isEmpty())
            expected.insert(key, value);
        QCOMPARE(bench.defaults.values, expected);
        QVERIFY(bench.presenter->alert());
        QTEST(bench.presenter->alert()->message, "message");
        QCOMPARE(bench.presenter->alert()->buttons, QStringList{u"OK"_s});
    }

    void aPickWithoutAWaitingFileAddsNothing()
    {
        AppBench bench;
        bench.putLocalUser();
        bench.launchWhole();
        const auto user = gTamberStorage->activeUsers()->users().front();
        bench.delegate->usersViewControllerUserPicked(*bench.users(0), user);
        bench.delegate->usersViewControllerUserPicked(*bench.users(0), nullptr);
        bench.delegate->pickUserPicked(user);
        bench.delegate->pickUserPicked(nullptr);
        bench.delegate->pickUserCancelled();
        bench.rig.settle();
        QVERIFY(user->files().empty());
    }

    void personalNamesStayOutOfTheLog()
    {
        AppBench bench;
        bench.launch(LaunchOptions{{u"/home/ann/About Bob.txt"_s}});
        bench.put(u"Inbox/About Bob.txt"_s, "secret");
        bench.delegate->applicationOpenURL(bench.inInbox(u"About Bob.txt"_s), {});
        bench.rig.settle();
        for (const QString &line : bench.rig.log.lines)
            QVERIFY2(!line.contains(u"About Bob") && !line.contains(u"secret"), qPrintable(line));
        QVERIFY(!bench.rig.log.lines.filter(u"[debug] -(void)importFile:"_s).isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_appdelegate)
#include "tst_appdelegate.moc"
