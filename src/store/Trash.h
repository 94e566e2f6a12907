// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "store/FileResult.h"

namespace cvtamber {

// Where the store puts what it must not keep and must not destroy. The item is whole in one place or the
// other. Any thread. Owner: made at start-up, outlives its users.
class Trash : public InterfaceBase
{
public:
    virtual FileResult moveToTrash(const FileURL &url) = 0;
};

} // namespace cvtamber
