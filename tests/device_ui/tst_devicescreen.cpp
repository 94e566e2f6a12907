// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeviceScreenBench.h"
#include "device_ui/CVDeviceTableViewController.h"
#include "support/Rows.h"
#include "ui/NavigationController.h"

#include <QAbstractItemModelTester>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Screen = CVDeviceTableViewController;

DeviceProfile withFiles(int count)
{
    DeviceProfile profile;
    for (int i = 0; i < count; ++i)
        profile.files.append({"FILE" + QByteArray::number(i) + ".TXT", "text"});
    return profile;
}

struct DeviceBench : DeviceScreenBench
{
    explicit DeviceBench(const DeviceProfile &profile = withFiles(2), bool isTablet = true,
                         BluetoothCentral::State state = BluetoothCentral::State::PoweredOn)
        : DeviceScreenBench(isTablet, {profile}, state)
        , screen(std::make_shared<Screen>(context))
        , tester(screen->modelPointer())
    {
        presenter.showRoot(screen);
        advance(1s);
        QObject::connect(screen->modelPointer(), &QAbstractItemModel::modelReset, [this] { ++resets; });
        QObject::connect(screen->modelPointer(), &QAbstractItemModel::rowsRemoved, [this] { ++removals; });
    }

    IndexPath pathOf(const QString &label) const
    {
        for (int section = 0; section < screen->numberOfSections(); ++section) {
            for (int row = 0; row < screen->numberOfRows(section); ++row) {
                if (screen->cellForRow({section, row}).text == label)
                    return {section, row};
            }
        }
        return {-1, -1};
    }
    TableCell cell(const QString &label) const { return screen->cellForRow(pathOf(label)); }
    QString detail(const QString &label) const { return cell(label).detail; }
    std::optional<CellControl> control(const QString &label, int id) const
    {
        for (const CellControl &control : cell(label).controls) {
            if (control.id == id)
                return control;
        }
        return {};
    }
    void click(const QString &label, int id, bool on = false)
    {
        const IndexPath path = pathOf(label);
        screen->controlClicked(path.section, path.row, id, on);
    }
    std::shared_ptr<CVConnectViewController> dialog() const
    {
        return presentedBy<CVConnectViewController>(screen);
    }
    bool openAndChoose()
    {
        click(u"State:"_s, Screen::ConnectButton);
        const auto picker = [this] { return presentedBy<CVBTViewController>(dialog()); };
        if (!advanceUntil([&] { return dialog() && picker() && picker()->numberOfRows(0) > 1; }))
            return false;
        picker()->rowClicked(0, 0);
        return true;
    }
    bool connectDevice()
    {
        if (!openAndChoose() || !advanceUntil([this] { return dialog()->isDoneVisible(); }))
            return false;
        dialog()->doneButtonClicked();
        return advanceUntil(
            [this] { return !dialog() && control(u"Files:"_s, Screen::RefreshFilesButton).has_value(); });
    }
    QList<QByteArray> received() const { return simulated().firmware().receivedCommands(); }

    std::shared_ptr<Screen> screen;
    QAbstractItemModelTester tester;
    int resets = 0;
    int removals = 0;
};

} // namespace

// The device tab: its rows in each situation, and what its controls do to a device.
class tst_DeviceScreen : public QObject
{
    Q_OBJECT

private slots:
    void notConnected();
    void notSupported();
    void connectedRows_data();
    void connectedRows();
    void namesByNumber_data();
    void namesByNumber();
    void connectAndDisconnect_data();
    void connectAndDisconnect();
    void chatSection();
    void cancelledConnect();
    void onlyOneDialog();
    void layoutWaitsForTheDialog();
    void uebSwitch_data();
    void uebSwitch();
    void refresh_data();
    void refresh();
    void refreshThatNeverEnds_data();
    void refreshThatNeverEnds();
    void loss_data();
    void loss();
    void lossWhileTheDialogIsUp();
    void showFiles();
};

