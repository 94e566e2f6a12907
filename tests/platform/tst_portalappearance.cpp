// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/PortalAppearance.h"
#include "platform/desktop/PortalRequest.h"
#include "simulator_bluez/PrivateBus.h"
#include "support/Rows.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

using Settings = QMap<QString, QVariantMap>;

const QString Path = u"/org/freedesktop/portal/desktop"_s;
const QString Interface = u"org.freedesktop.portal.Settings"_s;
const QString Shared = u"org.freedesktop.appearance"_s;
const QString Gnome = u"org.gnome.desktop.interface"_s;
const QString GnomeAccess = u"org.gnome.desktop.a11y.interface"_s;

// A desktop portal with settings; without any it refuses.
class FakePortal final : public QDBusVirtualObject
{
public:
    FakePortal(const QDBusConnection &bus, Settings settings)
        : _bus(bus)
        , _settings(std::move(settings))
    {
        _bus.registerVirtualObject(Path, this);
        _bus.registerService(PortalRequest::service());
    }
    ~FakePortal() override
    {
        _bus.unregisterService(PortalRequest::service());
        _bus.unregisterObject(Path);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        called = message.interface() % u'.' % message.member();
        if (_settings.isEmpty())
            return _bus.send(message.createErrorReply(QDBusError::UnknownInterface, u"no"_s));
        Settings answer;
        for (const QString &space : message.arguments().value(0).toStringList())
            if (_settings.contains(space))
                answer.insert(space, _settings.value(space));
        return _bus.send(message.createReply(QVariant::fromValue(answer)));
    }
    void change(const QString &space, const QString &key, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(Path, Interface, u"SettingChanged"_s);
        signal << space << key << QVariant::fromValue(QDBusVariant(value));
        _bus.send(signal);
    }

    QString called;

private:
    QDBusConnection _bus;
    Settings _settings;
};

QVariant nested(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

DesktopLook look(std::optional<bool> dark, bool highContrast, bool reducedMotion)
{
    return {dark, highContrast, reducedMotion};
}

} // namespace

class tst_portalappearance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        _address = _bus.start();
        QVERIFY2(!_address.isNull(), "dbus-daemon is needed");
    }
    void init() { _looks.clear(); }

    // First of all, as in the program: nothing else has made the types of the bus known yet.
    void aPortalThatComesLaterIsHeard()
    {
        const auto appearance = listening();
        qDBusRegisterMetaType<Settings>();
        FakePortal portal(elsewhere(), {});
        portal.change(Shared, u"contrast"_s, 1U);
        QTRY_COMPARE(_looks.size(), 1);
        QVERIFY(_looks.constFirst() == look({}, true, false));
    }

    void whatThePortalSays_data()
    {
        columns<Settings, DesktopLook>("settings", "expected");
        row("all of it",
            Settings{{Shared, {{u"color-scheme"_s, 1U}, {u"contrast"_s, 1U}, {u"reduced-motion"_s, 1U}}}},
            look(true, true, true));
        row("light", Settings{{Shared, {{u"color-scheme"_s, 2U}}}}, look(false, false, false));
        row("nested", Settings{{Shared, {{u"contrast"_s, nested(1U)}}}}, look({}, true, false));
        row("older desktops",
            Settings{{Gnome, {{u"enable-animations"_s, false}}}, {GnomeAccess, {{u"high-contrast"_s, true}}}},
            look({}, true, true));
        row("the shared keys go first",
            Settings{{Shared, {{u"color-scheme"_s, 1U}, {u"contrast"_s, 0U}, {u"reduced-motion"_s, 0U}}},
                     {Gnome, {{u"enable-animations"_s, false}}},
                     {GnomeAccess, {{u"high-contrast"_s, true}}}},
            look(true, false, false));
    }
    void whatThePortalSays()
    {
        QFETCH(Settings, settings);
        QFETCH(DesktopLook, expected);
        const FakePortal portal(elsewhere(), settings);
        const auto appearance = listening();
        QTRY_COMPARE(_looks.size(), 1);
        QVERIFY(_looks.constFirst() == expected);
        QCOMPARE(portal.called, u"org.freedesktop.portal.Settings.ReadAll"_s);
    }

    void changesAreHeard()
    {
        FakePortal portal(elsewhere(), {{Shared, {{u"color-scheme"_s, 1U}, {u"contrast"_s, 1U}}},
                                        {Gnome, {{u"enable-animations"_s, false}}}});
        const auto appearance = listening();
        QTRY_COMPARE(_looks.size(), 1);
        portal.change(u"org.example"_s, u"contrast"_s, 0U);
        portal.change(Gnome, u"font-name"_s, u"Sans 11"_s);
        portal.change(Shared, u"contrast"_s, nested(0U));
        portal.change(Gnome, u"enable-animations"_s, true);
        portal.change(Shared, u"color-scheme"_s, 0U);
        QTRY_COMPARE(_looks.size(), 4);
        QVERIFY(_looks.at(1) == look(true, false, true));
        QVERIFY(_looks.at(2) == look(true, false, false));
        QVERIFY(_looks.at(3) == look({}, false, false));
    }

    void aPortalWithoutSettingsTellsNothing()
    {
        FakePortal portal(elsewhere(), {});
        const auto appearance = listening();
        QTRY_VERIFY(!portal.called.isEmpty());
        QTest::qWait(50);
        QVERIFY(_looks.isEmpty());
    }

    void withoutAPortalOrABusNothingIsTold()
    {
        const auto appearance = listening();
        const PortalAppearance alone(QDBusConnection(u"none"_s));
        QTest::qWait(50);
        QVERIFY(_looks.isEmpty());
    }

private:
    // The portal's own connection.
    QDBusConnection elsewhere() { return QDBusConnection::connectToBus(_address, u"portal"_s); }
    std::unique_ptr<PortalAppearance> listening()
    {
        auto appearance =
            std::make_unique<PortalAppearance>(QDBusConnection::connectToBus(_address, u"program"_s));
        connect(appearance.get(), &PortalAppearance::changed, this,
                [this](const DesktopLook &look) { _looks.append(look); });
        return appearance;
    }

    PrivateBus _bus;
    QString _address;
    QList<DesktopLook> _looks;
};

QTEST_GUILESS_MAIN(tst_portalappearance)
#include "tst_portalappearance.moc"
