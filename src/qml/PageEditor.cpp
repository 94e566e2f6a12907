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

namespace cvtamber {
namespace {

// A unit as a document can hold it and a reader can be given it: as itself, or as a sign for it.
QChar shown(QChar unit)
{
    const char16_t code = unit.unicode();
    constexpr char16_t controlPictures = 0x2400;
    if (code == u'\n' || code == u'\t')
        return unit;
    if (code < 0x20)
        return {static_cast<char16_t>(controlPictures + code)};
    if (code == 0x7F)
        return {u'\u2421'};
    if (code == QChar::ParagraphSeparator)
        return {u'\n'};
    const bool isDocumentsOwn = code == 0xFDD0 || code == 0xFDD1 || code == QChar::ObjectReplacementCharacter;
    return isDocumentsOwn ? QChar(QChar::ReplacementCharacter) : unit;
}

// The same as the document gives it back.
QChar held(QChar unit)
{
    const QChar sign = shown(unit);
    return sign == u'\n' ? QChar(QChar::ParagraphSeparator) : sign;
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

PageEditor::PageEditor(QObject *parent)
    : QObject(parent)
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
    _document = document->textDocument();
    _document->setUndoRedoEnabled(false);
    showAll();
    _area->installEventFilter(this);
    connect(_area, SIGNAL(cursorPositionChanged()), this, SLOT(takeSelection()));
    connect(_area, SIGNAL(selectionStartChanged()), this, SLOT(takeSelection()));
    connect(_area, SIGNAL(selectionEndChanged()), this, SLOT(takeSelection()));
    connect(_document, &QTextDocument::contentsChange, this,
            [this](int position, int, int added) { checkChange(position, added); });
    connect(_page, &UIMyTextView::textChanged, this, &PageEditor::showChange);
    connect(_page, &UIMyTextView::textFixed, this, &PageEditor::showFixed);
    connect(_page, &UIMyTextView::selectedRangeChanged, this, &PageEditor::showSelection);
}

// What a person does

bool PageEditor::eventFilter(QObject *, QEvent *event)
{
    if (!_page || !_document || _isForwarding)
        return false;
    switch (event->type()) {
    case QEvent::KeyPress:
        return takeKey(*static_cast<QKeyEvent *>(event));
    case QEvent::InputMethod:
        return takeInputMethod(*static_cast<QInputMethodEvent *>(event));
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
        QTextCursor cursor = cursorFor(range);
        cursor.movePosition(operation, QTextCursor::KeepAnchor);
        const qsizetype start = std::max<qsizetype>(cursor.selectionStart(), _page->fixedTextEnd());
        if (cursor.selectionEnd() <= start)
            return;
        _page->setSelectedRange({start, cursor.selectionEnd() - start});
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

qsizetype PageEditor::positionAt(double x, double y) const
{
    int position = 0;
    QMetaObject::invokeMethod(_area, "positionAt", Q_RETURN_ARG(int, position), Q_ARG(double, x),
                              Q_ARG(double, y));
    return position;
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
    if (_isFollowing || _isOutOfStep || !_page || !_area)
        return;
    const int start = _area->property("selectionStart").toInt();
    const int end = _area->property("selectionEnd").toInt();
    _page->setSelectedRange({start, end - start});
}

// What the page says

QTextCursor PageEditor::cursorFor(UIMyTextView::Range range) const
{
    QTextCursor cursor(_document);
    cursor.setPosition(static_cast<int>(range.start));
    cursor.setPosition(static_cast<int>(range.end()), QTextCursor::KeepAnchor);
    return cursor;
}

void PageEditor::insertShown(QTextCursor &cursor, qsizetype position, QStringView text) const
{
    QString signs(text.size(), Qt::Uninitialized);
    std::transform(text.begin(), text.end(), signs.begin(), shown);
    cursor.insertText(signs, position < _page->fixedTextEnd() ? _fixedFormat : _unsentFormat);
}

void PageEditor::showChange(qsizetype position, qsizetype removed, const QString &inserted)
{
    if (!_document || _isOutOfStep)
        return;
    {
        const QScopedValueRollback isFollowing(_isFollowing, true);
        QTextCursor cursor = cursorFor({position, removed});
        cursor.beginEditBlock();
        cursor.removeSelectedText();
        insertShown(cursor, position, inserted);
        cursor.endEditBlock();
    }
    showSelection();
}

void PageEditor::showFixed(qsizetype before)
{
    if (!_document || _isOutOfStep)
        return;
    const QScopedValueRollback isFollowing(_isFollowing, true);
    cursorFor({before, _page->fixedTextEnd() - before}).setCharFormat(_fixedFormat);
}

void PageEditor::showSelection()
{
    if (!_area || !_document || _isFollowing || _isOutOfStep)
        return;
    const QScopedValueRollback isFollowing(_isFollowing, true);
    const UIMyTextView::Range range = _page->selectedRange();
    const auto start = static_cast<int>(range.start);
    const auto end = static_cast<int>(range.end());
    if (_area->property("selectionStart").toInt() != start || _area->property("selectionEnd").toInt() != end)
        QMetaObject::invokeMethod(_area, "select", Q_ARG(int, start), Q_ARG(int, end));
}

// Also of our own changes, inside which the area may end a composition of its own. A document must not be changed from
// inside its own change, so it is put right a turn of the loop later.
void PageEditor::checkChange(int position, int added)
{
    if (_isOutOfStep || !_page)
        return;
    const QString &text = _page->text();
    bool isInStep = _document->characterCount() - 1 == text.size();
    for (int i = position; isInStep && i < position + added && i < text.size(); ++i)
        isInStep = _document->characterAt(i) == held(text[i]);
    if (isInStep)
        return;
    _isOutOfStep = true;
    QMetaObject::invokeMethod(this, &PageEditor::showAll, Qt::QueuedConnection);
}

void PageEditor::showAll()
{
    if (!_document || !_page || !_area)
        return;
    {
        const QScopedValueRollback isFollowing(_isFollowing, true);
        const QStringView text = _page->text();
        const qsizetype end = _page->fixedTextEnd();
        QTextCursor cursor(_document);
        cursor.beginEditBlock();
        cursor.select(QTextCursor::Document);
        cursor.removeSelectedText();
        insertShown(cursor, 0, text.left(end));
        insertShown(cursor, end, text.mid(end));
        cursor.endEditBlock();
    }
    _isOutOfStep = false;
    showSelection();
}

} // namespace cvtamber
