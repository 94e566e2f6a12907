// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/CVFile.h"

namespace cvtamber {

// A plain text of a pupil: "*.tamber", UTF-8. Its title is the file name without the extension.
class TamberDocument final : public CVFile
{
public:
    using CVFile::CVFile;

    // A text that differs is a change, which is saved by itself while the document is open.
    void setText(const QString &text);
    const FileURL &url() const { return fileURL(); }
    // Kept, and never read: name() stays the file's, with its extension.
    void setName(const QString &name) { _name = name; }

private:
    QString _name;
};

} // namespace cvtamber
