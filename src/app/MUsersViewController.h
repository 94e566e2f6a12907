// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MEditUserDialog.h"
#include "app/TamberContainerViewControllerDelegate.h"
#include "base/InterfaceBase.h"
#include "base/NotificationCenter.h"
#include "store/TamberUsers.h"
#include "ui/TableViewController.h"

#include <QSet>

#include <memory>
#include <vector>

namespace cvtamber {

struct AppContext;
class MUsersViewController;

// Hears which user was chosen in a users screen that picks.
class MUsersViewControllerDelegate : public InterfaceBase
{
public:
    // Null after Cancel.
    virtual void usersViewControllerUserPicked(MUsersViewController &controller,
                                               const std::shared_ptr<TamberUser> &user) = 0;
};

// Lists the users of one registry by last and first name: opens their documents, adds, edits, archives or restores
// and deletes them; or lets a person pick one.
//
// Menus, confirmations and the dialog are about a user and not about a row: one that has left the registry meanwhile
// is left alone. Without a registry (no store could be opened) the table is empty and says what to do.
// Thread: main thread. Owner: shared, see ViewController.
class MUsersViewController final : public TableViewController,
                                   public TamberUsersDelegate,
                                   public MeditUserDialogDelegateProtocol,
                                   public TamberContainerViewControllerDelegate
{
    Q_OBJECT

public:
    enum class Mode : int {
        Browse = 0,
        // Rows without an accessory.
        Pick = 1,
        // Rows with a disclosure indicator: a folder is to be chosen next.
        PickThenFolder = 2,
    };
    enum class List { Active, Archived };
    // Alerts of this tag or a higher one ask before a deletion.
    static constexpr int DeleteConfirmationTag = 100;

    // The context outlives the screen. `list` is what the screen is called while there is no registry; a registry tells
    // it itself, by being the store's active one or not.
    MUsersViewController(AppContext &context, std::shared_ptr<TamberUsers> tamberUsers,
                         List list = List::Active);
    ~MUsersViewController() override;

    const std::shared_ptr<TamberUsers> &tamberUsers() const { return _tamberUsers; }
    // Null: there is no store. Nothing for the one that is shown.
    void setTamberUsers(const std::shared_ptr<TamberUsers> &tamberUsers);
    Mode mode() const { return _mode; }
    // Before the screen is loaded; Browse at first.
    void setMode(Mode mode) { _mode = mode; }
    // Strong. A delegate that holds this screen takes itself back (null) when it is done with it.
    std::shared_ptr<MUsersViewControllerDelegate> delegate() const { return _delegate; }
    void setDelegate(const std::shared_ptr<MUsersViewControllerDelegate> &delegate) { _delegate = delegate; }
    const QString &actionButtonTitle() const { return _actionButtonTitle; }
    void setActionButtonTitle(const QString &title) { _actionButtonTitle = title; }
    // The row of an empty archived list.
    TableCell noUsersCell() const;
    // The users as shown.
    const std::vector<std::shared_ptr<TamberUser>> &sortedUsers() const { return _sortedUsers; }

    int numberOfRows(int section) const override;
    TableCell cellForRow(IndexPath path) const override;
    quintptr rowIdentity(IndexPath path) const override;
    EditingStyle editingStyle(IndexPath path) const override;
    QString emptyText() const override;

    void userAdded(const User &user) override;
    void userWillDelete(const User &user) override;
    void dataChangedForUser(const User &user) override;
    void contentGathered() override;
    void userListChanged();

    void userDialogCancelled() override;
    void userDialogDoneWithFirstName(const QString &firstName, const QString &lastName,
                                     const QString &displayName) override;
    void userDialogDoneWithResult(int result) override;

    void tamberContainerViewControllerUserPicked(TamberContainerViewController &controller,
                                                 const std::shared_ptr<TamberUser> &user) override;
    void tamberContainerViewControllerFolderPicked(TamberContainerViewController &controller,
                                                   const std::shared_ptr<TamberDataFolder> &folder) override;

protected:
    void viewDidLoad() override;
    void viewDidAppear() override;
    void detailDidChange() override;
    void didSelectRow(IndexPath path) override;
    void accessoryButtonTapped(IndexPath path) override;
    void commitDelete(IndexPath path) override;

private:
    bool isPicking() const { return _mode != Mode::Browse; }
    bool isActiveList() const { return _list == List::Active; }
    // Null outside the list.
    User userAt(IndexPath path) const;
    // -1 when it is not in the list.
    int rowOf(const User &user) const;
    bool isShown(const User &user) const { return rowOf(user) >= 0; }
    TableCell userCell(const TamberUser &user) const;
    TableCell emptyListCell() const;

    void takeRegistry(const std::shared_ptr<TamberUsers> &tamberUsers);
    void updateTitle();
    void userAddedNotification(const Notification &notification);
    // False when the list was in order already, and the same names are shared.
    bool sortUsers();
    // Whether others are shared than before.
    bool findSharedNames();
    void leaveBrowserOf(const User &user);
    // Of a user whose documents are open above or beside this list; else null.
    std::shared_ptr<TamberContainerViewController> openBrowser() const;
    User openUser() const;
    void rowChanged(const User &user);

    void addBarButtons();
    void updateBarButtons();
    void cancelClicked();
    void addUserClicked();
    void pushContainer(const User &user);
    void tellPicked(const User &user);
    void askForEditAction(const User &user);
    void askForDeleteConfirmation();
    void editSelectedUser();
    void presentDialog(const std::shared_ptr<MEditUserDialog> &dialog);
    // The dialog that this screen presents; null when there is none.
    std::shared_ptr<MEditUserDialog> presentedDialog() const;
    // What comes next runs when the dialog has gone; null for nothing.
    void dismissDialog(void (MUsersViewController::*then)());
    void moveSelectedUser();
    void deleteCurrentUser();

    AppContext &_context;
    std::shared_ptr<TamberUsers> _tamberUsers;
    List _list;
    Mode _mode = Mode::Browse;
    std::shared_ptr<MUsersViewControllerDelegate> _delegate;
    QString _actionButtonTitle;
    std::vector<User> _sortedUsers;
    // The shown names that several users have.
    QSet<QString> _sharedNames;
    // Being edited, moved or deleted.
    User _selectedUser;
    NotificationCenter::ObserverId _userAddedObserver = NotificationCenter::ObserverId::None;
};

} // namespace cvtamber
