// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TamberPickUserOrFolderViewController.h"

#include "app/AppContext.h"
#include "app/MGlobals.h"
#include "app/TamberContainerViewController.h"
#include "base/SystemLog.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"

#include <QCoreApplication>

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

TamberPickUserOrFolderViewController::TamberPickUserOrFolderViewController(AppContext &context)
    : NavigationController(context.presenter)
    , _context(context)
{}

TamberPickUserOrFolderViewController::~TamberPickUserOrFolderViewController() = default;

std::shared_ptr<TamberPickUserOrFolderViewController> TamberPickUserOrFolderViewController::self()
{
    return std::static_pointer_cast<TamberPickUserOrFolderViewController>(shared_from_this());
}

void TamberPickUserOrFolderViewController::viewDidLoad()
{
    const auto &storage = MGlobals::tamberStorage();
    const auto users =
        std::make_shared<MUsersViewController>(_context, storage ? storage->activeUsers() : nullptr);
    users->setDelegate(self());
    users->setActionButtonTitle(_actionButtonTitle);
    if (_mode == Mode::PickUser)
        users->setMode(MUsersViewController::Mode::Pick);
    else if (_mode == Mode::PickUserThenFolder)
        users->setMode(MUsersViewController::Mode::PickThenFolder);
    pushViewController(users, false);
    // A program that ends while the picker is up dismisses nothing.
    if (const auto *const program = QCoreApplication::instance())
        connect(program, &QCoreApplication::aboutToQuit, this,
                &TamberPickUserOrFolderViewController::letGoOfSteps);
}

void TamberPickUserOrFolderViewController::viewDidDisappear()
{
    if (hasGone())
        letGoOfSteps();
}

void TamberPickUserOrFolderViewController::letGoOfSteps()
{
    for (const auto &step : viewControllers()) {
        if (const auto users = std::dynamic_pointer_cast<MUsersViewController>(step))
            users->setDelegate(nullptr);
        else if (const auto browser = std::dynamic_pointer_cast<TamberContainerViewController>(step))
            browser->setDelegate(nullptr);
    }
}

void TamberPickUserOrFolderViewController::usersViewControllerUserPicked(
    MUsersViewController &, const std::shared_ptr<TamberUser> &user)
{
    _context.log.info(u"userPicked: "_s % (user ? SystemLog::masked(user->description()) : u"(null)"_s));
    if (user && _mode == Mode::PickUserThenFolder)
        pushContainer(user);
    else
        answerUser(user);
}

void TamberPickUserOrFolderViewController::pushContainer(const std::shared_ptr<TamberUser> &user)
{
    const auto browser = std::make_shared<TamberContainerViewController>(_context);
    browser->setContainer(user);
    browser->setDelegate(self());
    browser->setMode(TamberContainerViewController::Mode::PickFolder);
    browser->setActionButtonTitle(_actionButtonTitle);
    pushViewController(browser, true);
}

void TamberPickUserOrFolderViewController::tamberContainerViewControllerUserPicked(
    TamberContainerViewController &, const std::shared_ptr<TamberUser> &user)
{
    answerUser(user);
}

void TamberPickUserOrFolderViewController::tamberContainerViewControllerFolderPicked(
    TamberContainerViewController &, const std::shared_ptr<TamberDataFolder> &folder)
{
    const auto keep = self();
    if (const auto delegate = takePickDelegate())
        delegate->tamberPickUserOrFolderViewControllerFolderPicked(*this, folder);
}

void TamberPickUserOrFolderViewController::answerUser(const std::shared_ptr<TamberUser> &user)
{
    const auto keep = self();
    if (const auto delegate = takePickDelegate())
        delegate->tamberPickUserOrFolderViewControllerUserPicked(*this, user);
}

std::shared_ptr<TamberPickUserOrFolderViewController::PickDelegate>
TamberPickUserOrFolderViewController::takePickDelegate()
{
    letGoOfSteps();
    return std::exchange(_pickDelegate, {}).lock();
}

} // namespace cvtamber
