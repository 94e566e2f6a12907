// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MAppDelegate.h"

#include "app/MGlobals.h"
#include "app/StoreNotices.h"
#include "app/StoreSwitch.h"
#include "app/TamberContainerViewController.h"
#include "base/Locations.h"
#include "base/TaskRunner.h"
#include "base/UserDefaults.h"
#include "device/CVBluetoothManager.h"
#include "device/Reconnector.h"
#include "device_ui/CVDeviceTableViewController.h"
#include "store/StoreDisk.h"
#include "store/StoreProblems.h"
#include "store/TamberStorage.h"
#include "store/TamberUsers.h"
#include "ui/NavigationController.h"
#include "ui/TabBarController.h"
#include "ui/Texts.h"

#include <utility>

#define CVTAMBER_HERE __func__, __LINE__

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

const QString PreviousCloudOn = QStringLiteral("prev_iCloudOn");
const QString SelectedTab = QStringLiteral("selectedTab");
constexpr qsizetype MostUnsavedTold = 3;
// How often a place of the store that is not there is looked for.
constexpr std::chrono::seconds StoreLook{5};

QString shownOptions(const std::optional<LaunchOptions> &options)
{
    if (!options)
        return u"(null)"_s;
    QStringList files;
    for (const QString &file : options->files)
        files.append(loggedURL(FileURL::file(file)));
    return u'(' % files.join(u", "_s) % u')';
}

// Above the tabs, the lowest first.
std::vector<ViewController *> presentedScreens(const std::shared_ptr<TabBarController> &tabs)
{
    std::vector<ViewController *> screens;
    for (auto screen = tabs ? tabs->presentedViewController() : nullptr; screen;
         screen = screen->presentedViewController())
        screens.push_back(screen.get());
    return screens;
}

// What a navigation was made for; a screen without one itself.
ViewController *rootOf(ViewController *screen)
{
    const auto *const navigation = dynamic_cast<NavigationController *>(screen);
    return navigation && navigation->depth() > 0 ? navigation->viewControllers().front().get() : screen;
}

// One that shows users or documents.
bool isOfStore(ViewController &screen)
{
    return dynamic_cast<TamberPickUserOrFolderViewController *>(&screen) ||
           dynamic_cast<MEditUserDialog *>(rootOf(&screen));
}

QString shownAddress(const void *object)
{
    return u"0x"_s % QString::number(reinterpret_cast<quintptr>(object), 16);
}

} // namespace

MAppDelegate::MAppDelegate(const AppServices &services)
    : _services(services)
    , _inbox(services.store, services.tasks, services.locations)
    , _menu({services.presenter, services.fileChooser,
             [this](const QStringList &paths, const QStringList &others) { handOver(paths, others); },
             services.showSettings})
    , _notices(std::make_shared<StoreNotices>(services.presenter, services.store.log))
    , _presentLater(services.store.runLoop)
    , _lookLater(services.store.runLoop)
{}

MAppDelegate::~MAppDelegate() = default;

void MAppDelegate::log(const char *function, int line, const char *level, const QString &message)
{
    _services.store.log.write(QLatin1String(function) % u" [Line "_s % QString::number(line) % u"] ["_s %
                              QLatin1String(level) % u"] "_s % message);
}

bool MAppDelegate::applicationDidFinishLaunchingWithOptions(const std::optional<LaunchOptions> &options)
{
    log(CVTAMBER_HERE, "HD", u"application:didFinishLaunchingWithOptions:"_s);
    createDevice();
    log(CVTAMBER_HERE, "info", u"launchOptions:\n"_s % shownOptions(options));
    if (!options)
        Inbox::removeAll(_services.store, _services.locations);
    _services.store.problems.setObserver(_notices);
    _inbox.setReceiver({[this] { return _tabController || _docToOpenURL.isNil(); },
                        [this](const FileURL &copy) { applicationOpenURL(copy, {}); },
                        [this](const QString &sentence) { _refusals.append(sentence); },
                        [this] { tellRefusals(); }});
    prepareDefaults();
    locateStore();
    return true;
}

