// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/PageAccessible.h"
#include "qml/PageEditor.h"
#include "support/Rows.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickTextDocument>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QTextBlock>
#include <QTextDocument>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

using Keys = QKeySequence::StandardKey;

// A page with a text area that has the focus, and everything that can happen to the two.
class Desk final : public UIMyTextViewDelegate
{
public:
    // Whether pieces of the device's text are shown together.
    explicit Desk(bool isJoining = false)
    {
        QQmlComponent component(&_engine);
        component.setData(R"(import QtQuick
            import QtQuick.Controls.Basic
            TextArea {
                property var pageEditor
                property string spokenName: "Page"
                width: 300; height: 200; selectByMouse: true; wrapMode: TextEdit.Wrap
            })",
                          {});
        area.reset(qobject_cast<QQuickItem *>(component.create()));
        if (!area)
            qFatal("No text area: %s", qPrintable(component.errorString()));
        document = area->property("textDocument").value<QQuickTextDocument *>()->textDocument();
        area->setParentItem(_window.contentItem());
        page.setDelegate(this);
        editor.setParentItem(isJoining ? area.get() : nullptr);
        page.insertCorvaneText(u"fixed "_s);
        page.paste(u"unsent"_s);
        editor.setArea(area.get());
        editor.setPage(&page);
        area->setProperty("pageEditor", QVariant::fromValue<QObject *>(&editor));
        _window.show();
        area->forceActiveFocus();
    }
    void newTextReady(const QString &text) override { sent += text; }

    void key(Qt::Key code, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&_window, code, modifiers);
    }
    void key(Keys standard)
    {
        const QKeyCombination keys = QKeySequence(standard)[0];
        key(keys.key(), keys.keyboardModifiers());
    }
    void write(const QString &text)
    {
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, &_window, c == u'\n' ? Qt::Key_Return : Qt::Key_unknown, c,
                                Qt::NoModifier);
    }
    void compose(const QString &preedit, const QString &commit = {}, int from = 0, int length = 0)
    {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit, from, length);
        QCoreApplication::sendEvent(area.get(), &event);
    }
    void copied(const QString &text) { QGuiApplication::clipboard()->setText(text); }
    void select(int start, int end)
    {
        QMetaObject::invokeMethod(area.get(), "select", Q_ARG(int, start), Q_ARG(int, end));
    }
    // Behind the page's back.
    void meddle(int position, int length, const QString &text)
    {
        QTextCursor cursor(document);
        cursor.setPosition(std::min(position, document->characterCount() - 1));
        cursor.setPosition(std::min(position + length, document->characterCount() - 1),
                           QTextCursor::KeepAnchor);
        cursor.insertText(text);
        QCoreApplication::processEvents();
    }
    // What the area has that the page has not.
    QString difference() const
    {
        const auto range = page.selectedRange();
        if (document->characterCount() - 1 != page.text().size())
            return u"length"_s;
        if (document->toPlainText() != plain(page.text()))
            return u"text"_s;
        if (area->property("selectionStart") != int(range.start) ||
            area->property("selectionEnd") != int(range.end()))
            return u"selection"_s;
        QTextCursor cursor(document);
        for (int i = 0; i < page.text().size(); ++i) {
            cursor.setPosition(i + 1);
            if (page.text()[i] != u'\n' && cursor.charFormat().fontUnderline() != (i >= page.fixedTextEnd()))
                return u"underline"_s;
        }
        return {};
    }
    void draw() { _window.grabWindow(); }
    // What a screen reader is given.
    QAccessibleTextInterface &told() const
    {
        PageAccessible::install();
        return *QAccessible::queryAccessibleInterface(area.get())->textInterface();
    }
    QString allTold() const { return told().text(0, told().characterCount()); }
    QString state() const { return page.text().left(page.fixedTextEnd()) + u'|' + page.unsentText(); }

    UIMyTextView page;
    PageEditor editor;
    std::unique_ptr<QQuickItem> area;
    QTextDocument *document = nullptr;
    QString sent;

private:
    // As the document says it.
    static QString plain(QString text)
    {
        return text.replace(QChar(u'\0'), u'\u2400')
            .replace(u'\r', u'\u240D')
            .replace(QChar(QChar::ParagraphSeparator), u'\n');
    }

    QQmlEngine _engine;
    QQuickWindow _window;
};

} // namespace

