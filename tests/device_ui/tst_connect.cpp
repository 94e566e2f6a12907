// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeviceScreenBench.h"
#include "device_ui/CVConnectViewController.h"
#include "support/Rows.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Result = CVConnectViewController::Result;

// The screen that opens the dialog: keeps what it is told, and closes the dialog as real ones do.
class Host final : public ViewController, public CVConnectViewDelegate
{
public:
    using ViewController::ViewController;

    void connectViewControllerDidClickedWithButton(CVConnectViewController &, int button) override
    {
        told.append(u"button %1"_s.arg(button));
        dismissViewController(true);
    }
    void cvConnectViewDeviceConnected() override { told.append(u"connected"_s); }

    QStringList told;
};

class Listener final : public CVBluetoothManagerDelegate
{
public:
    void newDeviceFound(const CVBTPeripheralPtr &device) override { found = device; }

    CVBTPeripheralPtr found;
};

struct ConnectBench : DeviceScreenBench
{
    using DeviceScreenBench::DeviceScreenBench;
    ~ConnectBench() { dialog.reset(); }

    void open(const BluetoothPeripheralPtr &peripheral = nullptr)
    {
        host = std::make_shared<Host>(presenter);
        presenter.showRoot(host);
        advance(1s);
        dialog = peripheral ? std::make_shared<CVConnectViewController>(context, peripheral)
                            : std::make_shared<CVConnectViewController>(context);
        dialog->setDelegate(host);
        dialog->setModalPresentationStyle(PresentationStyle::FormSheet);
        host->presentViewController(dialog, true);
        advance(1s);
    }
    std::shared_ptr<CVBTViewController> picker() const { return presentedBy<CVBTViewController>(dialog); }
    bool waitForDevice(int count = 1)
    {
        return advanceUntil([this, count] { return picker() && picker()->numberOfRows(0) > count; });
    }
    // The first device of the picker that is up.
    bool choose()
    {
        if (!waitForDevice())
            return false;
        picker()->rowClicked(0, 0);
        return true;
    }
    bool waitForResult(std::chrono::nanoseconds limit = 60s)
    {
        return advanceUntil([this] { return dialog->result() != Result::NoResult; }, limit);
    }
    bool openAndConnect()
    {
        open();
        return choose() && waitForResult() && dialog->result() == Result::Connected;
    }

    std::shared_ptr<Host> host;
    std::shared_ptr<CVConnectViewController> dialog;
};

} // namespace

// From a scan to a link that works, and everything that may come between.
class tst_Connect : public QObject
{
    Q_OBJECT

private slots:
    void foundDevice_data();
    void foundDevice();
    void waitRow_data();
    void waitRow();
    void radioComesBack();
    void cancelledPick_data();
    void cancelledPick();
    void rowsKeepTheirOrder();
    void chosenOnce();

    void connects();
    void knownPeripheral();
    void failure_data();
    void failure();
    void loss_data();
    void loss();
    void states_data();
    void states();
    void limitWithoutState();
    void answeredOnce_data();
    void answeredOnce();
    void stateDelegateGivenBack_data();
    void stateDelegateGivenBack();
    void cancelLeavesNoLink();
};

void tst_Connect::foundDevice_data()
{
    columns<InfoPlace, QString, QString, QString>("info", "text", "title", "subtitle");
    row("name and serial", InfoPlace::DeviceService, u"10472356,Anna's Corvane"_s, u"Anna's Corvane"_s,
        u"10472356"_s);
    row("serial alone", InfoPlace::DeviceService, u"10472356"_s, u"Corvane Brailler"_s, u"10472356"_s);
    row("empty name", InfoPlace::DeviceService, u"10472356,"_s, u"Corvane Brailler"_s, u"10472356"_s);
    row("empty serial", InfoPlace::DeviceService, u",Corvane"_s, u"Corvane"_s, u""_s);
    row("one byte", InfoPlace::DeviceService, u"1"_s, u"Corvane Brailler"_s, u"ADDRESS"_s);
    row("nothing to read", InfoPlace::Nowhere, u"1,2"_s, u"Corvane Brailler"_s, u"ADDRESS"_s);
    row("control characters", InfoPlace::DeviceService, u"1234\u000778,Co\nne"_s, u"Co\\x0ane"_s,
        u"1234\\x0778"_s);
}

