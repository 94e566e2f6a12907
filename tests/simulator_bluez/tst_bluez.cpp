// SPDX-License-Identifier: GPL-3.0-or-later
// The simulator program on a bus of the test's own, seen through a plain D-Bus client.
#include "simulator_bluez/BusClient.h"
#include "simulator_bluez/PrivateBus.h"

#include <QDBusError>
#include <QTest>

#include <functional>
#include <memory>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString Adapter = u"/org/bluez/hci0"_s;
const QString AdapterInterface = u"org.bluez.Adapter1"_s;
const QString DeviceInterface = u"org.bluez.Device1"_s;
const QString CharacteristicInterface = u"org.bluez.GattCharacteristic1"_s;
const QString DescriptorInterface = u"org.bluez.GattDescriptor1"_s;
const QString DataUuid = u"534945e7-bf79-427b-944a-31b9e444665d"_s;
const QString InfoUuid = u"fa3e6100-2f2e-11e3-aa6e-0800200c9a66"_s;

bool isOk(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage)
        qWarning("%s: %s", qPrintable(reply.errorName()), qPrintable(reply.errorMessage()));
    return reply.type() == QDBusMessage::ReplyMessage;
}

bool eventually(const std::function<bool()> &isTrue)
{
    return QTest::qWaitFor(isTrue);
}

} // namespace

class tst_bluez : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theDaemonDescribesItself();
    void devicesAppearWhileDiscovering();
    void discoveryIsOfItsClient();
    void aDeviceIsConnectedReadAndWritten();
    void notificationsAreToldOneByOne();
    void aLinkEndsForAllAndComesBack();
    void wrongCallsAreRefused_data();
    void wrongCallsAreRefused();
    void faultsOnTheWayToALink_data();
    void faultsOnTheWayToALink();
    void faultsAtAWrite_data();
    void faultsAtAWrite();
    void theRadioIsSwitched();
    void theDaemonRestarts();
    void aMachineWithoutBluetoothOrPermission();
    void theProgramRefusesAndEnds();

private:
    void startSimulator(const QByteArray &profile = "{}");
    QString discover();
    void connectDevice();
    QString characteristic(const QString &uuid)
    {
        return _client->paths(CharacteristicInterface, u"UUID"_s, uuid).value(0);
    }
    QDBusMessage write(const QByteArray &bytes, const QString &type = u"request"_s)
    {
        return _client->call(_data, CharacteristicInterface + u".WriteValue"_s,
                             {bytes, QVariantMap{{u"type"_s, type}}});
    }
    bool flag(const QString &name) { return _client->property(_device, DeviceInterface, name).toBool(); }

    std::unique_ptr<PrivateBus> _bus;
    QString _address;
    std::unique_ptr<ReadyProgram> _simulator;
    std::unique_ptr<BusClient> _client;
    QString _device;
    QString _data;
};

void tst_bluez::init()
{
    _bus = std::make_unique<PrivateBus>();
    _address = _bus->start();
    QVERIFY2(!_address.isEmpty(), "There is no dbus-daemon; it is in the package dbus.");
    _client = std::make_unique<BusClient>(_address);
}

void tst_bluez::cleanup()
{
    _client.reset();
    if (_simulator)
        QCOMPARE(_simulator->stop(), 0);
    _simulator.reset();
    _bus.reset();
}

