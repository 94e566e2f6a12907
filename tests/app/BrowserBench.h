// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/MemoryDefaults.h"

#include "app/AppContext.h"
#include "app/MGlobals.h"
#include "app/TamberContainerViewController.h"
#include "device/Reconnector.h"
#include "store/TamberStorage.h"
#include "store/TamberUsers.h"
#include "support/DeviceRig.h"
#include "support/RecordingPresenter.h"
#include "support/StoreRig.h"
#include "support/TemporaryLocations.h"
#include "ui/DocumentPreview.h"
#include "ui/MailComposer.h"
#include "ui/NavigationController.h"
#include "ui/TableModel.h"

#include <QAbstractItemModelTester>

namespace cvtamber {

class FakeMail final : public MailComposer
{
public:
    bool canSendMail() override { return hasProgram; }
    void compose(const MailMessage &message, std::function<void(bool handedOver)> finished) override
    {
        messages.append(message);
        finished(takesMessages);
    }

    bool hasProgram = true;
    bool takesMessages = true;
    QList<MailMessage> messages;
};

class FakePreview final : public DocumentPreview
{
public:
    void show(const QString &path, std::function<void(bool shown)> finished) override
    {
        paths.append(path);
        finished(hasProgram);
    }

    bool hasProgram = true;
    QStringList paths;
};

// One user, Ann Lee, whose documents and folders lie on a real disk, and a browser that shows them in a window that
// is not there. The device is connected when the test says so.
class BrowserBench
{
public:
    using Browser = std::shared_ptr<TamberContainerViewController>;

    BrowserBench() { addUser(QStringLiteral("10000000-0000-0000-0000-000000000000"), "Ann\nLee\n\n"); }
    ~BrowserBench()
    {
        // A transfer that is still up lets go of the device.
        device.device->setCvUploadDelegate(nullptr);
        device.device->setCvDownloadDelegate(nullptr);
        MGlobals::setTamberStorage(nullptr);
        if (storage)
            storage->close();
    }

    void addUser(const QString &directory, const QByteArray &record) const
    {
        rig.put(u"ActiveUsers/" % directory % u"/user.txt", record);
    }
    QString annsFolder() const { return QStringLiteral("ActiveUsers/10000000-0000-0000-0000-000000000000"); }
    void putDocument(const QString &title, const QByteArray &text) const
    {
        rig.put(annsFolder() % u'/' % title % u".tamber", text);
    }
    void putFolder(const QString &uuid, const QByteArray &name) const
    {
        rig.put(annsFolder() % u'/' % uuid % u"/folder.dat", name + '\n');
    }

    // Reads the store, which holds what was put there before, and shows Ann's container.
    Browser open()
    {
        storage = TamberStorage::withURL(rig.context, rig.root());
        MGlobals::setTamberStorage(storage);
        const auto users = storage->activeUsers();
        rig.settle();
        for (const auto &user : users->users()) {
            if (user->firstName() == QStringLiteral("Ann"))
                ann = user;
        }
        return show(ann, TamberContainerViewController::Mode::Browse, nullptr);
    }
    Browser show(const std::shared_ptr<TamberFilesContainer> &container,
                 TamberContainerViewController::Mode mode,
                 const std::shared_ptr<TamberContainerViewControllerDelegate> &delegate)
    {
        auto browser = std::make_shared<TamberContainerViewController>(context);
        browser->setContainer(container);
        browser->setMode(mode);
        browser->setDelegate(delegate);
        browser->setActionButtonTitle(QStringLiteral("Here"));
        navigation = NavigationController::withRoot(presenter, browser);
        presenter.showRoot(navigation);
        tester = std::make_unique<QAbstractItemModelTester>(
            &browser->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        rig.settle();
        return browser;
    }
    void settle() { rig.settle(); }

    void connectDevice(const QStringList &fileNames = {})
    {
        device.identify();
        device.drain();
        QList<CVFileData> files;
        for (const QString &name : fileNames)
            files.append(CVFileData(name, 3));
        device.device->setFiles(files);
    }

    // The titles that a section shows, through the model.
    static QStringList shown(const TamberContainerViewController &browser, int section)
    {
        QStringList titles;
        const TableModel &model = browser.model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.pathOf(row).section == section)
                titles.append(model.data(model.index(row), TableModel::TextRole).toString());
        }
        return titles;
    }
    static bool isEditEnabled(const TamberContainerViewController &browser)
    {
        for (const BarButtonItem &item : browser.rightItems()) {
            if (item.kind == BarButtonItem::Kind::Edit)
                return item.isEnabled;
        }
        return false;
    }
    std::shared_ptr<TamberDocument> document(const QString &title) const
    {
        for (const auto &file : ann->files()) {
            if (file->fileURL().nameWithoutExtension() == title)
                return file;
        }
        return nullptr;
    }
    // Chooses from the menu of a document, by the key of the entry.
    void choose(const Browser &browser, const QString &title, const QString &entry)
    {
        const auto titles = shown(*browser, 1);
        browser->rowClicked(1, static_cast<int>(titles.indexOf(title)));
        presenter.answerSheet(entry);
        rig.settle();
    }

    // In the order in which they need each other.
    StoreRig rig;
    DeviceRig device;
    RecordingPresenter presenter{rig.loop};
    TemporaryLocations locations;
    FakeMail mail;
    FakePreview preview;
    MemoryDefaults defaults;
    Reconnector reconnector{rig.loop, *device.device, device.manager,
                            ReconnectorClient{.watchesEveryLink = true}};
    AppContext context{rig.loop,  presenter, rig.context, *device.device, *device.manager,   defaults,
                       locations, mail,      preview,     rig.log,        rig.notifications, reconnector};
    std::shared_ptr<TamberStorage> storage;
    std::shared_ptr<TamberUser> ann;
    std::shared_ptr<NavigationController> navigation;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

} // namespace cvtamber