void tst_Connect::foundDevice()
{
    QFETCH(InfoPlace, info);
    QFETCH(QString, text);
    QFETCH(QString, title);
    QFETCH(QString, subtitle);
    DeviceProfile profile;
    profile.info = info;
    profile.infoText = text;
    ConnectBench bench(true, {profile});
    bench.open();
    QCOMPARE(bench.picker()->numberOfRows(0), 1);
    QVERIFY(bench.waitForDevice());
    const TableCell cell = bench.picker()->cellForRow({0, 0});
    QCOMPARE(cell.style, TableCell::Style::Subtitle);
    QCOMPARE(cell.text, title);
    QCOMPARE(cell.detail, subtitle == u"ADDRESS"_s ? bench.simulated().identifier() : subtitle);
    QVERIFY(bench.presenter.announcements().contains(QString(u"Found "_s + title)));
}

void tst_Connect::waitRow_data()
{
    using State = BluetoothCentral::State;
    columns<int, QString, bool>("state", "text", "isWaiting");
    row("on", int(State::PoweredOn), u"Looking for devices. Switch the Corvane on and keep it near."_s, true);
    row("off", int(State::PoweredOff), u"Bluetooth is off. Turn it on to find your Corvane."_s, false);
    row("not allowed", int(State::Unauthorized),
        u"CVTamber may not use Bluetooth. Allow it in the system settings."_s, false);
    row("none", int(State::Unsupported), u"Bluetooth LE is not supported on this device"_s, false);
}

void tst_Connect::waitRow()
{
    QFETCH(int, state);
    QFETCH(QString, text);
    QFETCH(bool, isWaiting);
    ConnectBench bench(true, {}, BluetoothCentral::State(state));
    bench.open();
    bench.advance(5s);
    QCOMPARE(bench.picker()->numberOfRows(0), 1);
    const TableCell cell = bench.picker()->cellForRow({0, 0});
    QCOMPARE(cell.text, text);
    QCOMPARE(cell.style, isWaiting ? TableCell::Style::Wait : TableCell::Style::Centered);
    QCOMPARE(bench.presenter.announcements().contains(text), !isWaiting);
    bench.picker()->rowClicked(0, 0);
    bench.advance(5s);
    QVERIFY(bench.picker());
}

// A scan does not outlive the radio, so it is begun again.
void tst_Connect::radioComesBack()
{
    ConnectBench bench;
    bench.open();
    QCOMPARE(bench.picker()->cellForRow({0, 0}).style, TableCell::Style::Wait);
    bench.radio->switchOff(2s);
    bench.advance(1s);
    QCOMPARE(bench.picker()->cellForRow({0, 0}).style, TableCell::Style::Centered);
    QVERIFY(bench.waitForDevice());
    QCOMPARE(bench.picker()->cellForRow({0, 1}).style, TableCell::Style::Wait);
}

void tst_Connect::cancelledPick_data()
{
    columns<int, bool>("afterMilliseconds", "isStuck");
    for (const int time : {0, 300, 500, 700, 900, 1100, 1300, 3000}) {
        row(qPrintable(QString::number(time)), time, false);
        row(qPrintable(QString::number(time) + u", tells no services"_s), time, true);
    }
}

