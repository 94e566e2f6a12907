// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Document.h"

namespace cvtamber {

// A plain UTF-8 text anywhere.
class CVFile : public Document
{
public:
    using Document::Document;

    // Null before it was opened or set, and when the file is not UTF-8.
    const QString &text() const { return _text; }
    void setText(const QString &text) { _text = text; }
    const QString &name() const { return fileURL().lastPathComponent(); }

protected:
    QByteArray contentsForType() const override;
    bool loadFromContents(const QByteArray &bytes) override;

    QString _text;
};

} // namespace cvtamber
