// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleBench.h"

#include "qml/BubbleImageProvider.h"
#include "qml/QtTextMeasurer.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <memory>

extern void qml_register_types_CVTamber();

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

// The list of a table in a window.
class Shown
{
public:
    explicit Shown(std::shared_ptr<BubbleBench> bench, QSize size = {390, 700})
        : _bench(std::move(bench))
    {
        qml_register_types_CVTamber();
        _engine.addImageProvider(u"bubbles"_s, new BubbleImageProvider);
        QQmlEngine::setObjectOwnership(&_bench->table, QQmlEngine::CppOwnership);
        QQmlComponent component(&_engine, QUrl(u"qrc:/qt-project.org/imports/CVTamber/BubbleTable.qml"_s));
        _view.reset(qobject_cast<QQuickItem *>(
            component.createWithInitialProperties({{u"table"_s, QVariant::fromValue(&_bench->table)},
                                                   {u"width"_s, size.width()},
                                                   {u"height"_s, size.height()}})));
        if (!_view)
            qFatal("%s", qUtf8Printable(component.errorString()));
        window.resize(size);
        _view->setParentItem(window.contentItem());
        window.show();
        window.requestActivate();
        settle();
    }
    // Until what is asked for has been laid out.
    void settle()
    {
        QCoreApplication::processEvents();
        window.grabWindow();
    }
    QQuickItem *list() const
    {
        for (auto *item : _view->childItems()) {
            if (item->inherits("QQuickListView"))
                return item;
        }
        return nullptr;
    }
    int current() const { return list()->property("currentIndex").toInt(); }
    QList<QQuickItem *> rows() const
    {
        QList<QQuickItem *> found;
        for (auto *item : list()->property("contentItem").value<QQuickItem *>()->childItems()) {
            if (item->isVisible() && item->property("spoken").isValid())
                found.append(item);
        }
        return found;
    }
    static QQuickItem *labelOf(QQuickItem *row)
    {
        for (auto *part : row->childItems()) {
            if (part->inherits("QQuickText"))
                return part;
            if (auto *label = labelOf(part))
                return label;
        }
        return nullptr;
    }
    // Its index in the model; -1 for none.
    int focused() const
    {
        const auto *item = window.activeFocusItem();
        return item && item->property("spoken").isValid() ? item->property("index").toInt() : -1;
    }
    bool isAtEnd() const
    {
        const auto end =
            list()->property("originY").toDouble() + list()->property("contentHeight").toDouble();
        return std::abs(list()->property("contentY").toDouble() + list()->height() - end) < 1;
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&window, key, modifiers);
        settle();
    }

private:
    std::shared_ptr<BubbleBench> _bench;
    QQmlEngine _engine;
    std::unique_ptr<QQuickItem> _view;

public:
    // Goes first: its renderer has what is drawn of the view.
    QQuickWindow window;
};

std::shared_ptr<BubbleBench> conversation(int lines)
{
    auto bench = BubbleBench::create();
    for (int i = 0; i < lines; ++i)
        bench->bubbles.push_back(
            bubbleAt(i * 50, u"line %1"_s.arg(i), i % 3 ? NSBubbleType::Mine : NSBubbleType::SomeoneElse));
    bench->table.reloadData();
    return bench;
}

void say(BubbleBench &bench, const QString &text)
{
    bench.bubbles.push_back(bubbleAt(1'000'000'000 + qint64(bench.bubbles.size()), text));
    bench.table.reloadData();
    const int section = bench.table.numberOfSections() - 1;
    bench.table.scrollToRow({section, bench.table.numberOfRows(section) - 1},
                            UIBubbleTableView::ScrollPosition::Bottom, true);
}

} // namespace

class tst_bubbletable : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("CVTAMBER_MOTION", "reduced"); }
    void textsAreDrawnAsMeasured_data();
    void textsAreDrawnAsMeasured();
    void longTextsAreLaidOutInTime();
    void keysGoFromMessageToMessage();
    void theMessageThatIsReadKeepsTheFocus();
    void aLongConversationOpensAtItsEnd();
    void picturesTakeTheColoursOfTheLook();
};

