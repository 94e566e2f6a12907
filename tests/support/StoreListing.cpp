// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/StoreListing.h"

#include "store/Records.h"
#include "store/StoreDisk.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"

#include <QStringList>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

void add(StoreListing &listing, const QString &key, const QString &value)
{
    if (!listing.emplace(key, value).second)
        add(listing, key + u" (again)"_s, value);
}

void addFiles(StoreListing &listing, const QString &place, const TamberFilesContainer &container,
              const StoreDisk &disk)
{
    for (const auto &file : container.files()) {
        const ReadResult result = disk.read(file->url());
        add(listing, place + u'/' + file->name(),
            result.ok() ? textFromUtf8(result.bytes) : u"(unreadable)"_s);
    }
}

} // namespace

StoreListing listingOf(TamberStorage &storage, const StoreDisk &disk)
{
    StoreListing listing;
    for (const auto &registry : {storage.activeUsers(), storage.archivedUsers()}) {
        for (const auto &user : registry->users()) {
            const QString place = registry->url().lastPathComponent() + u'/' + user->folder();
            add(listing, place, user->firstName() + u'|' + user->lastName() + u'|' + user->displayName());
            addFiles(listing, place, *user, disk);
            for (const auto &folder : user->folders()) {
                const QString inside = place + u'/' + folder->storageName();
                add(listing, inside, folder->name());
                addFiles(listing, inside, *folder, disk);
            }
        }
    }
    return listing;
}

QString difference(const StoreListing &found, const StoreListing &expected)
{
    QStringList lines;
    for (const auto &[key, value] : expected) {
        if (found.count(key) == 0)
            lines.append(u"not listed: "_s + key);
        else if (found.at(key) != value)
            lines.append(u"%1 holds \"%2\", not \"%3\""_s.arg(key, found.at(key), value));
    }
    for (const auto &[key, value] : found) {
        if (expected.count(key) == 0)
            lines.append(u"listed: "_s + key);
    }
    return lines.join(u'\n');
}

} // namespace cvtamber
