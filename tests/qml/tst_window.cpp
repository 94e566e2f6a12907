// SPDX-License-Identifier: GPL-3.0-or-later
#include "DemoScreens.h"
#include "base/EventRunLoop.h"
#include "qml/QmlPresenter.h"
#include "ui/NavigationController.h"

#include <QDropEvent>
#include <QMimeData>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

using namespace cvtamber;
using namespace Qt::StringLiterals;

// The window over a long table.
class tst_window : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        _table = std::make_shared<DemoTable>(_presenter, u"Pupils"_s);
        _table->isDeletable = true;
        DemoTable::Section section;
        for (int i = 1; i <= 12; ++i)
            section.cells.push_back(demoCell(TableCell::Style::Default, u"Lesson %1"_s.arg(i)));
        section.cells.push_back(demoCell(TableCell::Style::Default, u"Žába"_s));
        _table->sections.push_back(section);
        _presenter.showRoot(NavigationController::withRoot(_presenter, _table));
        _presenter.window()->resize(500, 1000);
        _presenter.window()->show();
        QVERIFY(QTest::qWaitForWindowActive(_presenter.window()));
    }

    // A row that has been used before shows what stands in its place now.
    void filteredRowsAreFresh()
    {
        key(Qt::Key_F, Qt::ControlModifier);
        key(Qt::Key_1);
        QTRY_COMPARE(rows(), (QStringList{u"Lesson 1, 1 of 4"_s, u"Lesson 10, 2 of 4"_s,
                                          u"Lesson 11, 3 of 4"_s, u"Lesson 12, 4 of 4"_s}));
        key(Qt::Key_X);
        QTRY_COMPARE(rows(), QStringList());
        key(Qt::Key_F, Qt::ControlModifier);
        for (const Qt::Key letter : {Qt::Key_Z, Qt::Key_A, Qt::Key_B})
            key(letter);
        QTRY_COMPARE(rows(), QStringList{u"Žába, 1 of 1"_s});
        key(Qt::Key_Down);
        key(Qt::Key_Delete);
        QTRY_COMPARE(rows(), QStringList());
        key(Qt::Key_Escape);
        QTRY_COMPARE(rows().size(), 12);
        QCOMPARE(rows().constFirst(), u"Lesson 1, 1 of 12"_s);
        QCOMPARE(_table->done, QStringList{u"delete 0.12"_s});
        QCOMPARE(_table->filter(), QString());
    }

    void whatIsDroppedIsHandedOn_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QStringList>("told");
        QTest::newRow("files") << QByteArray("text/uri-list")
                               << QByteArray("# two\r\nfile:///a%FFb.txt\r\nhttp://c/d\r\n")
                               << QStringList{u"file:///a%FFb.txt"_s, u"http://c/d"_s};
        QTest::newRow("words") << QByteArray("text/plain") << QByteArray("words") << QStringList();
    }
    void whatIsDroppedIsHandedOn()
    {
        QFETCH(QByteArray, format);
        QFETCH(QByteArray, data);
        QStringList told{u"nothing"_s};
        _presenter.setCommands({{}, {}, [&told](const QStringList &uris) { told = uris; }});
        QMimeData dropped;
        dropped.setData(QString::fromLatin1(format), data);
        const QPoint place(250, 500);
        QDragEnterEvent enter(place, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(_presenter.window(), &enter);
        QDropEvent drop(place, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(_presenter.window(), &drop);
        QTEST(told, "told");
        _presenter.setCommands({});
    }

private:
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(_presenter.window(), key, modifiers);
    }
    // What is spoken of those that are shown, from top to bottom.
    QStringList rows()
    {
        QMap<double, QString> found;
        collectRows(*_presenter.window()->contentItem(), found);
        return found.values();
    }
    static void collectRows(const QQuickItem &item, QMap<double, QString> &found)
    {
        if (item.isVisible() && item.property("cellEnabled").isValid())
            found.insert(item.y(), u"%1, %2 of %3"_s.arg(item.property("spokenName").toString())
                                       .arg(item.property("place").toInt() + 1)
                                       .arg(item.property("count").toInt()));
        for (const QQuickItem *child : item.childItems())
            collectRows(*child, found);
    }

    EventRunLoop _runLoop;
    QmlPresenter _presenter{_runLoop};
    std::shared_ptr<DemoTable> _table;
};

QTEST_MAIN(tst_window)
#include "tst_window.moc"
