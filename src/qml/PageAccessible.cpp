// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/PageAccessible.h"

#include <QQuickWindow>

#include <algorithm>

namespace cvtamber {

namespace {

constexpr char Editor[] = "pageEditor";

QAccessibleInterface *pageInterface(const QString &className, QObject *object)
{
    auto *item = className == QLatin1String("QQuickTextArea") ? qobject_cast<QQuickItem *>(object) : nullptr;
    return item != nullptr && item->metaObject()->indexOfProperty(Editor) >= 0 ? new PageAccessible(item)
                                                                               : nullptr;
}

} // namespace

void PageAccessible::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(pageInterface);
        return true;
    }();
    Q_UNUSED(isInstalled);
}

PageAccessible::PageAccessible(QQuickItem *area)
    : ItemAccessible(area)
{}

// With a document that is up to date; none before the area is joined to a page.
PageEditor *PageAccessible::editor() const
{
    auto *editor = item()->property(Editor).value<PageEditor *>();
    if (editor == nullptr || editor->page() == nullptr || editor->shownPage().document() == nullptr)
        return nullptr;
    editor->showWaiting();
    return editor;
}

UIMyTextView *PageAccessible::page() const
{
    const PageEditor *joined = editor();
    return joined ? joined->page() : nullptr;
}

QString PageAccessible::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name)
        return item()->property("spokenName").toString();
    return kind == QAccessible::Value ? text(0, characterCount()) : QString();
}

QAccessible::State PageAccessible::state() const
{
    QAccessible::State state = ItemAccessible::state();
    state.focusable = true;
    state.editable = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

void *PageAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface *>(this);
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QStringList PageAccessible::actionNames() const
{
    return {setFocusAction()};
}

void PageAccessible::doAction(const QString &name)
{
    if (name == setFocusAction())
        item()->forceActiveFocus();
}

// The caret and the selection

void PageAccessible::selection(int index, int *start, int *end) const
{
    const UIMyTextView::Range range =
        index == 0 && selectionCount() == 1 ? page()->selectedRange() : UIMyTextView::Range();
    *start = static_cast<int>(range.start);
    *end = static_cast<int>(range.end());
}

int PageAccessible::selectionCount() const
{
    return page() != nullptr && page()->selectedRange().length > 0 ? 1 : 0;
}

void PageAccessible::addSelection(int start, int end)
{
    setSelection(0, start, end);
}

void PageAccessible::removeSelection(int index)
{
    if (index == 0)
        setCursorPosition(cursorPosition());
}

void PageAccessible::setSelection(int index, int start, int end)
{
    if (index == 0 && page() != nullptr)
        page()->setSelectedRange({std::min(start, end), std::abs(end - start)});
}

int PageAccessible::cursorPosition() const
{
    const PageEditor *joined = editor();
    const int caret = item()->property("cursorPosition").toInt();
    return joined ? static_cast<int>(joined->shownPage().textPosition(caret)) : 0;
}

void PageAccessible::setCursorPosition(int position)
{
    if (page() != nullptr)
        page()->setSelectedRange({position, 0});
}

// The text

int PageAccessible::characterCount() const
{
    return page() ? static_cast<int>(page()->text().size()) : 0;
}

QString PageAccessible::text(int start, int end) const
{
    const PageEditor *joined = editor();
    return joined ? joined->readable(std::max(0, start), std::max(std::max(0, start), end)) : QString();
}

QString PageAccessible::tell(UIMyTextView::Range range, int *start, int *end) const
{
    *start = static_cast<int>(range.start);
    *end = static_cast<int>(range.end());
    return text(*start, *end);
}

UIMyTextView::Range PageAccessible::paragraphAt(qsizetype offset) const
{
    const QString &all = page()->text();
    const qsizetype start = offset == 0 ? 0 : all.lastIndexOf(u'\n', offset - 1) + 1;
    const qsizetype end = all.indexOf(u'\n', offset);
    return {start, (end < 0 ? all.size() : end) - start};
}

// Words and lines are the document's: a line ends where it is wrapped.
UIMyTextView::Range PageAccessible::unitAt(qsizetype offset, QAccessible::TextBoundaryType kind) const
{
    const PageEditor *joined = editor();
    if (joined == nullptr)
        return {};
    const qsizetype size = joined->page()->text().size();
    offset = std::clamp<qsizetype>(offset, 0, size);
    if (kind == QAccessible::NoBoundary)
        return {0, size};
    if (kind == QAccessible::ParagraphBoundary)
        return paragraphAt(offset);
    const PageDocument &document = joined->shownPage();
    const auto found = QAccessible::qAccessibleTextBoundaryHelper(document.cursorFor(offset, offset), kind);
    const qsizetype start = document.textPosition(found.first);
    return {start, document.textPosition(found.second) - start};
}

QString PageAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                                     int *end) const
{
    return tell(unitAt(offset, kind), start, end);
}

QString PageAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                                         int *end) const
{
    const qsizetype first = unitAt(offset, kind).start;
    return tell(first > 0 ? unitAt(first - 1, kind) : UIMyTextView::Range(), start, end);
}

QString PageAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                                        int *end) const
{
    const UIMyTextView::Range here = unitAt(offset, kind);
    UIMyTextView::Range next = unitAt(here.end(), kind);
    // A line end is still of the line before it.
    if (next.start <= here.start)
        next = unitAt(here.end() + 1, kind);
    return tell(next.start <= here.start ? UIMyTextView::Range{characterCount(), 0} : next, start, end);
}

QString PageAccessible::attributes(int, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

// Where it stands on the screen

QRect PageAccessible::characterRect(int offset) const
{
    const PageEditor *joined = editor();
    QRectF place;
    if (joined == nullptr || item()->window() == nullptr)
        return {};
    QMetaObject::invokeMethod(item(), "positionToRectangle", Q_RETURN_ARG(QRectF, place),
                              Q_ARG(int, joined->shownPage().documentPosition(offset)));
    const QPoint inWindow = item()->mapToScene(place.topLeft()).toPoint();
    return {item()->window()->mapToGlobal(inWindow), place.size().toSize()};
}

int PageAccessible::offsetAtPoint(const QPoint &point) const
{
    const PageEditor *joined = editor();
    if (joined == nullptr || item()->window() == nullptr)
        return -1;
    const QPointF place = item()->mapFromScene(item()->window()->mapFromGlobal(point));
    int position = 0;
    QMetaObject::invokeMethod(item(), "positionAt", Q_RETURN_ARG(int, position), Q_ARG(double, place.x()),
                              Q_ARG(double, place.y()));
    return static_cast<int>(joined->shownPage().textPosition(position));
}

} // namespace cvtamber
