// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreDisk.h"

#include <vector>

namespace cvtamber {

// The shape of a folder's name, for isLike(); in pieces, since "??-" would be a trigraph.
inline constexpr QStringView UuidPattern = u"????????"
                                           u"-????"
                                           u"-????"
                                           u"-????"
                                           u"-????????????";

// What a container finds in a directory, each kind in the directory's order. A value.
struct ContainerListing
{
    // File names. Ordinary files with the extension "tamber" in exactly these letters; no hidden ones.
    std::vector<QString> documents;
    // Directories, hidden ones too.
    QStringList folders;
    // Everything else, for the log.
    QStringList others;
    // False when the directory could not be read whole.
    bool isWhole = false;

    static ContainerListing of(const StoreDisk::Listing &listing);
    // In a log line the store's own names are shown, what a person named is masked. Cheap also for ten
    // thousand documents as long as they are hidden.
    QString toLog() const;
};

// The name has the extension of a document; nothing is said about the kind of entry.
bool hasDocumentExtension(const QString &name);

} // namespace cvtamber