// At whatever moment of the scan: the dialog goes with the picker, and no device is left linked by a scan.
void tst_Connect::cancelledPick()
{
    QFETCH(int, afterMilliseconds);
    QFETCH(bool, isStuck);
    DeviceProfile profile;
    if (isStuck)
        profile.faults.append(fault(Fault::Kind::ServicesNever));
    ConnectBench bench(true, {profile});
    bench.open();
    bench.advance(std::chrono::milliseconds(afterMilliseconds));
    const auto picker = bench.picker();
    picker->footerButtonClicked();
    picker->footerButtonClicked();
    if (picker->numberOfRows(0) > 1)
        picker->rowClicked(0, 0);
    QCOMPARE(bench.host->told, QStringList{u"button 0"_s});
    bench.advance(5s);
    QVERIFY(!bench.host->presentedViewController());
    const int connects = bench.simulated().counters().connects;
    bench.advance(30s);
    QCOMPARE(bench.simulated().counters().connects, connects);
    QVERIFY(!bench.simulated().isLinked());
    QVERIFY(!bench.device.isConnectedAsCVComm());
}

void tst_Connect::rowsKeepTheirOrder()
{
    QList<DeviceProfile> profiles(3);
    for (int i = 0; i < 3; ++i) {
        profiles[i].serial = QByteArray("1000000") + QByteArray::number(i);
        profiles[i].delays.read = std::chrono::milliseconds(20 * (3 - i));
    }
    ConnectBench bench(true, profiles);
    bench.open();
    QAbstractItemModelTester tester(bench.picker()->modelPointer());
    QSignalSpy resets(bench.picker()->modelPointer(), &QAbstractItemModel::modelReset);
    QVERIFY(bench.waitForDevice(3));
    QStringList serials;
    for (int i = 0; i < 3; ++i)
        serials.append(bench.picker()->cellForRow({0, i}).detail);
    QCOMPARE(serials, (QStringList{u"10000002"_s, u"10000001"_s, u"10000000"_s}));
    QCOMPARE(bench.picker()->modelPointer()->rowCount(), 4);
    QCOMPARE(resets.count(), 0);
    QVERIFY(!bench.picker()->cellForRow({0, 3}).canHighlight);
    bench.picker()->rowClicked(0, 1);
    QVERIFY(bench.waitForResult());
    QCOMPARE(bench.dialog->result(), Result::Connected);
    QVERIFY(bench.simulated(1).isLinked());
    QVERIFY(!bench.simulated(0).isLinked());
    QVERIFY(!bench.simulated(2).isLinked());
}

void tst_Connect::chosenOnce()
{
    ConnectBench bench;
    bench.open();
    QVERIFY(bench.waitForDevice());
    const auto picker = bench.picker();
    picker->rowClicked(0, 0);
    picker->rowClicked(0, 0);
    picker->footerButtonClicked();
    QVERIFY(bench.waitForResult());
    QCOMPARE(bench.host->told, QStringList{u"connected"_s});
    QCOMPARE(bench.simulated().counters().connects, 2); // once to read who it is
}

void tst_Connect::connects()
{
    ConnectBench bench;
    bench.open();
    const auto dialog = bench.dialog;
    QVERIFY(!dialog->isBusy());
    QVERIFY(!dialog->isRetryVisible() && !dialog->isCancelVisible() && !dialog->isDoneVisible());
    QVERIFY(bench.choose());
    QVERIFY(bench.advanceUntil([&] { return dialog->isBusy(); }));
    QVERIFY(!bench.picker());
    QCOMPARE(bench.device.cvStateDelegate().get(), static_cast<CVDeviceStateDelegate *>(dialog.get()));
    QVERIFY(bench.waitForResult());
    QCOMPARE(dialog->result(), Result::Connected);
    QCOMPARE(dialog->resultText(), u"Connected!"_s);
    QVERIFY(!dialog->isBusy());
    QVERIFY(dialog->isDoneVisible() && !dialog->isRetryVisible() && !dialog->isCancelVisible());
    QVERIFY(bench.device.isConnectedAsCVComm());
    QCOMPARE(bench.host->told, QStringList{u"connected"_s});
    QCOMPARE(bench.presenter.announcements().last(), u"Connected!"_s);
    // The limit of an attempt that has ended says nothing any more.
    bench.advance(60s);
    QCOMPARE(dialog->result(), Result::Connected);
}