void tst_bluez::startSimulator(const QByteArray &profile)
{
    QFile file(_bus->filePath(u"profile.json"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(profile) == profile.size());
    file.close();
    _simulator = std::make_unique<ReadyProgram>();
    _simulator->showErrors();
    QCOMPARE(
        _simulator->start(QStringLiteral(CORVANE_SIMULATOR), {u"--bus"_s, _address, u"--profile"_s,
                                                              file.fileName(), u"--fast"_s, u"--no-state"_s}),
        u"ready"_s);
}

// The path of the device that is found first.
QString tst_bluez::discover()
{
    QString found;
    if (!isOk(_client->call(Adapter, AdapterInterface + u".StartDiscovery"_s)))
        return found;
    [&] { QTRY_VERIFY(!(found = _client->paths(DeviceInterface).value(0)).isEmpty()); }();
    return found;
}

void tst_bluez::connectDevice()
{
    _device = discover();
    QVERIFY(isOk(_client->call(_device, DeviceInterface + u".Connect"_s)));
    QVERIFY(isOk(_client->call(Adapter, AdapterInterface + u".StopDiscovery"_s)));
    _data = characteristic(DataUuid);
    QVERIFY(!_data.isEmpty());
}

void tst_bluez::theDaemonDescribesItself()
{
    startSimulator(R"({"devices": [{"remembered": true, "address": "c2:00:00:00:00:01"}]})");
    const auto describe = [this](const QString &path) {
        return _client->call(path, u"org.freedesktop.DBus.Introspectable.Introspect"_s);
    };
    const auto text = [describe](const QString &path) {
        return describe(path).arguments().value(0).toString();
    };
    QVERIFY(text(u"/"_s).contains(u"<node name=\"org\"/>"));
    QVERIFY(text(Adapter).contains(u"<node name=\"dev_C2_00_00_00_00_01\"/>"));
    QVERIFY(text(Adapter).contains(u"<property name=\"Powered\" type=\"b\" access=\"readwrite\"/>"));
    QCOMPARE(describe(u"/nowhere"_s).type(), QDBusMessage::ErrorMessage);

    const auto device = _client->objects()
                            .value(QDBusObjectPath(Adapter + u"/dev_C2_00_00_00_00_01"_s))
                            .value(DeviceInterface);
    QCOMPARE(device.value(u"Address"_s).toString(), u"C2:00:00:00:00:01"_s);
    QCOMPARE(device.value(u"Adapter"_s).value<QDBusObjectPath>().path(), Adapter);
    // Only remembered: nobody has seen it.
    QVERIFY(!device.contains(u"RSSI"_s));

    QVERIFY(isOk(_client->call(u"/org/bluez"_s, u"org.bluez.AgentManager1.RegisterAgent"_s,
                               {QVariant::fromValue(QDBusObjectPath(u"/agent"_s)), u"NoInputNoOutput"_s})));
    QVERIFY(isOk(_client->setProperty(Adapter, AdapterInterface, u"Alias"_s, u"Desk"_s)));
    QCOMPARE(_client->property(Adapter, AdapterInterface, u"Alias"_s).toString(), u"Desk"_s);
    QTRY_COMPARE(_client->told(Adapter, u"Alias"_s), QVariantList{u"Desk"_s});
}

void tst_bluez::devicesAppearWhileDiscovering()
{
    startSimulator(R"({"devices": [{"serial": "00000001"}, {"serial": "00000002"},
                       {"serial": "00000003", "faults": [{"fault": "leave", "after": 0}]}],
                       "daemon": {"forgetsAfter": 300}})");
    QVERIFY(_client->paths(DeviceInterface).isEmpty());
    const QString first = discover();
    QVERIFY(eventually([&] { return _client->paths(DeviceInterface).size() == 2; }));
    QCOMPARE(_client->property(Adapter, AdapterInterface, u"Discovering"_s).toBool(), true);
    QVERIFY(eventually([&] { return _client->told(first, u"RSSI"_s).size() >= 3; }));
    const QVariantList strengths = _client->told(first, u"RSSI"_s);
    QVERIFY(strengths[0] != strengths[1]);

    QVERIFY(isOk(_client->call(Adapter, AdapterInterface + u".StopDiscovery"_s)));
    QVERIFY(eventually([&] { return !_client->told(first, u"RSSI"_s).constLast().isValid(); }));
    QVERIFY(eventually([&] { return _client->paths(DeviceInterface).isEmpty(); }));
}

