// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeviceScreenBench.h"
#include "device_ui/CVConnectViewController.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = Fault::Kind;
using Result = CVConnectViewController::Result;
using State = BluetoothCentral::State;

namespace {

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

struct ConnectBench : DeviceScreenBench
{
    using DeviceScreenBench::DeviceScreenBench;
    ~ConnectBench() { dialog.reset(); }

    void open(const BluetoothPeripheralPtr &peripheral = nullptr)
    {
        host = std::make_shared<Host>(presenter);
        presenter.showRoot(host);
        advance(1s);
        dialog = std::make_shared<CVConnectViewController>(context, peripheral);
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
    // Chooses the first device of the picker that is up, which then has the fault.
    bool choose(const std::optional<Fault> &fault = {})
    {
        if (!waitForDevice())
            return false;
        simulated().faults() = FaultScript(fault ? QList<Fault>{*fault} : QList<Fault>());
        picker()->rowClicked(0, 0);
        return advanceUntil([this] { return !picker() && dialog->isBusy(); });
    }
    Result waitForResult(std::chrono::nanoseconds limit = 60s)
    {
        advanceUntil([this] { return dialog->result() != Result::NoResult; }, limit);
        return dialog->result();
    }
    bool isConnected() const { return simulated().isLinked() && device.isConnectedAsCVComm(); }
    bool isLetGo() const { return !simulated().isLinked() && !device.isConnectedAsCVComm(); }

    std::shared_ptr<Host> host;
    std::shared_ptr<CVConnectViewController> dialog;
};

} // namespace

// From a scan to a link that works, and everything that may come between.
class tst_Connect : public QObject
{
    Q_OBJECT

private slots:
    void foundDevice_data()
    {
        columns<InfoPlace, QString, QString, QString>("info", "text", "title", "subtitle");
        const auto inService = InfoPlace::DeviceService;
        row("name and serial", inService, u"10472356,Anna's Corvane"_s, u"Anna's Corvane"_s, u"10472356"_s);
        row("serial alone", inService, u"10472356"_s, u"Corvane Brailler"_s, u"10472356"_s);
        row("empty name", inService, u"10472356,"_s, u"Corvane Brailler"_s, u"10472356"_s);
        row("empty serial", inService, u",Corvane"_s, u"Corvane"_s, u""_s);
        row("one byte", inService, u"1"_s, u"Corvane Brailler"_s, u"ADDRESS"_s);
        row("nothing to read", InfoPlace::Nowhere, u"1,2"_s, u"Corvane Brailler"_s, u"ADDRESS"_s);
        row("control characters", inService, u"1234\u000778,Co\nne"_s, u"Co\\x0ane"_s, u"1234\\x0778"_s);
    }
    void foundDevice()
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

    void waitRow_data()
    {
        columns<State, QString>("state", "text");
        row("on", State::PoweredOn, u"Looking for devices. Switch the Corvane on and keep it near."_s);
        row("off", State::PoweredOff, u"Bluetooth is off. Turn it on to find your Corvane."_s);
        row("not allowed", State::Unauthorized,
            u"CVTamber may not use Bluetooth. Allow it in the system settings."_s);
        row("none", State::Unsupported, u"Bluetooth LE is not supported on this device"_s);
    }
    void waitRow()
    {
        QFETCH(State, state);
        QFETCH(QString, text);
        const bool isWaiting = state == State::PoweredOn;
        ConnectBench bench(true, {}, state);
        bench.open();
        bench.advance(5s);
        QCOMPARE(bench.picker()->numberOfRows(0), 1);
        const TableCell cell = bench.picker()->cellForRow({0, 0});
        QCOMPARE(cell.text, text);
        QCOMPARE(cell.style, isWaiting ? TableCell::Style::Wait : TableCell::Style::Centered);
        // The row takes the focus, which says it.
        QCOMPARE(bench.presenter.announcements(), QStringList());
        bench.picker()->rowClicked(0, 0);
        bench.advance(5s);
        QVERIFY(bench.picker());
    }

    // A scan does not outlive the radio, so it is begun again.
    void radioComesBack()
    {
        ConnectBench bench;
        bench.open();
        bench.radio->switchOff(2s);
        bench.advance(1s);
        const TableCell cell = bench.picker()->cellForRow({0, 0});
        QCOMPARE(cell.style, TableCell::Style::Centered);
        QCOMPARE(bench.presenter.announcements(), QStringList{cell.text});
        QVERIFY(bench.waitForDevice());
        QCOMPARE(bench.picker()->cellForRow({0, 1}).style, TableCell::Style::Wait);
    }