void tst_DeviceScreen::notConnected()
{
    DeviceBench bench;
    QStringList labels;
    for (int row = 0; row < bench.screen->numberOfRows(0); ++row) {
        const TableCell cell = bench.screen->cellForRow({0, row});
        labels.append(cell.text);
        QCOMPARE(cell.style, TableCell::Style::Value2);
        QCOMPARE(cell.detail, row == 0 ? u"Disconnected"_s : QString());
        QCOMPARE(cell.controls.size(), row == 0 ? 1 : 0);
    }
    QCOMPARE(labels, (QStringList{u"State:"_s, u"Files:"_s, u"Language:"_s, u"UEB:"_s, u"Braille table:"_s,
                                  u"Mode:"_s, u"Firmware:"_s, u"Model:"_s, u"Serial No.:"_s}));
    QCOMPARE(bench.screen->numberOfSections(), 2);
    QCOMPARE(bench.screen->numberOfRows(1), 1);
    QCOMPARE(bench.detail(u"CVTamber version::"_s), QStringLiteral(CVTAMBER_VERSION));
    QCOMPARE(bench.control(u"State:"_s, Screen::ConnectButton)->title, u"Connect..."_s);
    QVERIFY(!bench.screen->allowsSelection());
}

void tst_DeviceScreen::notSupported()
{
    DeviceBench bench(withFiles(1), true, BluetoothCentral::State::Unsupported);
    QCOMPARE(bench.screen->numberOfSections(), 2);
    QCOMPARE(bench.screen->numberOfRows(0), 1);
    QCOMPARE(bench.screen->cellForRow({0, 0}).text, u"Bluetooth LE is not supported on this device"_s);
    QCOMPARE(bench.screen->cellForRow({1, 0}).text, u"CVTamber version::"_s);
}

void tst_DeviceScreen::connectedRows_data()
{
    columns<DeviceProfile, QStringList>("profile", "details");
    DeviceProfile profile = withFiles(2);
    row("English", profile,
        QStringList{u"Connected"_s, u"2"_s, u"English"_s, u""_s, u"BC_ITALIAN"_s, u"Learn"_s, u"2.1A004"_s,
                    u"Scribe Plus"_s, u"10472356"_s});
    profile = withFiles(0);
    profile.model = 4;
    profile.firmware = "1.0E123";
    profile.languageSwitch = 7;
    profile.language = 15;
    profile.serial = "AB 12/<b";
    profile.stateFields = {{0, 2}, {28, 1}};
    row("Chinese, advanced", profile,
        QStringList{u"Connected"_s, u"0"_s, u"Chinese"_s, u""_s, u"BC_ENGLISH_UK"_s, u"Advanced"_s,
                    u"1.0E123"_s, u"Tutor System"_s, u"AB 12/<b"_s});
}

void tst_DeviceScreen::connectedRows()
{
    QFETCH(DeviceProfile, profile);
    QFETCH(QStringList, details);
    DeviceBench bench(profile);
    QVERIFY(bench.connectDevice());
    QStringList shown;
    for (int row = 0; row < bench.screen->numberOfRows(1); ++row)
        shown.append(bench.screen->cellForRow({1, row}).detail);
    QCOMPARE(shown, details);
    QCOMPARE(bench.screen->numberOfSections(), 3);
    QCOMPARE(bench.control(u"Files:"_s, Screen::ShowFilesButton).has_value(), !profile.files.isEmpty());
    QCOMPARE(bench.resets, 0);
    QCOMPARE(bench.removals, 0);
}

void tst_DeviceScreen::namesByNumber_data()
{
    columns<int, QString>("model", "name");
    row("unknown", 0, u""_s);
    row("first", 1, u"Scribe"_s);
    row("last", 4, u"Tutor System"_s);
    row("beyond", 5, u""_s);
    row("negative", -1, u""_s);
}

void tst_DeviceScreen::namesByNumber()
{
    QFETCH(int, model);
    QFETCH(QString, name);
    DeviceBench bench;
    QVERIFY(bench.connectDevice());
    bench.device.setCvModel(model);
    bench.screen->linkStateChanged(1);
    QCOMPARE(bench.detail(u"Model:"_s), name);
}

void tst_DeviceScreen::connectAndDisconnect_data()
{
    columns<bool>("isTablet");
    row("tablet", true);
    row("phone", false);
}

