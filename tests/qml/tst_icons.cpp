// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/IconProvider.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <cstdlib>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString Sources = QStringLiteral(CVTAMBER_SOURCES);
const QString Images = QStringLiteral(CVTAMBER_IMAGES);

QStringList captured(const QString &text, const QString &pattern)
{
    const QRegularExpression expression(pattern, QRegularExpression::DotMatchesEverythingOption);
    QStringList found;
    for (auto matches = expression.globalMatch(text); matches.hasNext();) {
        found.append(matches.next().captured(1));
    }
    return found;
}

QString textOf(const QString &folder, const QString &filter)
{
    QString text;
    for (QDirIterator files(Sources + u'/' + folder, {filter}, QDir::Files); files.hasNext();) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly)) {
            text += QString::fromUtf8(file.readAll());
        }
    }
    return text;
}

// What the screens name in their cells and tabs, and the views in their buttons and signs.
QSet<QString> namesInUse()
{
    const QString views = textOf(u"qml"_s, u"*.qml"_s);
    const QString choices = captured(views, u"\\b(?:iconName|backSign): ([^\\n]*)"_s).join(u'\n');
    const QStringList names = captured(textOf(u"app"_s, u"*.cpp"_s), u"\"([\\w@-]+\\.png)\""_s) +
                              captured(textOf(u"device_ui"_s, u"*.cpp"_s), u"\"([\\w@-]+\\.png)\""_s) +
                              captured(views, u"\\bIcon \\{[^}]*?\\bname: \"(\\w+)\""_s) +
                              captured(choices, u"\"(\\w+)\""_s);
    return QSet<QString>(names.begin(), names.end());
}

QImage asked(const QString &id, const QSize &size)
{
    IconProvider provider;
    QSize told;
    QImage image = provider.requestImage(id, &told, size);
    [&] { QCOMPARE(told, image.size()); }();
    return image;
}

// How much of the image is drawn on: 0 nothing, 1 everything.
double cover(const QImage &image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            sum += qAlpha(image.pixel(x, y));
        }
    }
    return sum / 255 / image.width() / image.height();
}

// The largest difference between the covers of any two blocks of the grid.
double difference(const QImage &a, const QImage &b)
{
    const QSize blocks(8, 8);
    const QImage left = a.scaled(blocks, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage right = b.scaled(blocks, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    int largest = 0;
    for (int y = 0; y < blocks.height(); ++y) {
        for (int x = 0; x < blocks.width(); ++x) {
            largest = std::max(largest, std::abs(qAlpha(left.pixel(x, y)) - qAlpha(right.pixel(x, y))));
        }
    }
    return largest / 255.0;
}

} // namespace

class tst_icons : public QObject
{
    Q_OBJECT

private slots:
    void everyNameThatIsUsedHasAnImage_data();
    void everyNameThatIsUsedHasAnImage();
    void renditionsShowTheSameDrawing_data();
    void renditionsShowTheSameDrawing();
    void everyImageIsUsedAndLikeNoOther();
    void oddRequestsAreSafe_data();
    void oddRequestsAreSafe();
    void theColourIsTheOneAskedFor_data();
    void theColourIsTheOneAskedFor();
    void theApplicationHasAnIcon();
};

void tst_icons::everyNameThatIsUsedHasAnImage_data()
{
    QTest::addColumn<QString>("name");
    const QSet<QString> names = namesInUse();
    // What nobody finds in the sources is not tested: the reading must know these.
    for (const QString &name : {u"user.png"_s, u"cv.png"_s, u"folder.png"_s, u"doc.png"_s, u"back"_s,
                                u"chevron"_s, u"add"_s, u"action"_s, u"refresh"_s}) {
        QVERIFY2(names.contains(name), qUtf8Printable(name));
    }
    for (const QString &name : names) {
        QTest::newRow(qUtf8Printable(name)) << name;
    }
}

void tst_icons::everyNameThatIsUsedHasAnImage()
{
    QFETCH(QString, name);
    for (const int side : {18, 20, 24, 36, 48, 72, 96}) {
        const QImage image = asked(name + u"/ff0000", QSize(side, side));
        QCOMPARE(image.size(), QSize(side, side));
        // A line of two units through a third of the grid is the least that reads as an icon.
        QVERIFY2(cover(image) > 2.0 * 8 / (24 * 24), qPrintable(QString::number(cover(image))));
        QVERIFY(cover(image) < 0.5);
    }
}

void tst_icons::renditionsShowTheSameDrawing_data()
{
    QTest::addColumn<QString>("drawing");
    QDirIterator drawings(Images, {u"*.svg"_s}, QDir::Files);
    while (drawings.hasNext()) {
        const QString path = drawings.next();
        QTest::newRow(qUtf8Printable(drawings.fileInfo().baseName())) << path.chopped(4);
    }
}

// A rendition that was not made again after its drawing had changed, or that is cut off at an edge.
void tst_icons::renditionsShowTheSameDrawing()
{
    QFETCH(QString, drawing);
    const QImage once(drawing + u".png");
    const QImage twice(drawing + u"@2x.png");
    const QImage thrice(drawing + u"@3x.png");
    QCOMPARE(once.size(), QSize(24, 24));
    QCOMPARE(twice.size(), QSize(48, 48));
    QCOMPARE(thrice.size(), QSize(72, 72));
    QVERIFY2(difference(once, thrice) < 0.1, qPrintable(QString::number(difference(once, thrice))));
    QVERIFY2(difference(twice, thrice) < 0.1, qPrintable(QString::number(difference(twice, thrice))));
    for (int i = 0; i < 24; ++i) {
        for (const QPoint &edge : {QPoint(i, 0), QPoint(i, 23), QPoint(0, i), QPoint(23, i)}) {
            QCOMPARE(qAlpha(once.pixel(edge)), 0);
        }
    }
}

void tst_icons::everyImageIsUsedAndLikeNoOther()
{
    QSet<QString> used;
    for (const QString &name : namesInUse()) {
        used.insert(name.section(u'.', 0, 0));
    }
    QSet<QString> drawn;
    std::vector<std::pair<QString, QImage>> seen;
    QDirIterator drawings(Images, {u"*.svg"_s}, QDir::Files);
    while (drawings.hasNext()) {
        drawings.next();
        const QString name = drawings.fileInfo().baseName();
        drawn.insert(name);
        const QImage image = asked(name + u"/000000", QSize(72, 72));
        for (const auto &[other, otherImage] : seen) {
            QVERIFY2(difference(image, otherImage) > 0.2, qUtf8Printable(name + u" is like " + other));
        }
        seen.emplace_back(name, image);
    }
    QCOMPARE(drawn, used);
}

void tst_icons::oddRequestsAreSafe_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QSize>("wanted");
    QTest::addColumn<QSize>("given");
    QTest::addColumn<bool>("blank");
    const QString user = u"user.png/336699"_s;
    QTest::newRow("no size") << user << QSize() << QSize(24, 24) << false;
    QTest::newRow("nothing") << user << QSize(0, 0) << QSize(24, 24) << false;
    QTest::newRow("one side") << user << QSize(48, 0) << QSize(48, 48) << false;
    QTest::newRow("negative") << user << QSize(-5, -7) << QSize(24, 24) << false;
    QTest::newRow("a pixel") << user << QSize(1, 1) << QSize(1, 1) << false;
    QTest::newRow("large") << user << QSize(500, 500) << QSize(500, 500) << false;
    QTest::newRow("wide") << user << QSize(100, 30) << QSize(30, 30) << false;
    QTest::newRow("more than memory") << user << QSize(2000000, 2000000) << QSize(1024, 1024) << false;
    QTest::newRow("unknown") << u"nobody.png/336699"_s << QSize(24, 24) << QSize(24, 24) << true;
    QTest::newRow("unknown, tiny") << u"nobody/336699"_s << QSize(1, 1) << QSize(1, 1) << true;
    QTest::newRow("unknown, no size") << u"nobody/336699"_s << QSize(0, 0) << QSize(24, 24) << true;
    QTest::newRow("empty") << QString() << QSize(24, 24) << QSize(24, 24) << true;
    QTest::newRow("colour alone") << u"/336699"_s << QSize(24, 24) << QSize(24, 24) << true;
    QTest::newRow("ending alone") << u".png/336699"_s << QSize(24, 24) << QSize(24, 24) << true;
    QTest::newRow("outside") << u"../../etc/hosts/336699"_s << QSize(24, 24) << QSize(24, 24) << true;
    QTest::newRow("no colour") << u"user.png"_s << QSize(24, 24) << QSize(24, 24) << false;
}

