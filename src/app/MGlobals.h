// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace cvtamber {

class TabBarController;
class TamberStorage;
class TamberUser;

// What the whole program shares: set by start-up and by the users screen, read by the screens.
//
// Each is held strongly until another is set; nobody is told of a change. Start-up sets null at the end. Thread: main thread.
class MGlobals
{
public:
    MGlobals() = delete;

    // The user whose documents are shown; null on the users screen.
    static const std::shared_ptr<TamberUser> &currentActiveUser();
    static void setCurrentActiveUser(const std::shared_ptr<TamberUser> &user);
    // Null until the store has been located, and where it cannot be opened.
    static const std::shared_ptr<TamberStorage> &tamberStorage();
    static void setTamberStorage(const std::shared_ptr<TamberStorage> &storage);
    // Null until the screens have been made.
    static const std::shared_ptr<TabBarController> &tabBarController();
    static void setTabBarController(const std::shared_ptr<TabBarController> &controller);
};

} // namespace cvtamber