void tst_bluez::discoveryIsOfItsClient()
{
    startSimulator();
    auto other = std::make_unique<BusClient>(_address);
    QVERIFY(isOk(other->call(Adapter, AdapterInterface + u".SetDiscoveryFilter"_s,
                             {QVariantMap{{u"Transport"_s, u"bredr"_s}}})));
    QVERIFY(isOk(other->call(Adapter, AdapterInterface + u".StartDiscovery"_s)));
    QCOMPARE(other->call(Adapter, AdapterInterface + u".StartDiscovery"_s).errorName(),
             u"org.bluez.Error.InProgress"_s);
    QCOMPARE(_client->call(Adapter, AdapterInterface + u".StopDiscovery"_s).errorName(),
             u"org.bluez.Error.Failed"_s);
    QTRY_COMPARE(_client->told(Adapter, u"Discovering"_s), QVariantList{true});
    other.reset();
    QTRY_COMPARE(_client->told(Adapter, u"Discovering"_s), (QVariantList{true, false}));
    // Nothing was found for a client that looks for another kind of radio.
    QVERIFY(_client->paths(DeviceInterface).isEmpty());
}

void tst_bluez::aDeviceIsConnectedReadAndWritten()
{
    startSimulator(R"({"serial": "00000007", "name": "Desk"})");
    connectDevice();
    QVERIFY(flag(u"Connected"_s) && flag(u"ServicesResolved"_s));
    QTRY_COMPARE(_client->told(_device, u"ServicesResolved"_s), QVariantList{true});
    // Generic access belongs to the daemon.
    QCOMPARE(_client->paths(u"org.bluez.GattService1"_s).size(), 1);
    QCOMPARE(_client->paths(DescriptorInterface).size(), 1);

    const QString info = characteristic(InfoUuid);
    const QDBusMessage read = _client->call(info, CharacteristicInterface + u".ReadValue"_s, {QVariantMap()});
    QCOMPARE(read.arguments().value(0).toByteArray(), QByteArray("00000007,Desk"));
    QTRY_COMPARE(_client->told(info, u"Value"_s).size(), 1);
    for (const QString &type : {u"request"_s, u"command"_s})
        QVERIFY(isOk(write("{{VER}}", type)));
}

void tst_bluez::notificationsAreToldOneByOne()
{
    startSimulator(R"({"faults": [{"fault": "repeatNotifications", "times": 1},
                                  {"fault": "reply", "command": "VER", "text": "same"}]})");
    connectDevice();
    const QString descriptor = _client->paths(DescriptorInterface).value(0);
    const auto configuration = [&] {
        return _client->call(descriptor, DescriptorInterface + u".ReadValue"_s, {QVariantMap()})
            .arguments()
            .value(0)
            .toByteArray();
    };
    QCOMPARE(configuration(), QByteArray(2, '\0'));
    QVERIFY(isOk(_client->call(_data, CharacteristicInterface + u".StartNotify"_s)));
    QCOMPARE(configuration(), QByteArray("\1\0", 2));
    for (int i = 0; i < 3; ++i)
        QVERIFY(isOk(write("{{VER}}")));
    // Equal values stay apart; the first is sent twice.
    QVERIFY(
        eventually([&] { return _client->told(_data, u"Value"_s) == QVariantList(4, QByteArray("same")); }));

    QVERIFY(isOk(_client->call(_data, CharacteristicInterface + u".StopNotify"_s)));
    _client->forgetSignals();
    QVERIFY(isOk(write("{{VER}}")));
    QTest::qWait(100);
    QVERIFY(_client->told(_data, u"Value"_s).isEmpty());
}

