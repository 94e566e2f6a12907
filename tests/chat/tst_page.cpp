// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/text/UIMyTextView.h"
#include "support/Rows.h"

#include <QSignalSpy>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

// Keeps what a page hands over, and follows its changes as a view does.
class Reader final : public UIMyTextViewDelegate
{
public:
    Reader()
    {
        page.setDelegate(this);
        QObject::connect(&page, &UIMyTextView::textChanged, &page,
                         [this](qsizetype position, qsizetype removed, const QString &inserted) {
                             shown.replace(position, removed, inserted);
                             isInStep = isInStep && shown == page.text() &&
                                        page.selectedRange().end() <= page.text().size();
                         });
    }
    void newTextReady(const QString &text) override { sent.append(text); }
    void pageIsFull() override { ++fullTold; }

    void type(const QString &text)
    {
        for (const QChar c : text)
            page.insertText(c);
    }
    // One step: a letter for what is done, and what it is done with.
    void act(QStringView step)
    {
        const QString text = step.mid(1).toString();
        const QStringList numbers = text.split(u',');
        switch (step.front().unicode()) {
        case u't':
            return type(text);
        case u'i':
            return page.insertText(text);
        case u'c':
            return page.commitText(text);
        case u'p':
            return page.paste(text);
        case u'r':
            return page.insertCorvaneText(text);
        case u's':
            return page.setSelectedRange({numbers.value(0).toInt(), numbers.value(1).toInt()});
        case u'b':
            return page.deleteBackward();
        case u'd':
            return page.deleteForward();
        case u'u':
            return page.undo();
        case u'y':
            return page.redo();
        case u'h':
            return page.setHoldsBack(!page.holdsBack());
        default:
            qFatal("No such step");
        }
    }
    // Fixed text, a bar, unsent text; then the selection.
    QString state() const
    {
        const auto range = page.selectedRange();
        return page.text().left(page.fixedTextEnd()) + u'|' + page.unsentText() +
               u" %1,%2"_s.arg(range.start).arg(range.length);
    }

    UIMyTextView page;
    QStringList sent;
    QString shown;
    bool isInStep = true;
    int fullTold = 0;
};

void edit(const char *name, const QStringList &steps, const QString &state, const QStringList &sent = {})
{
    row(name, steps, state, sent);
}

void typing()
{
    edit("word", {u"thello world"_s}, u"hello |world 11,0"_s, {u"hello "_s});
    edit("line end", {u"tab\n"_s}, u"ab\n| 3,0"_s, {u"ab\r\n"_s});
    edit("spaces", {u"ta  b \n"_s}, u"a  b \n| 6,0"_s, {u"a "_s, u" "_s, u"b "_s, u"\r\n"_s});
    edit("space within", {u"tabcd"_s, u"s2,0"_s, u"t "_s}, u"ab |cd 3,0"_s, {u"ab "_s});
    edit("space over a selection", {u"tabcd"_s, u"s1,2"_s, u"t "_s}, u"a |d 2,0"_s, {u"a "_s});
    edit("in fixed text", {u"tab cd"_s, u"s1,0"_s, u"tx \n"_s}, u"ab |cd 1,0"_s, {u"ab "_s});
    edit("at the end of fixed text", {u"tab cd"_s, u"s3,0"_s, u"tx "_s}, u"ab x |cd 5,0"_s,
         {u"ab "_s, u"x "_s});
    edit("over fixed and unsent text", {u"tab cd"_s, u"s1,3"_s, u"tx "_s}, u"ab |cd 1,3"_s, {u"ab "_s});
    edit("several at once send nothing", {u"ia b "_s}, u"|a b  4,0"_s);
    edit("nothing", {u"tab"_s, u"s0,2"_s, u"i"_s, u"p"_s, u"r"_s}, u"|ab 0,2"_s);
    edit("odd characters", {u"i\0\u202E"_s, u"i\xD83D"_s, u"i\u2029"_s, u"i\r"_s, u"t\n"_s},
         u"\0\u202E\xD83D\u2029\r\n| 6,0"_s, {u"\0\u202E\xD83D\u2029\r\r\n"_s});
    // Input methods
    edit("commit", {u"ckoira"_s, u"c "_s}, u"koira | 6,0"_s, {u"koira "_s});
    edit("commit with its space", {u"ctwo words "_s, u"cx"_s}, u"two words |x 11,0"_s, {u"two words "_s});
    edit("commit in fixed text", {u"ta b"_s, u"s0,0"_s, u"cx "_s}, u"a |b 0,0"_s, {u"a "_s});
    edit("commit over a selection", {u"tab"_s, u"s0,2"_s, u"c\u00E9\n"_s}, u"\u00E9\n| 2,0"_s,
         {u"\u00E9\r\n"_s});
}

