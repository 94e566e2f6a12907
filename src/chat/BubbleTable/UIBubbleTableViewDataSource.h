// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "chat/BubbleTable/NSBubbleData.h"

namespace cvtamber {

class UIBubbleTableView;

// Where a bubble table has its conversation from. Asked in reloadData alone.
class UIBubbleTableViewDataSource : public InterfaceBase
{
public:
    virtual int rowsForBubbleTable(const UIBubbleTableView &table) = 0;
    // In any order of dates; never null.
    virtual NSBubblePtr bubbleTableViewDataForRow(const UIBubbleTableView &table, int row) = 0;
};

} // namespace cvtamber