void tst_icons::oddRequestsAreSafe()
{
    QFETCH(QString, id);
    QFETCH(QSize, wanted);
    QFETCH(QSize, given);
    QFETCH(bool, blank);
    const QImage image = asked(id, wanted);
    QCOMPARE(image.size(), given);
    QCOMPARE(cover(image) == 0, blank);
}

void tst_icons::theColourIsTheOneAskedFor_data()
{
    QTest::addColumn<QString>("digits");
    QTest::addColumn<QColor>("color");
    QTest::newRow("opaque") << u"1d5bb8"_s << QColor(0x1d, 0x5b, 0xb8);
    QTest::newRow("half transparent") << u"801d5bb8"_s << QColor(0x1d, 0x5b, 0xb8, 0x80);
    QTest::newRow("wrong") << u"blue!"_s << QColor(Qt::black);
}

void tst_icons::theColourIsTheOneAskedFor()
{
    QFETCH(QString, digits);
    QFETCH(QColor, color);
    // The middle of both lines of the plus sign.
    const QImage image = asked(u"add/"_s + digits, QSize(24, 24));
    const QColor found = image.pixelColor(12, 12);
    QCOMPARE(found.alpha(), color.alpha());
    // Premultiplied storage rounds.
    QVERIFY(std::abs(found.red() - color.red()) <= 2);
    QVERIFY(std::abs(found.green() - color.green()) <= 2);
    QVERIFY(std::abs(found.blue() - color.blue()) <= 2);
    QCOMPARE(image.pixelColor(2, 2).alpha(), 0);
}

void tst_icons::theApplicationHasAnIcon()
{
    const QIcon icon = IconProvider::applicationIcon();
    for (const int side : {16, 24, 32, 48, 128}) {
        const QImage image = icon.pixmap(QSize(side, side), 1.0).toImage();
        QCOMPARE(image.size(), QSize(side, side));
        QVERIFY(cover(image) > 0.6);
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    }
    // What the desktop is given by the installation.
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QImage image(Images + u"/application/org.cvtamber.CVTamber-%1.png"_s.arg(side));
        QCOMPARE(image.size(), QSize(side, side));
        QVERIFY(cover(image) > 0.6);
    }
}

QTEST_MAIN(tst_icons)
#include "tst_icons.moc"