void pastingAndDeleting()
{
    // Pasting
    edit("paste", {u"pa b\r\nc\r\u2028d\u2029"_s}, u"|a b\nc\n\nd\n 9,0"_s);
    edit("paste, then a space", {u"pa b\nc"_s, u"t "_s}, u"a b\nc | 6,0"_s, {u"a b\r\nc "_s});
    edit("paste a space", {u"tab"_s, u"p "_s, u"b"_s, u"b"_s}, u"|a 1,0"_s);
    edit("paste into fixed text", {u"tab cd"_s, u"s2,2"_s, u"pxy"_s}, u"ab |cd 2,2"_s, {u"ab "_s});
    // Deleting
    edit("backspace", {u"tab cd"_s, u"b"_s}, u"ab |c 4,0"_s, {u"ab "_s});
    edit("backspace at the fixed text", {u"tab c"_s, u"b"_s, u"b"_s, u"b"_s}, u"ab | 3,0"_s, {u"ab "_s});
    edit("backspace in fixed text", {u"tab c"_s, u"s1,0"_s, u"b"_s}, u"ab |c 1,0"_s, {u"ab "_s});
    edit("backspace of a selection", {u"tabcd"_s, u"s1,2"_s, u"b"_s}, u"|ad 1,0"_s);
    edit("of fixed and unsent text", {u"tab cde"_s, u"s1,4"_s, u"b"_s}, u"ab |e 3,0"_s, {u"ab "_s});
    edit("of fixed text", {u"tab cd"_s, u"s0,3"_s, u"b"_s, u"d"_s}, u"ab |cd 0,3"_s, {u"ab "_s});
    edit("of all", {u"tab cd"_s, u"s0,99"_s, u"d"_s}, u"ab | 3,0"_s, {u"ab "_s});
    edit("forwards", {u"tab cd"_s, u"s3,0"_s, u"d"_s}, u"ab |d 3,0"_s, {u"ab "_s});
    edit("forwards in fixed text", {u"tab cd"_s, u"s2,0"_s, u"d"_s, u"s5,0"_s, u"d"_s}, u"ab |cd 5,0"_s,
         {u"ab "_s});
    edit("a pair", {u"i\U0001F600x\U0001F600"_s, u"b"_s, u"s0,0"_s, u"d"_s}, u"|x 0,0"_s);
    edit("half a pair", {u"i\xDE00"_s, u"b"_s, u"ix\xD83D"_s, u"b"_s}, u"|x 1,0"_s);
}

