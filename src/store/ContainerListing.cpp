// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ContainerListing.h"

#include "base/SystemLog.h"
#include "store/StoreNames.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// The first name tells whether names are hidden, so that a long list is joined only when it will be read.
QString maskedNames(const QStringList &names)
{
    if (names.isEmpty())
        return {};
    const QString mask = SystemLog::masked(names.first());
    return mask == names.first() ? names.join(u", "_s) : mask % u" x "_s % QString::number(names.size());
}

} // namespace

bool hasDocumentExtension(const QString &name)
{
    const qsizetype stem = name.size() - DocumentExtension.size() - 1;
    return stem > 0 && name.endsWith(DocumentExtension) && name[stem] == u'.';
}

ContainerListing ContainerListing::of(const StoreDisk::Listing &listing)
{
    ContainerListing found;
    found.isWhole = listing.ok();
    found.documents.reserve(listing.entries.size());
    for (const StoreDisk::Entry &entry : listing.entries) {
        const bool isHidden = entry.name.startsWith(u'.');
        if (entry.kind == FileStatus::Kind::Folder)
            found.folders.append(entry.name);
        else if (entry.kind == FileStatus::Kind::File && !isHidden && hasDocumentExtension(entry.name))
            found.documents.push_back(entry.name);
        else
            found.others.append(entry.name);
    }
    return found;
}

QString ContainerListing::toLog() const
{
    QStringList shown;
    QStringList named;
    for (const QString &name : folders + others)
        (isStoreName(name) ? shown : named).append(name);
    named.append(QStringList(documents.begin(), documents.end()));
    if (!named.isEmpty())
        shown.append(maskedNames(named));
    return u'(' % shown.join(u", "_s) % u')';
}

} // namespace cvtamber