void tst_bubbletable::textsAreDrawnAsMeasured_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("letter") << u"i"_s;
    QTest::newRow("words") << u"The quick brown fox jumps over the lazy dog, and then over the next one."_s;
    QTest::newRow("long word") << QString(300, u'm');
    QTest::newRow("spaces") << u"a"_s + QString(200, u' ') + u"b  "_s;
    QTest::newRow("lines") << u"\na\n\nb\r\n"_s;
    QTest::newRow("Chinese") << u"中文输入法在电话和盲文机之间来回发送,一行一行地显示在对话里。"_s;
    QTest::newRow("Arabic") << u"مرحبا كيف حالك اليوم يا صديقي العزيز hello وماذا تفعل الآن"_s;
    QTest::newRow("directions") << u"\u202eabc\u2067def ghi jkl mno pqr stu vwx yz\u202d 123 456 789"_s;
    QTest::newRow("emoji")
        << u"\U0001f468\u200d\U0001f469\u200d\U0001f467 \U0001f600\U0001f600 \u2764\ufe0f"_s;
    QTest::newRow("marks") << u"e"_s + QString(2000, QChar(0x301)) + u" x"_s;
    QTest::newRow("broken") << u"a\0b \x1b[1m"_s + QChar(0xd800) + u" c"_s + QChar(0xdc00);
    QTest::newRow("mark-up") << u"<b>bold</b> &amp; <img src='x'>"_s;
}

void tst_bubbletable::textsAreDrawnAsMeasured()
{
    QFETCH(QString, text);
    for (const auto &size : {QSize(390, 700), QSize(820, 1180)}) {
        const auto bench = BubbleBench::create();
        bench->bubbles = {bubbleAt(0, text)};
        bench->table.reloadData();
        const Shown shown(bench, size);
        QCOMPARE(bench->table.fontSize(), size.width() > 500 ? 28 : 17);
        QCOMPARE(shown.rows().size(), 2);
        const auto *label = Shown::labelOf(shown.rows()[1]);
        QVERIFY(label);
        QCOMPARE(label->property("text"), bench->value(1, BubbleModel::TitleRole));
        const auto frame = bench->value(1, BubbleModel::ViewRole).toRectF();
        QCOMPARE(label->size(), frame.size());
        QVERIFY(frame.width() <= (size.width() > 500 ? 500 : 220));
        QCOMPARE(label->property("contentHeight").toDouble(), frame.height());
        QVERIFY(label->property("contentWidth").toDouble() <= frame.width());
        QVERIFY(frame.height() >= bench->table.fontSize());
    }
}

