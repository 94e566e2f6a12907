// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MUsersViewController.h"

#include "app/AppContext.h"
#include "app/MGlobals.h"
#include "app/StoreSwitch.h"
#include "app/TamberContainerViewController.h"
#include "app/UserTexts.h"
#include "base/SystemLog.h"
#include "base/UserDefaults.h"
#include "base/VisibleText.h"
#include "store/CloudContainer.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "ui/NavigationController.h"
#include "ui/Texts.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

bool comesBefore(const std::shared_ptr<TamberUser> &one, const std::shared_ptr<TamberUser> &other)
{
    const int lastNames = one->lastName().compare(other->lastName());
    return lastNames != 0 ? lastNames < 0 : one->firstName().compare(other->firstName()) < 0;
}

TableCell centredCell(const char *key)
{
    TableCell cell;
    cell.style = TableCell::Style::Centered;
    cell.text = localized(key);
    return cell;
}

// The two that all users screens share.
const TableCell &waitingCell()
{
    static const TableCell cell = [] {
        TableCell waiting;
        waiting.style = TableCell::Style::Wait;
        waiting.accessibleName = localized("Loading");
        return waiting;
    }();
    return cell;
}

const TableCell &addCell()
{
    static const TableCell cell = centredCell("2.2");
    return cell;
}

qsizetype documentsOf(const TamberUser &user)
{
    auto count = static_cast<qsizetype>(user.files().size());
    for (StoreIndex i = 0; i < static_cast<StoreIndex>(user.foldersCount()); ++i)
        count += static_cast<qsizetype>(user.folderAtIndex(i)->files().size());
    return count;
}

// First and last name, or the one that there is.
QString namesOf(const TamberUser &user)
{
    const QString &first = user.firstName();
    const QString &last = user.lastName();
    return first.isEmpty() || last.isEmpty() ? QString(first % last) : QString(first % u' ' % last);
}

} // namespace

MUsersViewController::MUsersViewController(AppContext &context, std::shared_ptr<TamberUsers> tamberUsers,
                                           List list)
    : TableViewController(context.presenter)
    , _context(context)
    , _list(list)
{
    _userAddedObserver = _context.notifications.addObserver(
        TamberUsersUserAddedNotification.toString(),
        [this](const Notification &notification) { userAddedNotification(notification); });
    takeRegistry(tamberUsers);
    setDetailHint(localized("Choose a user to see the documents."));
    updateTitle();
}

MUsersViewController::~MUsersViewController()
{
    _context.notifications.removeObserver(_userAddedObserver);
    if (_tamberUsers)
        _tamberUsers->removeObserver(*this);
}

// The registry

void MUsersViewController::takeRegistry(const std::shared_ptr<TamberUsers> &tamberUsers)
{
    if (_tamberUsers)
        _tamberUsers->removeObserver(*this);
    _sortedUsers.clear();
    _tamberUsers = tamberUsers;
    if (!_tamberUsers)
        return;
    _tamberUsers->addObserver(*this);
    _sortedUsers = _tamberUsers->users();
    sortUsers();
}

void MUsersViewController::setTamberUsers(const std::shared_ptr<TamberUsers> &tamberUsers)
{
    if (tamberUsers == _tamberUsers)
        return;
    takeRegistry(tamberUsers);
    if (_tamberUsers)
        _tamberUsers->startQuery();
    else
        setEditing(false);
    updateTitle();
    updateBarButtons();
    reloadData();
}

void MUsersViewController::updateTitle()
{
    if (_tamberUsers) {
        const auto &storage = MGlobals::tamberStorage();
        _list = storage && storage->activeUsers() == _tamberUsers ? List::Active : List::Archived;
    }
    setTitle(localized(isActiveList() ? "2.8" : "2.9"));
}

bool MUsersViewController::sortUsers()
{
    const bool namesChanged = findSharedNames();
    if (std::is_sorted(_sortedUsers.begin(), _sortedUsers.end(), comesBefore))
        return namesChanged;
    std::stable_sort(_sortedUsers.begin(), _sortedUsers.end(), comesBefore);
    return true;
}

bool MUsersViewController::findSharedNames()
{
    QSet<QString> names;
    QSet<QString> shared;
    for (const User &user : _sortedUsers) {
        const QString name = userDisplayName(user.get());
        if (names.contains(name))
            shared.insert(name);
        names.insert(name);
    }
    return std::exchange(_sharedNames, shared) != shared;
}

void MUsersViewController::userAddedNotification(const Notification &notification)
{
    if (_tamberUsers && notification.object == _tamberUsers.get())
        userAdded(notification.userInfo.value(u"user"_s).value<User>());
}

void MUsersViewController::userAdded(const User &user)
{
    if (!user || isShown(user))
        return;
    _sortedUsers.push_back(user);
    const QSet<QString> shared = _sharedNames;
    sortUsers();
    if (_sortedUsers.size() == 1)
        reloadRow({0, 0});
    else if (_sharedNames != shared)
        reloadData();
    else
        insertRow({0, rowOf(user)});
}

void MUsersViewController::userWillDelete(const User &user)
{
    leaveBrowserOf(user);
    if (const int row = rowOf(user); row >= 0) {
        _sortedUsers.erase(_sortedUsers.begin() + row);
        if (_sortedUsers.empty())
            reloadRow({0, 0});
        else
            deleteRow({0, row});
    }
}

// Its documents go with it, or are in another list from now on.
void MUsersViewController::leaveBrowserOf(const User &user)
{
    const auto browser = openBrowser();
    if (!isPicking() && browser && browser->container() == user)
        navigationController()->popToRootViewController(false);
}

