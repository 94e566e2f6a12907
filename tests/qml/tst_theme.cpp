// SPDX-License-Identifier: GPL-3.0-or-later
#include <QColor>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTest>

#include <cmath>
#include <memory>

extern void qml_register_types_CVTamber();

namespace {

using namespace Qt::StringLiterals;

// WCAG 2.2, relative luminance of an sRGB colour.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double light = std::max(luminance(one), luminance(other));
    const double dark = std::min(luminance(one), luminance(other));
    return (light + 0.05) / (dark + 0.05);
}

struct Pair
{
    QLatin1StringView front;
    QLatin1StringView back;
};

// What is read, on all that it stands on.
constexpr Pair Texts[]{
    {"text"_L1, "background"_L1},
    {"text"_L1, "bar"_L1},
    {"text"_L1, "card"_L1},
    {"text"_L1, "raised"_L1},
    {"text"_L1, "pressed"_L1},
    {"secondaryText"_L1, "background"_L1},
    {"secondaryText"_L1, "bar"_L1},
    {"secondaryText"_L1, "card"_L1},
    {"secondaryText"_L1, "raised"_L1},
    {"secondaryText"_L1, "pressed"_L1},
    {"accent"_L1, "background"_L1},
    {"accent"_L1, "bar"_L1},
    {"accent"_L1, "card"_L1},
    {"accent"_L1, "raised"_L1},
    {"accent"_L1, "pressed"_L1},
    {"destructive"_L1, "background"_L1},
    {"destructive"_L1, "card"_L1},
    {"destructive"_L1, "pressed"_L1},
    {"success"_L1, "background"_L1},
    {"success"_L1, "card"_L1},
    {"accentText"_L1, "accent"_L1},
    {"accentText"_L1, "destructive"_L1},
    {"destructiveText"_L1, "destructive"_L1},
    {"noticeText"_L1, "notice"_L1},
    {"bubbleMineText"_L1, "bubbleMine"_L1},
    {"bubbleSomeoneText"_L1, "bubbleSomeone"_L1},
};
// What shows a control, its state or the focus; texts of controls that are not available may be this faint.
constexpr Pair Parts[]{
    {"accent"_L1, "background"_L1}, {"accent"_L1, "card"_L1},       {"accent"_L1, "raised"_L1},
    {"outline"_L1, "card"_L1},      {"outline"_L1, "raised"_L1},    {"disabledText"_L1, "background"_L1},
    {"disabledText"_L1, "bar"_L1},  {"disabledText"_L1, "card"_L1}, {"accentText"_L1, "disabledText"_L1},
};

} // namespace

// The theme in its four looks, against what people need who see little.
class tst_theme : public QObject
{
    Q_OBJECT

    std::unique_ptr<QQmlEngine> _engine;
    std::unique_ptr<QObject> _holder;
    QObject *_theme = nullptr;