    void cancelledPick_data()
    {
        columns<QList<Fault>>("faults");
        row("tells services", QList<Fault>());
        row("tells no services", QList<Fault>{fault(Kind::ServicesNever)});
    }
    // At whatever moment of the scan: the dialog goes with the picker, and no device is left linked by a scan.
    void cancelledPick()
    {
        QFETCH(QList<Fault>, faults);
        for (const auto time : {0ms, 300ms, 500ms, 700ms, 900ms, 1100ms, 1300ms, 3000ms}) {
            DeviceProfile profile;
            profile.faults = faults;
            ConnectBench bench(true, {profile});
            bench.open();
            bench.advance(time);
            const auto picker = bench.picker();
            picker->footerButtonClicked();
            picker->footerButtonClicked();
            picker->rowClicked(0, 0);
            QCOMPARE(bench.host->told, QStringList{u"button 0"_s});
            bench.advance(5s);
            QVERIFY(!bench.host->presentedViewController());
            const int connects = bench.simulated().counters().connects;
            bench.advance(30s);
            QCOMPARE(bench.simulated().counters().connects, connects);
            QVERIFY(bench.isLetGo());
        }
    }

    // Nothing that answers gets no row, but is told of once, and it is found as soon as it answers.
    void silence()
    {
        DeviceProfile profile;
        profile.faults = {fault(Kind::ConnectFails)};
        ConnectBench bench(true, {profile});
        bench.simulated().leave();
        bench.open();
        const auto shown = [&bench] { return bench.picker()->cellForRow({0, 0}).text; };
        const QString unseen = u"No Corvane seen. Is it on, charged and near? Is another phone or computer "
                               u"connected to it?"_s;
        const QString silent =
            u"A Corvane is near but does not answer. Switch it off and on, and keep it near."_s;
        bench.advance(23s);
        QVERIFY(shown().startsWith(u"Looking") && bench.presenter.announcements().isEmpty());
        bench.advance(60s);
        QCOMPARE(shown(), unseen);
        bench.simulated().comeBack();
        bench.advance(60s);
        QCOMPARE(shown(), silent);
        QCOMPARE(bench.presenter.announcements(), (QStringList{unseen, silent}));
        QCOMPARE(bench.picker()->numberOfRows(0), 1);
        bench.simulated().faults() = FaultScript();
        QVERIFY(bench.waitForDevice());
        QVERIFY(bench.picker()->cellForRow({0, 1}).text.startsWith(u"Looking"));
    }

    // A device that is being read, or is about to be, when another one is chosen.
    void neighbourIsLeftAlone()
    {
        for (const auto time : {0ms, 300ms, 700ms, 1500ms, 4500ms, 5500ms}) {
            QList<DeviceProfile> profiles(2);
            profiles[1].faults = {fault(Kind::ServicesNever)};
            ConnectBench bench(true, profiles);
            bench.open();
            QVERIFY(bench.waitForDevice());
            bench.advance(time);
            QVERIFY(bench.choose());
            bench.advance(100ms);
            const int connects = bench.simulated(1).counters().connects;
            QVERIFY(!bench.simulated(1).isLinked());
            QCOMPARE(bench.waitForResult(), Result::Connected);
            bench.advance(60s);
            QVERIFY(bench.isConnected());
            QCOMPARE(bench.simulated(1).counters().connects, connects);
        }
    }

    void rowsKeepTheirOrder()
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
        QCOMPARE(bench.waitForResult(), Result::Connected);
        QVERIFY(bench.simulated(1).isLinked());
        QVERIFY(!bench.simulated(0).isLinked() && !bench.simulated(2).isLinked());
    }

