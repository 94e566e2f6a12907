// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace cvtamber {

// Shows a file in the program that the desktop has for it. Main thread. Owner: made at start-up, outlives the
// screens.
class DocumentPreview
{
public:
    DocumentPreview() = default;
    DocumentPreview(const DocumentPreview &) = delete;
    DocumentPreview &operator=(const DocumentPreview &) = delete;
    virtual ~DocumentPreview() = default;

    // `finished` runs once, from the loop: whether a program took the file.
    virtual void show(const QString &path, std::function<void(bool shown)> finished) = 0;
};

} // namespace cvtamber