void tst_DeviceScreen::connectAndDisconnect()
{
    QFETCH(bool, isTablet);
    DeviceBench bench(withFiles(2), isTablet);
    QVERIFY(bench.connectDevice());
    QCOMPARE(bench.rig.log.count(u"[info] -(void)connectButtonClicked"_s), 1);
    QCOMPARE(bench.control(u"State:"_s, Screen::ConnectButton)->title, u"Disconnect..."_s);
    // Nothing but the screen may hold what has been closed.
    QCOMPARE(bench.rig.log.count(u"[info] CVConnectViewController::dealloc"_s), 1);

    bench.click(u"State:"_s, Screen::ConnectButton);
    QCOMPARE(bench.detail(u"State:"_s), u"Disconnected"_s);
    QCOMPARE(bench.detail(u"Serial No.:"_s), QString());
    QVERIFY(bench.cell(u"Files:"_s).controls.isEmpty());
    QVERIFY(bench.cell(u"UEB:"_s).controls.isEmpty());
    bench.advance(5s);
    QVERIFY(!bench.simulated().isLinked());
    QVERIFY(bench.presenter.notices().isEmpty());
    QCOMPARE(bench.removals, 1);
    QVERIFY(bench.connectDevice());
    QCOMPARE(bench.resets, 0);
    QCOMPARE(bench.removals, 1);
}

void tst_DeviceScreen::chatSection()
{
    DeviceBench bench;
    bench.screen->linkStateChanged(0);
    QCOMPARE(bench.screen->numberOfSections(), 2);
    RowAnimation inserted = RowAnimation::None;
    RowAnimation removed = RowAnimation::None;
    QObject::connect(bench.screen->modelPointer(), &QAbstractItemModel::rowsInserted,
                     [&] { inserted = bench.screen->rowAnimation(); });
    QObject::connect(bench.screen->modelPointer(), &QAbstractItemModel::rowsRemoved,
                     [&] { removed = bench.screen->rowAnimation(); });
    QVERIFY(bench.connectDevice());
    QVERIFY(inserted == RowAnimation::Fade);
    QCOMPARE(bench.screen->numberOfRows(0), 2);
    for (const auto &[row, title] : {std::pair(0, u"Whiteboard"_s), std::pair(1, u"Chat"_s)}) {
        const TableCell cell = bench.screen->cellForRow({0, row});
        QVERIFY(cell.style == TableCell::Style::Default && cell.text.isEmpty() && !cell.canHighlight);
        QCOMPARE(cell.controls.size(), 1);
        QCOMPARE(cell.controls[0].title, title);
    }
    // A state that tells of no end only fills the labels.
    bench.screen->linkStateChanged(1);
    QCOMPARE(bench.screen->numberOfSections(), 3);
    bench.simulated().dropLink();
    bench.advance(1s);
    QVERIFY(removed == RowAnimation::Top);
    QCOMPARE(bench.screen->numberOfSections(), 2);
    QCOMPARE(bench.resets, 0);
}

void tst_DeviceScreen::cancelledConnect()
{
    DeviceBench bench;
    bench.click(u"State:"_s, Screen::ConnectButton);
    bench.advance(2s);
    const auto dialog = bench.dialog();
    QCOMPARE(dialog->modalPresentationStyle(), PresentationStyle::FormSheet);
    QCOMPARE(dialog->modalTransitionStyle(), TransitionStyle::FlipHorizontal);
    bench.presentedBy<CVBTViewController>(dialog)->footerButtonClicked();
    bench.advance(5s);
    QVERIFY(!bench.dialog());
    QCOMPARE(bench.detail(u"State:"_s), u"Disconnected"_s);
    QVERIFY(bench.connectDevice());
}

void tst_DeviceScreen::onlyOneDialog()
{
    DeviceBench bench;
    bench.click(u"State:"_s, Screen::ConnectButton);
    bench.click(u"State:"_s, Screen::ConnectButton);
    bench.advance(2s);
    const auto dialog = bench.dialog();
    bench.click(u"State:"_s, Screen::ConnectButton);
    bench.advance(2s);
    QCOMPARE(bench.dialog(), dialog);
    QVERIFY(bench.openAndChoose() || bench.presentedBy<CVBTViewController>(dialog));
}

// On a tablet the table stands beside the dialog.
void tst_DeviceScreen::layoutWaitsForTheDialog()
{
    DeviceBench bench;
    QVERIFY(bench.openAndChoose());
    QVERIFY(bench.advanceUntil([&] { return bench.dialog()->isDoneVisible(); }));
    QVERIFY(bench.device.isConnectedAsCVComm());
    QCOMPARE(bench.detail(u"State:"_s), u"Disconnected"_s);
    bench.dialog()->doneButtonClicked();
    bench.advance(5s);
    QCOMPARE(bench.detail(u"State:"_s), u"Connected"_s);
}

