// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/KeysViewController.h"

#include "ui/NavigationController.h"
#include "ui/Texts.h"

namespace cvtamber {

void KeysViewController::show(ViewController &top)
{
    const auto *const shown = dynamic_cast<const NavigationController *>(&top);
    const bool isShown = shown && dynamic_cast<const KeysViewController *>(shown->topPointer());
    // A screen that has just come may be about to open the next one, which goes before.
    if (isShown || !top.takesActions() || top.presenter().transitions().isRunning())
        return;
    const auto keys = std::make_shared<KeysViewController>(top.presenter());
    const auto navigation = NavigationController::withRoot(top.presenter(), keys);
    navigation->setModalPresentationStyle(PresentationStyle::FormSheet);
    top.presentViewController(navigation, true);
}

KeysViewController::KeysViewController(Presenter &presenter)
    : TableViewController(presenter)
    , _keys{{localized("Tab, Shift+Tab"), localized("from control to control; a list is one stop")},
            {localized("Arrows, Home, End, Page Up, Page Down, letters"), localized("from row to row")},
            {localized("Enter, Space"), localized("what a touch does")},
            {localized("Menu, Shift+F10"), localized("the row's detail button")},
            {localized("Delete key"), localized("deletes the row, where rows can be deleted")},
            {localized("F2"), localized("renames a document or folder")},
            {localized("Escape"), localized("Cancel or back; ends a filter; closes Rename without renaming")},
            {localized("Ctrl+F"), localized("filters a list of more than ten rows")},
            {localized("Ctrl+O"), localized("opens texts of this computer")},
            {localized("F6"), localized("from one column to the other")},
            {localized("Ctrl+Page Up, Ctrl+Page Down"), localized("from section to section")},
            {localized("Ctrl+C"), localized("copies a message of the chat")},
            {localized("Ctrl+W, Ctrl+Q"), localized("closes the window")},
            {localized("F1"), localized("shows these keys")}}
{
    setTitle(localized("Keys"));
    setRightItems(
        {{BarButtonItem::Kind::Done, localized("Done"), true, [this] { dismissViewController(true); }}});
}

int KeysViewController::numberOfRows(int) const
{
    return static_cast<int>(_keys.size());
}

TableCell KeysViewController::cellForRow(IndexPath path) const
{
    const Key &key = _keys.at(static_cast<size_t>(path.row));
    TableCell cell;
    cell.style = TableCell::Style::Subtitle;
    cell.text = key.keys;
    cell.detail = key.meaning;
    cell.canHighlight = false;
    return cell;
}

} // namespace cvtamber