    // Chosen once and answered once, however often a person clicks.
    void connects()
    {
        ConnectBench bench;
        bench.open();
        const auto dialog = bench.dialog;
        QVERIFY(bench.waitForDevice());
        QVERIFY(!dialog->isBusy());
        QVERIFY(!dialog->isRetryVisible() && !dialog->isCancelVisible() && !dialog->isDoneVisible());
        const auto picker = bench.picker();
        picker->rowClicked(0, 0);
        picker->rowClicked(0, 0);
        picker->footerButtonClicked();
        QVERIFY(bench.advanceUntil([&] { return dialog->isBusy() && !bench.picker(); }));
        QCOMPARE(bench.waitForResult(), Result::Connected);
        QCOMPARE(bench.presenter.announcements().last(), dialog->resultText());
        QCOMPARE(dialog->resultText(), u"Connected!"_s);
        QCOMPARE(bench.simulated().counters().connects, 2); // once to read who it is
        // The limit of an attempt that has ended says nothing any more.
        bench.advance(60s);
        QVERIFY(dialog->isDoneVisible() && !dialog->isRetryVisible() && !dialog->isCancelVisible());
        QVERIFY(!dialog->isBusy() && bench.isConnected());
        for (int i = 0; i < 2; ++i) {
            dialog->cancelButtonClicked();
            dialog->doneButtonClicked();
            dialog->retryButtonClicked();
            bench.advance(1s);
        }
        QCOMPARE(bench.host->told, (QStringList{u"connected"_s, u"button 1"_s}));
        QVERIFY(!bench.host->presentedViewController());
    }

    void knownPeripheral()
    {
        ConnectBench bench;
        bench.open(bench.findDevice());
        QVERIFY(!bench.picker());
        QCOMPARE(bench.waitForResult(), Result::Connected);
    }

    void failure_data()
    {
        columns<Fault, int>("what", "milliseconds");
        row("connect never", fault(Kind::ConnectNever), 6000);
        row("connect fails", fault(Kind::ConnectFails), 6000);
        row("services never", fault(Kind::ServicesNever), 6000);
        row("discovery fails", fault(Kind::DiscoveryFails), 6000);
        row("always dropped", fault(Kind::DropAfterConnect), 46000);
        row("no link reply", fault(Kind::NoAnswer, "PC S2 ON"), 4000);
        // Linked but not identified it would be neither connected nor to be found again.
        row("no state", fault(Kind::NoAnswer, "PCR"), 6000);
        row("short state", fault(Kind::CustomReply, "PCR", "1, 2, 3"), 6000);
        row("no version at all", fault(Kind::NoAnswer), 10000);
        row("tells nothing after the link", fault(Kind::CustomReply, "PC S2 ON", "{PC.}"), 45100);
    }
    // Whatever fails, the dialog says so in time; Cancel lets go of it, and Retry connects once the cause is gone.
    void failure()
    {
        QFETCH(Fault, what);
        QFETCH(int, milliseconds);
        for (const bool retries : {false, true}) {
            ConnectBench bench;
            bench.open();
            const auto dialog = bench.dialog;
            QVERIFY(bench.choose(what));
            const auto begin = bench.rig.loop.now();
            QCOMPARE(bench.waitForResult(std::chrono::milliseconds(milliseconds)), Result::NotConnected);
            // A device that is slow to tell itself is not given up early.
            QVERIFY(what.bytes != "{PC.}" || bench.rig.loop.now() - begin > 44900ms);
            QCOMPARE(dialog->resultText(), u"Not connected!"_s);
            QVERIFY(!dialog->isBusy() && !dialog->isDoneVisible());
            QVERIFY(dialog->isRetryVisible() && dialog->isCancelVisible());
            QCOMPARE(bench.presenter.announcements().count(u"Not connected!"_s), 1);
            QVERIFY(bench.host->told.isEmpty());
            if (!retries) {
                dialog->cancelButtonClicked();
                dialog->cancelButtonClicked();
                dialog->retryButtonClicked();
                bench.advance(5s);
                dialog->cancelButtonClicked();
                QCOMPARE(bench.host->told, QStringList{u"button 0"_s});
                QVERIFY(bench.isLetGo() && !bench.host->presentedViewController());
                continue;
            }
            bench.simulated().faults() = FaultScript();
            dialog->retryButtonClicked();
            QVERIFY(dialog->isBusy() && !dialog->isRetryVisible() && !dialog->isCancelVisible());
            // What is left of the attempt that was given up.
            dialog->linkStateChanged(0);
            QCOMPARE(dialog->result(), Result::NoResult);
            QVERIFY(bench.choose());
            QCOMPARE(bench.waitForResult(), Result::Connected);
            QVERIFY(bench.isConnected());
        }
    }