void deviceTextAndUndo()
{
    // The device's text
    edit("in front of unsent text", {u"txy"_s, u"rab\n"_s}, u"ab\n|xy 5,0"_s);
    edit("caret in unsent text", {u"txy"_s, u"s1,1"_s, u"rab"_s, u"tz"_s}, u"ab|xz 4,0"_s);
    edit("caret in fixed text", {u"rab"_s, u"txy"_s, u"s1,0"_s, u"rcd"_s}, u"abcd|xy 1,0"_s);
    edit("selection into unsent text", {u"rab"_s, u"txy"_s, u"s1,2"_s, u"rcd"_s}, u"abcd|xy 1,2"_s);
    edit("caret at its end", {u"rab"_s, u"rcd"_s}, u"abcd| 4,0"_s);
    edit("is not sent", {u"rab "_s, u"tc "_s}, u"ab c | 5,0"_s, {u"c "_s});
    // Undo
    edit("undo a word", {u"tab"_s, u"u"_s}, u"| 0,0"_s);
    edit("undo and redo", {u"tab"_s, u"b"_s, u"tc"_s, u"u"_s, u"u"_s, u"y"_s, u"y"_s}, u"|ac 2,0"_s);
    edit("undo of a replacement", {u"tabcd"_s, u"s1,2"_s, u"tx"_s, u"ty"_s, u"u"_s}, u"|abcd 3,0"_s);
    edit("undo after device text", {u"pxy"_s, u"b"_s, u"rab"_s, u"u"_s, u"tz"_s, u"u"_s, u"u"_s},
         u"ab| 2,0"_s);
    edit("paste is an edit of its own", {u"pab"_s, u"tc"_s, u"u"_s}, u"|ab 2,0"_s);
    edit("typing after redo too", {u"tab"_s, u"u"_s, u"y"_s, u"tc"_s, u"u"_s}, u"|ab 2,0"_s);
    edit("redo ends with typing", {u"tab"_s, u"u"_s, u"tc"_s, u"y"_s}, u"|c 1,0"_s);
    edit("sent is not undone", {u"tab"_s, u"b"_s, u"tb c"_s, u"u"_s, u"u"_s, u"u"_s}, u"ab | 3,0"_s,
         {u"ab "_s});
    // Holding back
    edit("held", {u"h"_s, u"ta b\n"_s, u"b"_s}, u"|a b 3,0"_s);
    edit("held, then sent", {u"h"_s, u"ta b"_s, u"h"_s, u"t c"_s}, u"a b |c 5,0"_s, {u"a b "_s});
}

} // namespace

class tst_Page : public QObject
{
    Q_OBJECT

private slots:
    void edits_data()
    {
        columns<QStringList, QString, QStringList>("steps", "state", "sent");
        typing();
        pastingAndDeleting();
        deviceTextAndUndo();
    }
    void edits()
    {
        QFETCH(QStringList, steps);
        Reader reader;
        for (const QString &step : steps)
            reader.act(step);
        QTEST(reader.state(), "state");
        QTEST(reader.sent, "sent");
        QVERIFY(reader.isInStep && reader.shown == reader.page.text());
    }

    // The oldest text stays, whoever wrote it, no pair is halved, and it is told once.
    void full()
    {
        constexpr qsizetype most = UIMyTextView::MaximalLength;
        Reader reader;
        reader.page.insertCorvaneText(QString(most - 4, u'a'));
        reader.type(u"x"_s);
        QCOMPARE(reader.fullTold, 0);
        reader.page.insertCorvaneText(u"bb\U0001F600"_s);
        QCOMPARE(reader.fullTold, 1);
        QCOMPARE(reader.page.text().right(4), u"abbx"_s);
        reader.page.paste(u"yz"_s);
        reader.type(u" "_s);
        reader.page.insertCorvaneText(u"c"_s);
        QVERIFY(reader.sent.isEmpty() && reader.fullTold == 1);
        QCOMPARE(reader.page.text().right(5), u"abbxy"_s);
        reader.page.setSelectedRange({most - 2, 2});
        reader.type(u" "_s);
        QCOMPARE(reader.sent, QStringList{u" "_s});
        QVERIFY(reader.isInStep && reader.page.text().size() == most - 1);
    }

    // What is said of a change holds already while it is said; what was fixed is told with where it began.
    void tellsChanges()
    {
        Reader reader;
        QList<qsizetype> fixedFrom;
        connect(&reader.page, &UIMyTextView::textFixed, this, [&](qsizetype before) {
            fixedFrom += {before, reader.page.fixedTextEnd(), reader.sent.size()};
        });
        const QSignalSpy selected(&reader.page, &UIMyTextView::selectedRangeChanged);
        reader.type(u"ab c "_s);
        QCOMPARE(fixedFrom, (QList<qsizetype>{0, 3, 0, 3, 5, 1}));
        reader.page.setSelectedRange({-3, 999});
        reader.page.setSelectedRange({0, 5});
        QVERIFY(selected.count() == 1 && reader.page.selectedRange() == (UIMyTextView::Range{0, 5}));
    }
};

QTEST_APPLESS_MAIN(tst_Page)
#include "tst_page.moc"
