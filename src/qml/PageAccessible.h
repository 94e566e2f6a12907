// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "qml/ItemAccessible.h"
#include "qml/PageEditor.h"

namespace cvtamber {

// What a screen reader is told of a text area that shows a page: the page's text, in the page's own places.
//
// Qt would tell the document's, where lines are joined and divided to keep it quick. It is for text areas that have a
// property `pageEditor`, their PageEditor, and a property `spokenName`; others keep what Qt gives them.
// Thread: main thread. Owner: Qt, which makes one for each area and drops it with the area.
class PageAccessible final : public ItemAccessible,
                             public QAccessibleTextInterface,
                             public QAccessibleActionInterface
{
public:
    // For the areas of all windows that are made from now on.
    static void install();

    explicit PageAccessible(QQuickItem *area);

    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QString text(QAccessible::Text kind) const override;
    QAccessible::Role role() const override { return QAccessible::EditableText; }
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

    void selection(int index, int *start, int *end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                             int *end) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                            int *end) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType kind, int *start, int *end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int, int) override {}
    QString attributes(int offset, int *start, int *end) const override;

private:
    PageEditor *editor() const;
    UIMyTextView *page() const;
    UIMyTextView::Range unitAt(qsizetype offset, QAccessible::TextBoundaryType kind) const;
    UIMyTextView::Range paragraphAt(qsizetype offset) const;
    QString tell(UIMyTextView::Range range, int *start, int *end) const;
};

} // namespace cvtamber
