// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QObject>
#include <QString>

#include <deque>

namespace cvtamber {

// Who a page hands its words to.
class UIMyTextViewDelegate : public InterfaceBase
{
public:
    // To be sent as it is: line ends are "\r\n". Each character of the page that a person wrote comes once, in order.
    virtual void newTextReady(const QString &text) = 0;
    // Asked before the words become fixed; words that may not be sent stay unsent, and are asked for again with the
    // next space or line end.
    virtual bool maySend(const QString &) { return true; }
    // A person would change fixed text. Once until the selection has been elsewhere.
    virtual void textIsFixed() {}
    // The page is full and what was to be added has been dropped, wholly or its end. Once in the life of a page.
    virtual void pageIsFull() {}
};

// A page that a person and the device write on together: a text, a selection and fixedTextEnd, all counted in UTF-16
// units. What lies before fixedTextEnd has been sent or received and never changes. What lies behind it is the
// person's: unsent, and editable until a space or line end typed after it sends it.
//
// What an edit does where the selection reaches into the fixed text: text is added only if the selection starts at
// fixedTextEnd or later, and dropped otherwise, so text typed over fixed and unsent text changes neither; a deletion
// takes the part beyond fixedTextEnd. A selection that has been replaced or deleted leaves the caret in its place.
//
// A page holds MaximalLength units: the oldest text stays, and what does not fit is dropped, its end first.
// While it holds back (setHoldsBack) nothing is sent: a space or line end typed then is unsent text like any other, and
// goes with the next one that is typed later. An edit costs the length of the unsent text at most.
// Thread: main thread. Owner: shared; the delegate takes itself off before it goes.
class UIMyTextView : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype MaximalLength = qsizetype(1) << 20;

    // The start is where the caret is when nothing is selected.
    struct Range
    {
        qsizetype start = 0;
        qsizetype length = 0;

        qsizetype end() const { return start + length; }
        bool operator==(const Range &) const = default;
    };

    UIMyTextView();
    ~UIMyTextView() override;

    UIMyTextViewDelegate *delegate() const { return _delegate; }
    void setDelegate(UIMyTextViewDelegate *delegate) { _delegate = delegate; }

    const QString &text() const { return _text; }
    qsizetype fixedTextEnd() const { return _fixedTextEnd; }
    QStringView unsentText() const { return QStringView(_text).mid(_fixedTextEnd); }
    Range selectedRange() const { return _selection; }
    // Brought inside the text.
    void setSelectedRange(Range range);
    bool holdsBack() const { return _holdsBack; }
    void setHoldsBack(bool holdsBack) { _holdsBack = holdsBack; }

    // Typing. " " or "\n" alone sends what is unsent up to and with it.
    void insertText(const QString &text);
    // What an input method hands over at once: a space or line end at its end counts as typed by itself.
    void commitText(const QString &text);
    // Pasted or dropped text sends nothing; every kind of line end becomes "\n".
    void paste(const QString &text);
    // The selection, or the character before or behind the caret.
    void deleteBackward();
    void deleteForward();
    // The device's text, which becomes fixed: it goes in front of what is unsent, and the selection stays on its
    // characters.
    void insertCorvaneText(const QString &text);

    // Edits of the unsent text, the last first; characters typed one after the other are one edit. Sending forgets
    // them, device text does not.
    bool canUndo() const { return !_done.empty(); }
    bool canRedo() const { return !_undone.empty(); }
    void undo();
    void redo();

signals:
    // `removed` units at the position gave way to `inserted`. The text, fixedTextEnd and the selection are those after
    // the change already.
    void textChanged(qsizetype position, qsizetype removed, const QString &inserted);
    // Unsent text was sent: what lies between `before` and fixedTextEnd is fixed now.
    void textFixed(qsizetype before);
    void selectedRangeChanged();

private:
    // A change of the unsent text; the position counts from fixedTextEnd.
    struct Edit
    {
        qsizetype position = 0;
        QString removed;
        QString inserted;
        bool isTyped = false;

        qsizetype size() const { return removed.size() + inserted.size(); }
    };

    bool replaceSelection(const QString &text, bool isTyped);
    void deleteRange(Range range);
    void change(qsizetype position, qsizetype removed, const QString &inserted);
    void remember(const Edit &edit);
    void forgetEdits();
    void apply(const Edit &edit);
    QString fitting(const QString &text, qsizetype room);
    void sendUpTo(qsizetype end);
    void tellFixed();

    UIMyTextViewDelegate *_delegate = nullptr;
    QString _text;
    qsizetype _fixedTextEnd = 0;
    Range _selection;
    bool _holdsBack = false;
    bool _hasToldFull = false;
    bool _hasToldFixed = false;
    std::deque<Edit> _done;
    std::deque<Edit> _undone;
    qsizetype _rememberedUnits = 0;
};

} // namespace cvtamber