void MAppDelegate::createDevice()
{
    gCVDevice = std::make_shared<CVBTDevice>(_services.device);
    _reconnector =
        std::make_unique<Reconnector>(_services.store.runLoop, *gCVDevice, _services.device.bluetoothManager,
                                      ReconnectorClient{.watchesEveryLink = true});
    _context.emplace(AppContext{_services.store.runLoop, _services.presenter, _services.store, *gCVDevice,
                                *_services.device.bluetoothManager, _services.defaults, _services.locations,
                                _services.mail, _services.preview, _services.store.log,
                                _services.store.notifications, *_reconnector});
}

bool MAppDelegate::windowShouldClose(std::function<void()> mayClose)
{
    for (ViewController *screen : presentedScreens(_tabController)) {
        auto *const editor = dynamic_cast<MTextEditViewController *>(rootOf(screen));
        if (editor && editor->isUnsaved()) {
            editor->close(std::move(mayClose));
            return false;
        }
    }
    if (_closesUnsaved || _services.store.problems.unsaved().empty())
        return true;
    if (std::exchange(_isAskingAboutUnsaved, true))
        return false;
    _services.store.problems.saveUnsaved([delegate = weak_from_this(), mayClose = std::move(mayClose)] {
        if (const auto self = delegate.lock())
            self->askAboutUnsaved(mayClose);
    });
    return false;
}

// Once all has been tried again.
void MAppDelegate::askAboutUnsaved(const std::function<void()> &mayClose)
{
    const auto &unsaved = _services.store.problems.unsaved();
    if (unsaved.empty()) {
        _isAskingAboutUnsaved = false;
        mayClose();
        return;
    }
    QStringList lost;
    for (const auto &[owner, item] : unsaved)
        lost.append(StoreNotices::textOf({StoreProblem::What::Save, item.url, item.why, {}}));
    if (const qsizetype more = lost.size() - MostUnsavedTold; more > 0)
        lost = lost.first(MostUnsavedTold)
               << localizedFormat("%@ more could not be saved.", QString::number(more));
    AlertView alert;
    alert.title = localized("Not everything is saved");
    alert.message = lost.join(u'\n');
    alert.buttons = {localized("Cancel"), localized("6.3")};
    alert.cancelButtonIndex = 0;
    alert.didDismiss = [delegate = weak_from_this(), mayClose](const AlertView &asked, int button,
                                                               const QString &) {
        const auto self = delegate.lock();
        if (!self)
            return;
        self->_isAskingAboutUnsaved = false;
        if (button == asked.cancelButtonIndex)
            return;
        self->_closesUnsaved = true;
        mayClose();
    };
    _services.presenter.showAlert(alert);
}

void MAppDelegate::applicationWillTerminate()
{
    if (!gCVDevice)
        return;
    _reconnector->stop();
    if (gCVDevice->isConnectedAsCVComm())
        gCVDevice->disconnectAsCVComm();
    else
        gCVDevice->disconnectPeripheral();
}

void MAppDelegate::prepareDefaults()
{
    const QVariant wish = _services.defaults.value(CloudOn);
    if (!wish.isValid()) {
        _services.defaults.setValue(CloudOn, false);
        _services.defaults.setValue(PreviousCloudOn, false);
    }
    log(CVTAMBER_HERE, "info", CloudOn % u" == "_s % (wish.isValid() ? wish.toString() : u"(null)"_s));
}

FileURL MAppDelegate::localStorageURL() const
{
    return TamberStorage::localStorageURL(_services.locations);
}

FileURL MAppDelegate::ubiquotusStorageURL() const
{
    return TamberStorage::ubiquotusStorageURL(_services.store.cloud);
}

