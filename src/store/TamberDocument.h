// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Document.h"

namespace cvtamber {

// A plain text of a pupil: "*.tamber", UTF-8. Its title is the file name without the extension.
class TamberDocument final : public Document
{
public:
    using Document::Document;

    // Null before it was opened or set, and when the file is not UTF-8.
    const QString &text() const { return _text; }
    // A text that differs is a change, which is saved by itself while the document is open.
    void setText(const QString &text);
    const FileURL &url() const { return fileURL(); }
    // The file name with its extension.
    const QString &name() const { return fileURL().lastPathComponent(); }
    // Kept, and never read: name() stays the file's.
    void setName(const QString &name) { _name = name; }

protected:
    QByteArray contentsForType() const override;
    bool loadFromContents(const QByteArray &bytes) override;

private:
    QString _text;
    QString _name;
};

} // namespace cvtamber