void tst_Connect::knownPeripheral()
{
    ConnectBench bench;
    const auto listener = std::make_shared<Listener>();
    bench.manager->setDelegate(listener);
    bench.manager->startDeviceScan();
    QVERIFY(bench.advanceUntil([&] { return listener->found != nullptr; }));
    bench.manager->stopDeviceScan();
    bench.open(listener->found->peripheral());
    QVERIFY(!bench.picker());
    QVERIFY(bench.dialog->isBusy() || bench.dialog->result() == Result::Connected);
    QVERIFY(bench.waitForResult());
    QCOMPARE(bench.dialog->result(), Result::Connected);
}

void tst_Connect::failure_data()
{
    using Kind = Fault::Kind;
    columns<Fault, int>("what", "seconds");
    row("connect never", fault(Kind::ConnectNever), 6);
    row("connect fails", fault(Kind::ConnectFails), 6);
    row("services never", fault(Kind::ServicesNever), 6);
    row("discovery fails", fault(Kind::DiscoveryFails), 6);
    row("always dropped", fault(Kind::DropAfterConnect), 46);
    row("no link reply", fault(Kind::NoAnswer, "PC S2 ON"), 4);
    row("no state", fault(Kind::NoAnswer, "PCR"), 6);
    row("short state", fault(Kind::CustomReply, "PCR", "1, 2, 3"), 6);
    row("no version at all", fault(Kind::NoAnswer), 10);
    row("tells nothing after the link", fault(Kind::CustomReply, "PC S2 ON", "{PC.}"), 46);
}

// Whatever fails, the dialog says so in time, and Retry connects once the cause is gone.
void tst_Connect::failure()
{
    QFETCH(Fault, what);
    QFETCH(int, seconds);
    ConnectBench bench;
    bench.open();
    QVERIFY(bench.waitForDevice());
    bench.simulated().faults().add(what);
    QVERIFY(bench.choose());
    QVERIFY(bench.advanceUntil([&] { return bench.dialog->isBusy(); }));
    QVERIFY(bench.waitForResult(std::chrono::seconds(seconds)));
    QCOMPARE(bench.dialog->result(), Result::NotConnected);
    QCOMPARE(bench.dialog->resultText(), u"Not connected!"_s);
    QVERIFY(!bench.dialog->isBusy());
    QVERIFY(bench.dialog->isRetryVisible() && bench.dialog->isCancelVisible());
    QVERIFY(!bench.dialog->isDoneVisible());
    QCOMPARE(bench.presenter.announcements().count(u"Not connected!"_s), 1);
    QVERIFY(bench.host->told.isEmpty());

    bench.simulated().faults() = FaultScript();
    bench.dialog->retryButtonClicked();
    QCOMPARE(bench.dialog->result(), Result::NoResult);
    QVERIFY(bench.dialog->isBusy());
    QVERIFY(!bench.dialog->isRetryVisible() && !bench.dialog->isCancelVisible());
    // What is left of the attempt that was given up.
    bench.dialog->corvaneDeviceStateChanged(0);
    QCOMPARE(bench.dialog->result(), Result::NoResult);
    QVERIFY(bench.choose());
    QVERIFY(bench.waitForResult());
    QCOMPARE(bench.dialog->result(), Result::Connected);
    QVERIFY(bench.device.isConnectedAsCVComm());
}

void tst_Connect::loss_data()
{
    columns<int, QString>("afterMilliseconds", "how");
    for (const int time : {0, 60, 150, 400, 1000, 2500, 5000, 9000, 20000}) {
        for (const QString &how : {u"error"_s, u"no error"_s, u"radio off"_s, u"leaves"_s})
            row(qPrintable(how + u" after "_s + QString::number(time)), time, how);
    }
}

