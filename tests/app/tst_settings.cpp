// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsViewController.h"
#include "support/ManualRunLoop.h"
#include "support/MemoryDefaults.h"
#include "support/RecordingPresenter.h"
#include "support/Rows.h"
#include "support/TemporaryLocations.h"
#include "ui/NavigationController.h"

#include <QSignalSpy>
#include <QTemporaryDir>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

class SettingsBench
{
public:
    SettingsBench()
    {
        presenter.showRoot(NavigationController::withRoot(presenter, settings));
        loop.advance({});
    }
    QString folderShown() const { return settings->cellForRow({0, 1}).detail; }
    QString advice() const { return settings->cellForRow({0, 3}).text; }
    bool isSwitchOn() const { return settings->cellForRow({0, 0}).controls.value(0).isOn; }
    void chooseFolder(const QString &typed)
    {
        settings->rowClicked(0, 1);
        presenter.answerAlert(1, typed);
        loop.advance({});
    }

    ManualRunLoop loop;
    RecordingPresenter presenter{loop};
    MemoryDefaults defaults;
    TemporaryLocations locations;
    std::shared_ptr<SettingsViewController> settings =
        std::make_shared<SettingsViewController>(presenter, defaults, locations);
    QTemporaryDir folder;
};

} // namespace

class tst_settings : public QObject
{
    Q_OBJECT

private slots:
    void theSwitchIsWrittenWhenAPersonTurnsIt()
    {
        SettingsBench bench;
        QVERIFY(bench.defaults.values.isEmpty());
        bench.settings->controlClicked(0, 0, SettingsViewController::CloudSwitch, true);
        QVERIFY(bench.defaults.boolValue(u"iCloudOn"_s) && bench.isSwitchOn());
        // Where the store was last is the application's to say.
        QVERIFY(!bench.defaults.values.contains(u"prev_iCloudOn"_s));
        bench.settings->controlClicked(0, 0, SettingsViewController::CloudSwitch, false);
        QVERIFY(!bench.defaults.boolValue(u"iCloudOn"_s) && !bench.isSwitchOn());
    }

    void whatIsMissingIsSaid()
    {
        using Status = SettingsViewController::Status;
        SettingsBench bench;
        QCOMPARE(bench.settings->status(), Status::Local);
        bench.settings->controlClicked(0, 0, SettingsViewController::CloudSwitch, true);
        QCOMPARE(bench.settings->status(), Status::NothingChosen);
        QVERIFY(bench.advice().contains(u"turn the switch off"));
        bench.chooseFolder(bench.folder.path());
        QCOMPARE(bench.settings->status(), Status::Cloud);
        QVERIFY(bench.folder.remove());
        QSignalSpy changes(bench.settings->modelPointer(), &QAbstractItemModel::dataChanged);
        bench.settings->refresh();
        QVERIFY(!changes.isEmpty());
        QCOMPARE(bench.settings->status(), Status::Missing);
        QVERIFY(bench.advice().contains(u"turn the switch off"));
        QFile instead(bench.locations.documentsFolder());
        QVERIFY(QDir().rmdir(instead.fileName()) && instead.open(QIODevice::WriteOnly));
        bench.settings->controlClicked(0, 0, SettingsViewController::CloudSwitch, false);
        QCOMPARE(bench.settings->status(), Status::LocalUnusable);
        QVERIFY(bench.settings->cellForRow({0, 2}).text.contains(instead.fileName()));
    }

    void aFolderThatWillDoIsTaken_data()
    {
        columns<QString, QString, bool>("before", "after", "isTaken");
        row("as it is", QString(), QString(), true);
        row("blanks around it", u"  "_s, u" "_s, true);
        row("slash behind it", QString(), u"/"_s, true);
        row("not there", QString(), u"/nothing"_s, false);
        row("relative", u"."_s, QString(), false);
    }
    void aFolderThatWillDoIsTaken()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        SettingsBench bench;
        bench.chooseFolder(before % bench.folder.path() % after);
        const bool isTaken = bench.defaults.value(u"cloudFolder"_s).toString() == bench.folder.path();
        QTEST(isTaken, "isTaken");
        QCOMPARE(bench.presenter.notices().size(), isTaken ? 0 : 1);
        QCOMPARE(bench.folderShown() == bench.folder.path(), isTaken);
    }

    void theComputersOwnDocumentsAreNoCloudFolder()
    {
        SettingsBench bench;
        const QString own = bench.locations.documentsFolder();
        QVERIFY(QDir(own).mkdir(u"below"_s));
        for (const QString &path : {own, QString(own % u"/below"), QFileInfo(own).path()})
            bench.chooseFolder(path);
        QVERIFY(!bench.defaults.values.contains(u"cloudFolder"_s));
        QCOMPARE(bench.presenter.notices().size(), 3);
    }

    void cancelChangesNothing()
    {
        SettingsBench bench;
        bench.settings->rowClicked(0, 1);
        QVERIFY(bench.presenter.cancelAlert());
        QVERIFY(bench.defaults.values.isEmpty() && bench.presenter.notices().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_settings)
#include "tst_settings.moc"
