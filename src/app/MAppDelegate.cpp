// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MAppDelegate.h"

#include "app/MGlobals.h"
#include "app/StoreNotices.h"
#include "app/StoreSwitch.h"
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

QString shownOptions(const std::optional<LaunchOptions> &options)
{
    if (!options)
        return u"(null)"_s;
    QStringList files;
    for (const QString &file : options->files)
        files.append(loggedURL(FileURL::file(file)));
    return u'(' % files.join(u", "_s) % u')';
}

QString shownAddress(const void *object)
{
    return u"0x"_s % QString::number(reinterpret_cast<quintptr>(object), 16);
}

} // namespace

MAppDelegate::MAppDelegate(const AppServices &services)
    : _services(services)
    , _inbox(services.store, services.tasks, services.locations)
    , _notices(std::make_shared<StoreNotices>(services.presenter))
    , _presentLater(services.store.runLoop)
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
         {NavigationController::withRoot(presenter, _archivedUsersController), u"user.png"_s},
         {deviceNavigation, u"cv.png"_s}});
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
    const bool isCloud = _services.defaults.boolValue(CloudOn);
    makeStorage(_services.store, isCloud ? ubiquotusStorageURL() : localStorageURL());
    if (!gTamberStorage)
        return;
    if (isCloud)
        moveToiCloud();
    showRegistries();
}

void MAppDelegate::showRegistries()
{
    if (!_tabController)
        return;
    const auto storage = MGlobals::tamberStorage();
    _activeUsersController->setTamberUsers(storage ? storage->activeUsers() : nullptr);
    _archivedUsersController->setTamberUsers(storage ? storage->archivedUsers() : nullptr);
}

void MAppDelegate::moveToiCloud()
{
    moveUsersToCloud(_services.store, localStorageURL(), ubiquotusStorageURL());
}

void MAppDelegate::tearDown()
{
    _presentLater.cancel();
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