void MAppDelegate::locateStore()
{
    if (!_services.defaults.boolValue(CloudOn)) {
        const QString documents = _services.locations.documentsFolder();
        log(CVTAMBER_HERE, "info", u"iCloud is off"_s);
        log(CVTAMBER_HERE, "info", u"docPaths == ("_s % documents % u')');
        log(CVTAMBER_HERE, "info", u"storage_path == "_s % documents);
        makeStorage(_services.store, localStorageURL());
        startUp();
        return;
    }
    log(CVTAMBER_HERE, "info", u"iCloud is on"_s);
    _isLocating = true;
    const auto url = std::make_shared<FileURL>();
    _services.tasks.run(
        [url, &cloud = _services.store.cloud] { *url = TamberStorage::ubiquotusStorageURL(cloud); },
        [url, delegate = weak_from_this()] {
            if (const auto self = delegate.lock())
                self->storeLocated(*url);
        });
}

void MAppDelegate::storeLocated(const FileURL &cloudURL)
{
    if (!std::exchange(_isLocating, false))
        return;
    // The person may have switched the cloud off again meanwhile.
    const bool isWished = _services.defaults.boolValue(CloudOn);
    makeStorage(_services.store, isWished ? cloudURL : localStorageURL());
    startUp();
}

void MAppDelegate::startUp()
{
    Presenter &presenter = _services.presenter;
    const auto storage = MGlobals::tamberStorage();
    _tabController = std::make_shared<TabBarController>(presenter);
    log(CVTAMBER_HERE, "debug",
        u"[MGlobals setTabBarController:"_s % shownAddress(_tabController.get()) % u']');
    MGlobals::setTabBarController(_tabController);

    _activeUsersController =
        std::make_shared<MUsersViewController>(*_context, storage ? storage->activeUsers() : nullptr);
    _archivedUsersController = std::make_shared<MUsersViewController>(
        *_context, storage ? storage->archivedUsers() : nullptr, MUsersViewController::List::Archived);
    const auto device = std::make_shared<CVDeviceTableViewController>(*_context);
    device->setTitle(localized("Corvane"));
    const auto deviceNavigation = NavigationController::withRoot(presenter, device);
    deviceNavigation->setTitle(localized("Corvane Brailler"));

    _tabController->setTabs(
        {{NavigationController::withRoot(presenter, _activeUsersController), u"user.png"_s},
         {NavigationController::withRoot(presenter, _archivedUsersController), u"archive.png"_s},
         {deviceNavigation, u"cv.png"_s}});
    _tabController->setMenu([this] { _menu.show(*_tabController); });
    selectLastTab();
    presenter.showRoot(_tabController);

    if (!_docToOpenURL.isNil())
        importFile(std::exchange(_docToOpenURL, FileURL()));
    _inbox.giveOut();
}

void MAppDelegate::selectLastTab()
{
    _tabController->selectTab(_services.defaults.value(SelectedTab).toInt());
    QObject::connect(_tabController.get(), &TabBarController::selectedIndexChanged, _tabController.get(),
                     [tabs = _tabController.get(), &defaults = _services.defaults] {
                         defaults.setValue(SelectedTab, tabs->selectedIndex());
                     });
}

void MAppDelegate::applicationDidBecomeActive()
{
    _services.defaults.synchronize();
    const bool now = _services.defaults.boolValue(CloudOn);
    const bool before = _services.defaults.boolValue(PreviousCloudOn);
    if (now == before) {
        lookForStoreAgain();
        showDocumentsAsTheyAre();
        return;
    }
    // A store that is still being located opens where the person wants it.
    if (!_isLocating)
        switchStorage(_services.store, now ? ubiquotusStorageURL() : localStorageURL());
    _services.defaults.setValue(PreviousCloudOn, now);
    if (now)
        moveToiCloud();
    showRegistries();
}