    void load()
    {
        _holder.reset();
        _engine = std::make_unique<QQmlEngine>();
        QQmlComponent component(_engine.get());
        component.setData("import QtQml; import CVTamber; QtObject { property QtObject theme: Theme }",
                          QUrl());
        _holder.reset(component.create());
        QVERIFY2(_holder, qPrintable(component.errorString()));
        _theme = _holder->property("theme").value<QObject *>();
        QVERIFY(_theme != nullptr);
    }
    std::unique_ptr<QObject> make(const char *what)
    {
        QQmlComponent component(_engine.get());
        component.setData(QByteArray("import CVTamber; ") + what, QUrl());
        std::unique_ptr<QObject> made(component.create());
        if (!made)
            qFatal("%s", qUtf8Printable(component.errorString()));
        return made;
    }
    void check(const Pair &pair, double least)
    {
        const auto front = _theme->property(pair.front.data()).value<QColor>();
        const auto back = _theme->property(pair.back.data()).value<QColor>();
        QVERIFY2(front.isValid() && back.isValid(), pair.front.data());
        const double found = contrast(front, back);
        QVERIFY2(found >= least,
                 qPrintable(pair.front + " on "_L1 + pair.back + ": "_L1 + QString::number(found)));
    }

private slots:
    void initTestCase() { qml_register_types_CVTamber(); }
    void colours_data()
    {
        QTest::addColumn<QByteArray>("appearance");
        QTest::addColumn<QByteArray>("strength");
        for (const char *appearance : {"light", "dark"}) {
            for (const char *strength : {"normal", "high"})
                QTest::addRow("%s %s", appearance, strength)
                    << QByteArray(appearance) << QByteArray(strength);
        }
    }
    void colours()
    {
        QFETCH(QByteArray, appearance);
        QFETCH(QByteArray, strength);
        qputenv("CVTAMBER_APPEARANCE", appearance);
        qputenv("CVTAMBER_CONTRAST", strength);
        load();
        QCOMPARE(_theme->property("dark").toBool(), appearance == "dark");
        QCOMPARE(_theme->property("highContrast").toBool(), strength == "high");
        // 7 is level AAA: who asks for high contrast gets it.
        for (const Pair &pair : Texts)
            check(pair, strength == "high" ? 7 : 4.5);
        for (const Pair &pair : Parts)
            check(pair, 3);
        QCOMPARE(_theme->property("buttonBorder").toInt() > 0, strength == "high");
    }
    void namesBreakAtTheirSigns_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("shown");
        QTest::newRow("signs") << u"the_Letter.final.txt"_s << u"the_|Letter.|final.|txt"_s;
        QTest::newRow("runs") << u"a__b...c"_s << u"a__|b...|c"_s;
        QTest::newRow("ends") << u"Wait. What_ is..."_s << u"Wait. What_ is..."_s;
        QTest::newRow("figures") << u"1.25 v2.0 scan_01 No.7"_s << u"1.25 v2.0 scan_|01 No.|7"_s;
    }
    void namesBreakAtTheirSigns()
    {
        QFETCH(QString, name);
        QFETCH(QString, shown);
        load();
        const auto label = make("AppText {}");
        label->setProperty("words", name);
        QCOMPARE(label->property("text").toString(), shown.replace(u'|', QChar(0x200b)));
        QCOMPARE(label->property("words").toString(), name);
    }
    void textsHaveLinesOfACertainLength()
    {
        load();
        for (const int size : {17, 34}) {
            const auto measured = make("TextColumn {}");
            QFont font;
            font.setPixelSize(size);
            measured->setProperty("font", font);
            const double prose = QFontMetricsF(font).horizontalAdvance(
                u"What stands in a book for children, said in the words of this one line."_s);
            const double letters = measured->property("column").toDouble() / prose * 71;
            QVERIFY2(letters > 80 && letters < 100, qPrintable(QString::number(letters)));
        }
    }
    void noticesTakeRoomFromTheRest()
    {
        qputenv("CVTAMBER_MOTION", "reduced");
        load();
        const auto window = make("MainWindow {}");
        const auto *room = window->property("room").value<QQuickItem *>();
        QVERIFY(room);
        const double whole = window->property("height").toDouble();
        QCOMPARE(room->height(), whole);
        window->setProperty("notice", u"Saved as Letter."_s);
        QVERIFY(room->height() < whole - 20 && room->height() > whole - 60);
        window->setProperty("notice", QString());
        QCOMPARE(room->height(), whole);
    }
    void sizesAndMotion()
    {
        qputenv("CVTAMBER_TEXT_SCALE", "2");
        qputenv("CVTAMBER_MOTION", "reduced");
        load();
        QVERIFY(_theme->property("focusWidth").toInt() >= 2);
        QVERIFY(_theme->property("target").toInt() >= 44);
        QCOMPARE(_theme->property("bodySize").toInt(), 34);
        QCOMPARE(_theme->property("noteSize").toInt(), 26);
        QCOMPARE(_theme->property("motion").toInt() + _theme->property("shortMotion").toInt(), 0);
    }
};

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    tst_theme test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_theme.moc"