void tst_DeviceScreen::uebSwitch_data()
{
    columns<int, QList<bool>, QList<QByteArray>, bool, bool>("language", "clicks", "commands", "isOn",
                                                             "isEnabled");
    using Clicks = QList<bool>;
    using Commands = QList<QByteArray>;
    row("untouched", 2, Clicks{}, Commands{}, false, true);
    row("off", 2, Clicks{false}, Commands{}, false, true);
    row("on", 2, Clicks{true}, Commands{"DFLN OZ"}, true, true);
    row("on twice", 2, Clicks{true, true}, Commands{"DFLN OZ"}, true, true);
    row("on, on, off", 2, Clicks{true, true, false}, Commands{"DFLN OZ", "DFLN USA"}, false, true);
    row("off again", 2, Clicks{true, false, false}, Commands{"DFLN OZ", "DFLN USA"}, false, true);
    row("Australian", 1, Clicks{}, Commands{}, true, false);
    row("Australian, pressed", 1, Clicks{false, true, false}, Commands{}, true, false);
}

void tst_DeviceScreen::uebSwitch()
{
    QFETCH(int, language);
    QFETCH(QList<bool>, clicks);
    QFETCH(QList<QByteArray>, commands);
    QFETCH(bool, isOn);
    QFETCH(bool, isEnabled);
    DeviceProfile profile;
    profile.languageSwitch = language - 1;
    DeviceBench bench(profile);
    QVERIFY(bench.connectDevice());
    for (const bool on : clicks) {
        bench.click(u"UEB:"_s, Screen::SwitchUEBC, on);
        bench.advance(1s);
    }
    QList<QByteArray> sent;
    for (const QByteArray &command : bench.received()) {
        if (command.startsWith("DFLN"))
            sent.append(command);
    }
    QCOMPARE(sent, commands);
    QCOMPARE(bench.control(u"UEB:"_s, Screen::SwitchUEBC)->isOn, isOn);
    QCOMPARE(bench.control(u"UEB:"_s, Screen::SwitchUEBC)->isEnabled, isEnabled);
}

void tst_DeviceScreen::refresh_data()
{
    columns<int, int>("before", "after");
    row("none", 0, 0);
    row("more", 1, 3);
    row("all gone", 2, 0);
    row("first", 0, 1);
}

void tst_DeviceScreen::refresh()
{
    QFETCH(int, before);
    QFETCH(int, after);
    DeviceBench bench(withFiles(before));
    QVERIFY(bench.connectDevice());
    bench.simulated().firmware().restore(withFiles(after).files, 1, 1, {});
    bench.click(u"Files:"_s, Screen::RefreshFilesButton);
    QVERIFY(bench.control(u"Files:"_s, Screen::FilesActivityIndicator));
    QVERIFY(!bench.control(u"Files:"_s, Screen::RefreshFilesButton));
    const auto show = bench.control(u"Files:"_s, Screen::ShowFilesButton);
    QCOMPARE(show.has_value(), before > 0);
    QVERIFY(!show || !show->isEnabled);
    bench.click(u"Files:"_s, Screen::RefreshFilesButton);
    bench.click(u"Files:"_s, Screen::ShowFilesButton);
    QVERIFY(bench.advanceUntil(
        [&] { return bench.control(u"Files:"_s, Screen::RefreshFilesButton).has_value(); }));
    QCOMPARE(bench.simulated().firmware().commandCount("DIR"), 2);
    QVERIFY(!bench.screen->presentedViewController());
    QCOMPARE(bench.detail(u"Files:"_s), QString::number(after));
    QVERIFY(!bench.control(u"Files:"_s, Screen::FilesActivityIndicator));
    const auto shown = bench.control(u"Files:"_s, Screen::ShowFilesButton);
    QCOMPARE(shown.has_value(), after > 0);
    QVERIFY(!shown || shown->isEnabled);
}

void tst_DeviceScreen::refreshThatNeverEnds_data()
{
    columns<QString>("why");
    row("link lost", u"lost"_s);
    row("disconnected", u"disconnected"_s);
    row("another command", u"command"_s);
}