// Nothing while there is a store. One whose folder has gone is none: what is written would make a new folder in the old place.
void MAppDelegate::lookForStoreAgain()
{
    if (!_tabController || (gTamberStorage && _services.store.disk.isFolder(gTamberStorage->storeURL())))
        return;
    if (gTamberStorage) {
        closeStorage();
        showRegistries();
    }
    const FileURL place = wishedStorageURL();
    if (!_services.store.disk.isFolder(place)) {
        lookLater();
        return;
    }
    makeStorage(_services.store, place);
    if (!gTamberStorage)
        return;
    if (gTamberStorage->isUbiquitous())
        moveToiCloud();
    showRegistries();
}

// In the background: a place over a network may take long to say that it is not there.
void MAppDelegate::lookLater()
{
    _lookLater.start(StoreLook, [this] {
        const auto isThere = std::make_shared<bool>(false);
        const bool isCloud = _services.defaults.boolValue(CloudOn);
        const FileURL local = isCloud ? FileURL() : localStorageURL();
        _services.tasks.run(
            [isThere, isCloud, local, &store = _services.store] {
                *isThere =
                    store.disk.isFolder(isCloud ? TamberStorage::ubiquotusStorageURL(store.cloud) : local);
            },
            [isThere, delegate = weak_from_this()] {
                const auto self = delegate.lock();
                if (self && *isThere)
                    self->lookForStoreAgain();
                else if (self && self->_tabController && !gTamberStorage)
                    self->lookLater();
            });
    });
}

FileURL MAppDelegate::wishedStorageURL() const
{
    return _services.defaults.boolValue(CloudOn) ? ubiquotusStorageURL() : localStorageURL();
}

void MAppDelegate::showRegistries()
{
    if (!_tabController)
        return;
    leaveOldStore();
    const auto storage = MGlobals::tamberStorage();
    _activeUsersController->setTamberUsers(storage ? storage->activeUsers() : nullptr);
    _archivedUsersController->setTamberUsers(storage ? storage->archivedUsers() : nullptr);
    if (!storage)
        lookLater();
}

// What shows users or documents of the store before. An editor stays: its text may be saved nowhere.
void MAppDelegate::leaveOldStore()
{
    // Who presented it may have gone.
    ViewController *below = _tabController.get();
    for (ViewController *screen : presentedScreens(_tabController)) {
        if (isOfStore(*screen)) {
            below->dismissViewController(false);
            break;
        }
        below = screen;
    }
    for (const auto &users : {_activeUsersController, _archivedUsersController}) {
        if (const auto navigation = users->navigationController())
            navigation->popToRootViewController(false);
    }
}

void MAppDelegate::showDocumentsAsTheyAre() const
{
    for (const auto &users : {_activeUsersController, _archivedUsersController}) {
        const auto navigation = users ? users->navigationController() : nullptr;
        const auto top = navigation ? navigation->topViewController() : nullptr;
        if (const auto browser = std::dynamic_pointer_cast<TamberContainerViewController>(top))
            browser->showAsItIs();
    }
}

void MAppDelegate::moveToiCloud()
{
    moveUsersToCloud(_services.store, localStorageURL(), ubiquotusStorageURL());
}

void MAppDelegate::tearDown()
{
    _presentLater.cancel();
    _lookLater.cancel();
    _imports.clear();
    _refusals.clear();
    _inbox.setReceiver({});
    MGlobals::setCurrentActiveUser(nullptr);
    MGlobals::setTabBarController(nullptr);
    _activeUsersController.reset();
    _archivedUsersController.reset();
    _tabController.reset();
    if (_reconnector)
        _reconnector->stop();
    if (gCVDevice) {
        gCVDevice->setCvDownloadDelegate(nullptr);
        gCVDevice->setCvUploadDelegate(nullptr);
        gCVDevice->setDelegate(nullptr);
        gCVDevice->setDataDelegate(nullptr);
    }
    closeStorage();
}

} // namespace cvtamber
