// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/Advertisement.h"
#include "platform/bluetooth/BluezAvailability.h"
#include "support/Rows.h"

#include <QBluetoothAddress>

using namespace cvtamber;

namespace {

using State = BluetoothCentral::State;
using Service = BluezAvailability::Service;

const QString address = QStringLiteral("C4:72:39:93:77:94");

QBluetoothDeviceInfo device(qint16 rssi, const QStringList &services)
{
    QBluetoothDeviceInfo info(QBluetoothAddress(address), QStringLiteral("Desk"), 0);
    info.setRssi(rssi);
    QList<QBluetoothUuid> uuids;
    for (const QString &service : services)
        uuids.append(toQt(BluetoothUuid(service)));
    info.setServiceUuids(uuids);
    return info;
}

} // namespace

class tst_qtbluetooth : public QObject
{
    Q_OBJECT

private slots:
    void availability_data();
    void availability();
    void names_data();
    void names();
    void identifiersKeepTheirNumber();
    void filter();
};

// Each state has its sentence, and the sentence names the command that mends it.
void tst_qtbluetooth::availability_data()
{
    columns<BluezAvailability, State, QString>("availability", "state", "help");
    const auto none = QString();
    row("not asked", BluezAvailability{}, State::Unknown, QStringLiteral("wait"));
    row("no bus", BluezAvailability{Service::NoBus}, State::Unsupported, QStringLiteral("start dbus"));
    row("no daemon", BluezAvailability{Service::NotRunning}, State::Unsupported,
        QStringLiteral("start bluetooth"));
    row("frozen daemon", BluezAvailability{Service::NotAnswering}, State::Unsupported,
        QStringLiteral("restart bluetooth"));
    row("denied", BluezAvailability{Service::Denied}, State::Unauthorized, QStringLiteral("permission"));
    row("no adapter", BluezAvailability{Service::Running}, State::Unsupported, QStringLiteral("plug"));
    row("off", BluezAvailability{Service::Running, true}, State::PoweredOff, QStringLiteral("power on"));
    row("blocked", BluezAvailability{Service::Running, true, false, true}, State::PoweredOff,
        QStringLiteral("rfkill"));
    row("on", BluezAvailability{Service::Running, true, true}, State::PoweredOn, none);
    row("old adapter of a daemon that left", BluezAvailability{Service::NotRunning, true, true},
        State::Unsupported, QStringLiteral("start bluetooth"));
}

void tst_qtbluetooth::availability()
{
    QFETCH(BluezAvailability, availability);
    QFETCH(QString, help);
    QTEST(availability.state(), "state");
    QCOMPARE(availability.text().isEmpty(), help.isEmpty());
    QVERIFY2(availability.text().contains(help), qPrintable(availability.text()));
}

void tst_qtbluetooth::names_data()
{
    columns<QString, bool>("shown", "isName");
    row("a name", QStringLiteral("Desk"), true);
    row("nothing", QString(), false);
    row("the daemon's stand-in", QStringLiteral("C4-72-39-93-77-94"), false);
    row("an address", QStringLiteral("c4:72:39:93:77:94"), false);
    row("another address", QStringLiteral("C4-72-39-93-77-95"), true);
}

void tst_qtbluetooth::names()
{
    QFETCH(QString, shown);
    const QBluetoothDeviceInfo info(QBluetoothAddress(address), shown, 0);
    QTEST(!advertisedNameOf(info).isNull(), "isName");
    QCOMPARE(identifierOf(info), address);
}

void tst_qtbluetooth::identifiersKeepTheirNumber()
{
    const BluetoothUuid shortForm(QStringLiteral("180D"));
    QCOMPARE(toQt(shortForm), QBluetoothUuid(quint16{0x180d}));
    QVERIFY(fromQt(QBluetoothUuid(quint16{0x180d})) == shortForm);
    const QString text = QStringLiteral("1e45e5bb-96e5-4e33-b85c-bdb98386a703");
    QCOMPARE(fromQt(toQt(BluetoothUuid(text))).toString(), text);
}

void tst_qtbluetooth::filter()
{
    const QString wanted = QStringLiteral("180D");
    const QList<BluetoothUuid> services{BluetoothUuid(wanted), BluetoothUuid(QStringLiteral("1800"))};

    AdvertisementFilter repeating(services, true);
    QVERIFY2(!repeating.takes(device(0, {wanted})), "only remembered");
    QVERIFY2(!repeating.takes(device(-60, {})), "its services are not known yet");
    QVERIFY(!repeating.takes(device(-60, {QStringLiteral("180F")})));
    QVERIFY(repeating.takes(device(-60, {QStringLiteral("180F"), wanted})));
    QVERIFY2(repeating.takes(device(-61, {wanted})), "a duplicate");
    QVERIFY2(!repeating.takes(device(0, {wanted})), "gone again");

    AdvertisementFilter once({}, false);
    QVERIFY2(!once.takes(device(0, {})), "only remembered, which must not count as seen");
    QVERIFY(once.takes(device(-60, {})));
    QVERIFY(!once.takes(device(-40, {})));
}

QTEST_GUILESS_MAIN(tst_qtbluetooth)
#include "tst_qtbluetooth.moc"
