// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/CVTamberApplication.h"

#include "app/KeysViewController.h"
#include "app/StoreSwitch.h"
#include "device/CVBluetoothManager.h"
#include "main/CVTamberCommandLine.h"
#include "main/SignalWatcher.h"
#include "platform/desktop/FileUris.h"
#include "qml/IconProvider.h"
#include "store/TamberStorage.h"
#include "ui/Texts.h"

#include <QGuiApplication>
#include <QLocale>
#include <QProcess>
#include <QQuickWindow>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

const QString WindowWidth = QStringLiteral("windowWidth");
const QString WindowHeight = QStringLiteral("windowHeight");
const QString WindowX = QStringLiteral("windowX");
const QString WindowY = QStringLiteral("windowY");
const QString WindowMaximized = QStringLiteral("windowMaximized");

// How long the end of the program waits for a device that does not let go.
constexpr std::chrono::seconds ReleaseLimit{5};
// A question that has been answered has closed by then.
constexpr std::chrono::milliseconds QuestionCloses{400};
// How long a program that the bus has started waits to be told what for.
constexpr std::chrono::seconds RequestLimit{30};

// Asks before the window that it is installed on closes.
class CloseGuard final : public QObject
{
public:
    CloseGuard(QObject *window, std::function<bool()> mayClose)
        : QObject(window)
        , _mayClose(std::move(mayClose))
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const bool isKept = event->type() == QEvent::Close && !_mayClose();
        if (isKept)
            event->ignore();
        return isKept || QObject::eventFilter(watched, event);
    }

private:
    std::function<bool()> _mayClose;
};

FileURL recoveredFolder(Locations &locations)
{
    return FileURL::directory(locations.documentsFolder()).appendingDirectory(u"Recovered"_s);
}

} // namespace

CVTamberApplication::CVTamberApplication(QGuiApplication &application, EventRunLoop &runLoop, SystemLog &log,
                                         StandardLocations &locations,
                                         const BluetoothCentralFactory &makeCentral,
                                         DesktopApplication &desktop, std::unique_ptr<QmlPresenter> presenter)
    : _application(application)
    , _runLoop(runLoop)
    , _log(log)
    , _locations(locations)
    , _makeCentral(makeCentral)
    , _desktop(desktop)
    , _lock(locations.stateFolder() + u"/running.lock"_s)
    , _disk(FileOperations::system())
    , _trash(_disk, recoveredFolder(locations))
    , _cloud({runLoop, _pool, FileOperations::system(), log, _defaults})
    , _coordinator(_pool, _disk, _trash)
    , _store{runLoop, _disk, _coordinator, _cloud, _trash, _notifications, _problems, log}
    , _manager(CVBluetoothManager::create(runLoop, log, makeCentral()))
    , _mail(runLoop, locations, QDBusConnection::sessionBus())
    , _preview(runLoop, QDBusConnection::sessionBus())
    , _fileChooser(QDBusConnection::sessionBus())
    , _presenter(std::move(presenter))
    , _appearance(QDBusConnection::sessionBus())
    , _stopLater(runLoop)
    , _settle(runLoop)
{
    _store.knownRecords.keepIn(_defaults);
    CVBluetoothManager::setDefaultManager(_manager);
    QObject::connect(&_appearance, &PortalAppearance::changed, _presenter.get(),
                     &QmlPresenter::setDesktopLook);
    _delegate = std::make_shared<MAppDelegate>(services());
    _presenter->setCommands({KeysViewController::show, [this] { _delegate->menu().openFiles(); },
                             [this](const QStringList &uris) { takeDropped(uris); }});
}

CVTamberApplication::~CVTamberApplication()
{
    _desktop.setHandlers({});
    if (gCVDevice)
        gCVDevice->removeLinkObserver(*this);
    _delegate->tearDown();
    // The screens, then what they look at.
    _presenter.reset();
    _delegate.reset();
    gCVDevice.reset();
    CVBluetoothManager::setDefaultManager(nullptr);
}

AppServices CVTamberApplication::services()
{
    return {{_runLoop, _log, _idleTimer, _manager, _makeCentral},
            *_presenter,
            _store,
            _pool,
            _defaults,
            _locations,
            _mail,
            _preview,
            _fileChooser,
            showSettings,
            [] { return QLocale::system().uiLanguages(); }};
}