    void cancelled_data()
    {
        columns<Fault>("what");
        row("answers", fault(Kind::ReadFails));
        row("connect never", fault(Kind::ConnectNever));
        row("always dropped", fault(Kind::DropAfterConnect));
        row("services never", fault(Kind::ServicesNever));
        row("no link reply", fault(Kind::NoAnswer, "PC S2 ON"));
        row("no state", fault(Kind::NoAnswer, "PCR"));
    }
    // At whatever moment of connecting: the dialog goes at once, nothing goes on behind it, and the next one connects.
    void cancelled()
    {
        QFETCH(Fault, what);
        for (const auto time : {0ms, 30ms, 70ms, 100ms, 150ms, 250ms, 500ms, 1500ms, 3000ms, 4500ms}) {
            ConnectBench bench;
            bench.open();
            QVERIFY(bench.choose(what));
            bench.advance(time);
            if (!bench.dialog->isBusy())
                break;
            QVERIFY(bench.dialog->isCancelVisible());
            bench.dialog->cancelButtonClicked();
            bench.dialog->cancelButtonClicked();
            bench.advance(10ms);
            QVERIFY(!bench.host->presentedViewController() && !bench.device.turn().isLinked());
            QCOMPARE(bench.host->told, QStringList{u"button 0"_s});
            const int connects = bench.simulated().counters().connects;
            // The last commands have two seconds to leave.
            bench.advance(2100ms);
            QVERIFY(bench.isLetGo());
            bench.advance(60s);
            QVERIFY(bench.simulated().counters().connects == connects && bench.isLetGo());
            QVERIFY(bench.presenter.announcements().filter(u"onnected").isEmpty());
            bench.simulated().faults() = FaultScript();
            bench.open();
            QVERIFY(bench.choose());
            QCOMPARE(bench.waitForResult(), Result::Connected);
        }
    }

    void loss_data()
    {
        columns<QString>("how");
        for (const QString &how : {u"error"_s, u"no error"_s, u"radio off"_s, u"leaves"_s})
            row(qPrintable(how), how);
    }
    // Lost at any moment, also after it was connected: nothing hangs, and what the dialog says is so.
    void loss()
    {
        QFETCH(QString, how);
        for (const auto time : {0ms, 60ms, 150ms, 400ms, 1000ms, 2500ms, 5000ms, 9000ms, 20000ms}) {
            ConnectBench bench;
            bench.open();
            QVERIFY(bench.choose());
            bench.advance(time);
            const bool wasConnected = bench.dialog->result() == Result::Connected;
            if (how == u"radio off"_s)
                bench.radio->switchOff(0s);
            else if (how == u"leaves"_s)
                bench.simulated().leave();
            else
                bench.simulated().dropLink(how == u"error"_s);
            bench.advance(46s);
            QVERIFY(!bench.dialog->isBusy());
            // Before the protocol has begun, and once it was connected, the link is made again by itself.
            const bool isUp = bench.dialog->result() == Result::Connected;
            QVERIFY(!isUp || (how.endsWith(u"error"_s) && bench.isConnected()));
            const QString lost = u"The connection to the Corvane was lost."_s;
            QCOMPARE(bench.presenter.announcements().count(lost), wasConnected ? 1 : 0);
            bench.dialog->cancelButtonClicked();
            bench.advance(5s);
            QCOMPARE(bench.host->told.last(), isUp ? u"connected"_s : u"button 0"_s);
            QCOMPARE(bench.device.isConnectedAsCVComm(), isUp);
        }
    }

    void states_data()
    {
        columns<QList<int>, Result>("states", "result");
        row("nothing", QList<int>{}, Result::NoResult);
        row("another", QList<int>{2, 3, -1}, Result::NoResult);
        row("failed", QList<int>{0}, Result::NotConnected);
        row("connected", QList<int>{1}, Result::Connected);
        row("twice", QList<int>{1, 1}, Result::Connected);
        row("lost", QList<int>{1, 0}, Result::NotConnected);
        row("late", QList<int>{0, 0, 1}, Result::Connected);
    }
    void states()
    {
        QFETCH(QList<int>, states);
        QFETCH(Result, result);
        ConnectBench bench;
        bench.open();
        QVERIFY(bench.choose());
        for (const int state : states)
            bench.dialog->linkStateChanged(state);
        QCOMPARE(bench.dialog->result(), result);
        QCOMPARE(bench.dialog->isBusy(), result == Result::NoResult);
        QCOMPARE(bench.dialog->isDoneVisible(), result == Result::Connected);
        QCOMPARE(bench.dialog->isRetryVisible(), result == Result::NotConnected);
        QCOMPARE(bench.host->told.count(u"connected"_s), states.contains(1) ? 1 : 0);
        QCOMPARE(bench.presenter.announcements().count(u"Not connected!"_s), states.startsWith(0) ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(tst_Connect)
#include "tst_connect.moc"
