// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Trash.h"

namespace cvtamber {

class StoreDisk;

// The desktop's trash; a folder of our own where there is none or it does not take the item.
//
// In that folder the item keeps its name, or gets the first free of "Letter 2.tamber", "Letter 3.tamber" ...
// The folder is made when it is needed. Any thread. The disk outlives it.
class DesktopTrash final : public Trash
{
public:
    DesktopTrash(const StoreDisk &disk, FileURL recoveredFolder);

    FileResult moveToTrash(const FileURL &url) override;

private:
    FileResult moveToRecoveredFolder(const FileURL &url) const;

    const StoreDisk &_disk;
    FileURL _recoveredFolder;
};

} // namespace cvtamber
