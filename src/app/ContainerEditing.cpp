// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ContainerEditing.h"

#include "app/ContainerMenus.h"
#include "app/ContainerScreen.h"
#include "base/SystemLog.h"
#include "base/VisibleText.h"
#include "store/CloudNames.h"
#include "store/StoreNames.h"

#include <utility>

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
    if (isBlank(name))
        _screen.tell("A folder needs a name.");
    else if (const auto &user = _screen.contents().user())
        user->addFolderWithName(name);
}

void ContainerEditing::askForNewName(const ContainerItem &item)
{
    AlertView alert = prompt(RenameTag, "4.17", {item.title(), false, true});
    alert.message = localized("4.18");
    alert.closesWithoutButton = true;
    alert.didDismiss = [this, item](const AlertView &, int buttonIndex, const QString &text) {
        if (buttonIndex != AlertView::NoButton)
            rename(item, text);
    };
    _screen.ask(alert);
}

void ContainerEditing::rename(const ContainerItem &item, const QString &name)
{
    if (!_screen.isStillThere(item))
        return;
    if (isBlank(name)) {
        _screen.tell(item.isFolder() ? "A folder needs a name." : "A document needs a name.");
        return;
    }
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
    askToDelete(item, [this, item] { remove(item); });
}

void ContainerEditing::askToDelete(const ContainerItem &item, std::function<void()> then)
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
    sheet.didDismiss = [then = std::move(then)](const ActionSheet &, int buttonIndex) {
        if (buttonIndex == YesButton)
            then();
    };
    _screen.ask(sheet);
}

void ContainerEditing::keepThisVersion(const ContainerItem &copy)
{
    if (!_screen.isStillThere(copy))
        return;
    const QString title = titleBehindConflictCopy(copy.title());
    const auto original = _screen.contents().documentOfTitle(title);
    if (!original) {
        rename(copy, title);
        return;
    }
    askToDelete({original, nullptr}, [this, original, copy] {
        _screen.openText(copy.document,
                         [this, original, copy](const QString &text) { replaceText(original, copy, text); });
    });
}

// The copy goes only once its text is saved in the other's place.
void ContainerEditing::replaceText(const std::shared_ptr<TamberDocument> &original, const ContainerItem &copy,
                                   const QString &text)
{
    original->openWithCompletionHandler(
        _screen.whileAlive([this, document = original.get(), copy, text](bool isOpen) {
            if (!isOpen)
                return;
            document->setText(text);
            document->closeWithCompletionHandler(_screen.whileAlive([this, copy](bool isSaved) {
                if (isSaved)
                    remove(copy);
            }));
        }));
}

void ContainerEditing::keepBothVersions(const ContainerItem &copy)
{
    const auto &container = _screen.contents().filesContainer();
    if (container)
        rename(copy, nextFreeTitle(titleBehindConflictCopy(copy.title()), [&container](const QString &title) {
                   return container->fileExists(title);
               }));
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
