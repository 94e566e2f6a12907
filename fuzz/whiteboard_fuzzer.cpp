// SPDX-License-Identifier: GPL-3.0-or-later
// Any sequence of edits of a page, beside a plain model of the rules that is too slow to be wrong.
#include "Require.h"
#include "chat/text/UIMyTextView.h"

using namespace cvtamber;

namespace {

const QString pieces[] = {QStringLiteral(" "),    QStringLiteral("\n"),           QStringLiteral("a"),
                          QStringLiteral("bc "),  QStringLiteral("d\ne"),         QStringLiteral("\r\n"),
                          QString(QChar(u'\0')),  QStringLiteral("\U0001F600"),   QString(QChar(0xD83D)),
                          QString(QChar(0xDE00)), QStringLiteral("\u202E\u2029"), QString(),
                          QString(300, u'x')};

// The rules, with the whole text made anew at each step.
struct PlainPage
{
    QString fixed;
    QString unsent;
    QString sent;
    UIMyTextView::Range selection;

    bool typeInto(const QString &text)
    {
        const qsizetype at = selection.start - fixed.size();
        if (text.isEmpty() || at < 0)
            return false;
        unsent = unsent.left(at) + text + unsent.mid(at + selection.length);
        selection = {selection.start + text.size(), 0};
        return true;
    }
    void type(const QString &text, bool holdsBack)
    {
        const qsizetype caret = selection.start;
        if (!typeInto(text) || holdsBack || (text != QChar(u' ') && text != QChar(u'\n')))
            return;
        const qsizetype length = caret + 1 - fixed.size();
        sent += unsent.left(length);
        fixed += unsent.left(length);
        unsent = unsent.mid(length);
    }
    void insertCorvaneText(const QString &text)
    {
        if (selection.start >= fixed.size())
            selection.start += text.size();
        fixed += text;
    }
};

// Follows the page by what it says of its changes, and keeps what it sends.
class Reader final : public UIMyTextViewDelegate
{
public:
    Reader()
    {
        page.setDelegate(this);
        QObject::connect(&page, &UIMyTextView::textChanged, &page,
                         [this](qsizetype position, qsizetype removed, const QString &inserted) {
                             shown.replace(position, removed, inserted);
                         });
    }
    void newTextReady(const QString &text) override { sent += text; }

    UIMyTextView page;
    QString shown;
    QString sent;
};

class Run
{
public:
    void step(uint8_t action, uint8_t argument)
    {
        UIMyTextView &page = _reader.page;
        const QString fixedBefore = page.text().left(page.fixedTextEnd());
        const QString &piece = pieces[argument % std::size(pieces)];
        const bool isKnown = edit(action, argument, piece);
        const QString fixed = page.text().left(page.fixedTextEnd());
        require(fixed.startsWith(fixedBefore), "the fixed text stays as it is");
        if (isKnown) {
            require(fixed == _plain.fixed, "what is fixed follows the rules");
            require(page.unsentText() == _plain.unsent, "what is unsent follows the rules");
            require(page.selectedRange() == _plain.selection, "the selection follows the rules");
        } else {
            require(fixed == fixedBefore, "only typing and the device make text fixed");
            _plain.unsent = page.unsentText().toString();
            _plain.selection = page.selectedRange();
        }
        QString wire = _plain.sent;
        require(_reader.sent == wire.replace(QStringLiteral("\n"), QStringLiteral("\r\n")),
                "each character is sent once, in order");
        require(_reader.shown == page.text(), "what is told of changes makes the text");
        const auto range = page.selectedRange();
        require(range.start >= 0 && range.length >= 0 && range.end() <= page.text().size(),
                "the selection is inside");
    }

private:
    // Whether the plain page has followed; deleting, pasting and undoing only have to leave the fixed text alone.
    bool edit(uint8_t action, uint8_t argument, const QString &piece)
    {
        UIMyTextView &page = _reader.page;
        switch (action % 12) {
        case 0:
        case 1:
        case 2:
            page.insertText(piece);
            _plain.type(piece, page.holdsBack());
            return true;
        case 3:
        case 4:
            page.insertCorvaneText(piece);
            _plain.insertCorvaneText(piece);
            return true;
        case 5:
            page.setSelectedRange({page.text().size() - argument / 8, argument % 8});
            _plain.selection = page.selectedRange();
            return true;
        case 6:
            page.setHoldsBack(argument % 4 == 0);
            return true;
        case 7:
            page.deleteBackward();
            return false;
        case 8:
            page.deleteForward();
            return false;
        case 9:
            page.paste(piece);
            return false;
        case 10:
            page.undo();
            return false;
        default:
            page.redo();
            return false;
        }
    }

    Reader _reader;
    PlainPage _plain;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Run run;
    for (size_t i = 0; i + 1 < size && i < 2000; i += 2)
        run.step(data[i], data[i + 1]);
    return 0;
}
