// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TableViewController.h"

namespace cvtamber {

// The keys and what they do, a row each. The README has the same in a table.
// Thread: main thread. Owner: its navigation.
class KeysViewController final : public TableViewController
{
    Q_OBJECT

public:
    // Over the screen that is above all others. Nothing while that is about to change or to be covered, or shows the
    // keys already.
    static void show(ViewController &top);

    explicit KeysViewController(Presenter &presenter);

    int numberOfRows(int section) const override;
    TableCell cellForRow(IndexPath path) const override;

private:
    struct Key
    {
        QString keys;
        QString meaning;
    };

    std::vector<Key> _keys;
};

} // namespace cvtamber
