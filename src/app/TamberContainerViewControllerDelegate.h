// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <memory>

namespace cvtamber {

class TamberContainerViewController;
class TamberDataFolder;
class TamberUser;

// Hears what was chosen in a container browser that picks a place.
class TamberContainerViewControllerDelegate : public InterfaceBase
{
public:
    // The user itself is the place.
    virtual void tamberContainerViewControllerUserPicked(TamberContainerViewController &controller,
                                                         const std::shared_ptr<TamberUser> &user) = 0;
    // Null after Cancel.
    virtual void
    tamberContainerViewControllerFolderPicked(TamberContainerViewController &controller,
                                              const std::shared_ptr<TamberDataFolder> &folder) = 0;
};

} // namespace cvtamber