// Lost at any moment, also after it was connected: nothing hangs, and what the dialog says is so.
void tst_Connect::loss()
{
    QFETCH(int, afterMilliseconds);
    QFETCH(QString, how);
    ConnectBench bench;
    bench.open();
    QVERIFY(bench.choose());
    QVERIFY(bench.advanceUntil([&] { return bench.dialog->isBusy(); }));
    bench.advance(std::chrono::milliseconds(afterMilliseconds));
    const bool wasConnected = bench.dialog->result() == Result::Connected;
    if (how == u"radio off"_s)
        bench.radio->switchOff(0s);
    else if (how == u"leaves"_s)
        bench.simulated().leave();
    else
        bench.simulated().dropLink(how == u"error"_s);
    bench.advance(46s);
    QVERIFY(!bench.dialog->isBusy());
    // Before the protocol has begun the link is made again by itself.
    const bool mayRecover = how.endsWith(u"error"_s) && !wasConnected;
    if (!mayRecover)
        QCOMPARE(bench.dialog->result(), Result::NotConnected);
    if (bench.dialog->result() == Result::Connected)
        QVERIFY(bench.simulated().isLinked() && bench.device.isConnectedAsCVComm());
    const QString lost = u"The connection to the Corvane was lost."_s;
    QCOMPARE(bench.presenter.announcements().count(lost), wasConnected ? 1 : 0);
    if (bench.dialog->result() == Result::NotConnected) {
        bench.dialog->cancelButtonClicked();
        bench.advance(5s);
        QCOMPARE(bench.host->told.last(), u"button 0"_s);
        QVERIFY(!bench.device.isConnectedAsCVComm());
    }
}

void tst_Connect::states_data()
{
    columns<QList<int>, Result, bool>("states", "result", "isBusy");
    row("nothing", QList<int>{}, Result::NoResult, true);
    row("another", QList<int>{2, 3, -1}, Result::NoResult, true);
    row("failed", QList<int>{0}, Result::NotConnected, false);
    row("connected", QList<int>{1}, Result::Connected, false);
    row("twice", QList<int>{1, 1}, Result::Connected, false);
    row("lost", QList<int>{1, 0}, Result::NotConnected, false);
    row("late", QList<int>{0, 0, 1}, Result::Connected, false);
}

void tst_Connect::states()
{
    QFETCH(QList<int>, states);
    QFETCH(Result, result);
    QFETCH(bool, isBusy);
    ConnectBench bench;
    bench.open();
    QVERIFY(bench.choose());
    QVERIFY(bench.advanceUntil([&] { return bench.dialog->isBusy(); }));
    for (const int state : states)
        bench.dialog->corvaneDeviceStateChanged(state);
    QCOMPARE(bench.dialog->result(), result);
    QCOMPARE(bench.dialog->isBusy(), isBusy);
    QCOMPARE(bench.dialog->isDoneVisible(), result == Result::Connected);
    QCOMPARE(bench.dialog->isRetryVisible(), result == Result::NotConnected);
    QCOMPARE(bench.host->told.count(u"connected"_s), states.contains(1) ? 1 : 0);
}

// Exactly: a device that is slow to tell itself is not given up early.
void tst_Connect::limitWithoutState()
{
    ConnectBench bench;
    bench.open();
    QVERIFY(bench.waitForDevice());
    bench.simulated().faults().add(fault(Fault::Kind::CustomReply, "PC S2 ON", "{PC.}"));
    QVERIFY(bench.choose());
    QVERIFY(bench.advanceUntil([&] { return bench.dialog->isBusy(); }));
    bench.advance(44900ms);
    QVERIFY(bench.dialog->isBusy());
    bench.advance(200ms);
    QCOMPARE(bench.dialog->result(), Result::NotConnected);
    QVERIFY(bench.device.isConnectedAsCVComm());
    bench.dialog->cancelButtonClicked();
    bench.advance(5s);
    QVERIFY(!bench.device.isConnectedAsCVComm());
    QVERIFY(!bench.simulated().isLinked());
}