void tst_DeviceScreen::refreshThatNeverEnds()
{
    QFETCH(QString, why);
    DeviceBench bench;
    QVERIFY(bench.connectDevice());
    bench.click(u"Files:"_s, Screen::RefreshFilesButton);
    if (why == u"lost"_s) {
        bench.simulated().dropLink();
    } else if (why == u"disconnected"_s) {
        bench.click(u"State:"_s, Screen::ConnectButton);
    } else {
        bench.device.getFile(u"FILE0.TXT"_s, 0);
        bench.screen->linkStateChanged(1);
    }
    bench.advance(30s);
    if (!bench.device.isConnectedAsCVComm()) {
        QVERIFY(bench.cell(u"Files:"_s).controls.isEmpty());
        QVERIFY(bench.connectDevice());
    }
    QVERIFY(!bench.control(u"Files:"_s, Screen::FilesActivityIndicator));
    QVERIFY(bench.control(u"Files:"_s, Screen::RefreshFilesButton)->isEnabled);
    QVERIFY(bench.control(u"Files:"_s, Screen::ShowFilesButton)->isEnabled);
}

void tst_DeviceScreen::loss_data()
{
    columns<bool>("withError");
    row("with an error", true);
    row("without one", false);
}

// The link comes back by itself, unless the person does not want it to.
void tst_DeviceScreen::loss()
{
    QFETCH(bool, withError);
    const auto lost = u"The connection to the Corvane was lost. Trying to connect again."_s;
    DeviceBench bench;
    QVERIFY(bench.connectDevice());
    bench.simulated().dropLink(withError);
    bench.advance(500ms);
    QCOMPARE(bench.presenter.notices(), QStringList{lost});
    QCOMPARE(bench.detail(u"State:"_s), u"Connecting again"_s);
    bench.advance(20s);
    QCOMPARE(bench.presenter.notices(), (QStringList{lost, u"The Corvane is connected again."_s}));
    QCOMPARE(bench.detail(u"State:"_s), u"Connected"_s);
    bench.simulated().dropLink(withError);
    bench.advance(500ms);
    QCOMPARE(bench.control(u"State:"_s, Screen::ConnectButton)->title, u"Cancel"_s);
    bench.click(u"State:"_s, Screen::ConnectButton);
    QCOMPARE(bench.detail(u"State:"_s), u"Disconnected"_s);
    bench.advance(5min);
    QVERIFY(!bench.device.isConnectedAsCVComm() && !bench.simulated().isLinked());
    QVERIFY(bench.connectDevice());
    QCOMPARE(bench.presenter.notices().size(), 3);
}

// The dialog says it itself.
void tst_DeviceScreen::lossWhileTheDialogIsUp()
{
    DeviceBench bench;
    QVERIFY(bench.openAndChoose());
    QVERIFY(bench.advanceUntil([&] { return bench.dialog()->isDoneVisible(); }));
    bench.simulated().dropLink();
    bench.advance(1s);
    QVERIFY(bench.dialog()->isRetryVisible());
    QVERIFY(bench.presenter.notices().isEmpty());
    bench.dialog()->cancelButtonClicked();
    bench.advance(5s);
    QCOMPARE(bench.detail(u"State:"_s), u"Disconnected"_s);
}

void tst_DeviceScreen::showFiles()
{
    DeviceBench bench;
    QVERIFY(bench.connectDevice());
    bench.click(u"Files:"_s, Screen::ShowFilesButton);
    bench.advance(2s);
    const auto navigation = bench.presentedBy<NavigationController>(bench.screen);
    QVERIFY(navigation);
    QCOMPARE(navigation->modalPresentationStyle(), PresentationStyle::FormSheet);
    const auto files = navigation->topViewController();
    QCOMPARE(files->title(), u"Corvane files"_s);
    QCOMPARE(files->leftItems().size(), 1);
    QCOMPARE(files->leftItems().constFirst().kind, BarButtonItem::Kind::Done);
    bench.device.deleteFile(u"FILE0.TXT"_s);
    files->leftItemClicked(0);
    bench.advance(2s);
    QVERIFY(!bench.screen->presentedViewController());
    QCOMPARE(bench.detail(u"Files:"_s), u"1"_s);
}

QTEST_GUILESS_MAIN(tst_DeviceScreen)
#include "tst_devicescreen.moc"