void tst_bluez::aLinkEndsForAllAndComesBack()
{
    startSimulator(R"({"faults": [{"fault": "reply", "command": "VER", "text": "v"}]})");
    connectDevice();
    QVERIFY(isOk(_client->call(_data, CharacteristicInterface + u".StartNotify"_s)));
    BusClient other(_address);
    QVERIFY(isOk(other.call(_device, DeviceInterface + u".Connect"_s)));
    QVERIFY(isOk(other.call(_device, DeviceInterface + u".Disconnect"_s)));
    QVERIFY(eventually([&] {
        return _client->told(_device, u"Connected"_s) == (QVariantList{true, false});
    }));
    QCOMPARE(write("x").errorName(), u"org.bluez.Error.NotConnected"_s);

    // The daemon renews the notifications of its clients by itself, and still knows the device.
    QVERIFY(isOk(_client->call(_device, DeviceInterface + u".Connect"_s)));
    QVERIFY(isOk(write("{{VER}}")));
    QVERIFY(eventually([&] { return _client->told(_data, u"Value"_s) == QVariantList{QByteArray("v")}; }));
    QVERIFY(isOk(_client->call(Adapter, AdapterInterface + u".RemoveDevice"_s,
                               {QVariant::fromValue(QDBusObjectPath(_device))})));
    QVERIFY(_client->paths(DeviceInterface).isEmpty());
}

void tst_bluez::wrongCallsAreRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("error");
    const QString data = u"DATA"_s;
    const QString writeMethod = CharacteristicInterface + u".WriteValue"_s;
    const QVariantMap none;
    const QString get = u"org.freedesktop.DBus.Properties.Get"_s;
    QTest::newRow("no such object") << u"/org/bluez/hci7"_s << AdapterInterface + u".StartDiscovery"_s
                                    << QVariantList() << u"org.freedesktop.DBus.Error.UnknownObject"_s;
    QTest::newRow("no such method") << Adapter << AdapterInterface + u".Fly"_s << QVariantList()
                                    << u"org.freedesktop.DBus.Error.UnknownMethod"_s;
    QTest::newRow("wrong signature") << data << writeMethod << QVariantList{u"text"_s}
                                     << u"org.freedesktop.DBus.Error.UnknownMethod"_s;
    QTest::newRow("no such property") << Adapter << get << QVariantList{AdapterInterface, u"Colour"_s}
                                      << u"org.freedesktop.DBus.Error.InvalidArgs"_s;
    QTest::newRow("value too long") << data << writeMethod << QVariantList{QByteArray(513, 'x'), none}
                                    << u"org.bluez.Error.InvalidArguments"_s;
    QTest::newRow("no such device") << Adapter << AdapterInterface + u".RemoveDevice"_s
                                    << QVariantList{QVariant::fromValue(
                                           QDBusObjectPath(u"/org/bluez/hci0/dev_0"_s))}
                                    << u"org.bluez.Error.DoesNotExist"_s;
    QTest::newRow("write of the descriptor")
        << data + u"/desc000d"_s << DescriptorInterface + u".WriteValue"_s
        << QVariantList{QByteArray("\1\0", 2), none} << u"org.bluez.Error.NotPermitted"_s;
    QTest::newRow("stop without a start") << data << CharacteristicInterface + u".StopNotify"_s
                                          << QVariantList() << u"org.bluez.Error.Failed"_s;
}

void tst_bluez::wrongCallsAreRefused()
{
    QFETCH(QString, path);
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    startSimulator();
    connectDevice();
    const QDBusMessage reply = _client->call(path.replace(u"DATA"_s, _data), method, arguments);
    QTEST(reply.errorName(), "error");
    QVERIFY(!reply.errorMessage().isEmpty());
}

void tst_bluez::faultsOnTheWayToALink_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QString>("connectError"); // empty: it succeeds; "none": no answer
    QTest::addColumn<bool>("connected");
    QTest::addColumn<bool>("resolved");
    const QString failed = u"org.bluez.Error.Failed"_s;
    QTest::newRow("never") << QByteArray("connectNever") << u"none"_s << false << false;
    QTest::newRow("refused") << QByteArray("connectFails") << failed << false << false;
    QTest::newRow("lost at once") << QByteArray("dropAfterConnect") << failed << false << false;
    QTest::newRow("lost in discovery") << QByteArray("dropDuringDiscovery") << failed << false << false;
    QTest::newRow("discovery fails") << QByteArray("discoveryFails") << failed << false << false;
    QTest::newRow("services never") << QByteArray("servicesNever") << QString() << true << false;
}

