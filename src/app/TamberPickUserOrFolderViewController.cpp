// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TamberPickUserOrFolderViewController.h"

#include "app/AppContext.h"
#include "app/MGlobals.h"
#include "app/TamberContainerViewController.h"
#include "base/SystemLog.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// Hands on what the steps answer. They hold their delegate strongly, and the picker holds them.
class StepDelegate final : public MUsersViewControllerDelegate, public TamberContainerViewControllerDelegate
{
public:
    explicit StepDelegate(std::weak_ptr<TamberPickUserOrFolderViewController> picker)
        : _picker(std::move(picker))
    {}

    void usersViewControllerUserPicked(MUsersViewController &controller,
                                       const std::shared_ptr<TamberUser> &user) override
    {
        if (const auto picker = _picker.lock())
            picker->usersViewControllerUserPicked(controller, user);
    }
    void tamberContainerViewControllerUserPicked(TamberContainerViewController &controller,
                                                 const std::shared_ptr<TamberUser> &user) override
    {
        if (const auto picker = _picker.lock())
            picker->tamberContainerViewControllerUserPicked(controller, user);
    }
    void tamberContainerViewControllerFolderPicked(TamberContainerViewController &controller,
                                                   const std::shared_ptr<TamberDataFolder> &folder) override
    {
        if (const auto picker = _picker.lock())
            picker->tamberContainerViewControllerFolderPicked(controller, folder);
    }

private:
    std::weak_ptr<TamberPickUserOrFolderViewController> _picker;
};

} // namespace

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
    users->setDelegate(std::make_shared<StepDelegate>(self()));
    users->setActionButtonTitle(_actionButtonTitle);
    if (_mode == Mode::PickUser)
        users->setMode(MUsersViewController::Mode::Pick);
    else if (_mode == Mode::PickUserThenFolder)
        users->setMode(MUsersViewController::Mode::PickThenFolder);
    pushViewController(users, false);
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
    browser->setDelegate(std::make_shared<StepDelegate>(self()));
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
    return std::exchange(_pickDelegate, {}).lock();
}

} // namespace cvtamber