void tst_bubbletable::longTextsAreLaidOutInTime()
{
    const auto bench = BubbleBench::create();
    QString mixed;
    for (int i = 0; i < 33'000; ++i)
        mixed += u"aא中"_s;
    bench->bubbles = {bubbleAt(0, QString(100'000, u'w')), bubbleAt(1, QString(100'000, u'\n')),
                      bubbleAt(2, u"e"_s + QString(100'000, QChar(0x301))), bubbleAt(3, mixed),
                      bubbleAt(4, QString(100'000, QChar(0x202e)))};
    bench->table.reloadData();
    QElapsedTimer time;
    time.start();
    Shown shown(bench);
    for (int row = 5; row > 0; --row) {
        bench->table.scrollToRow({0, row}, UIBubbleTableView::ScrollPosition::Top, false);
        shown.settle();
        QVERIFY(bench->table.heightForRow({0, row}) <= 9999 + 16);
    }
    // Seconds even with sanitizers; without the bounds it is minutes.
    QVERIFY2(time.elapsed() < 20'000, qPrintable(QString::number(time.elapsed())));
}

void tst_bubbletable::keysGoFromMessageToMessage()
{
    const auto bench = conversation(100);
    Shown shown(bench);
    const int last = bench->table.model().rowCount() - 1;
    QVERIFY(shown.isAtEnd());
    shown.list()->forceActiveFocus(Qt::TabFocusReason);
    QCOMPARE(shown.focused(), last);
    shown.key(Qt::Key_Down);
    QCOMPARE(shown.focused(), last);
    shown.key(Qt::Key_Up);
    QCOMPARE(shown.focused(), last - 1);
    shown.key(Qt::Key_Home);
    QCOMPARE(shown.focused(), 1); // not the date
    QCOMPARE(shown.list()->property("contentY"), shown.list()->property("originY"));
    shown.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"line 0"_s);
    int pages = 0;
    for (int before = -1; shown.focused() != before && pages < 50; ++pages) {
        before = shown.focused();
        shown.key(Qt::Key_PageDown);
        QVERIFY(shown.focused() - before < 20);
    }
    QCOMPARE(shown.focused(), last);
    QVERIFY(pages > 3 && pages < 20);
    shown.key(Qt::Key_PageUp);
    QVERIFY(shown.focused() < last - 5);
    shown.key(Qt::Key_End);
    QCOMPARE(shown.focused(), last);
    QVERIFY(shown.isAtEnd());
}

void tst_bubbletable::theMessageThatIsReadKeepsTheFocus()
{
    const auto bench = conversation(100);
    Shown shown(bench);
    // Nobody reads: the newest is where reading begins.
    say(*bench, u"first"_s);
    shown.settle();
    QVERIFY(shown.isAtEnd());
    QCOMPARE(shown.current(), bench->table.model().rowCount() - 1);
    shown.list()->forceActiveFocus(Qt::TabFocusReason);
    for (int i = 0; i < 5; ++i)
        shown.key(Qt::Key_Up);
    auto *reading = shown.window.activeFocusItem();
    const auto words = reading->property("spoken");
    for (int i = 0; i < 80; ++i) {
        say(*bench, u"news"_s);
        shown.settle();
    }
    QVERIFY(shown.isAtEnd());
    QCOMPARE(shown.window.activeFocusItem(), reading);
    QCOMPARE(reading->property("spoken"), words);
    shown.key(Qt::Key_Down);
    QCOMPARE(shown.focused(), reading->property("index").toInt() + 1);
}

void tst_bubbletable::aLongConversationOpensAtItsEnd()
{
    const auto bench = conversation(100'000);
    Shown shown(bench);
    QVERIFY(shown.isAtEnd());
    const auto rows = shown.rows();
    QVERIFY2(rows.size() > 10 && rows.size() < 60, qPrintable(QString::number(rows.size())));
    for (const auto *row : rows)
        QVERIFY(row->property("index").toInt() > 99'900);
    QVERIFY(bench->table.lastVisibleRow());
    QCOMPARE(bench->table.lastVisibleRow()->row, 100'000);
    say(*bench, u"one more"_s);
    shown.settle();
    QVERIFY(shown.isAtEnd());
    QCOMPARE(bench->table.lastVisibleRow(), (IndexPath{1, 1}));
}

void tst_bubbletable::picturesTakeTheColoursOfTheLook()
{
    BubbleImageProvider provider;
    for (const auto *rendition : {"", "@2x", "@3x"}) {
        const int scale = *rendition == 0 ? 1 : rendition[1] - '0';
        for (const auto *name : {"bubbleMine", "bubbleSomeone"}) {
            const auto image = provider.requestImage(
                QString::fromLatin1(name) + QLatin1StringView(rendition) + u"/102030/405060/ffffff"_s,
                nullptr, {});
            QCOMPARE(image.size(), QSize(37, 35) * scale);
            // Another one makes the software renderer read beyond the image.
            QCOMPARE(image.devicePixelRatio(), 1);
            const bool isMine = name[6] == 'M';
            const int cap = (isMine ? 15 : 21) * scale;
            QCOMPARE(image.pixelColor(cap, 14 * scale), QColor(0x10, 0x20, 0x30));
            QVERIFY(image.pixelColor(cap, 0).alpha() > 100);
            // What is stretched is even, and the tail is on the side of who speaks.
            for (int i = 0; i < 35 * scale; ++i)
                QCOMPARE(image.pixel(cap, i), image.pixel(cap + scale - 1, i));
            const int tail = 29 * scale;
            QVERIFY(qAlpha(image.pixel(isMine ? 35 * scale : 2 * scale, tail)) > 0);
            QCOMPARE(qAlpha(image.pixel(isMine ? 0 : 36 * scale, tail)), 0);
        }
    }
    QVERIFY(provider.requestImage(u"typingMine/000000/000000/ff0000"_s, nullptr, {}).pixelColor(33, 15) ==
            Qt::red);
    for (const auto *odd : {"", "nothing", "nothing/1/2/3", "avatar/x/y/z", "../../etc/1/2/3"})
        QCOMPARE(qAlpha(provider.requestImage(QString::fromLatin1(odd), nullptr, {}).pixel(0, 0)), 0);
    const auto avatar = provider.requestImage(
        u"avatar/50/9/qrc%3A%2Fimages%2Fapplication%2Forg.cvtamber.CVTamber-48.png"_s, nullptr, {});
    QCOMPARE(avatar.size(), QSize(50, 50));
    QCOMPARE(qAlpha(avatar.pixel(0, 0)), 0);
    QVERIFY(qAlpha(avatar.pixel(25, 25)) == 255);
}

QTEST_MAIN(tst_bubbletable)
#include "tst_bubbletable.moc"
