// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MAppDelegate.h"
#include "app/MGlobals.h"
#include "app/StoreSwitch.h"
#include "app/TamberContainerViewController.h"
#include "device/CVBluetoothManager.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "support/FakeCentral.h"
#include "support/MemoryDefaults.h"
#include "support/Recorders.h"
#include "support/RecordingPresenter.h"
#include "support/StoreRig.h"
#include "support/TemporaryLocations.h"
#include "ui/DocumentPreview.h"
#include "ui/FileChooser.h"
#include "ui/MailComposer.h"
#include "ui/NavigationController.h"
#include "ui/TabBarController.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

inline const QString Ann = u"11111111-1111-1111-1111-111111111111"_s;

class NoMail final : public MailComposer
{
public:
    bool canSendMail() override { return false; }
    void compose(const MailMessage &, std::function<void(bool)>) override {}
};

class NoPreview final : public DocumentPreview
{
public:
    void show(const QString &, std::function<void(bool)>) override {}
};

// The system's window for files, in which a test chooses.
class FakeFileChooser final : public FileChooser
{
public:
    void choose(const QString &, std::function<void(const Choice &)> chosen) override { answer = chosen; }
    std::function<void(const Choice &)> answer;
};

// The application without a window, over real folders: the local documents, and a cloud container beside them.
class AppBench
{
public:
    explicit AppBench(FileOperations &operations = FileOperations::system())
        : rig(StoreRig::Place::Local, operations)
    {
        defaults.values = {{u"iCloudOn"_s, false}, {u"prev_iCloudOn"_s, false}};
    }
    ~AppBench()
    {
        delegate->tearDown();
        rig.settle();
        presenter.reset();
        delegate.reset();
        gCVDevice.reset();
    }

    void launch(const std::optional<LaunchOptions> &options = {})
    {
        delegate->applicationDidFinishLaunchingWithOptions(options);
    }
    void launchWhole(const std::optional<LaunchOptions> &options = {})
    {
        launch(options);
        rig.settle();
        delegate->applicationDidBecomeActive();
        rig.settle();
    }
    void startsInCloud(bool wasInCloud)
    {
        defaults.values = {{u"iCloudOn"_s, true}, {u"prev_iCloudOn"_s, wasInCloud}};
    }
    // In the settings window.
    void turnCloud(bool on)
    {
        defaults.elsewhere.insert(u"iCloudOn"_s, on);
        delegate->applicationDidBecomeActive();
        rig.settle();
    }
    void putLocalUser() const { put(u"ActiveUsers/"_s % Ann % u"/user.txt"_s, "Ann\nLee\n\n"); }
    void put(const QString &relative, const QByteArray &bytes) const
    {
        QFile file(localPath(relative));
        QDir().mkpath(QFileInfo(file).path());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The test's own file could not be written");
    }
    QString localPath(const QString &relative) const { return local.path() % u'/' % relative; }
    bool hasLocal(const QString &relative) const { return QFileInfo::exists(localPath(relative)); }
    bool hasInCloud(const QString &relative) const
    {
        return QFileInfo::exists(rig.cloudRoot().path() % u'/' % relative);
    }
    FileURL inInbox(const QString &name) const
    {
        return Inbox::folder(const_cast<TemporaryLocations &>(locations)).appendingFile(name);
    }
    std::shared_ptr<MTextEditViewController> editor() const
    {
        return presenter->frontAs<MTextEditViewController>();
    }
    std::shared_ptr<MUsersViewController> users(int tab) const
    {
        const auto &tabs = MGlobals::tabBarController()->tabs();
        const auto navigation =
            std::dynamic_pointer_cast<NavigationController>(tabs[static_cast<size_t>(tab)].controller);
        return std::dynamic_pointer_cast<MUsersViewController>(navigation->viewControllers().front());
    }
    size_t shownUsers() const { return users(0)->sortedUsers().size(); }

    // In the order in which they need each other.
    StoreRig rig;
    TemporaryLocations locations;
    FileURL local = TamberStorage::localStorageURL(locations);
    QStringList journal;
    FakeIdleTimer idleTimer;
    std::shared_ptr<CVBluetoothManager> manager =
        CVBluetoothManager::create(rig.loop, rig.log, std::make_unique<FakeCentral>(journal));
    MemoryDefaults defaults;
    NoMail mail;
    NoPreview preview;
    FakeFileChooser files;
    int settingsShown = 0;
    QStringList languages{u"en-GB"_s};
    std::unique_ptr<RecordingPresenter> presenter = std::make_unique<RecordingPresenter>(rig.loop);
    std::shared_ptr<MAppDelegate> delegate =
        std::make_shared<MAppDelegate>(AppServices{{rig.loop, rig.log, idleTimer, manager, {}},
                                                   *presenter,
                                                   rig.context,
                                                   rig.tasks,
                                                   defaults,
                                                   locations,
                                                   mail,
                                                   preview,
                                                   files,
                                                   [this] { ++settingsShown; },
                                                   [this] { return languages; }});
};

} // namespace cvtamber
