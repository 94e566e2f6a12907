// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QStringList>

#include <functional>

namespace cvtamber {

// The system's window in which a person chooses files.
//
// Thread: main thread. Owner: made at start-up, outlives the screens.
class FileChooser : public InterfaceBase
{
public:
    struct Choice
    {
        // The system has no such window, or it failed; the rest is empty then.
        bool hasFailed = false;
        // Absolute. Nothing where the person has thought better of it.
        QStringList paths;
        // What was chosen and is no file of this computer.
        QStringList others;
    };

    // Any number of files. `chosen` runs once, from the loop. One window at a time: while it is open a further call
    // does nothing.
    virtual void choose(const QString &title, std::function<void(const Choice &choice)> chosen) = 0;
};

} // namespace cvtamber
