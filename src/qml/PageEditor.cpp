// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/PageEditor.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickTextDocument>
#include <QScopedValueRollback>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace cvtamber {
namespace {

// How many line ends a document has room for: Qt loops for ever in one of eight million pixels and more.
constexpr qsizetype mostLineEnds = 32'000;
constexpr qsizetype keptLineEnds = 24'000;
constexpr qsizetype fewestLineEnds = 16'000;
constexpr char16_t lineEndSign = 0x00B6;
// In the place of the very first: Qt looks for the first letter at each change, which may be far.
constexpr char16_t leftToRightMark = 0x200E;

qsizetype lineEnds(QStringView text)
{
    return std::count_if(text.begin(), text.end(), PageDocument::isLineEnd);
}

bool isTyped(const QKeyEvent &event)
{
    const QString text = event.text();
    const auto modifiers = event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier | Qt::AltModifier);
    // The two together are how some layouts reach further characters.
    if (text.isEmpty() || (modifiers != 0 && modifiers != (Qt::ControlModifier | Qt::AltModifier)))
        return false;
    const QChar first = text.front();
    return first.isPrint() || first.isHighSurrogate() || first.category() == QChar::Other_Format ||
           first.category() == QChar::Other_PrivateUse;
}

} // namespace

PageEditor::PageEditor(QQuickItem *parent)
    : QQuickItem(parent)
{
    _unsentFormat.setFontUnderline(true);
}

void PageEditor::setArea(QQuickItem *area)
{
    if (_area || area == nullptr)
        return;
    _area = area;
    join();
    emit areaChanged();
}

void PageEditor::setPage(UIMyTextView *page)
{
    if (_page || page == nullptr)
        return;
    _page = page;
    join();
    emit pageChanged();
}

void PageEditor::join()
{
    if (!_area || !_page)
        return;
    auto *document = _area->property("textDocument").value<QQuickTextDocument *>();
    if (document == nullptr) {
        qWarning("What the page is to be shown in is no text area");
        return;
    }
    _shown.setDocument(document->textDocument());
    _shown.document()->setUndoRedoEnabled(false);
    showAll();
    _area->installEventFilter(this);
    connect(_area, SIGNAL(cursorPositionChanged()), this, SLOT(takeSelection()));
    connect(_area, SIGNAL(selectionStartChanged()), this, SLOT(takeSelection()));
    connect(_area, SIGNAL(selectionEndChanged()), this, SLOT(takeSelection()));
    connect(_shown.document(), &QTextDocument::contentsChange, this,
            [this](int position, int, int added) { checkChange(position, added); });
    connect(_page, &UIMyTextView::textChanged, this, &PageEditor::showChange);
    connect(_page, &UIMyTextView::textFixed, this, &PageEditor::showFixed);
    connect(_page, &UIMyTextView::selectedRangeChanged, this, &PageEditor::showSelection);
}

// What a person does

bool PageEditor::eventFilter(QObject *, QEvent *event)
{
    if (!_page || !_shown.document() || _isForwarding)
        return false;
    switch (event->type()) {
    case QEvent::KeyPress:
        showWaiting();
        return takeKey(*static_cast<QKeyEvent *>(event));
    case QEvent::InputMethod:
        showWaiting();
        return takeInputMethod(*static_cast<QInputMethodEvent *>(event));
    case QEvent::MouseButtonPress:
        showWaiting();
        return false;
    case QEvent::MouseButtonRelease:
        return takeMouseRelease(*static_cast<QMouseEvent *>(event));
    default:
        return false;
    }
}

bool PageEditor::takeKey(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Undo))
        _page->undo();
    else if (event.matches(QKeySequence::Redo))
        _page->redo();
    else if (takeClipboardKey(event) || takeDeletion(event))
        return true;
    else if (event.matches(QKeySequence::InsertParagraphSeparator) ||
             event.matches(QKeySequence::InsertLineSeparator))
        _page->insertText(QStringLiteral("\n"));
    else if (isTyped(event))
        _page->insertText(event.text());
    else
        return false;
    return true;
}

bool PageEditor::takeClipboardKey(const QKeyEvent &event)
{
    const bool isCut = event.matches(QKeySequence::Cut);
    if (isCut || event.matches(QKeySequence::Copy)) {
        copy();
        if (isCut && _page->selectedRange().length > 0)
            _page->deleteBackward();
        return true;
    }
    if (!event.matches(QKeySequence::Paste))
        return false;
    _page->paste(QGuiApplication::clipboard()->text());
    return true;
}

bool PageEditor::takeDeletion(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Delete))
        _page->deleteForward();
    else if (event.matches(QKeySequence::DeleteStartOfWord))
        deleteTo(QTextCursor::PreviousWord);
    else if (event.matches(QKeySequence::DeleteEndOfWord))
        deleteTo(QTextCursor::NextWord);
    else if (event.matches(QKeySequence::DeleteEndOfLine))
        deleteTo(QTextCursor::EndOfLine);
    else if (event.key() == Qt::Key_Backspace)
        _page->deleteBackward();
    else
        return false;
    return true;
}