// The area shows the page and changes nothing by itself, whatever is done to it.
class tst_PageEditor : public QObject
{
    Q_OBJECT

private slots:
    void acts_data()
    {
        using Act = std::function<void(Desk &)>;
        columns<Act, QString>("act", "state");
        const auto act = [](const char *name, const QString &state, const Act &what) {
            row(name, what, state);
        };
        act("words", u"fixed unsenta |b"_s, [](Desk &d) { d.write(u"a b"_s); });
        act("line end", u"fixed unsent\n|"_s, [](Desk &d) { d.write(u"\n"_s); });
        act("keypad", u"fixed unsent\n|"_s, [](Desk &d) { d.key(Qt::Key_Enter, Qt::KeypadModifier); });
        act("all deleted", u"fixed |"_s, [](Desk &d) { d.key(Keys::SelectAll), d.key(Qt::Key_Backspace); });
        act("all overwritten", u"fixed |unsent"_s, [](Desk &d) { d.key(Keys::SelectAll), d.write(u"x "_s); });
        act("in fixed text", u"fixed |unsent"_s,
            [](Desk &d) { d.select(2, 2), d.write(u"x "_s), d.key(Qt::Key_Delete); });
        act("word", u"fixed |"_s,
            [](Desk &d) { d.key(Keys::DeleteStartOfWord), d.key(Keys::DeleteStartOfWord); });
        act("word ahead", u"fixed |"_s, [](Desk &d) { d.select(6, 6), d.key(Keys::DeleteEndOfWord); });
        act("word into unsent text", u"fixed |unsent"_s,
            [](Desk &d) { d.select(2, 2), d.key(Keys::DeleteEndOfWord); });
        act("shortcut", u"fixed |unsent"_s,
            [](Desk &d) { d.key(Qt::Key_K, Qt::AltModifier), d.key(Qt::Key_Escape); });
        act("paste", u"fixed |unsenta b\nc"_s, [](Desk &d) { d.copied(u"a b\r\nc"_s), d.key(Keys::Paste); });
        act("cut", u"fixed |unsent cut: xed uns, ent"_s, [](Desk &d) {
            d.select(2, 9), d.key(Keys::Cut);
            const QString rest = d.page.unsentText().toString();
            d.page.setSelectedRange({99, 0}), d.key(Keys::Undo);
            d.page.setSelectedRange({99, 0});
            d.page.insertText(u" cut: "_s + QGuiApplication::clipboard()->text() + u", "_s + rest);
        });
        act("undo", u"fixed |unsent"_s, [](Desk &d) { d.write(u"ab"_s), d.key(Keys::Undo); });
        act("redo", u"fixed |unsentab"_s,
            [](Desk &d) { d.write(u"ab"_s), d.key(Keys::Undo), d.key(Keys::Redo); });
        act("composed", u"fixed |unsentni"_s,
            [](Desk &d) { d.compose(u"n"_s), d.compose(u"ni"_s), d.compose({}, u"ni"_s); });
        act("still composed", u"fixed |unsent"_s, [](Desk &d) { d.compose(u"n"_s); });
        act("composed over a selection", u"fixed |uent"_s,
            [](Desk &d) { d.select(7, 9), d.compose(u"n"_s); });
        act("composed in fixed text", u"fixed |unsent"_s,
            [](Desk &d) { d.select(1, 9), d.compose(u"n"_s), d.compose({}, u"ni "_s); });
        act("commit with a space", u"fixed unsent\u4E2D |"_s, [](Desk &d) { d.compose({}, u"\u4E2D "_s); });
        act("commit replaces", u"fixed |unsEND"_s, [](Desk &d) { d.compose({}, u"END"_s, -3, 3); });
        act("commit replaces fixed text", u"fixed |unsent"_s,
            [](Desk &d) { d.compose({}, u"END"_s, -8, 3); });
        act("device text while composing", u"fixed dev|unsentni"_s,
            [](Desk &d) { d.compose(u"n"_s), d.page.insertCorvaneText(u"dev"_s), d.compose({}, u"ni"_s); });
        act("odd characters", QString(u"fixed \0\r\u202E\u2029\xD83D\n|unsent"_s),
            [](Desk &d) { d.page.insertCorvaneText(u"\0\r\u202E\u2029\xD83D\n"_s); });
        act("meddled with", u"fixed |unsent"_s,
            [](Desk &d) { d.meddle(1, 7, u"new\n"_s), d.meddle(0, 0, u"x"_s); });
        act("taken away", u"fixed |unsent"_s, [](Desk &d) { d.meddle(0, 99, {}); });
        act("set", u"fixed |unsent"_s,
            [](Desk &d) { d.area->setProperty("text", u"x"_s), QCoreApplication::processEvents(); });
        act("drop", u"fixed |xunsent"_s, [](Desk &d) {
            d.select(6, 6);
            const auto start = d.area->property("cursorRectangle").toRectF();
            d.editor.dropText(u"x"_s, start.x() + 1, start.center().y());
            d.select(0, 0);
        });
    }
    void acts()
    {
        QFETCH(std::function<void(Desk &)>, act);
        Desk desk;
        QCOMPARE(desk.difference(), QString());
        act(desk);
        QTEST(desk.state(), "state");
        QCOMPARE(desk.difference(), QString());
    }

