// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace cvtamber {

class ViewController;

// Where a sheet points to on a tablet; a phone shows every sheet from the bottom.
struct Anchor
{
    enum class Kind { TabBar, View, Row, LeftBarButton, RightBarButton, Menu };

    Kind kind = Kind::View;
    // For Row.
    int section = 0;
    int row = 0;
    // For the bar buttons: which one, from the edge.
    int button = 0;
    // Who asks, of two screens side by side; only compared. Filled in by ViewController::showActionSheet.
    const ViewController *screen = nullptr;
};

// A menu. Told apart by its tag.
struct ActionSheet
{
    int tag = 0;
    QString title;
    QStringList buttons;
    // -1 for none. The cancel button is one of `buttons`; Escape, the back gesture and a touch beside the sheet are it.
    // Where there is none they do nothing.
    int cancelButtonIndex = -1;
    int destructiveButtonIndex = -1;
    Anchor anchor;
    // Called once, after the sheet has gone.
    std::function<void(const ActionSheet &sheet, int buttonIndex)> didDismiss;
};

} // namespace cvtamber