bool CVTamberApplication::start(const CVTamberCommandLine &commandLine, DesktopApplication::Start role)
{
    _presenter->setStartPlace({{_defaults.value(WindowX).toInt(), _defaults.value(WindowY).toInt(),
                                _defaults.value(WindowWidth).toInt(), _defaults.value(WindowHeight).toInt()},
                               _defaults.boolValue(WindowMaximized)});
    // The bus tells of the others; where there is none, or it is another session's, the lock does.
    _lock.setStaleLockTime(0);
    _isTheOne = _lock.tryLock(0);
    _signals = std::make_unique<SignalWatcher>([this](int) { stop(); });
    if (!commandLine.files.isEmpty())
        openFiles(commandLine.files, {});
    else if (!commandLine.waitsForBus)
        launch({});
    else
        _stopLater.start(RequestLimit, [this] { stop(); });
    if (!_presenter->window())
        return false;
    listenToWindow();
    listenToDesktop();
    if (role == DesktopApplication::Start::NoBus && _isTheOne)
        _log.info(u"There is no session bus: a second start will not find this one"_s);
    if (!_isTheOne)
        _presenter->showNotice(
            localized("CVTamber runs twice. Close one of them, so that they do not change the "
                      "same documents."));
    return true;
}

void CVTamberApplication::listenToDesktop()
{
    _desktop.setHandlers(
        {[this](const QString &token) { bringToFront(token); },
         [this](const QStringList &paths, const QStringList &others) { openFiles(paths, others); },
         [this](const QString &name) { performAction(name); }});
}

void CVTamberApplication::listenToWindow()
{
    QQuickWindow *const window = _presenter->window();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    new CloseGuard(window, [this, window] {
        return _isStopping || _delegate->windowShouldClose([window] { window->close(); });
    });
    QObject::connect(&_application, &QGuiApplication::lastWindowClosed, window, [this] { stop(); });
    // Where no window manager tells who is active, the first frame is the sign that a person looks at it.
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window,
        [this] {
            QGuiApplication::setWindowIcon(IconProvider::applicationIcon());
            becomeActive();
        },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    QObject::connect(&_application, &QGuiApplication::applicationStateChanged, window,
                     [this](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive)
                             becomeActive();
                         else
                             _delegate->applicationWillResignActive();
                     });
}

// The Inbox of another instance is left alone.
void CVTamberApplication::launch(const std::optional<LaunchOptions> &options)
{
    if (std::exchange(_isLaunched, true))
        return;
    _stopLater.cancel();
    _delegate->applicationDidFinishLaunchingWithOptions(_isTheOne || options ? options : LaunchOptions());
    if (QQuickWindow *const window = _presenter->window())
        window->show();
}

void CVTamberApplication::openFiles(const QStringList &paths, const QStringList &others)
{
    launch(LaunchOptions{paths});
    _delegate->handOver(paths, others);
}

void CVTamberApplication::takeDropped(const QStringList &uris)
{
    if (uris.isEmpty()) {
        _presenter->showNotice(localized("Only files can be dropped here."));
        return;
    }
    const auto [paths, others] = pathsOfUris(uris);
    openFiles(paths, others);
}

void CVTamberApplication::showSettings()
{
    QProcess::startDetached(QCoreApplication::applicationFilePath(), {u"--settings"_s});
}

void CVTamberApplication::performAction(const QString &name)
{
    if (name == u"settings")
        showSettings();
    if (!_isLaunched)
        stop();
}

void CVTamberApplication::bringToFront(const QString &activationToken)
{
    launch({});
    // The platform plug-in reads it when a window asks to be activated.
    if (!activationToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    _presenter->window()->show();
    _presenter->window()->raise();
    _presenter->window()->requestActivate();
}

void CVTamberApplication::becomeActive()
{
    if (!_isLaunched || _isStopping)
        return;
    _defaults.synchronize();
    if (!gTamberStorage || !gTamberStorage->isUbiquitous())
        _cloud.takeChoice();
    _delegate->applicationDidBecomeActive();
}

void CVTamberApplication::saveWindow()
{
    const QQuickWindow &window = *_presenter->window();
    if (!_isLaunched)
        return;
    _defaults.setValue(WindowMaximized, window.windowStates().testFlag(Qt::WindowMaximized));
    if (window.windowStates() != Qt::WindowNoState)
        return;
    _defaults.setValue(WindowX, window.x());
    _defaults.setValue(WindowY, window.y());
    _defaults.setValue(WindowWidth, window.width());
    _defaults.setValue(WindowHeight, window.height());
}

void CVTamberApplication::stop()
{
    if (std::exchange(_isStopping, true))
        return;
    saveWindow();
    if (gCVDevice)
        gCVDevice->addLinkObserver(*this);
    _delegate->applicationWillTerminate();
    _stopLater.start(ReleaseLimit, [] { QCoreApplication::quit(); });
    // A question is acted upon once it has closed, and a screen's answer once the screen has gone: what a person has just saved
    // is not written yet.
    _settle.start(QuestionCloses, [this] {
        _presenter->transitions().add([this](const TransitionQueue::Done &) {
            _isSettled = true;
            quitUnlinked();
        });
    });
}

// The device is left in order first.
void CVTamberApplication::quitUnlinked()
{
    if (_isSettled && !(gCVDevice && gCVDevice->peripheral()))
        _manager->releasePeripherals([] { QCoreApplication::quit(); });
}

} // namespace cvtamber
