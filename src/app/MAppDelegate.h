// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppContext.h"
#include "app/Inbox.h"
#include "app/MTextEditViewController.h"
#include "app/MUsersViewController.h"
#include "app/MainMenu.h"
#include "base/DelayedCall.h"
#include "device/CVBTDevice.h"
#include "ui/AlertView.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace cvtamber {

class StoreNotices;
class TabBarController;

// What start-up gets from the operating system. All of it outlives the application delegate.
struct AppServices
{
    CVBTDeviceServices device;
    Presenter &presenter;
    StoreContext &store;
    TaskRunner &tasks;
    UserDefaults &defaults;
    Locations &locations;
    MailComposer &mail;
    DocumentPreview &preview;
    FileChooser &fileChooser;
    // Opens the settings window.
    std::function<void()> showSettings;
    // As "pl-PL", the first choice first.
    std::function<QStringList()> preferredLanguages;
};

// Why the program was started, where it was not for its own sake.
struct LaunchOptions
{
    // Handed over by another program; they are given to handOver() afterwards.
    QStringList files;
};

// The root of the running application: makes the one device object, finds the document store, builds the three tabs, moves the
// store when the person has switched the cloud on or off, and takes in text files that other programs hand over.
//
//   launch -> (cloud: store is being located) -> startUp -> tearDown
// The first activation may come before startUp. The user default "iCloudOn" is the person's wish, "prev_iCloudOn" where the store
// was when the program last looked. Without a place for the store the program runs on without one, and each
// activation looks again.
// An imported text is in an editor, or its copy is in the Inbox: a copy is removed only once its text is shown.
// Thread: main thread. Owner: main(), shared with the editors that it opens.
class MAppDelegate final : public MUsersViewControllerDelegate,
                           public MTextEditViewDelegate,
                           public std::enable_shared_from_this<MAppDelegate>
{
public:
    explicit MAppDelegate(const AppServices &services);
    ~MAppDelegate() override;

    // Always true. Nothing for an ordinary launch, which empties the Inbox.
    bool applicationDidFinishLaunchingWithOptions(const std::optional<LaunchOptions> &options);
    void addDefaultData() {}
    void startUp();
    void applicationWillResignActive() {}
    void applicationDidEnterBackground() {}
    void applicationWillEnterForeground() {}
    // Whether the window may close now. Where an editor holds a text that is not saved, or the disk did not take something,
    // a person is asked, and `mayClose` runs once it is saved or given up; then this is to be asked again.
    bool windowShouldClose(std::function<void()> mayClose);
    // Ends the link in order; the device object takes about 2 seconds for it.
    void applicationWillTerminate();
    void applicationDidBecomeActive();

    // Files of other programs, absolute paths: each is copied to the Inbox and then opened from there. What is named beside
    // them and is no file of this computer is told.
    void handOver(const QStringList &paths, const QStringList &others = {});
    MainMenu &menu() { return _menu; }
    // A file in the Inbox. Always true.
    bool applicationOpenURL(const FileURL &url, const QString &sourceApplication);
    // Shows the text in an editor of its own; one after the other.
    void importFile(const FileURL &url);
    void moveToiCloud();

    // The question what becomes of the files after a switch; tag 0 to the cloud, 1 to local storage. No step of
    // start-up or activation asks it.
    AlertView switchingAlert(int tag);
    void alertViewDidDismissWithButtonIndex(const AlertView &alert, int buttonIndex);

    void usersViewControllerUserPicked(MUsersViewController &controller,
                                       const std::shared_ptr<TamberUser> &user) override;
    void pickUserCancelled();
    void pickUserPicked(const std::shared_ptr<TamberFilesContainer> &container);
    void editViewCancelled() override;

    // At the end of the program: closes the store and lets go of every screen.
    void tearDown();

private:
    void createDevice();
    void prepareDefaults();
    void locateStore();
    void storeLocated(const FileURL &cloudURL);
    void selectLastTab();
    void showRegistries();
    void leaveOldStore();
    void showDocumentsAsTheyAre() const;
    void askAboutUnsaved(const std::function<void()> &mayClose);
    void lookForStoreAgain();
    void lookLater();
    FileURL wishedStorageURL() const;
    FileURL localStorageURL() const;
    FileURL ubiquotusStorageURL() const;

    // Nothing is above the tabs: no screen and no question.
    bool mayPresent(const TabBarController &tabs) const;
    void presentImports();
    bool presentImport(TabBarController &tabs, const FileURL &url);
    void importShown(const FileURL &url);
    void tellRefusals();
    void dismissPresented(std::function<void()> completion);
    // The document that waits, as UTF-8; null when it is none.
    QString waitingText();
    void addWaitingDocument(TamberFilesContainer &container, const QString &text);
    void removeHandedOver(const FileURL &url);

    void log(const char *function, int line, const char *level, const QString &message);

    const AppServices _services;
    Inbox _inbox;
    MainMenu _menu;
    std::unique_ptr<Reconnector> _reconnector;
    std::optional<AppContext> _context;
    std::shared_ptr<StoreNotices> _notices;
    std::shared_ptr<TabBarController> _tabController;
    std::shared_ptr<MUsersViewController> _activeUsersController;
    std::shared_ptr<MUsersViewController> _archivedUsersController;
    FileURL _docToOpenURL;
    bool _isLocating = false;
    // What the disk did not take is being asked about, or is given up.
    bool _isAskingAboutUnsaved = false;
    bool _closesUnsaved = false;
    // The first one is being presented or waits until nothing else is.
    std::deque<FileURL> _imports;
    // Sentences about files that cannot be opened, told together once all have been looked at.
    QStringList _refusals;
    DelayedCall _presentLater;
    DelayedCall _lookLater;
};

} // namespace cvtamber
