// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MUsersViewController.h"

#include "app/AppContext.h"
#include "app/MGlobals.h"
#include "app/TamberContainerViewController.h"
#include "app/UserTexts.h"
#include "base/SystemLog.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "ui/NavigationController.h"
#include "ui/Texts.h"

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

enum EditMenuButton : int { DeleteButton, EditButton, MoveButton, EditCancelButton };

} // namespace

void MUsersViewController::didSelectRow(IndexPath path)
{
    if (_sortedUsers.empty()) {
        addUserClicked();
        return;
    }
    const User user = userAt(path);
    if (!user)
        return;
    _selectedUser = user;
    if (isPicking())
        tellPicked(user);
    else if (isEditing())
        askForEditAction(user);
    else
        pushContainer(user);
}

void MUsersViewController::accessoryButtonTapped(IndexPath path)
{
    _selectedUser = userAt(path);
    editSelectedUser();
}

void MUsersViewController::commitDelete(IndexPath path)
{
    _selectedUser = userAt(path);
    askForDeleteConfirmation();
}

void MUsersViewController::tellPicked(const User &user)
{
    // The answer may take the delegate back.
    if (const auto delegate = _delegate)
        delegate->usersViewControllerUserPicked(*this, user);
}

void MUsersViewController::cancelClicked()
{
    tellPicked(nullptr);
}

void MUsersViewController::tamberContainerViewControllerUserPicked(TamberContainerViewController &,
                                                                   const User &user)
{
    tellPicked(user);
}

void MUsersViewController::tamberContainerViewControllerFolderPicked(
    TamberContainerViewController &, const std::shared_ptr<TamberDataFolder> &)
{}

void MUsersViewController::pushContainer(const User &user)
{
    MGlobals::setCurrentActiveUser(user);
    const auto navigation = navigationController();
    if (!navigation)
        return;
    if (const auto shown = openBrowser(); shown && shown->container() == user) {
        navigation->showDetail(shown);
        return;
    }
    const auto browser = std::make_shared<TamberContainerViewController>(_context);
    browser->setDelegate(std::static_pointer_cast<MUsersViewController>(shared_from_this()));
    browser->setContainer(user);
    navigation->showDetail(browser);
}

void MUsersViewController::askForEditAction(const User &user)
{
    ActionSheet sheet;
    sheet.buttons = {localized("Delete"), localized("2.5"), localized(isActiveList() ? "2.6" : "2.7"),
                     localized("Cancel")};
    sheet.destructiveButtonIndex = DeleteButton;
    sheet.cancelButtonIndex = EditCancelButton;
    sheet.anchor.kind = Anchor::Kind::TabBar;
    if (_context.presenter.isTablet()) {
        sheet.anchor.kind = Anchor::Kind::Row;
        sheet.anchor.row = rowOf(user);
    }
    sheet.didDismiss = [this, user](const ActionSheet &, int buttonIndex) {
        _selectedUser = user;
        if (buttonIndex == DeleteButton)
            askForDeleteConfirmation();
        else if (buttonIndex == EditButton)
            editSelectedUser();
        else if (buttonIndex == MoveButton)
            moveSelectedUser();
    };
    showActionSheet(std::move(sheet));
}

void MUsersViewController::askForDeleteConfirmation()
{
    if (!isShown(_selectedUser))
        return;
    AlertView alert;
    alert.tag = DeleteConfirmationTag;
    alert.title = localized("2.3");
    alert.message = localizedFormat("2.4", userFullDescription(*_selectedUser));
    alert.buttons = {localized("Cancel"), localized("Delete")};
    alert.cancelButtonIndex = 0;
    alert.didDismiss = [this, user = _selectedUser](const AlertView &asked, int buttonIndex,
                                                    const QString &) {
        if (asked.tag < DeleteConfirmationTag || buttonIndex == asked.cancelButtonIndex)
            return;
        _selectedUser = user;
        deleteCurrentUser();
    };
    showAlert(std::move(alert));
}

void MUsersViewController::deleteCurrentUser()
{
    const User user = std::exchange(_selectedUser, nullptr);
    if (isShown(user))
        _tamberUsers->deleteUser(user);
}

void MUsersViewController::moveSelectedUser()
{
    const auto &storage = MGlobals::tamberStorage();
    if (!storage || !isShown(_selectedUser))
        return;
    const auto &target = isActiveList() ? storage->archivedUsers() : storage->activeUsers();
    if (target != _tamberUsers)
        _tamberUsers->moveUser(_selectedUser, target);
}

// The dialog

void MUsersViewController::addUserClicked()
{
    _context.log.info(u"addUserClicked"_s);
    if (_tamberUsers)
        presentDialog(std::make_shared<MEditUserDialog>(_context));
}

void MUsersViewController::editSelectedUser()
{
    if (!isShown(_selectedUser))
        return;
    const auto dialog = std::make_shared<MEditUserDialog>(_context);
    dialog->setUser(_selectedUser);
    presentDialog(dialog);
}

void MUsersViewController::presentDialog(const std::shared_ptr<MEditUserDialog> &dialog)
{
    dialog->setDelegate(std::static_pointer_cast<MUsersViewController>(shared_from_this()));
    const auto navigation = NavigationController::withRoot(_context.presenter, dialog);
    navigation->setModalPresentationStyle(PresentationStyle::FormSheet);
    navigation->setModalTransitionStyle(TransitionStyle::CoverVertical);
    presentViewController(navigation, true);
}

std::shared_ptr<MEditUserDialog> MUsersViewController::presentedDialog() const
{
    const auto navigation = std::dynamic_pointer_cast<NavigationController>(presentedViewController());
    if (!navigation || navigation->viewControllers().empty())
        return nullptr;
    return std::dynamic_pointer_cast<MEditUserDialog>(navigation->viewControllers().front());
}

void MUsersViewController::dismissDialog(void (MUsersViewController::*then)())
{
    if (!presentedDialog())
        return;
    dismissViewController(true, [weak = weak_from_this(), then] {
        const auto self = weak.lock();
        if (self && then)
            (static_cast<MUsersViewController &>(*self).*then)();
    });
}

void MUsersViewController::userDialogCancelled()
{
    dismissDialog(nullptr);
    _selectedUser = nullptr;
}

void MUsersViewController::userDialogDoneWithFirstName(const QString &firstName, const QString &lastName,
                                                       const QString &displayName)
{
    const auto dialog = presentedDialog();
    if (!dialog)
        return;
    dismissViewController(
        true, [weak = weak_from_this(), isNew = !dialog->user(), firstName, lastName, displayName] {
            const auto locked = weak.lock();
            if (!locked)
                return;
            auto &self = static_cast<MUsersViewController &>(*locked);
            if (!isNew) {
                self.sortUsers();
                self.reloadData();
            } else if (self._tamberUsers) {
                self._tamberUsers->addUserWithFirstName(firstName, lastName, displayName);
            }
        });
}

void MUsersViewController::userDialogDoneWithResult(int result)
{
    dismissDialog(result == DeleteResult ? &MUsersViewController::deleteCurrentUser
                                         : &MUsersViewController::moveSelectedUser);
}

} // namespace cvtamber
