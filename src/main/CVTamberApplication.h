// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MAppDelegate.h"
#include "base/EventRunLoop.h"
#include "base/NotificationCenter.h"
#include "base/SettingsDefaults.h"
#include "base/StandardLocations.h"
#include "base/ThreadPoolTaskRunner.h"
#include "device/IdleTimer.h"
#include "device/LinkObserver.h"
#include "platform/desktop/ChosenFolderContainer.h"
#include "platform/desktop/DesktopApplication.h"
#include "platform/desktop/DesktopFileChooser.h"
#include "platform/desktop/DesktopMail.h"
#include "platform/desktop/DesktopPreview.h"
#include "platform/desktop/PortalAppearance.h"
#include "platform/documents/DesktopTrash.h"
#include "platform/documents/DiskFileCoordinator.h"
#include "qml/QmlPresenter.h"
#include "store/StoreDisk.h"
#include "store/StoreProblems.h"

#include <QLockFile>

#include <memory>
#include <optional>

class QGuiApplication;

namespace cvtamber {

class SignalWatcher;
struct CVTamberCommandLine;

// A desktop dims its own screen.
class DesktopIdleTimer final : public IdleTimer
{
public:
    void setEnabled(bool) override {}
};

// The running application: every object of the operating system, and the wires between them.
//
// start() -> launch(), at once or at the bus's first request -> the window is closed, or a signal comes -> stop(): the
// screens finish what they are about, the link is let go -> the event loop ends -> the destructor, which closes the store. Owner: main().
class CVTamberApplication final : private LinkObserver
{
public:
    // The log, the makers of the radio's parts and the bus's object outlive it.
    CVTamberApplication(QGuiApplication &application, EventRunLoop &runLoop, SystemLog &log,
                        StandardLocations &locations, const BluetoothCentralFactory &makeCentral,
                        DesktopApplication &desktop, std::unique_ptr<QmlPresenter> presenter);
    CVTamberApplication(const CVTamberApplication &) = delete;
    CVTamberApplication &operator=(const CVTamberApplication &) = delete;
    ~CVTamberApplication() override;

    // False when the window cannot be made, which the log has told.
    bool start(const CVTamberCommandLine &commandLine, DesktopApplication::Start role);

private:
    AppServices services();
    void listenToDesktop();
    void listenToWindow();
    void launch(const std::optional<LaunchOptions> &options);
    void openFiles(const QStringList &paths, const QStringList &others);
    void takeDropped(const QStringList &uris);
    static void showSettings();
    void performAction(const QString &name);
    void bringToFront(const QString &activationToken);
    void becomeActive();
    void saveWindow();
    void stop();
    void quitUnlinked();
    void linkLost(const QString &) override { quitUnlinked(); }
    void linkClosed() override { quitUnlinked(); }

    QGuiApplication &_application;
    EventRunLoop &_runLoop;
    SystemLog &_log;
    StandardLocations &_locations;
    BluetoothCentralFactory _makeCentral;
    DesktopApplication &_desktop;
    // In the order in which they need each other.
    SettingsDefaults _defaults;
    QLockFile _lock;
    StoreDisk _disk;
    DesktopTrash _trash;
    ThreadPoolTaskRunner _pool;
    ChosenFolderContainer _cloud;
    NotificationCenter _notifications;
    StoreProblems _problems;
    DiskFileCoordinator _coordinator;
    StoreContext _store;
    DesktopIdleTimer _idleTimer;
    std::shared_ptr<CVBluetoothManager> _manager;
    DesktopMail _mail;
    DesktopPreview _preview;
    DesktopFileChooser _fileChooser;
    std::unique_ptr<QmlPresenter> _presenter;
    PortalAppearance _appearance;
    std::shared_ptr<MAppDelegate> _delegate;
    DelayedCall _stopLater;
    DelayedCall _settle;
    std::unique_ptr<SignalWatcher> _signals;
    bool _isTheOne = false;
    bool _isLaunched = false;
    bool _isStopping = false;
    // No screen has anything left to do.
    bool _isSettled = false;
};

} // namespace cvtamber
