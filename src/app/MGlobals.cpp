// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MGlobals.h"

#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "ui/TabBarController.h"

namespace cvtamber {

namespace {

struct Values
{
    std::shared_ptr<TamberUser> currentActiveUser;
    std::shared_ptr<TamberStorage> tamberStorage;
    std::shared_ptr<TabBarController> tabBarController;
};

Values &values()
{
    static Values values;
    return values;
}

} // namespace

const std::shared_ptr<TamberUser> &MGlobals::currentActiveUser()
{
    return values().currentActiveUser;
}

void MGlobals::setCurrentActiveUser(const std::shared_ptr<TamberUser> &user)
{
    values().currentActiveUser = user;
}

const std::shared_ptr<TamberStorage> &MGlobals::tamberStorage()
{
    return values().tamberStorage;
}

void MGlobals::setTamberStorage(const std::shared_ptr<TamberStorage> &storage)
{
    values().tamberStorage = storage;
}

const std::shared_ptr<TabBarController> &MGlobals::tabBarController()
{
    return values().tabBarController;
}

void MGlobals::setTabBarController(const std::shared_ptr<TabBarController> &controller)
{
    values().tabBarController = controller;
}

} // namespace cvtamber
