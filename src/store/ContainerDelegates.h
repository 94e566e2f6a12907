// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "store/FileURL.h"

#include <limits>

namespace cvtamber {

// A place in a container's list.
using StoreIndex = qsizetype;
inline constexpr StoreIndex NotFound = std::numeric_limits<StoreIndex>::max();

// A directory that containers lie in.
class TamberDiskLocation : public InterfaceBase
{
public:
    virtual FileURL url() const = 0;
};

// Hears what happens to a container's documents. Each index is one of the list after the change, a deleted
// one's is where it was. An insertion into a list that a scan left unsorted has sorted it all. Main thread.
class TamberFilesContainerDelegate : public InterfaceBase
{
public:
    virtual void fileAddedAtIndex(StoreIndex index) = 0;
    virtual void fileDeletedAtIndex(StoreIndex index) = 0;
    // It is saved, and has its size.
    virtual void fileUpdatedAtIndex(StoreIndex /*index*/) {}
};

// The same for a user's folders.
class TamberFoldersContainerDelegate : public InterfaceBase
{
public:
    virtual void folderAddedAtIndex(StoreIndex index) = 0;
    virtual void folderDeletedAtIndex(StoreIndex index) = 0;
    virtual void folderUpdatedAtIndex(StoreIndex index) = 0;
};

// For a container that has both.
class TamberFilesAndFoldersContainerDelegate : public TamberFilesContainerDelegate,
                                               public TamberFoldersContainerDelegate
{};

} // namespace cvtamber