std::shared_ptr<TamberContainerViewController> MUsersViewController::openBrowser() const
{
    const auto navigation = navigationController();
    return navigation ? std::dynamic_pointer_cast<TamberContainerViewController>(navigation->detail())
                      : nullptr;
}

void MUsersViewController::contentGathered()
{
    if (_tamberUsers && _tamberUsers->users().empty())
        reloadRow({0, 0});
}

void MUsersViewController::dataChangedForUser(const User &user)
{
    if (isShown(user)) {
        user->reloadDataWitCompletionHandler([weak = weak_from_this(), user] {
            if (const auto self = weak.lock())
                static_cast<MUsersViewController &>(*self).rowChanged(user);
        });
    }
}

void MUsersViewController::rowChanged(const User &user)
{
    if (sortUsers())
        reloadData();
    else if (isShown(user))
        reloadRow({0, rowOf(user)});
}

void MUsersViewController::userListChanged()
{
    _context.log.info(u"userListChanged"_s);
    reloadData();
}

// Life

void MUsersViewController::viewDidLoad()
{
    updateTitle();
    addBarButtons();
    if (_tamberUsers && _tamberUsers->isUbiquitous())
        _tamberUsers->startQuery();
}

void MUsersViewController::viewDidAppear()
{
    sortUsers();
    detailDidChange();
}

void MUsersViewController::detailDidChange()
{
    MGlobals::setCurrentActiveUser(openUser());
    reloadData();
}

// Whose documents stand beside the list.
MUsersViewController::User MUsersViewController::openUser() const
{
    const auto browser = openBrowser();
    return browser ? std::dynamic_pointer_cast<TamberUser>(browser->container()) : nullptr;
}

void MUsersViewController::addBarButtons()
{
    using Kind = BarButtonItem::Kind;
    if (isPicking()) {
        setLeftItems({{Kind::Cancel, localized("Cancel"), true, [this] { cancelClicked(); }}});
        return;
    }
    QList<BarButtonItem> items{editButtonItem()};
    if (isActiveList())
        items.prepend({Kind::Add, localized("Add user"), true, [this] { addUserClicked(); }});
    setRightItems(items);
    updateBarButtons();
}

void MUsersViewController::updateBarButtons()
{
    for (const auto kind : {BarButtonItem::Kind::Add, BarButtonItem::Kind::Edit})
        setItemEnabled(kind, _tamberUsers != nullptr);
}

// Table

MUsersViewController::User MUsersViewController::userAt(IndexPath path) const
{
    const bool holds =
        path.section == 0 && path.row >= 0 && static_cast<size_t>(path.row) < _sortedUsers.size();
    return holds ? _sortedUsers[static_cast<size_t>(path.row)] : nullptr;
}

int MUsersViewController::rowOf(const User &user) const
{
    const auto found = std::find(_sortedUsers.begin(), _sortedUsers.end(), user);
    return found == _sortedUsers.end() ? -1 : static_cast<int>(found - _sortedUsers.begin());
}

int MUsersViewController::numberOfRows(int) const
{
    return _tamberUsers ? std::max(1, static_cast<int>(_sortedUsers.size())) : 0;
}

TableCell MUsersViewController::cellForRow(IndexPath path) const
{
    const User user = userAt(path);
    return user ? userCell(*user) : emptyListCell();
}

TableCell MUsersViewController::userCell(const TamberUser &user) const
{
    using Accessory = TableCell::Accessory;
    TableCell cell;
    cell.style = TableCell::Style::Subtitle;
    cell.image = u"user.png"_s;
    cell.text = userDisplayName(&user);
    // A record that could not be read leaves no name, and a row needs one to be found by.
    if (isBlank(cell.text))
        cell.text = localized("No name");
    if (!user.displayName().isEmpty())
        cell.detail = namesOf(user);
    if (_sharedNames.contains(userDisplayName(&user)))
        cell.accessibleName = spokenApart(cell.text, cell.detail, documentsOf(user));
    if (_mode == Mode::Browse) {
        cell.accessory = Accessory::DetailDisclosure;
        cell.accessoryName = localizedFormat("Edit %@", cell.text);
        const auto navigation = navigationController();
        cell.isOpen = navigation && navigation->hasColumns() && openUser().get() == &user;
    } else if (_mode == Mode::PickThenFolder) {
        cell.accessory = Accessory::Disclosure;
    }
    return cell;
}

TableCell MUsersViewController::emptyListCell() const
{
    const bool isWaiting = _tamberUsers && !_tamberUsers->contentGathered();
    TableCell cell = isWaiting ? waitingCell() : isActiveList() ? addCell() : noUsersCell();
    cell.canHighlight = isActiveList();
    return cell;
}

TableCell MUsersViewController::noUsersCell() const
{
    return centredCell("2.10");
}

quintptr MUsersViewController::rowIdentity(IndexPath path) const
{
    return reinterpret_cast<quintptr>(userAt(path).get());
}

TableViewController::EditingStyle MUsersViewController::editingStyle(IndexPath) const
{
    return _sortedUsers.empty() ? EditingStyle::None : EditingStyle::Delete;
}

QString MUsersViewController::emptyText() const
{
    if (_tamberUsers)
        return {};
    const bool isAway = _context.defaults.boolValue(CloudOn) &&
                        !_context.defaults.value(CloudFolderDefault.toString()).toString().isEmpty();
    return localized(isAway ? "The cloud folder is not there. Its documents are shown when it is back."
                            : "There is no place for documents. Choose one in the settings.");
}

} // namespace cvtamber
