// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileOperations.h"

#include <optional>

namespace cvtamber {

// The end of the hidden name under which a new version of a file changes places with the old one. A crash may come
// before anybody has looked at what came out of that; the mark tells whoever finds the hidden file later.
// A value; any thread.
struct ExchangeMark
{
    // Of the new version.
    quint64 madeInode = 0;
    // Of the version that was meant to come out. Not its date, which is the only thing that a later look may
    // find changed.
    quint64 knownInode = 0;
    qint64 knownSize = 0;

    QString toText() const;
    // Nothing for a hidden name without a mark.
    static std::optional<ExchangeMark> ofName(QStringView hiddenName);

    // Neither the new version nor the one that was meant to come out: another program had been faster.
    bool isAnothersVersion(const FileStamp &stamp) const
    {
        return stamp.inode != madeInode && (stamp.inode != knownInode || stamp.size != knownSize);
    }
};

} // namespace cvtamber