// From the caret; a selection is what is deleted instead.
void PageEditor::deleteTo(QTextCursor::MoveOperation operation)
{
    const UIMyTextView::Range range = _page->selectedRange();
    if (range.length == 0) {
        QTextCursor cursor = _shown.cursorFor(range.start, range.end());
        qsizetype start = range.start;
        qsizetype end = range.start;
        // A break of the document alone is no way.
        while (start == end && cursor.movePosition(operation, QTextCursor::KeepAnchor)) {
            start = _shown.textPosition(cursor.selectionStart());
            end = _shown.textPosition(cursor.selectionEnd());
        }
        start = std::max(start, _page->fixedTextEnd());
        if (end <= start)
            return;
        _page->setSelectedRange({start, end - start});
    }
    _page->deleteBackward();
}

void PageEditor::copy() const
{
    const UIMyTextView::Range range = _page->selectedRange();
    if (range.length > 0)
        QGuiApplication::clipboard()->setText(_page->text().mid(range.start, range.length));
}

void PageEditor::pasteAt(qsizetype position, const QString &text)
{
    _page->setSelectedRange({position, 0});
    _page->paste(text);
}

qsizetype PageEditor::positionAt(double x, double y)
{
    showWaiting();
    int position = 0;
    QMetaObject::invokeMethod(_area, "positionAt", Q_RETURN_ARG(int, position), Q_ARG(double, x),
                              Q_ARG(double, y));
    return _shown.textPosition(position);
}

void PageEditor::dropText(const QString &text, double x, double y)
{
    if (_page && _area)
        pasteAt(positionAt(x, y), text);
}

bool PageEditor::takeMouseRelease(const QMouseEvent &event)
{
    const QClipboard *clipboard = QGuiApplication::clipboard();
    if (event.button() != Qt::MiddleButton)
        return false;
    if (clipboard->supportsSelection())
        pasteAt(positionAt(event.position().x(), event.position().y()),
                clipboard->text(QClipboard::Selection));
    return true;
}

// What is composed is shown by the area; what has been composed goes to the page.
bool PageEditor::takeInputMethod(const QInputMethodEvent &event)
{
    const QString &committed = event.commitString();
    UIMyTextView::Range range = _page->selectedRange();
    const auto forward = [this](QInputMethodEvent &&rest) {
        const QScopedValueRollback isForwarding(_isForwarding, true);
        QCoreApplication::sendEvent(_area, &rest);
    };
    if (!committed.isEmpty() || event.replacementLength() > 0) {
        forward(QInputMethodEvent());
        if (event.replacementLength() > 0) {
            range = {range.start + event.replacementStart(), event.replacementLength()};
            _page->setSelectedRange(range);
        }
        if (committed.isEmpty())
            _page->deleteBackward();
        else
            _page->commitText(committed);
    }
    range = _page->selectedRange();
    if (range.start < _page->fixedTextEnd())
        return true;
    // The area would take a selection away by itself.
    if (!event.preeditString().isEmpty() && range.length > 0)
        _page->deleteBackward();
    forward(QInputMethodEvent(event.preeditString(), event.attributes()));
    return true;
}

void PageEditor::takeSelection()
{
    if (!_page || !_area)
        return;
    const int caret = _area->property("cursorPosition").toInt();
    const int caretBefore = std::exchange(_caret, caret);
    if (_isFollowing || _isOutOfStep)
        return;
    UIMyTextView::Range range = areaSelection();
    // The page has one place where the document has two, so the caret goes on.
    if (range.length == 0 && _shown.isBreak(caret)) {
        _area->setProperty("cursorPosition", caretBefore == caret - 1 ? caret + 1 : caret - 1);
        return;
    }
    if (range.start >= _waiting.start)
        range.start += _waiting.length;
    else if (range.end() > _waiting.start)
        range.length += _waiting.length;
    _page->setSelectedRange(range);
}

// In the text that the document has.
UIMyTextView::Range PageEditor::areaSelection() const
{
    const qsizetype start = _shown.textPosition(_area->property("selectionStart").toInt());
    return {start, _shown.textPosition(_area->property("selectionEnd").toInt()) - start};
}

// What the page says

// A unit of the page as the document has it.
QChar PageEditor::held(qsizetype position) const
{
    const QChar sign = PageDocument::sign(_page->text()[position]);
    if (position >= _linesStart || !PageDocument::isLineEnd(sign))
        return sign;
    return position == 0 ? leftToRightMark : lineEndSign;
}

// A part of the page.
void PageEditor::insertShown(UIMyTextView::Range range)
{
    const qsizetype fixedEnd = std::clamp(_page->fixedTextEnd(), range.start, range.end());
    QString signs(range.length, Qt::Uninitialized);
    for (qsizetype at = 0; at < range.length; ++at)
        signs[at] = held(range.start + at);
    _lines += lineEnds(signs);
    const QStringView all(signs);
    _shown.insert(range.start, all.first(fixedEnd - range.start), _fixedFormat);
    _shown.insert(fixedEnd, all.sliced(fixedEnd - range.start), _unsentFormat);
}

