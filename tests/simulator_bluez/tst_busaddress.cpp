// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/BusAddress.h"

#include <QTest>

using namespace cvtamber;
using namespace Qt::StringLiterals;

class tst_busaddress : public QObject
{
    Q_OBJECT

private slots:
    void realSystemBusIsRecognised_data();
    void realSystemBusIsRecognised();
};

void tst_busaddress::realSystemBusIsRecognised_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isReal");
    QTest::newRow("usual") << u"unix:path=/var/run/dbus/system_bus_socket"_s << true;
    QTest::newRow("short") << u"unix:path=/run/dbus/system_bus_socket"_s << true;
    QTest::newRow("untidy") << u"unix:path=/run//dbus/../dbus/system_bus_socket,guid=00"_s << true;
    QTest::newRow("escaped") << u"unix:path=%2frun%2fdbus%2fsystem_bus%5fsocket"_s << true;
    QTest::newRow("second") << u"unix:path=/tmp/x;unix:guid=1,path=/run/dbus/system_bus_socket"_s << true;
    QTest::newRow("another") << u"unix:path=/tmp/x/system_bus_socket"_s << false;
    QTest::newRow("abstract") << u"unix:abstract=/run/dbus/system_bus_socket"_s << false;
}

void tst_busaddress::realSystemBusIsRecognised()
{
    QFETCH(QString, address);
    QTEST(BusAddress::isSystemBus(address), "isReal");
}

QTEST_GUILESS_MAIN(tst_busaddress)
#include "tst_busaddress.moc"
