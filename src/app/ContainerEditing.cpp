// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ContainerEditing.h"

#include "app/ContainerMenus.h"
#include "app/ContainerScreen.h"
#include "base/SystemLog.h"

namespace cvtamber {

namespace {

constexpr int CancelButton = 0;
constexpr int OkButton = 1;
constexpr int YesButton = 0;
constexpr int NoButton = 1;

AlertView prompt(int tag, const char *titleKey, const AlertTextField &field)
{
    AlertView alert;
    alert.tag = tag;
    alert.title = localized(titleKey);
    alert.buttons = {localized("Cancel"), localized("OK")};
    alert.cancelButtonIndex = CancelButton;
    alert.textField = field;
    return alert;
}

} // namespace

void ContainerEditing::handleAddFolderCommand()
{
    AlertView alert = prompt(NewFolderTag, "4.13", {localized("4.14"), true, true});
    alert.didDismiss = [this](const AlertView &, int buttonIndex, const QString &text) {
        if (buttonIndex == OkButton)
            addFolder(text);
    };
    _screen.ask(alert);
}

void ContainerEditing::addFolder(const QString &name)
{
    _screen.context().log.info(SystemLog::masked(name));
    if (name.isEmpty())
        _screen.tell("A folder needs a name.");
    else if (const auto &user = _screen.contents().user())
        user->addFolderWithName(name);
}

void ContainerEditing::askForNewName(const ContainerItem &item)
{
    AlertView alert = prompt(RenameTag, "4.17", {item.title(), false, true});
    alert.message = localized("4.18");
    alert.didDismiss = [this, item](const AlertView &, int /*either*/, const QString &text) {
        rename(item, text);
    };
    _screen.ask(alert);
}

void ContainerEditing::rename(const ContainerItem &item, const QString &name)
{
    if (!_screen.isStillThere(item) || name.isEmpty())
        return;
    if (item.isFolder()) {
        item.folder->setName(name);
        _screen.reload();
        return;
    }
    if (const auto &container = _screen.contents().filesContainer())
        container->renameFileAtIndex(_screen.contents().indexOf(item), name);
}

void ContainerEditing::handleDeleteFileCommand(const ContainerItem &item)
{
    if (item.isEmpty())
        return;
    ActionSheet sheet;
    sheet.tag = DeleteConfirmationTag;
    sheet.title = localized(item.isFolder() ? "4.12" : "4.11");
    sheet.buttons = {localized("Yes"), localized("No")};
    sheet.destructiveButtonIndex = YesButton;
    sheet.cancelButtonIndex = NoButton;
    sheet.anchor = _screen.anchorOf(item);
    sheet.didDismiss = [this, item](const ActionSheet &, int buttonIndex) {
        if (buttonIndex == YesButton)
            remove(item);
    };
    _screen.ask(sheet);
}

void ContainerEditing::remove(const ContainerItem &item)
{
    if (!_screen.isStillThere(item))
        return;
    if (item.isFolder())
        _screen.contents().user()->deleteFolder(item.folder);
    else
        _screen.contents().filesContainer()->deleteFile(item.document);
}

} // namespace cvtamber
