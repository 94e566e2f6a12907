// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QString>

#include <functional>

namespace cvtamber {

// Shows a file in the program that the desktop has for it. Main thread. Owner: made at start-up, outlives the
// screens.
class DocumentPreview : public InterfaceBase
{
public:
    // `finished` runs once, from the loop: whether a program took the file.
    virtual void show(const QString &path, std::function<void(bool shown)> finished) = 0;
};

} // namespace cvtamber