void tst_bluez::faultsOnTheWayToALink()
{
    QFETCH(QByteArray, fault);
    QFETCH(QString, connectError);
    startSimulator("{\"faults\": [{\"fault\": \"" + fault + "\", \"times\": 1}]}");
    _device = discover();
    QString outcome = u"none"_s;
    _client->send(_device, DeviceInterface + u".Connect"_s, {},
                  [&outcome](const QDBusMessage &reply) { outcome = reply.errorName(); });
    if (connectError == u"none")
        QTest::qWait(200);
    QVERIFY(eventually([&] { return outcome == connectError; }));
    QTEST(flag(u"Connected"_s), "connected");
    QTEST(flag(u"ServicesResolved"_s), "resolved");
    // Letting go helps: the next attempt succeeds.
    QVERIFY(isOk(_client->call(_device, DeviceInterface + u".Disconnect"_s)));
    QVERIFY(eventually([&] { return outcome != u"none"; }));
    QVERIFY(isOk(_client->call(_device, DeviceInterface + u".Connect"_s)));
    QVERIFY(flag(u"ServicesResolved"_s));
}

void tst_bluez::faultsAtAWrite_data()
{
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<QString>("error");
    QTest::addColumn<bool>("connected");
    const auto faulty = [](const QByteArray &fault, const QByteArray &rest = {}) -> QByteArray {
        return "{\"faults\": [{\"fault\": \"" + fault + "\", \"write\": 2}]" + rest + "}";
    };
    const QString failed = u"org.bluez.Error.Failed"_s;
    QTest::newRow("fails") << faulty("failWrite") << failed << true;
    QTest::newRow("link lost") << faulty("dropAtWrite") << failed << false;
    QTest::newRow("link lost, services gone")
        << faulty("dropAtWrite", ", \"daemon\": {\"keepsServices\": false}") << failed << false;
    QTest::newRow("confirmation lost")
        << faulty("loseConfirmation", ", \"daemon\": {\"answerTimeout\": 300}") << failed << false;
    QTest::newRow("radio off") << faulty("radioOffAtWrite") << failed << false;
    QTest::newRow("radio off, services gone")
        << faulty("radioOffAtWrite", ", \"daemon\": {\"keepsServices\": false}") << failed << false;
    QTest::newRow("daemon gone") << faulty("daemonRestartAtWrite") << u"org.freedesktop.DBus.Error.NoReply"_s
                                 << false;
}

void tst_bluez::faultsAtAWrite()
{
    QFETCH(QByteArray, profile);
    QFETCH(QString, error);
    startSimulator(profile);
    connectDevice();
    QVERIFY(isOk(write("{{")));
    QString outcome;
    _client->send(_data, CharacteristicInterface + u".WriteValue"_s, {QByteArray("VER}}"), QVariantMap()},
                  [&outcome](const QDBusMessage &reply) { outcome = reply.errorName(); });
    if (QByteArray(QTest::currentDataTag()) == "confirmation lost") {
        QCOMPARE(write("x").errorName(), u"org.bluez.Error.InProgress"_s);
        QVERIFY(outcome.isEmpty());
    }
    QVERIFY(eventually([&] { return outcome == error; }));
    QVERIFY(eventually([&] { return _client->isNameOwned(); }));
    QTEST(flag(u"Connected"_s), "connected");
    QCOMPARE(characteristic(DataUuid).isEmpty(), profile.contains("false") || error.contains(u"NoReply"));
}