// Where the newest lines start, which stand as lines.
qsizetype PageEditor::startOfLines() const
{
    const QStringView text = _page->text();
    qsizetype start = _linesStart;
    qsizetype lines = _lines;
    const auto isEnd = [&](qsizetype at) { return PageDocument::isLineEnd(text[at]) ? 1 : 0; };
    if (lines > mostLineEnds) {
        while (lines > keptLineEnds)
            lines -= isEnd(start++);
    } else if (lines < fewestLineEnds) {
        while (lines < keptLineEnds && start > 0)
            lines += isEnd(--start);
    }
    return start;
}

QString PageEditor::readable(qsizetype start, qsizetype end) const
{
    QString text = _page ? _page->text().mid(start, end - start) : QString();
    std::transform(text.begin(), text.end(), text.begin(), PageDocument::sign);
    return text;
}

// The device's text goes before the end of the fixed text, a piece right behind the one before it.
bool PageEditor::isForNextPicture(qsizetype position, qsizetype removed, qsizetype inserted) const
{
    const bool isDevices = removed == 0 && position + inserted == _page->fixedTextEnd();
    return isDevices && window() != nullptr && (_waiting.length == 0 || _waiting.end() == position);
}

void PageEditor::moveLinesStart(qsizetype position, qsizetype removed, qsizetype inserted)
{
    if (position < _linesStart)
        _linesStart = std::max(position, _linesStart - removed) + inserted;
}

// Together with the text that waits, which stands in front of the change.
void PageEditor::changeShown(qsizetype position, qsizetype removed, qsizetype inserted)
{
    {
        const QScopedValueRollback isFollowing(_isFollowing, true);
        QTextCursor edit(_shown.document());
        edit.beginEditBlock();
        const UIMyTextView::Range waiting = std::exchange(_waiting, {});
        moveLinesStart(waiting.start, 0, waiting.length);
        insertShown(waiting);
        moveLinesStart(position, removed, inserted);
        _lines -= _shown.remove(position, removed);
        insertShown({position, inserted});
        const qsizetype before = std::exchange(_linesStart, startOfLines());
        const auto [first, last] = std::minmax({before, _linesStart});
        _lines -= _shown.remove(first, last - first);
        insertShown({first, last - first});
        edit.endEditBlock();
    }
    showSelection();
}

void PageEditor::showWaiting()
{
    if (_waiting.length > 0 && _shown.document() && _page && !_isOutOfStep)
        changeShown(_page->fixedTextEnd(), 0, 0);
}

void PageEditor::showChange(qsizetype position, qsizetype removed, const QString &inserted)
{
    if (!_shown.document() || _isOutOfStep)
        return;
    if (!isForNextPicture(position, removed, inserted.size())) {
        changeShown(position, removed, inserted.size());
        return;
    }
    _waiting = {_waiting.length == 0 ? position : _waiting.start, _waiting.length + inserted.size()};
    polish();
}

void PageEditor::showFixed(qsizetype before)
{
    if (!_shown.document() || _isOutOfStep)
        return;
    showWaiting();
    const QScopedValueRollback isFollowing(_isFollowing, true);
    _shown.cursorFor(before, _page->fixedTextEnd()).setCharFormat(_fixedFormat);
}

void PageEditor::showSelection()
{
    if (!_area || !_shown.document() || _isFollowing || _isOutOfStep)
        return;
    showWaiting();
    const QScopedValueRollback isFollowing(_isFollowing, true);
    const UIMyTextView::Range range = _page->selectedRange();
    const int start = _shown.documentPosition(range.start);
    const int end = _shown.documentPosition(range.end());
    if (areaSelection() != range)
        QMetaObject::invokeMethod(_area, "select", Q_ARG(int, start), Q_ARG(int, end));
}

// Also of our own changes, inside which the area may end a composition of its own. A document must not be changed from
// inside its own change, so it is put right a turn of the loop later.
void PageEditor::checkChange(int position, int added)
{
    if (_isOutOfStep || !_page)
        return;
    if (_waiting.length == 0 && _shown.shows(_page->text().size(), position, position + added,
                                             [this](qsizetype at) { return held(at); }))
        return;
    _isOutOfStep = true;
    QMetaObject::invokeMethod(this, &PageEditor::showAll, Qt::QueuedConnection);
}

void PageEditor::showAll()
{
    if (!_shown.document() || !_page || !_area)
        return;
    _waiting = {};
    // Else the area makes a picture of all lines at each change.
    _area->setFlag(QQuickItem::ItemObservesViewport);
    {
        const QScopedValueRollback isFollowing(_isFollowing, true);
        QTextCursor edit(_shown.document());
        edit.beginEditBlock();
        _shown.clear();
        _linesStart = 0;
        _lines = lineEnds(_page->text());
        _linesStart = startOfLines();
        _lines = 0;
        insertShown({0, _page->text().size()});
        edit.endEditBlock();
    }
    _isOutOfStep = false;
    showSelection();
}

} // namespace cvtamber