    // A page's own text is copied, not the signs that stand for it.
    void copies()
    {
        Desk desk;
        desk.page.insertCorvaneText(u"a\rb"_s);
        desk.key(Keys::SelectAll);
        desk.key(Keys::Copy);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"fixed a\rbunsent"_s);
    }

    // The caret, and which end of a selection moves, are those that the person has chosen.
    void deviceTextLeavesTheCaret()
    {
        Desk desk;
        desk.select(9, 3);
        desk.page.insertCorvaneText(u"device\n"_s);
        QCOMPARE(desk.page.selectedRange(), (UIMyTextView::Range{3, 6}));
        desk.select(2, 2);
        desk.page.insertCorvaneText(u"more"_s);
        QCOMPARE(desk.area->property("cursorPosition").toInt(), 2);
        QVERIFY(desk.area->hasActiveFocus());
    }

    // Pieces are shown together in the next picture, or before anything else is done.
    void joinsPieces()
    {
        Desk desk(true);
        int changes = 0;
        connect(desk.document, &QTextDocument::contentsChange, this, [&] { ++changes; });
        const auto pieces = [&] {
            for (int i = 0; i < 20; ++i)
                desk.page.insertCorvaneText(u"piece\n"_s);
            changes = 0;
        };
        pieces();
        desk.draw();
        QCOMPARE(changes, 1);
        QCOMPARE(desk.difference(), QString());
        const std::function<void()> acts[] = {
            [&] { desk.write(u"a "_s); }, [&] { desk.select(2, 9); },
            [&] { desk.select(8, 8); },   [&] { desk.compose({}, u"b"_s); },
            [&] { desk.page.undo(); },    [&] { desk.page.setSelectedRange({3, 200}); }};
        for (const auto &act : acts) {
            pieces();
            act();
            desk.draw();
            QCOMPARE(desk.difference(), QString());
        }
    }

    // A line of any length and lines of any number are in blocks that are neither long nor many.
    void blocks()
    {
        QRandomGenerator random(3);
        QTextDocument document;
        PageDocument shown;
        shown.setDocument(&document);
        QString text;
        const auto unitAt = [&text](qsizetype at) { return text[at]; };
        const QStringList pieces{u"x"_s, u"\n"_s, u"word "_s, u"\U0001F600"_s, u"e\u0301"_s};
        for (int step = 0; step < 120; ++step) {
            const auto at = random.bounded(text.size() + 1);
            if (step % 3 == 2) {
                const auto length = std::min<qsizetype>(random.bounded(4000), text.size() - at);
                shown.remove(at, length);
                text.remove(at, length);
            } else {
                const QString piece = pieces[random.bounded(int(pieces.size()))].repeated(
                    1 + random.bounded(step % 30 == 0 ? 9000 : 3));
                shown.insert(at, piece, {});
                text.insert(at, piece);
            }
            QVERIFY(shown.shows(text.size(), 0, document.characterCount(), unitAt));
            QCOMPARE(shown.textPosition(shown.documentPosition(at)), at);
        }
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
            QVERIFY(block.length() <= 2 * PageDocument::LongestBlock + 1);
        shown.remove(0, text.size());
        QCOMPARE(document.characterCount(), 1);
        shown.insert(0, u"\n"_s.repeated(100'000), {});
        QVERIFY(document.blockCount() > 1500 && document.blockCount() < 2500);
    }

    // A screen reader is told the page, however its lines are joined and divided, and a key goes over a break.
    void told()
    {
        Desk desk;
        const QString word = u"word "_s.repeated(1000);
        desk.page.insertCorvaneText(word + u"\nA\nB"_s + u"\n"_s.repeated(2000));
        QVERIFY(desk.document->characterCount() - 1 > desk.page.text().size());
        QCOMPARE(desk.allTold(), desk.page.text());
        QAccessibleTextInterface &told = desk.told();
        told.setCursorPosition(0);
        for (int place = 0; place < 3000; ++place, desk.key(Qt::Key_Right))
            QCOMPARE(told.cursorPosition(), place);
        for (int place = 3000; place > 2000; --place, desk.key(Qt::Key_Left))
            QCOMPARE(told.cursorPosition(), place);
        int start = 0;
        int end = 0;
        const auto line = static_cast<int>(desk.page.text().indexOf(u'A'));
        QCOMPARE(told.textAtOffset(line, QAccessible::LineBoundary, &start, &end), u"A"_s);
        QCOMPARE(told.textAfterOffset(line, QAccessible::ParagraphBoundary, &start, &end), u"B"_s);
        QCOMPARE(start, line + 2);
    }

    // What there is no room for as lines stands there as signs.
    void manyLines()
    {
        Desk desk;
        const auto check = [&desk] {
            QCoreApplication::processEvents();
            const QString shown = desk.document->toPlainText();
            QCOMPARE(desk.allTold(), desk.page.text());
            QVERIFY(shown.count(u'\n') < 40'000 && shown.endsWith(desk.page.text().right(20'000)));
        };
        desk.page.insertCorvaneText(u"a\n"_s.repeated(33'000));
        check();
        desk.page.paste(u"\nb"_s.repeated(33'000));
        check();
        desk.page.insertCorvaneText(u"c\n"_s.repeated(100));
        check();
        desk.page.undo();
        check();
    }

    // Two views of one page, and one that has gone.
    void views()
    {
        Desk desk;
        {
            PageEditor second;
            second.setArea(desk.area.get());
        }
        auto other = std::make_unique<Desk>();
        PageEditor second;
        other->area.swap(desk.area);
        other.reset();
        desk.page.insertText(u"x"_s);
        QCOMPARE(desk.page.text(), u"fixed unsentx"_s);
        desk.area.reset();
    }

    void anything()
    {
        QRandomGenerator random(7);
        Desk desk;
        QString fixed = desk.page.text().left(desk.page.fixedTextEnd());
        const QStringList pieces{u"a"_s,      u" "_s,           u"\n"_s,         u"bc "_s,
                                 u"d\r\ne"_s, QString(u"\0"_s), u"\U0001F600"_s, u""_s};
        for (int step = 0; step < 1500; ++step) {
            const QString &piece = pieces[random.bounded(int(pieces.size()))];
            const int place = std::max(0, int(desk.page.text().size()) - random.bounded(12));
            const int length = random.bounded(4);
            const std::function<void()> acts[] = {
                [&] { desk.write(piece); },
                [&] { desk.key(Keys::MoveToEndOfDocument), desk.write(piece); },
                [&] { desk.compose(piece); },
                [&] { desk.compose({}, piece, -length, length); },
                [&] { desk.select(place, std::max(0, place - length)); },
                [&] { desk.key(length == 0 ? Qt::Key_Delete : Qt::Key_Backspace); },
                [&] { desk.key(length == 0 ? Keys::Cut : Keys::Paste); },
                [&] { desk.key(length == 0 ? Keys::Undo : Keys::Redo); },
                [&] { desk.key(Keys::SelectPreviousWord); },
                [&] { desk.page.insertCorvaneText(piece); },
                [&] { desk.meddle(place, length, piece); },
            };
            const size_t which = random.bounded(quint32(std::size(acts)));
            acts[which]();
            QCoreApplication::processEvents();
            const QString now = desk.page.text().left(desk.page.fixedTextEnd());
            QVERIFY2(now.startsWith(fixed), qPrintable(u"act %1 in step %2"_s.arg(which).arg(step)));
            QVERIFY2(desk.difference().isEmpty(),
                     qPrintable(u"%1 after act %2 in step %3"_s.arg(desk.difference()).arg(which).arg(step)));
            fixed = now;
        }
        QVERIFY(desk.sent.size() > 100);
    }
};

QTEST_MAIN(tst_PageEditor)
#include "tst_pageeditor.moc"
