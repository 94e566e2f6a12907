// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Document.h"

namespace cvtamber {

// The record of a folder, "folder.dat": its display name.
class TamberDataFolderDocument final : public Document
{
public:
    using Document::Document;
    ~TamberDataFolderDocument() override;

    // Null before the record was read, and when it is not UTF-8.
    const QString &name() const { return _name; }
    // Writes the record at once and closes it; nothing when the name is set and the same.
    void setName(const QString &name);
    // For a folder that is being made: only keeps the name.
    void setInitialName(const QString &name);

protected:
    QByteArray contentsForType() const override;
    bool loadFromContents(const QByteArray &bytes) override;
    StoreDisk::OtherVersion otherVersion() const override { return StoreDisk::OtherVersion::Replace; }

private:
    QString _name;
};

} // namespace cvtamber