void tst_Connect::answeredOnce_data()
{
    columns<bool, QString>("connects", "told");
    row("done", true, u"button 1"_s);
    row("cancel", false, u"button 0"_s);
}

void tst_Connect::answeredOnce()
{
    QFETCH(bool, connects);
    QFETCH(QString, told);
    ConnectBench bench;
    bench.open();
    QVERIFY(bench.waitForDevice());
    if (!connects)
        bench.simulated().faults().add(fault(Fault::Kind::ConnectFails));
    QVERIFY(bench.choose());
    QVERIFY(bench.waitForResult());
    bench.host->told.clear();
    for (int i = 0; i < 2; ++i) {
        bench.dialog->doneButtonClicked();
        bench.dialog->cancelButtonClicked();
        bench.dialog->retryButtonClicked();
    }
    QCOMPARE(bench.host->told, QStringList{told});
    bench.advance(5s);
    bench.dialog->doneButtonClicked();
    bench.dialog->cancelButtonClicked();
    QCOMPARE(bench.host->told, QStringList{told});
    QVERIFY(!bench.host->presentedViewController());
}

void tst_Connect::stateDelegateGivenBack_data()
{
    columns<bool, int>("isTablet", "retries");
    row("tablet", true, 0);
    row("phone", false, 0);
    row("tablet, retried", true, 2);
    row("phone, retried", false, 2);
}

// A dialog that remembered itself would stay the device's delegate, and live for ever.
void tst_Connect::stateDelegateGivenBack()
{
    QFETCH(bool, isTablet);
    QFETCH(int, retries);
    ConnectBench bench(isTablet);
    const auto previous = std::make_shared<RecordingDelegates>();
    bench.device.setCvStateDelegate(previous);
    bench.open();
    for (int i = 0; i < retries; ++i) {
        QVERIFY(bench.waitForDevice());
        bench.simulated().faults().add(fault(Fault::Kind::ConnectFails));
        QVERIFY(bench.choose());
        QVERIFY(bench.waitForResult());
        QCOMPARE(bench.dialog->result(), Result::NotConnected);
        bench.simulated().faults() = FaultScript();
        bench.dialog->retryButtonClicked();
        bench.advance(1s);
    }
    QVERIFY(bench.choose());
    QVERIFY(bench.waitForResult());
    QCOMPARE(bench.dialog->result(), Result::Connected);
    QVERIFY(previous->take().isEmpty());
    bench.dialog->doneButtonClicked();
    bench.advance(5s);
    QCOMPARE(bench.device.cvStateDelegate().get(), static_cast<CVDeviceStateDelegate *>(previous.get()));
    const std::weak_ptr<CVConnectViewController> gone = bench.dialog;
    bench.dialog.reset();
    QVERIFY(gone.expired());
    QCOMPARE(bench.rig.log.count(u"[info] CVConnectViewController::dealloc"_s), 1);
    bench.device.disconnectAsCVComm();
    QCOMPARE(previous->take(), QStringList{u"state 2"_s});
}

// A device that was linked but not identified would be neither connected nor to be found again.
void tst_Connect::cancelLeavesNoLink()
{
    ConnectBench bench;
    bench.open();
    QVERIFY(bench.waitForDevice());
    bench.simulated().faults().add(fault(Fault::Kind::NoAnswer, "PCR"));
    QVERIFY(bench.choose());
    QVERIFY(bench.waitForResult());
    QVERIFY(bench.simulated().isLinked());
    bench.dialog->cancelButtonClicked();
    bench.advance(5s);
    QVERIFY(!bench.simulated().isLinked());
    QVERIFY(!bench.device.isConnectedAsCVComm());
}

QTEST_GUILESS_MAIN(tst_Connect)
#include "tst_connect.moc"