void tst_bluez::theRadioIsSwitched()
{
    startSimulator(R"({"radio": {"state": "off"}})");
    const auto power = [this](bool on) {
        return isOk(_client->setProperty(Adapter, AdapterInterface, u"Powered"_s, on));
    };
    QCOMPARE(_client->call(Adapter, AdapterInterface + u".StartDiscovery"_s).errorName(),
             u"org.bluez.Error.NotReady"_s);
    QVERIFY(power(true));
    connectDevice();
    discover();
    QVERIFY(power(false));
    QVERIFY(eventually([&] { return _client->told(Adapter, u"Powered"_s) == (QVariantList{true, false}); }));
    QCOMPARE(_client->told(_device, u"Connected"_s), (QVariantList{true, false}));
    QCOMPARE(_client->told(Adapter, u"Discovering"_s).constLast(), QVariant(false));
    QCOMPARE(_client->call(_device, DeviceInterface + u".Connect"_s).errorName(),
             u"org.bluez.Error.NotReady"_s);
    // The scan does not come back with the radio.
    QVERIFY(power(true));
    QCOMPARE(_client->property(Adapter, AdapterInterface, u"Discovering"_s).toBool(), false);
}

void tst_bluez::theDaemonRestarts()
{
    startSimulator(R"({"devices": [{"serial": "00000001"}, {"serial": "00000002"}],
                       "daemon": {"restartsAfter": 2000, "restartTakes": 400}})");
    connectDevice();
    QVERIFY(eventually([&] { return !_client->isNameOwned(); }));
    QCOMPARE(write("x").errorName(), u"org.freedesktop.DBus.Error.ServiceUnknown"_s);
    QVERIFY(eventually([&] { return _client->isNameOwned(); }));
    // The device that was connected to is remembered, the other is not, and there is no link.
    QCOMPARE(_client->paths(DeviceInterface), QStringList{_device});
    QCOMPARE(flag(u"Connected"_s), false);
    connectDevice();
    QVERIFY(isOk(write("x")));
}

void tst_bluez::aMachineWithoutBluetoothOrPermission()
{
    startSimulator(R"({"radio": {"state": "unsupported"}})");
    QVERIFY(_client->paths(AdapterInterface).isEmpty());
    QCOMPARE(_simulator->stop(), 0);
    startSimulator(R"({"radio": {"state": "unauthorized"}})");
    QCOMPARE(_client->call(Adapter, AdapterInterface + u".StartDiscovery"_s).errorName(),
             u"org.freedesktop.DBus.Error.AccessDenied"_s);
}

void tst_bluez::theProgramRefusesAndEnds()
{
    const auto run = [](const QStringList &arguments, const QString &systemBus, QByteArray &message) {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"DBUS_SYSTEM_BUS_ADDRESS"_s);
        if (!systemBus.isEmpty())
            environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, systemBus);
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(CORVANE_SIMULATOR), arguments);
        program.waitForFinished();
        message = program.readAllStandardError();
        return program.exitCode();
    };
    QByteArray message;
    QCOMPARE(run({}, {}, message), 2);
    QVERIFY(message.contains("--yes-really-system"));
    QCOMPARE(run({u"--system"_s, u"--bus"_s, u"x"_s}, {}, message), 2);
    QCOMPARE(run({u"--bus"_s, u"unix:path=/nowhere/bus"_s, u"--no-state"_s}, {}, message), 1);
    QVERIFY(message.contains("/nowhere/bus"));
    QCOMPARE(run({u"--profile"_s, u"/nowhere.json"_s}, _address, message), 2);
    QVERIFY(message.contains("/nowhere.json"));

    startSimulator();
    QCOMPARE(run({u"--no-state"_s}, _address, message), 1);
    QVERIFY(message.contains("org.bluez"));
    // Without its bus it does not stay.
    _bus->stop();
    QTRY_VERIFY(!_simulator->isRunning());
    QCOMPARE(_simulator->stop(), 1);
    _simulator.reset();
}

QTEST_GUILESS_MAIN(tst_bluez)
#include "tst_bluez.moc"
